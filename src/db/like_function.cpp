#include "db/like_function.h"

#include "text/japanese_order.h"
#include "text/like.h"

#include <sqlite3.h>

namespace db
{

namespace
{

std::string_view viewOf(sqlite3_value *value)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(value));
    return {text ? text : "", static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

char32_t escapeOf(sqlite3_value *value)
{
    const QString text = QString::fromUtf8(viewOf(value).data(), sqlite3_value_bytes(value));
    return text.isEmpty() ? 0 : text.toUcs4().first();
}

// like(pattern, text [, escape]), called for "text LIKE pattern". The folded pattern is kept by SQLite
// for the run of the statement as long as the pattern is a constant or a bound value.
void like(sqlite3_context *context, int count, sqlite3_value **arguments)
{
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL || sqlite3_value_type(arguments[1]) == SQLITE_NULL)
        return;
    auto *pattern = static_cast<text::LikePattern *>(sqlite3_get_auxdata(context, 0));
    if (pattern) {
        sqlite3_result_int(context, pattern->matches(viewOf(arguments[1])));
        return;
    }
    pattern = new text::LikePattern(viewOf(arguments[0]), count == 3 ? escapeOf(arguments[2]) : 0);
    sqlite3_result_int(context, pattern->matches(viewOf(arguments[1])));
    sqlite3_set_auxdata(context, 0, pattern, [](void *p) { delete static_cast<text::LikePattern *>(p); });
}

} // namespace

int installLike(sqlite3 *handle)
{
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    for (const int arguments : {2, 3}) {
        const int code = sqlite3_create_function_v2(handle, "like", arguments, flags, nullptr, like, nullptr,
                                                    nullptr, nullptr);
        if (code != SQLITE_OK)
            return code;
    }
    return SQLITE_OK;
}

int installJapaneseOrder(sqlite3 *handle)
{
    const auto compare = [](void *, int size, const void *one, int otherSize, const void *other) {
        return text::compareJapanese({static_cast<const char *>(one), static_cast<std::size_t>(size)},
                                     {static_cast<const char *>(other), static_cast<std::size_t>(otherSize)});
    };
    return sqlite3_create_collation_v2(handle, "japanese", SQLITE_UTF8, nullptr, compare, nullptr);
}

} // namespace db
