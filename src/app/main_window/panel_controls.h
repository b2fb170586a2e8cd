#pragma once

#include <QObject>

class QComboBox;
class QLineEdit;

namespace workspace
{
class Workspace;
}

namespace app
{

/// The controls of the settings panel: filled from the settings at start, kept in the workspace's panel at
/// every change, stored again at close. Finds them by their names in the window.
class PanelControls : public QObject
{
    Q_OBJECT

public:
    PanelControls(QWidget &window, workspace::Workspace &workspace);

    /// Fills the fixed lists and shows what is stored; a stored value that no control can show becomes the
    /// key's fallback.
    void load();
    void save() const;

private:
    void bindChecks();
    void bindCombos();
    void bindTaxRate();
    void bindSizes();
    void carrierChanged();
    void taxRateEdited();
    void taxRateLeft();
    void stepTaxRate(int direction);
    void showTaxRate();
    void showSizes();

    template <class Widget>
    Widget *control(const char *name) const;

    QWidget &m_window;
    workspace::Workspace &m_workspace;
    QLineEdit *m_taxRate;
    double m_agreedTaxRate = 0; // percent, when the box was last left
    bool m_telling = false;     // a box about the tax rate is on the screen
};

} // namespace app
