#pragma once

#include "db/recordset.h"
#include "shipping/addresses/addressee.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class frmInvoice1;
}

namespace shipping
{

/// 宛名印刷: a customer is searched for, his address put right for this one letter, and printed on a
/// postcard, an envelope or a label; or his postal transfer form.
class frmInvoice1 : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmInvoice1(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmInvoice1() override;

    /// The cursor goes on to the transfer form once a customer is chosen.
    void standAtTransferForm() { m_forTransfer = true; }

protected:
    bool mayClose() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpPapers();
    void connectControls();
    void search();
    void takeFound();
    void takeContact();
    void clear();
    void fill(const Addressee &addressee);
    [[nodiscard]] Addressee typed() const;
    /// Whether what was put right for a letter that is not printed may be lost.
    bool mayLose();
    void showWritten();
    void followPaper();
    void storePaper();
    [[nodiscard]] bool isReady();
    void preview();
    void print();
    void printTransfer();

    std::unique_ptr<Ui::frmInvoice1> m_ui;
    db::Recordset m_customers;
    Addressee m_filled; // as the boxes were filled, or printed
    bool m_forTransfer = false;
};

} // namespace shipping
