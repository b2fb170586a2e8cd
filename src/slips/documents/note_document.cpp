#include "slips/documents/note_document.h"

#include "masters/rich_text/rtf_file.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

CompanyName companyNameOf(const workspace::Workspace &workspace)
{
    if (workspace.panel.omitCompanyName)
        return CompanyName::Omitted;
    const bool registered = !workspace.settings.text(workspace::keys::richTextFileName).isEmpty();
    return workspace.panel.extendedCompanyName && registered ? CompanyName::Extended : CompanyName::Plain;
}

CompanyName addCompanyName(printing::Document &document, const workspace::Workspace &workspace,
                           CompanyName name)
{
    if (name != CompanyName::Extended)
        return name;
    auto block = masters::readRtfFile(workspace.settings.text(workspace::keys::richTextFileName));
    if (block) {
        document.richTexts[QString::fromUtf16(companyNameSlot)] = std::move(block->document);
        return name;
    }
    const QString before = document.remark.isEmpty() ? QString() : document.remark + u'\n';
    document.remark =
        before +
        u"拡張社名を読み取れないため、自社情報の会社名で印刷します。「拡張表示の社名登録」で登録し直すか、"
        "「社名拡張」の印を外してください。（"_s +
        block.error().text + u'）';
    return CompanyName::Plain;
}

} // namespace slips
