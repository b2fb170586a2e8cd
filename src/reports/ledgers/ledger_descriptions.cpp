#include "reports/ledgers/ledger_screen.h"

namespace reports
{

LedgerDescription descriptionOf(LedgerView view)
{
    constexpr const char16_t *correctsSlip = u"伝票を訂正 Enter(&T)";
    constexpr const char16_t *opensLedger = u"元帳を開く Enter(&T)";
    constexpr const char16_t *openOnly = u"残高のあるものだけ(&Z)";
    switch (view) {
    case LedgerView::Receivable:
        return {.view = view,
                .screen = u"frmOutMoto",
                .title = u"売掛金元帳",
                .search = &book::customerSearch,
                .foundWidths = {0, 190, 130, 76, 210, 120, 110, 60, 90, 0, 0},
                .opens = correctsSlip,
                .charts = book::Party::Customer};
    case LedgerView::Payable:
        return {.view = view,
                .screen = u"frmInMoto",
                .title = u"買掛金元帳",
                .search = &book::payeeSearch,
                .foundWidths = {60, 190, 130, 210, 110, 0, 60, 0},
                .opens = correctsSlip,
                .charts = book::Party::Supplier};
    case LedgerView::ReceivableBalances:
        return {.view = view,
                .screen = u"frmOutZandaka",
                .title = u"売掛金残高照会",
                .zeros = openOnly,
                .sorts = true,
                .hasStart = false,
                .opens = opensLedger,
                .charts = book::Party::Customer};
    case LedgerView::PayableBalances:
        return {.view = view,
                .screen = u"frmInZandaka",
                .title = u"買掛金残高照会",
                .zeros = openOnly,
                .sorts = true,
                .hasStart = false,
                .opens = opensLedger,
                .charts = book::Party::Supplier};
    case LedgerView::Stock:
        return {.view = view,
                .screen = u"frmTanaMoto",
                .title = u"棚卸補助元帳",
                .zeros = u"在庫のあるものだけ(&Z)",
                .sorts = true,
                .hasStart = false,
                .opens = opensLedger};
    case LedgerView::Goods:
        return {.view = view, .screen = u"frmTanaGoods", .title = u"棚卸補助元帳", .opens = correctsSlip};
    }
    Q_UNREACHABLE();
}

} // namespace reports
