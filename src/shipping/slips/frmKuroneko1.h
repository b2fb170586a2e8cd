#pragma once

#include "shipping/slips/slip_entry_screen.h"

#include <memory>

namespace Ui
{
class frmKuroneko1;
}

namespace shipping
{

/// 発送伝票　通信販売: what the shop itself sends to customers, one slip after the other.
class frmKuroneko1 : public SlipEntryScreen
{
    Q_OBJECT

public:
    explicit frmKuroneko1(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmKuroneko1() override;

    /// Begins with what is known of a parcel, as that of a sale: its consignee, goods, price and remarks;
    /// what \a preset leaves empty stays as it usually is. To be called before the screen is shown.
    void beginFor(const Shipment &preset);

protected:
    void fillIn(const Party &customer, qint64 id) override;
    [[nodiscard]] QString typedParty() const override;
    void nextBegins() override;
    void typeInstead() override;

private:
    const std::unique_ptr<Ui::frmKuroneko1> m_ui;
};

} // namespace shipping
