#pragma once

#include "base/result.h"

#include <QDialog>

#include <optional>

class QLineEdit;

namespace workspace
{
class Workspace;
}

namespace ui
{

/// The base of every screen but the main window: opens with the size and at the place it had last, the first
/// time at the common position, in the panel's text size; what does not fit on the display scrolls. Enter
/// moves on as Tab does. A line edit with the dynamic property "enterClicks" presses the button of that
/// object name instead.
class Screen : public QDialog
{
    Q_OBJECT

public:
    explicit Screen(workspace::Workspace &workspace, QWidget *parent = nullptr);

    workspace::Workspace &workspace() const { return m_workspace; }

protected:
    /// To be called at the end of a screen's constructor, after setupUi(): sizes, grids, buttons.
    void setUp();

    /// Each time the screen becomes the active window; coming back from a message box or a file dialog over
    /// it is none.
    virtual void becameActive() {}

    /// Whether the screen may close now; a screen settles here what is unsaved.
    virtual bool mayClose() { return true; }

    /// Lets \a box only show its text, and look like it, or takes it back.
    static void setReadOnly(QLineEdit *box, bool readOnly);

    /// Tells the error of a failed action, where it has a text. \return whether the action was done
    bool tell(const base::Status &status);

    /// "frmOut": the screen's object name, under which its layout is kept.
    [[nodiscard]] QString layoutName() const { return objectName(); }

    void setVisible(bool visible) override;
    void showEvent(QShowEvent *event) override;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    /// Esc closes as the window's own button does.
    void reject() override;

private:
    void scrollWhatDoesNotFit();
    void restoreSize();
    void restorePlace();
    [[nodiscard]] QPoint placeToRemember() const;
    void saveLayout();

    workspace::Workspace &m_workspace;
    bool m_placed = false;
    QPoint m_asked;                  // where it was to open
    std::optional<QPoint> m_cameOut; // where the desktop put it then
    bool m_underDialog = false;      // inactive only because of a message box or the like
};

} // namespace ui
