#pragma once

#include "registers/glance/customer_glance.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace Ui
{
class CustomerGlancePanel;
}

namespace registers
{

/// Screens of houses above that a customer leads to; what is not set is not offered.
struct CustomerOpeners
{
    std::function<void(QWidget *parent, const book::SlipKind &kind, qint64 slip)> slip = {};
    std::function<void(QWidget *parent, qint64 customer)> ledger = {};
    std::function<void(QWidget *parent, qint64 customer)> sale = {};
    std::function<void(QWidget *parent, qint64 customer)> charts = {};
    /// The customer's parcels, with \a shipment (発送ID) as the one to begin with.
    std::function<void(QWidget *parent, qint64 customer, qint64 shipment)> shipments = {};
};

/// The last slips, the balance, shipments and usual goods of the customer that a register shows. It waits
/// until the clerk has stopped typing, and reads piece by piece.
class CustomerGlancePanel : public QWidget
{
    Q_OBJECT

public:
    explicit CustomerGlancePanel(QWidget *parent = nullptr);
    ~CustomerGlancePanel() override;

    /// To be called once.
    void bind(db::Connection &connection);
    void setOpeners(const CustomerOpeners &openers);

    /// Shows \a customer after a while, and nobody until then; 0: nobody.
    void showCustomer(qint64 customer);
    /// The same customer anew, after what may have changed.
    void showAgain();

    /// The slip of the current row, or its parcel; without either, the last slip.
    void openSlip(QWidget *parent);
    void openLedger(QWidget *parent);
    void openSale(QWidget *parent);
    void openCharts(QWidget *parent);

signals:
    /// The clerk wants one of them; the screen settles what was typed first.
    void slipWanted();
    void ledgerWanted();
    void saleWanted();
    void chartsWanted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void begin();
    void readOn();
    void showGlance();
    [[nodiscard]] qint64 currentShipment() const;

    std::unique_ptr<Ui::CustomerGlancePanel> m_ui;
    CustomerOpeners m_openers;
    db::Connection *m_connection = nullptr;
    qint64 m_customer = 0;
    std::optional<GlanceReader> m_reader;
    QTimer m_timer;
};

} // namespace registers
