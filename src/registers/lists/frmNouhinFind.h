#pragma once

#include "registers/register_screen.h"

#include <memory>

namespace Ui
{
class frmNouhinFind;
}

namespace registers
{

/// The customers that one condition selects, to be corrected, deleted, or printed as a roster.
class frmNouhinFind : public RegisterScreen
{
    Q_OBJECT

public:
    explicit frmNouhinFind(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmNouhinFind() override;

protected:
    [[nodiscard]] std::vector<State> states() const override;
    [[nodiscard]] QString countText() const override;
    void settleBoxes() override;
    void forgetBoxes() override;
    [[nodiscard]] std::optional<Failure> refusal() const override;
    base::Status store() override;
    [[nodiscard]] bool canTakeBack() const override;
    void takeBack() override;
    void showRow() override;
    void focusColumn(const QString &column) override;

private:
    void setUpList();
    void search();
    void printRoster();
    void exportFound();

    /// Reads the categories anew. Without any, that is told. \return whether there are any
    bool categoriesReady();

    std::unique_ptr<Ui::frmNouhinFind> m_ui;
};

} // namespace registers
