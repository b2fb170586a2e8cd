#include "slips/frmInAmd.h"

namespace slips
{

namespace
{

const char16_t *titleOf(const SlipKind &kind)
{
    if (kind == payment)
        return u"支払伝票訂正";
    if (kind == payableCarried)
        return u"繰越伝票 (買掛金)訂正";
    return kind == stocktake ? u"棚卸伝票訂正" : u"仕入伝票訂正";
}

} // namespace

frmInAmd::frmInAmd(app::Workspace &workspace, QWidget *parent, const SlipKind &kind)
    : SlipCorrectionScreen(workspace, parent,
                           {.kind = kind,
                            .screen = u"frmInAmd",
                            .title = titleOf(kind),
                            .search = payeeSearch,
                            .party = u"仕入先",
                            .several = u"複数の仕入先が選択されています。"})
{}

} // namespace slips
