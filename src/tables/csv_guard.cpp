#include "tables/csv_guard.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tables
{

namespace
{

constexpr QChar guard = u'\'';

bool startsFormula(QStringView text)
{
    const auto first = std::find_if(text.begin(), text.end(), [](QChar c) { return c != guard; });
    return first != text.end() && u"=+-@\t\r\n＝＋－＠"_s.contains(*first);
}

} // namespace

QString guarded(const QString &text) { return startsFormula(text) ? guard + text : text; }

QString unguarded(const QString &field)
{
    return field.startsWith(guard) && startsFormula(field) ? field.sliced(1) : field;
}

} // namespace tables
