#include "registers/last_counterparts.h"

#include "workspace/workspace.h"

namespace registers
{

LastCounterparts lastCounterparts(const workspace::Workspace &workspace)
{
    const auto kept = workspace.kept<LastCounterparts>();
    return kept ? *kept : LastCounterparts();
}

void rememberCounterpart(workspace::Workspace &workspace, book::Party party, qint64 id)
{
    if (id <= 0)
        return;
    LastCounterparts last = lastCounterparts(workspace);
    (party == book::Party::Customer ? last.customer : last.supplier) = id;
    workspace.keep(last);
}

void forgetCounterpart(workspace::Workspace &workspace, book::Party party, qint64 id)
{
    LastCounterparts last = lastCounterparts(workspace);
    qint64 &kept = party == book::Party::Customer ? last.customer : last.supplier;
    if (kept != id)
        return;
    kept = 0;
    workspace.keep(last);
}

void forgetCounterparts(workspace::Workspace &workspace) { workspace.keep(LastCounterparts()); }

} // namespace registers
