#include "db/valid_day.h"

#include "text/dates.h"

#include <QDate>

#include <sqlite3.h>

#include <string_view>

namespace db
{

namespace
{

// The number that the \a count digits at \a at make; -1 where one of them is none.
int digits(std::string_view text, std::size_t at, std::size_t count)
{
    int number = 0;
    for (const char digit : text.substr(at, count)) {
        if (digit < '0' || digit > '9')
            return -1;
        number = number * 10 + (digit - '0');
    }
    return number;
}

bool isDay(std::string_view text)
{
    if (text.size() != 10 || text[4] != '-' || text[7] != '-')
        return false;
    const int year = digits(text, 0, 4);
    return year > 0 && QDate::isValid(year, digits(text, 5, 2), digits(text, 8, 2));
}

// Empty where it is none.
std::string_view textOf(sqlite3_value *value)
{
    const auto *text = sqlite3_value_type(value) == SQLITE_TEXT
                           ? reinterpret_cast<const char *>(sqlite3_value_text(value))
                           : nullptr;
    return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)))
                : std::string_view();
}

void validDay(sqlite3_context *context, int /*count*/, sqlite3_value **arguments)
{
    sqlite3_result_int(context, isDay(textOf(arguments[0])) ? 1 : 0);
}

void dayIn(sqlite3_context *context, int /*count*/, sqlite3_value **arguments)
{
    const std::string_view written = textOf(arguments[0]);
    const auto day =
        text::parseAnyDate(QString::fromUtf8(written.data(), static_cast<qsizetype>(written.size())));
    if (!day)
        return;
    const QByteArray stored = text::stored(*day).toUtf8();
    sqlite3_result_text(context, stored.constData(), static_cast<int>(stored.size()), SQLITE_TRANSIENT);
}

} // namespace

int installValidDay(sqlite3 *handle)
{
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    const int code = sqlite3_create_function_v2(handle, "valid_day", 1, flags, nullptr, validDay, nullptr,
                                                nullptr, nullptr);
    return code != SQLITE_OK ? code
                             : sqlite3_create_function_v2(handle, "day_in", 1, flags, nullptr, dayIn, nullptr,
                                                          nullptr, nullptr);
}

} // namespace db
