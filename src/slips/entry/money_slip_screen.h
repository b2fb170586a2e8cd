#pragma once

#include "slips/entry/slip_screen.h"
#include "ui/slip_grid_model.h"

#include <memory>

namespace Ui
{
class MoneySlipForm;
}

namespace slips
{

/// Wherein the screens for slips of money differ.
struct MoneySlipDescription
{
    SlipDescription slip;
    const char16_t *screen; // object name
    const char16_t *title;
    const char16_t *party; // "納品先": begins the labels of the header
    QStringList items;     // 適用, stored as 商品名
    QStringList means;     // stored as 規格; empty where the slip knows none
    const char16_t *meansLabel = u"";
    bool showsTaxClass = false;
};

/// The screens that enter money moving: each line an item, a means and an amount. No tax, no follow-up.
class MoneySlipScreen : public SlipScreen
{
    Q_OBJECT

public:
    MoneySlipScreen(workspace::Workspace &workspace, QWidget *parent,
                    const MoneySlipDescription &description);
    ~MoneySlipScreen() override;

protected:
    void setUpLines() override;
    void counterpartShown(bool chosen) override;
    void beginLines() override;
    void focusLine() override;
    [[nodiscard]] bool lineIsTyped() const override;
    void clearLines() override;
    [[nodiscard]] int lineCount() const override { return m_lines.rowCount(); }
    base::Result<QString> closeSlip() override;

private:
    void setCaptions(const MoneySlipDescription &description);
    void addLine();
    void removeLine();
    void clearEntry();
    std::optional<book::MoneyLine> readLine();

    std::unique_ptr<Ui::MoneySlipForm> m_ui;
    ui::SlipGridModel m_lines;
};

} // namespace slips
