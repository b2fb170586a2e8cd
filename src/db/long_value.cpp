#include "db/long_value.h"

#include "text/shown_text.h"

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

qsizetype lengthOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString().size();
    case QMetaType::QByteArray:
        return value.toByteArray().size();
    default:
        return 0;
    }
}

QString beginningOf(const QVariant &value)
{
    constexpr qsizetype shown = 1'000;       // characters; what is said of the rest is to be seen beside them
    constexpr qsizetype longest = 4 * shown; // bytes
    return text::beginningOf(value.typeId() == QMetaType::QByteArray
                                 ? QString::fromUtf8(value.toByteArray().left(longest))
                                 : value.toString(),
                             shown);
}

} // namespace

bool isTooLong(const QVariant &value) { return lengthOf(value) > text::longestEdited; }

QList<int> shorten(QVariantList &values)
{
    QList<int> cut;
    for (int i = 0; i < values.size(); ++i) {
        if (!isTooLong(values.at(i)))
            continue;
        values[i] =
            beginningOf(values.at(i)) + u"…（長すぎるため省略。全 %1 文字）"_s.arg(lengthOf(values.at(i)));
        cut << i;
    }
    return cut;
}

} // namespace db
