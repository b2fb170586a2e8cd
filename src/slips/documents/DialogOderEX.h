#pragma once

#include "printing/DialogPrint.h"
#include "slips/documents/transfer_form.h"
#include "ui/screen.h"

#include <memory>
#include <optional>

namespace Ui
{
class DialogOderEX;
}

namespace printing
{
class OffsetBox;
}

namespace slips
{

/// 郵便振替用紙印刷: what a postal transfer form says and where it stands; shows its preview, from which it
/// is printed or saved as PDF. For a bulk run it asks for all forms at once. The shop's own texts, printer,
/// font, orientation and offsets are kept when it closes.
class DialogOderEX : public ui::Screen
{
    Q_OBJECT

public:
    /// For one form. Its texts are those that the settings keep.
    DialogOderEX(workspace::Workspace &workspace, const TransferForm &form, QWidget *parent = nullptr);
    /// For many; \a run says how many.
    DialogOderEX(workspace::Workspace &workspace, const QString &run, QWidget *parent = nullptr);
    ~DialogOderEX() override;

    /// Whether the one form was printed or saved as PDF.
    [[nodiscard]] bool isIssued() const { return m_issued; }
    /// How many forms are to be printed; nothing where the clerk left it.
    [[nodiscard]] const std::optional<printing::PrintChoice> &choice() const { return m_choice; }

protected:
    bool mayClose() override;

private:
    void begin();
    void fillPrinters();
    void showSettings();
    void showPayer(const TransferForm &form);
    void connectAll();
    [[nodiscard]] TransferTexts texts() const;
    [[nodiscard]] std::optional<TransferForm> entered();
    void checkAccount();
    void chooseFont();
    void show(const TransferForm &form, bool isSpecimen);
    void print();
    void choosePrinter();
    bool store();

    std::unique_ptr<Ui::DialogOderEX> m_ui;
    printing::OffsetBox *m_right = nullptr;
    printing::OffsetBox *m_down = nullptr;
    bool m_isRun = false;
    bool m_printerIsChosen = false; // by hand; a stored one that is gone stays stored otherwise
    bool m_issued = false;
    std::optional<printing::PrintChoice> m_choice;
};

} // namespace slips
