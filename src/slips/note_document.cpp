#include "slips/note_document.h"

#include "app/settings.h"
#include "app/workspace.h"
#include "masters/rtf_file.h"

namespace slips
{

CompanyName companyNameOf(const app::Workspace &workspace)
{
    if (workspace.panel.omitCompanyName)
        return CompanyName::Omitted;
    const bool registered = !workspace.settings.text(app::keys::richTextFileName).isEmpty();
    return workspace.panel.extendedCompanyName && registered ? CompanyName::Extended : CompanyName::Plain;
}

db::Status addCompanyName(printing::Document &document, const app::Workspace &workspace, CompanyName name)
{
    if (name != CompanyName::Extended)
        return {};
    auto block = masters::readRtfFile(workspace.settings.text(app::keys::richTextFileName));
    if (!block)
        return block.error();
    document.richTexts[QString::fromUtf16(companyNameSlot)] = std::move(block->document);
    return {};
}

} // namespace slips
