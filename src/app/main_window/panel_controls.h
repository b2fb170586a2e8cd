#pragma once

#include <QObject>

#include <array>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace ui
{
class UpDown;
}

namespace workspace
{
class Workspace;
}

namespace app
{

/// The settings panel: filled from the settings at start, kept in the workspace's panel at every change,
/// stored again at close.
class PanelControls : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        std::array<QCheckBox *, 8> checks; // Check1 to Check8
        QComboBox *deliveryPaper;
        QComboBox *billPaper;
        QComboBox *carrier;
        QLineEdit *numberInfix;
        QLineEdit *taxRate;
        ui::UpDown *taxRateSteps;
        QCheckBox *taxTable; // the rates follow the table
        QLineEdit *textSize;
        QPushButton *nextTextSize;
        QLineEdit *spacing;
        QPushButton *nextSpacing;
    };

    PanelControls(QWidget &window, workspace::Workspace &workspace, const Controls &controls);

    /// Fills the fixed lists and shows what is stored; a stored value that no control can show becomes the
    /// key's fallback.
    void load();
    void save() const;
    /// Shows what the rate of everyday goods is today, where the shop follows the table of the open file.
    void showTaxRate();
    /// As the clerk's tick in the box.
    void followTaxTable(bool follows);

private:
    void bindChecks();
    void bindCombos();
    void bindTaxRate();
    void bindSizes();
    void carrierChanged();
    void taxRateEdited();
    void taxRateLeft();
    void stepTaxRate(int direction);
    void showSizes();

    QWidget &m_window;
    workspace::Workspace &m_workspace;
    Controls m_controls;
    double m_agreedTaxRate = 0; // percent, when the box was last left
    bool m_telling = false;     // a box about the tax rate is on the screen
};

} // namespace app
