#pragma once

#include <QDate>
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

    /// From now on every date but \a day stands out, and says so to whoever asks: a date that stays from one
    /// entry to the next must not be taken for the usual one.
    void markAllBut(const QDate &day);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void typeDigit(QKeyEvent *event);
    void tellRefused();
    void showMark();

    QDate m_usual;          // invalid: none is
    bool m_movedOn = false; // the last digit completed its part, and the next part is being typed
};

} // namespace ui
