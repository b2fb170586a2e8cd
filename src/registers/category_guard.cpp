#include "registers/category_guard.h"

#include "masters/MasterGridEditor.h"
#include "masters/name_lists.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

namespace registers
{

namespace
{

bool isAny(const base::Result<std::vector<masters::Entry>> &categories, QWidget *screen)
{
    if (!categories)
        ui::prompts::inform(screen, categories.error().text);
    return categories && !categories->empty();
}

} // namespace

bool hasCategories(workspace::Workspace &workspace, QWidget *screen, const QString &sentence)
{
    const auto categories = masters::customerCategories(workspace.connection);
    if (!categories || !categories->empty())
        return isAny(categories, screen);
    ui::prompts::inform(screen, sentence);
    masters::frmKubun(workspace, screen).exec();
    return isAny(masters::customerCategories(workspace.connection), screen);
}

} // namespace registers
