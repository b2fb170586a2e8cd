#include "text/search_pattern.h"

#include "text/like.h"
#include "text/width.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace text
{

QStringList searchWords(const QString &typed)
{
    static const QRegularExpression blanks(uR"([\s\x{3000}]+)"_s);
    return typed.split(blanks, Qt::SkipEmptyParts).mid(0, mostSearchWords);
}

QStringList keyPatterns(const QString &word)
{
    QStringList patterns{u'%' + literalPattern(word) + u'%'};
    const QString reading = normalisedReading(word);
    if (folded(reading) != folded(word))
        patterns += u'%' + literalPattern(reading) + u'%';
    return patterns;
}

} // namespace text
