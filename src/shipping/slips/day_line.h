#pragma once

#include <QDate>
#include <QLineEdit>

#include <optional>

namespace shipping
{

/// A day that may be left empty. It is typed in any way, also by month and day alone, and shown whole, with
/// its year, once the box is left; Up and Down go to the next day and the one before.
class DayLine : public QLineEdit
{
    Q_OBJECT

public:
    explicit DayLine(QWidget *parent = nullptr);

    /// The day that months and days are near to, and that an empty box begins at.
    void setToday(const QDate &today) { m_today = today; }

    void setDay(const QDate &day);
    /// What is typed; an invalid one for an empty box, none for what is no day.
    [[nodiscard]] std::optional<QDate> day() const;

    /// From now on every day but \a day stands out.
    void markAllBut(const QDate &day);

    /// Room for a whole day, also in large type.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void showWhole();
    void showMark();

    QDate m_today;
    QDate m_usual;
};

} // namespace shipping
