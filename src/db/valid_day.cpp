#include "db/valid_day.h"

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

void validDay(sqlite3_context *context, int /*count*/, sqlite3_value **arguments)
{
    bool valid = false;
    if (sqlite3_value_type(arguments[0]) == SQLITE_TEXT) {
        const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(arguments[0]));
        const auto size = static_cast<std::size_t>(sqlite3_value_bytes(arguments[0]));
        valid = text && isDay({text, size});
    }
    sqlite3_result_int(context, valid ? 1 : 0);
}

} // namespace

int installValidDay(sqlite3 *handle)
{
    return sqlite3_create_function_v2(handle, "valid_day", 1,
                                      SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, nullptr,
                                      validDay, nullptr, nullptr, nullptr);
}

} // namespace db
