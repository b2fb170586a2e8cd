#pragma once

#include <QDate>
#include <QStringView>

#include <optional>

namespace text
{

/// A date as a clerk types it: year, month and day with "/", "-" or "." between them or as eight digits
/// ("2026/4/1", "2026-04-01", "20260401"), in full or half width. Nothing for anything else, and for a day
/// that the calendar does not have.
std::optional<QDate> parseDate(QStringView s);

/// A date as the database holds it, "2026-04-01".
inline QString stored(const QDate &date) { return date.toString(Qt::ISODate); }

/// The day that \a s writes out: 2020年4月1日, 令和2年4月1日, 令和元年, R2.4.1, H31/4/30, in any width and
/// with blanks; none for a day that is no day of its era.
std::optional<QDate> parseWrittenDate(QStringView s);

/// The day that \a s is in either way: as a clerk types it or as it is written out.
std::optional<QDate> parseAnyDate(QStringView s);

/// Whether \a s stands for one day, be it in the calendar or not: "1980-02-30", S64.13.1.
bool isWrittenAsDay(QStringView s);

/// What a clerk typed as it is stored: a day in either way as yyyy-MM-dd, anything else as it is.
QString storedDay(const QString &typed);

/// A text out of the database: a day as yyyy/MM/dd, anything else as it is.
QString shownDay(const QString &stored);

/// "2026/04/01"; nothing for a date that is none.
QString formatDate(const QDate &date);

} // namespace text
