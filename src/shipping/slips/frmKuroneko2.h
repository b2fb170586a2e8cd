#pragma once

#include "shipping/slips/slip_entry_screen.h"

#include <memory>
#include <vector>

namespace Ui
{
class frmKuroneko2;
}

namespace shipping
{

/// 発送伝票　ギフト: what one customer sends to many, a slip for each. Whom he sent to before stands beside
/// him, to be sent to once more.
class frmKuroneko2 : public SlipEntryScreen
{
    Q_OBJECT

public:
    explicit frmKuroneko2(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmKuroneko2() override;

protected:
    void fillIn(const Party &customer, qint64 id) override;
    [[nodiscard]] QString typedParty() const override;
    void goOn() override;
    void nextBegins() override;
    void typeInstead() override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void listSent();
    void sendAgain();

    const std::unique_ptr<Ui::frmKuroneko2> m_ui;
    std::vector<Shipment> m_sent;
};

} // namespace shipping
