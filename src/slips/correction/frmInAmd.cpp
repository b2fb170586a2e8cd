#include "slips/correction/frmInAmd.h"

namespace slips
{

namespace
{

const char16_t *titleOf(const book::SlipKind &kind)
{
    if (kind == book::payment)
        return u"支払伝票訂正";
    if (kind == book::payableCarried)
        return u"繰越伝票 (買掛金)訂正";
    return kind == book::stocktake ? u"棚卸伝票訂正" : u"仕入伝票訂正";
}

} // namespace

frmInAmd::frmInAmd(workspace::Workspace &workspace, QWidget *parent, const book::SlipKind &kind)
    : SlipCorrectionScreen(workspace, parent,
                           {.kind = kind,
                            .screen = u"frmInAmd",
                            .title = titleOf(kind),
                            .search = book::payeeSearch,
                            .party = u"仕入先",
                            .several = u"複数の仕入先が選択されています。"})
{}

} // namespace slips
