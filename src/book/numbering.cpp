#include "book/numbering.h"

#include "db/connection.h"
#include "text/like.h"
#include "text/width.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace book
{

QString automaticNumber(const SlipKind &kind, const QString &infix, qint64 id)
{
    return QChar(kind.letter) + infix + QString::number(id);
}

std::optional<SlipKind> kindOf(const QString &number)
{
    return kindWith(text::toHalfWidthAscii(number.left(1)).toUpper().toLatin1());
}

QString wrongNumber() { return u"伝票番号に誤りがあります。"_s; }

QString letterRemark(char16_t letter)
{
    return u"この画面の伝票番号は、半角の大文字「%1」で始めてください（例：%2）。"_s.arg(
        QChar(letter), QChar(letter) + u"100"_s);
}

base::Status checkManualNumber(db::Connection &connection, const QString &number, char16_t letter, qint64 own)
{
    if (!number.startsWith(QChar(letter)))
        return base::Error{wrongNumber()};
    const auto found = connection.select(u"SELECT 伝票番号 FROM 入出庫マスター WHERE 伝票番号 LIKE ? "
                                         "ESCAPE '\\' AND ID <> ? ORDER BY ID"_s,
                                         {text::literalPattern(number), own});
    if (!found)
        return found.error();
    // The search finds both forms of a kanji, which make two numbers.
    const std::u16string asWritten = text::foldedAsWritten(number);
    const bool isTaken = std::ranges::any_of(found->rows, [&](const QVariantList &row) {
        return text::foldedAsWritten(row.constFirst().toString()) == asWritten;
    });
    return isTaken ? base::Status(base::Error{u"伝票番号が重複しています。"_s}) : base::Status();
}

} // namespace book
