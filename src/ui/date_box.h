#pragma once

#include <QDateEdit>

namespace ui
{

/// The date box of every screen. A date is typed as on paper, with or without "/" between its parts
/// ("2025/12/31", "20251231"), and over a selected one: Qt's own box then keeps the old year, or takes the
/// "/" after a complete year for another step and puts the month into the day.
class DateBox : public QDateEdit
{
    Q_OBJECT

public:
    explicit DateBox(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void typeDigit(QKeyEvent *event);
    void tellRefused();

    bool m_movedOn = false; // the last digit completed its part, and the next part is being typed
};

} // namespace ui
