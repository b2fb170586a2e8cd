#pragma once

#include "registers/register_screen.h"
#include "ui/record_panel.h"

#include <memory>

namespace ui
{
class LeaveWatch;
}

namespace Ui
{
class frmSiire;
}

namespace registers
{

class PostalBoxes;

/// The supplier register: a list of all suppliers and the boxes of the current one.
class frmSiire : public RegisterScreen
{
    Q_OBJECT

public:
    explicit frmSiire(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmSiire() override;

    /// Shows the supplier \a id alone. To be called before the screen is shown.
    void openSupplier(qint64 id);

    /// 仕入先ID of the supplier saved last on this screen; nothing when none was saved.
    [[nodiscard]] std::optional<qint64> savedSupplier() const { return savedKey(); }

protected:
    base::Status openRows() override;
    void add() override;
    [[nodiscard]] std::vector<State> states() const override;
    void settleBoxes() override;
    void forgetBoxes() override;
    base::Status store() override;
    void showRow() override;
    void focusColumn(const QString &column) override;
    void entryEnded() override;
    [[nodiscard]] std::optional<Failure> refusal() const override;
    [[nodiscard]] QString wordsFor(const QString &column, const QVariant &value) const override;

private:
    void setUpList();
    void bindBoxes();
    void bindRegistration();
    void settleRegistration();
    void connectButtons();
    void warnOfCode();

    PostalBoxes *m_postal = nullptr;
    ui::LeaveWatch *m_codeWatch = nullptr;
    std::unique_ptr<Ui::frmSiire> m_ui;
    ui::RecordPanel m_boxes;
};

} // namespace registers
