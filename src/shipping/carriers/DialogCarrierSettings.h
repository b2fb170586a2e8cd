#pragma once

#include "shipping/carriers/carrier_settings.h"
#include "ui/screen.h"

#include <memory>
#include <optional>
#include <vector>

namespace Ui
{
class DialogCarrierSettings;
}

namespace shipping
{

/// 運送会社の設定: what the carriers' programs want to know of the shop, entered once.
class DialogCarrierSettings : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogCarrierSettings(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogCarrierSettings() override;

    /// Opens on the page of \a program, which must be filled in then; another one need not be.
    void openPage(CarrierProgram program);

protected:
    bool mayClose() override;

private:
    struct Control
    {
        CarrierProgram program;
        QString name; // of the setting
        QWidget *box;
    };

    [[nodiscard]] static QString valueIn(const Control &control);
    void fill(const Control &control, const CarrierSettings &values);
    [[nodiscard]] CarrierSettings entered(CarrierProgram program) const;
    [[nodiscard]] bool isChanged() const;
    [[nodiscard]] bool isUsed(CarrierProgram program) const;
    bool check(CarrierProgram program);
    bool store();

    const std::unique_ptr<Ui::DialogCarrierSettings> m_ui;
    std::vector<Control> m_controls;
    std::optional<CarrierProgram> m_program; // that the clerk came for
};

} // namespace shipping
