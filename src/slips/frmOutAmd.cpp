#include "slips/frmOutAmd.h"

#include "slips/delivery_note_print.h"

namespace slips
{

namespace
{

const char16_t *titleOf(const SlipKind &kind)
{
    if (kind == receipt)
        return u"入金伝票訂正";
    return kind == receivableCarried ? u"繰越伝票 (売掛金)訂正" : u"納品伝票訂正（再発行）";
}

} // namespace

frmOutAmd::frmOutAmd(app::Workspace &workspace, QWidget *parent, const SlipKind &kind)
    : SlipCorrectionScreen(workspace, parent,
                           {.kind = kind,
                            .screen = u"frmOutAmd",
                            .title = titleOf(kind),
                            .search = customerSearch,
                            .party = u"納品先",
                            // It speaks of payers on all three kinds; that is how the users know it.
                            .several = u"複数の入金先が選択されています。",
                            .showsAddress = true,
                            .reprints = kind == sale,
                            .hasDesignatedForm = kind == sale})
{}

void frmOutAmd::reprint(qint64 id)
{
    printDeliveryNote(workspace(), this,
                      {.slipId = id,
                       .inclusive = pricesIncludeTax(),
                       .closed = true,
                       .designatedForm = designatedForm(),
                       .memo = memo()});
}

} // namespace slips
