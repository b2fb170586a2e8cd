#pragma once

#include "printing/print_offsets.h"

#include <QObject>

class QLabel;
class QLineEdit;

namespace ui
{
class UpDown;
}

namespace printing
{

/// Keeps a box of the printer dialogs to its rule: it is never empty and never below the lowest step, the
/// arrows and the keys Up and Down move it by one, and its label tells the way in millimetres.
class OffsetBox : public QObject
{
    Q_OBJECT

public:
    /// \a label: null where there is none.
    OffsetBox(const OffsetRule &rule, QLineEdit &box, ui::UpDown &arrows, QLabel *label = nullptr);

    [[nodiscard]] int steps() const;
    void setSteps(int steps);
    [[nodiscard]] bool isFarOff() const { return printing::isFarOff(steps(), m_rule); }
    [[nodiscard]] QLineEdit &box() const { return m_box; }
    /// Whether the steps may be kept: asked by \a screen where they move very far, with the cursor in the box
    /// where they may not.
    bool confirm(QWidget *screen) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void correct();
    void step(int direction);

    const OffsetRule &m_rule;
    QLineEdit &m_box;
    QLabel *m_label;
};

} // namespace printing
