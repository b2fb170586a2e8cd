#pragma once

#include "ui/screen.h"

#include <memory>

namespace Ui
{
class frmNouhinDel;
}

namespace registers
{

struct Extent;

/// Deletes many customers at once: they are searched for, shown, and ticked. Those that have slips are
/// protected until the clerk says otherwise.
class frmNouhinDel : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmNouhinDel(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmNouhinDel() override;

private:
    void removeTicked();
    [[nodiscard]] QString question(int chosen) const;
    bool confirmed(const Extent &extent);
    void showStates();

    std::unique_ptr<Ui::frmNouhinDel> m_ui;
};

} // namespace registers
