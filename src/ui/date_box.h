#pragma once

#include <QClipboard>
#include <QDate>
#include <QDateEdit>

namespace ui
{

/// The date box of every screen. A date is typed as on paper, with or without "/" between its parts
/// ("2025/12/31", "20251231"), and over a selected one: Qt's own box then keeps the old year, or takes the
/// "/" after a complete year for another step and puts the month into the day. Eight digits are a date
/// wherever in the box they are typed. What is pasted, dropped or comes from an input method is read as a
/// whole, in any way that people write a date; Qt's own box would take the parts that fit the old one.
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
    bool event(QEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Digits typed one after the other.
    struct Run
    {
        QString digits;
        QDate before;           // the date as it was
        qsizetype capacity = 0; // digits that the parts from the first one on take

        [[nodiscard]] bool isOver() const { return digits.size() > capacity; }
    };

    void typeDigit(QKeyEvent *event);
    void beginRun();
    bool endRun();
    void takeWritten(const QString &text);
    void take(const QString &text);
    void paste(QClipboard::Mode mode);
    bool moveByKey(int key);
    void selectPart();
    void tellRefused(const QString &text);
    void showMark();

    QDate m_usual;          // invalid: none is
    bool m_movedOn = false; // the last digit completed its part, and the next part is being typed
    Run m_run;
};

} // namespace ui
