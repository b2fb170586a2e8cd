#include "app/files/old_file_conversion.h"

#include "app/files/start_options.h"
#include "registers/customer.h"
#include "registers/supplier.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

constexpr qsizetype shipmentKeyLength = 16; // characters

QString shipmentKey(const QString &name1, const QString &name2)
{
    return (name1 + name2).left(shipmentKeyLength).trimmed();
}

// A row without its search key would never be found again; the two numbers are those of a new customer.
QVariant valueOfMissing(const QString &table, const QString &column,
                        const std::function<QVariant(const QString &)> &valueOf)
{
    if (table == u"納品先"_s && (column == u"消費税区分"_s || column == u"元帳出力"_s))
        return qint64(0);
    const auto text = [&valueOf](const QString &name) { return valueOf(name).toString(); };
    if (column == u"納品先名キー"_s)
        return registers::customerKey(text(u"納品先名1"_s), text(u"納品先名2"_s), text(u"コード"_s),
                                      text(u"TEL1"_s), text(u"フリガナ"_s));
    if (column == u"仕入先名キー"_s)
        return registers::supplierKey(text(u"仕入先名1"_s), text(u"仕入先名2"_s), text(u"コード"_s),
                                      text(u"TEL1"_s));
    if (column == u"依頼主名キー"_s)
        return shipmentKey(text(u"依頼主名1"_s), text(u"依頼主名2"_s));
    if (column == u"届先名キー"_s)
        return shipmentKey(text(u"届先名1"_s), text(u"届先名2"_s));
    return {};
}

} // namespace

base::Result<db::ConversionSummary> convertOldFile(const QString &source, const QString &target,
                                                   const base::Progress &progress)
{
    db::ConversionOptions options;
    options.missing = valueOfMissing;
    return db::convertOldFile(source, target, progress, options);
}

QString proposedName(const QString &source)
{
    const QFileInfo file(source);
    const QString stem = file.dir().filePath(file.completeBaseName() + u"_新形式"_s);
    QString name = stem + u".cdb"_s;
    for (int number = 2; QFileInfo::exists(name); ++number)
        name = stem + QString::number(number) + u".cdb"_s;
    return name;
}

base::Status saveSummary(const db::ConversionSummary &summary, const QString &fileName)
{
    QSaveFile file(fileName);
    const QByteArray text = summary.text().toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        return base::Error{
            u"結果を保存できませんでした。空き容量と、書き込みのできる場所かどうかを確かめてください。("_s +
            fileName + u")"_s};
    return {};
}

ConversionExit convertAtCommandLine(const QString &source, const QString &target)
{
    const auto summary = convertOldFile(pathOfFile(source), pathOfFile(target), base::unwatched);
    if (!summary) {
        QTextStream(stderr) << summary.error().text << '\n';
        return ConversionExit::Failed;
    }
    QTextStream(stdout) << summary->text();
    return summary->isComplete() ? ConversionExit::Complete : ConversionExit::Incomplete;
}

} // namespace app
