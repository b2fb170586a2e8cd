#include "slips/documents/note_document.h"

#include "masters/rich_text/rtf_file.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

namespace slips
{

CompanyName companyNameOf(const workspace::Workspace &workspace)
{
    if (workspace.panel.omitCompanyName)
        return CompanyName::Omitted;
    const bool registered = !workspace.settings.text(workspace::keys::richTextFileName).isEmpty();
    return workspace.panel.extendedCompanyName && registered ? CompanyName::Extended : CompanyName::Plain;
}

base::Status addCompanyName(printing::Document &document, const workspace::Workspace &workspace,
                            CompanyName name)
{
    if (name != CompanyName::Extended)
        return {};
    auto block = masters::readRtfFile(workspace.settings.text(workspace::keys::richTextFileName));
    if (!block)
        return block.error();
    document.richTexts[QString::fromUtf16(companyNameSlot)] = std::move(block->document);
    return {};
}

} // namespace slips
