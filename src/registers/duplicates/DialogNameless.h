#pragma once

#include "registers/duplicates/nameless_rows.h"
#include "ui/screen.h"

#include <memory>
#include <optional>

namespace Ui
{
class DialogNameless;
}

namespace registers
{

/// The rows of a register that have no name: one is chosen to be filled in, or those that are not used are
/// deleted.
class DialogNameless : public ui::Screen
{
    Q_OBJECT

public:
    DialogNameless(workspace::Workspace &workspace, book::Party party, QWidget *parent = nullptr);
    ~DialogNameless() override;

    /// The key of the row that is to be filled in; nothing when the clerk only looked, or deleted.
    [[nodiscard]] std::optional<qint64> chosen() const { return m_chosen; }

private:
    void showRows();
    void showStates();
    void fill();
    void remove();
    [[nodiscard]] std::vector<qint64> removable() const;

    std::unique_ptr<Ui::DialogNameless> m_ui;
    const book::Party m_party;
    std::vector<NamelessRow> m_rows;
    std::optional<qint64> m_chosen;
};

} // namespace registers
