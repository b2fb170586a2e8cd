#pragma once

#include "printing/forms/form_files.h"
#include "printing/forms/layout_elements.h"
#include "printing/renderer.h"
#include "ui/screen.h"

#include <functional>
#include <memory>
#include <vector>

class QDoubleSpinBox;
class QLabel;

namespace Ui
{
class DialogFormLayout;
}

namespace printing
{

class SheetView;

/// A form that a shopkeeper can adjust.
struct AdjustableForm
{
    QString caption;
    QString fileName; // of its layout
    const FormItems *items = nullptr;
    QStringList otherCase{};         // items that never stand beside the rest
    QHash<QString, double> shifts{}; // as the printer dialogs move it in use, millimetres
    Purpose purpose = Purpose::DeliveryNotesAndBills;
    std::function<void(Sheet &)> lay{}; // declares its paper as in use; empty: as the layout does
    bool onPrintersPaper = false;       // as Document
};

/// 「用紙の調整」: where each element of a form stands, over a grid of millimetres, and boxes that move it.
/// What is stored is the user's own layout file; the built-in one stays.
class DialogFormLayout : public ui::Screen
{
    Q_OBJECT

public:
    /// Begins with the form whose layout is \a first, where it is one of \a forms.
    DialogFormLayout(workspace::Workspace &workspace, std::vector<AdjustableForm> forms,
                     const QString &first = {}, QWidget *parent = nullptr);
    ~DialogFormLayout() override;

protected:
    bool mayClose() override;

private:
    struct MeasureBox
    {
        QLabel *label;
        QDoubleSpinBox *box;
    };

    void connectControls();
    [[nodiscard]] const AdjustableForm &form() const;
    void formChosen(int index);
    void load();
    /// Shows \a content, if it is a layout. \return whether it is
    bool take(const QByteArray &content);
    void showElements();
    /// Draws the form with so many sheets that the current element is on one of them, and turns to that.
    void showSheet();
    [[nodiscard]] std::vector<Sheet> specimenSheets(const QHash<QString, double> &shifts) const;
    [[nodiscard]] const LayoutElement *current() const;
    void showMeasures();
    void showStates(const QString &message = {});
    void measureChanged(std::size_t place);
    /// Takes what stands typed in a box that the cursor has not left.
    void takeTyped();
    void undo();
    bool store();
    void takeBuiltIn();
    bool settle();
    void printTrial();

    const std::unique_ptr<Ui::DialogFormLayout> m_ui;
    const std::vector<AdjustableForm> m_forms;
    int m_formIndex = -1;
    LayoutFile m_file;                // as loaded or stored
    QByteArray m_content;             // as edited
    std::vector<QByteArray> m_before; // what 元に戻す goes back to
    Form m_form;
    std::vector<LayoutElement> m_elements;
    Document m_document;
    SheetView *m_view;
    std::vector<MeasureBox> m_boxes;
    bool m_filling = false;
};

} // namespace printing
