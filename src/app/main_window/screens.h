#pragma once

#include "app/main_window/commands.h"

#include <functional>
#include <map>

class QWidget;

namespace workspace
{
class Workspace;
}

namespace app
{

/// Opens a screen over the window and returns when it is closed.
using Opener = std::function<void(QWidget *, workspace::Workspace &)>;
using Openers = std::map<Action, Opener>;

/// Every screen there is. An action that is missing here is shown disabled.
Openers screenOpeners();

} // namespace app
