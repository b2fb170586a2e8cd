#pragma once

#include "printing/offset_box.h"
#include "printing/print_frame.h"
#include "ui/screen.h"

#include <functional>
#include <memory>
#include <vector>

namespace Ui
{
class DialogPrinterSet;
}

namespace printing
{

struct Document;

/// The sheet with which the form in use is set right, moved by the steps given.
using CalibrationSheet = std::function<base::Result<Document>(const NoteSteps &)>;

/// Printer, font and print positions of delivery notes, receipts of goods and bills.
class DialogPrinterSet : public ui::Screen
{
    Q_OBJECT

public:
    /// \a sheet: asked for when the sheet is to be printed, and for its paper.
    DialogPrinterSet(workspace::Workspace &workspace, CalibrationSheet sheet, QWidget *parent = nullptr);
    ~DialogPrinterSet() override;

    /// The same sheet for bills: 「印刷」 asks then which of the two is meant.
    void setBillSheet(CalibrationSheet sheet);

    /// What 「用紙の調整」 opens over this dialog; without it there is no such button.
    void setAdjuster(std::function<void(QWidget *)> adjust);

protected:
    bool mayClose() override;

private:
    void connectAll();
    void fillPrinters();
    void showSettings();
    void showPrinter();
    /// Why the form in use cannot be printed on the printer that is shown; empty when it can.
    [[nodiscard]] QString obstacle() const;
    void chooseFont();
    void showProperties();
    void print();
    /// The sheet that is to be printed; nothing where the clerk thought better of it.
    [[nodiscard]] const CalibrationSheet *chosenSheet();
    void store();
    /// \return false when the clerk rather looks at them once more, or they could not be stored
    bool storeSettings();
    bool confirmFarOffsets();

    [[nodiscard]] NoteSteps entered() const;
    void show(const NoteSteps &steps);
    [[nodiscard]] QString printerToStore() const;
    [[nodiscard]] bool isChanged() const;

    const std::unique_ptr<Ui::DialogPrinterSet> m_ui;
    const CalibrationSheet m_sheet;
    CalibrationSheet m_billSheet;
    std::function<void(QWidget *)> m_adjust;
    OffsetBox *m_bill;
    OffsetBox *m_note;
    OffsetBox *m_receipt;
    OffsetBox *m_right;
    OffsetBox *m_addressee;
    SelectedPrinter m_selected; // when the dialog was opened
    QString m_failure;          // why the printers could not be read
    bool m_isChosen = false;    // the printer was chosen here
};

} // namespace printing
