#include "text/postal_code.h"

#include "text/width.h"

#include <algorithm>

namespace text
{

std::optional<QString> completePostalCode(const QString &typed)
{
    constexpr qsizetype codeLength = 8; // with its hyphen
    QString code = withPlainHyphens(toHalfWidthAscii(typed)).remove(u'〒').trimmed();
    if (code.size() == codeLength && code[3] == u'-')
        code.remove(3, 1);
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (code.size() != codeLength - 1 || !std::ranges::all_of(code, isDigit))
        return std::nullopt;
    return code.insert(3, u'-');
}

} // namespace text
