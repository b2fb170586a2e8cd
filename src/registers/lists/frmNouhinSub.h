#pragma once

#include "ui/screen.h"

#include <memory>

namespace Ui
{
class frmNouhinSub;
}

namespace registers
{

/// The supplementary roster: makes a new database file of some of the customers. The current file stays the
/// current one.
class frmNouhinSub : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmNouhinSub(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmNouhinSub() override;

private:
    void make();
    /// The file to write to; empty when the clerk gave up or it may not be written over.
    QString chosenFile();
    [[nodiscard]] QString keptNameOf(const QString &fileName) const;
    void showStates();

    std::unique_ptr<Ui::frmNouhinSub> m_ui;
};

} // namespace registers
