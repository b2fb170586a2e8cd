#include "slips/correction/frmMitumoriAmd.h"

#include "slips/documents/estimate_print.h"

namespace slips
{

frmMitumoriAmd::frmMitumoriAmd(workspace::Workspace &workspace, QWidget *parent)
    : SlipCorrectionScreen(workspace, parent,
                           {.kind = book::estimate,
                            .screen = u"frmMitumoriAmd",
                            .title = u"見積書訂正",
                            .search = book::customerSearch,
                            .party = u"納品先",
                            // As the screens of sales and receipts say it.
                            .several = u"複数の入金先が選択されています。",
                            .showsAddress = true,
                            .reprints = true})
{}

bool frmMitumoriAmd::reprint(qint64 id)
{
    return printEstimate(workspace(), this, {.slipId = id, .inclusive = knownInclusive(), .memo = memo()});
}

} // namespace slips
