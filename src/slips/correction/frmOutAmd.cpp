#include "slips/correction/frmOutAmd.h"

#include "slips/documents/delivery_note_print.h"

namespace slips
{

namespace
{

const char16_t *titleOf(const book::SlipKind &kind)
{
    if (kind == book::receipt)
        return u"入金伝票訂正";
    return kind == book::receivableCarried ? u"繰越伝票 (売掛金)訂正" : u"納品伝票訂正（再発行）";
}

} // namespace

frmOutAmd::frmOutAmd(workspace::Workspace &workspace, QWidget *parent, const book::SlipKind &kind)
    : SlipCorrectionScreen(workspace, parent,
                           {.kind = kind,
                            .screen = u"frmOutAmd",
                            .title = titleOf(kind),
                            .search = book::customerSearch,
                            .party = u"納品先",
                            // It speaks of payers on all three kinds; that is how the users know it.
                            .several = u"複数の入金先が選択されています。",
                            .showsAddress = true,
                            .reprints = kind == book::sale,
                            .hasDesignatedForm = kind == book::sale,
                            .isSent = kind == book::sale})
{}

bool frmOutAmd::reprint(qint64 id)
{
    return printDeliveryNote(workspace(), this,
                             {.slipId = id,
                              .inclusive = pricesIncludeTax(),
                              .closed = true,
                              .designatedForm = designatedForm(),
                              .memo = memo()});
}

} // namespace slips
