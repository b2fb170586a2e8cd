#include "printing/queue/print_system.h"

#ifdef KANBALORE_CUPS
#include "printing/queue/cups_system.h"
#else
#include "printing/queue/qt_system.h"
#endif
#include "workspace/workspace.h"

namespace printing
{

namespace
{

#ifdef KANBALORE_CUPS
using OwnSystem = CupsSystem;
#else
using OwnSystem = QtSystem;
#endif

struct Kept
{
    std::shared_ptr<PrintSystem> system;
};

} // namespace

PrintSystem &printSystem(workspace::Workspace &workspace)
{
    if (!workspace.kept<Kept>())
        keepPrintSystem(workspace, std::make_shared<OwnSystem>());
    return *workspace.kept<Kept>()->system;
}

void keepPrintSystem(workspace::Workspace &workspace, std::shared_ptr<PrintSystem> system)
{
    workspace.keep(Kept{std::move(system)});
}

} // namespace printing
