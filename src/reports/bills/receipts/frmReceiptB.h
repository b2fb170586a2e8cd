#pragma once

#include "reports/bills/receipts/PaymentModel.h"
#include "reports/bills/receipts/payment_file.h"
#include "ui/screen.h"

#include <memory>
#include <optional>

namespace Ui
{
class frmReceiptB;
}

namespace reports
{

/// 一括入金処理: receipts out of a cash book or a bank's list of payments. Each row is shown with the
/// customer that it probably is from; the clerk confirms, corrects or leaves it out, and the receipts are
/// written at once.
class frmReceiptB : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmReceiptB(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmReceiptB() override;

protected:
    bool mayClose() override;

private:
    void connectControls();
    [[nodiscard]] std::optional<int> closingDay() const;

    void chooseFile();
    void readFile(const QString &fileName);
    bool assignColumns();
    void askColumns();
    bool take(const PaymentColumns &columns);
    void closingDayChosen();
    bool mayLeaveChoices();

    void showRow();
    void showCandidates(const std::vector<std::size_t> &places);
    void search();
    void setCustomer();
    void leaveOut();
    void toggle();
    void setDifference(int index);
    void showSum();
    [[nodiscard]] int currentRow() const;

    void tickLikely();
    bool write();

    const std::unique_ptr<Ui::frmReceiptB> m_ui;
    PaymentModel m_model;
    std::optional<PaymentFile> m_file;
    PaymentColumns m_columns;
    std::vector<qint64> m_candidates; // 納品先ID, row by row of the lower grid
    int m_closing = 0;                // index of the closing day that is shown
    bool m_isEdited = false;          // the clerk decided something that is not written yet
};

} // namespace reports
