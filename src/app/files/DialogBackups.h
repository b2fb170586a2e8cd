#pragma once

#include "app/files/backup_list.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class DialogBackups;
}

namespace app
{

/// The list of the backups, from which one is chosen to be opened or to be put in the place of the current
/// file. Damaged ones are shown and cannot be chosen.
class DialogBackups : public ui::Screen
{
    Q_OBJECT

public:
    enum class Wish { None, Open, Restore };

    /// \a mayRestore: there is a current file that can be replaced.
    DialogBackups(workspace::Workspace &workspace, std::vector<Backup> backups, bool mayRestore,
                  QWidget *parent = nullptr);
    ~DialogBackups() override;

    [[nodiscard]] Wish wish() const { return m_wish; }
    /// The chosen backup when there is a wish.
    [[nodiscard]] const Backup &chosen() const;

private:
    void fill();
    void enableButtons();
    void choose(Wish wish);
    [[nodiscard]] int currentRow() const;

    std::unique_ptr<Ui::DialogBackups> m_ui;
    std::vector<Backup> m_backups;
    bool m_mayRestore;
    Wish m_wish = Wish::None;
};

} // namespace app
