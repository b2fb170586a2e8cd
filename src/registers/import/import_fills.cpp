#include "registers/import/import_fills.h"

#include "text/width.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

QString readingInName(const QString &name)
{
    static const QRegularExpression form(
        uR"([（(](株|有|合|資|名|財|社|医)[）)]|[㈱㈲㈳㈶]|(株式|有限|合同|合資|合名)会社|様$|御中$)"_s);
    // Both blocks of kana with their marks, and the half-width ones.
    static const QRegularExpression kana(
        uR"(\A[\x{3041}-\x{3096}\x{30A1}-\x{30FA}ー・･\x{FF66}-\x{FF9F} ]+\z)"_s);
    const QString rest = QString(name).remove(form).replace(u'　', u' ').simplified();
    return kana.match(rest).hasMatch() ? text::normalisedReading(rest) : QString();
}

void CodeNumbers::take(const QString &code)
{
    static const QRegularExpression digits(u"\\A[0-9]{1,15}\\z"_s);
    const QString plain = text::toHalfWidthAscii(code);
    if (!digits.match(plain).hasMatch() || plain.toLongLong() < m_highest)
        return;
    m_highest = plain.toLongLong();
    m_width = plain.size();
}

QString CodeNumbers::next() { return QString::number(++m_highest).rightJustified(m_width, u'0'); }

} // namespace registers
