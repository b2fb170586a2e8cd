#pragma once

#include "reports/bills/receipts/payment_columns.h"
#include "ui/screen.h"

#include <memory>

class QComboBox;

namespace Ui
{
class DialogPaymentColumns;
}

namespace reports
{

/// Asks which columns of a file are date, amount and payer of a payment, beside the first rows of it.
class DialogPaymentColumns : public ui::Screen
{
    Q_OBJECT

public:
    /// Begins with \a columns, as far as they are known.
    DialogPaymentColumns(workspace::Workspace &workspace, const PaymentTable &table,
                         const PaymentColumns &columns, QWidget *parent = nullptr);
    ~DialogPaymentColumns() override;

    /// What the clerk chose, once the dialog was accepted.
    [[nodiscard]] PaymentColumns columns() const;

private:
    void fillColumns();
    void showSamples();
    void confirm();

    const std::unique_ptr<Ui::DialogPaymentColumns> m_ui;
    const PaymentTable &m_table;
    std::array<QComboBox *, paymentFieldCount> m_fields{};
};

} // namespace reports
