#pragma once

#include "app/commands.h"

#include <functional>
#include <map>

class QWidget;

namespace app
{

class Workspace;

/// Opens a screen over the window and returns when it is closed.
using Opener = std::function<void(QWidget *, Workspace &)>;
using Openers = std::map<Action, Opener>;

/// Every screen there is. An action that is missing here is shown disabled.
Openers screenOpeners();

} // namespace app
