#pragma once

#include "base/result.h"
#include "printing/renderer.h"
#include "slips/documents/note_values.h"

namespace workspace
{
class Workspace;
}

namespace slips
{

/// How the panel wants the sender named. The extended block is taken only where one is registered.
CompanyName companyNameOf(const workspace::Workspace &workspace);

/// Gives \a document the extended company-name block where \a name asks for it. \return how the sender is to
/// be named: where the block's file cannot be read, plainly, and the document's remark says so
CompanyName addCompanyName(printing::Document &document, const workspace::Workspace &workspace,
                           CompanyName name);

} // namespace slips
