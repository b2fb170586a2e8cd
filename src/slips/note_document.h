#pragma once

#include "db/result.h"
#include "printing/renderer.h"
#include "slips/note_parts.h"

namespace app
{
class Workspace;
}

namespace slips
{

/// How the panel wants the sender named. The extended block is taken only where one is registered.
CompanyName companyNameOf(const app::Workspace &workspace);

/// Gives \a document the extended company-name block where \a name asks for it. Fails when its file cannot be
/// read.
db::Status addCompanyName(printing::Document &document, const app::Workspace &workspace, CompanyName name);

} // namespace slips
