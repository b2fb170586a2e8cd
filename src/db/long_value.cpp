#include "db/long_value.h"

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

constexpr qsizetype longestShown = 20'000; // characters; a line edit takes 32,767

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
    constexpr qsizetype shown = 1'000;
    return value.typeId() == QMetaType::QByteArray ? QString::fromUtf8(value.toByteArray().left(shown))
                                                   : value.toString().left(shown);
}

} // namespace

bool isTooLong(const QVariant &value) { return lengthOf(value) > longestShown; }

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
