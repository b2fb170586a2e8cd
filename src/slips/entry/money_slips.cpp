#include "slips/entry/money_slips.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

constexpr const char16_t *noCustomer = u"検索した納品先は見つかりませんでした。\n新規に入力しますか？";
constexpr const char16_t *noSupplier = u"検索した仕入先は見つかりませんでした。\n新規に入力しますか？";

// The names of the counterpart, and no stamp on its 更新日: money does not bring a customer up in the lists.
SlipDescription ofCustomer(const book::SlipKind &kind)
{
    return {.kind = kind,
            .manualLetter = kind.letter,
            .search = book::customerSearch,
            .nothingFound = noCustomer,
            .foundWidths = {0, 190, 130, 76, 210, 120, 110, 60, 90, 0, 0},
            .stampsCounterpart = false};
}

SlipDescription ofSupplier(const book::SlipKind &kind)
{
    return {.kind = kind,
            .manualLetter = kind.letter,
            .search = book::payeeSearch,
            .nothingFound = noSupplier,
            .foundWidths = {60, 190, 130, 210, 110, 0, 60, 0},
            .stampsCounterpart = false};
}

// The full-width blanks within the words are part of what the books hold.
QStringList meansOfPayment()
{
    return {u"約束手形"_s, u"小切手"_s, u"銀行振込"_s, u"郵便振替"_s, u"現　金"_s, u"相　殺"_s};
}

} // namespace

MoneySlipDescription descriptionOf(MoneySlip slip)
{
    switch (slip) {
    case MoneySlip::Receipt:
        return {.slip = ofCustomer(book::receipt),
                .screen = u"frmOutReceipt",
                .title = u"入金伝票",
                .party = u"納品先",
                .items = {u"入　金"_s, u"振込手数料"_s, u"手数料"_s},
                .means = meansOfPayment(),
                .meansLabel = u"入金方法"};
    case MoneySlip::Payment:
        return {.slip = ofSupplier(book::payment),
                .screen = u"frmInPay",
                .title = u"支払伝票",
                .party = u"仕入先",
                .items = {u"支　払"_s, u"振込手数料"_s, u"手数料"_s},
                .means = meansOfPayment(),
                .meansLabel = u"支払方法",
                .showsTaxClass = true};
    case MoneySlip::ReceivableCarried:
        return {.slip = ofCustomer(book::receivableCarried),
                .screen = u"frmUrikake",
                .title = u"売掛金　繰越伝票",
                .party = u"納品先",
                .items = {u"繰越残高"_s},
                .means = {}};
    case MoneySlip::PayableCarried:
        return {.slip = ofSupplier(book::payableCarried),
                .screen = u"frmKaikake",
                .title = u"買掛金　繰越伝票",
                .party = u"仕入先",
                .items = {u"繰越残高"_s},
                .means = {}};
    }
    Q_UNREACHABLE();
}

} // namespace slips
