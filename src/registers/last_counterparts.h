#pragma once

#include "book/slip_kind.h"

namespace workspace
{
class Workspace;
}

namespace registers
{

/// Whom a screen dealt with last, while one file is worked in; 0: nobody yet.
struct LastCounterparts
{
    qint64 customer = 0; // 納品先ID
    qint64 supplier = 0; // 仕入先ID
};

LastCounterparts lastCounterparts(const workspace::Workspace &workspace);

/// To be called by a screen on which \a id was chosen. A key of 0 or less is nobody and changes nothing.
void rememberCounterpart(workspace::Workspace &workspace, book::Party party, qint64 id);

/// \a id was deleted: where it was dealt with last, nobody is now.
void forgetCounterpart(workspace::Workspace &workspace, book::Party party, qint64 id);

/// The keys mean nothing in another file.
void forgetCounterparts(workspace::Workspace &workspace);

} // namespace registers
