#include "slips/issued/issued_export.h"

#include "base/dated_name.h"
#include "base/file_rights.h"
#include "base/replacement.h"
#include "slips/issued/document_check.h"
#include "tables/report_file.h"
#include "text/file_name.h"

#include <QDir>
#include <QFile>
#include <QSet>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

constexpr qsizetype longestName = 180; // bytes in UTF-8; file systems take 255, and a number may follow

// Windows drops blanks and points at the end of a name, and knows no capitals.
QString unusedName(const QString &wanted, QSet<QString> &used)
{
    const QString stem = wanted.chopped(4);
    QString name = wanted;
    for (int number = 2; used.contains(name.toCaseFolded()); ++number)
        name = stem + u" (%1).pdf"_s.arg(number);
    used.insert(name.toCaseFolded());
    return name;
}

base::Status writeFile(const QString &fileName, const QByteArray &pdf)
{
    base::Replacement file(fileName);
    if (const base::Status begun = file.begin(); !begun)
        return begun;
    QFile writing(file.name());
    if (!writing.open(QIODevice::WriteOnly) || writing.write(pdf) != pdf.size() || !writing.flush())
        return base::Error{u"控えを書き出せませんでした。空き容量と、書き込みのできる場所かどうかを"
                           "確かめてください。("_s +
                           QDir::toNativeSeparators(fileName) + u")"_s};
    writing.close();
    return file.finish();
}

base::Report emptyIndex()
{
    using enum base::Format;
    return {.columns = {{u"控え番号"_s, Number},
                        {u"種類"_s, Text, 16},
                        {u"番号"_s, Text, 14},
                        {u"日付"_s, Date, 11},
                        {u"相手先"_s, Text, 36},
                        {u"税込金額"_s, Amount, 12},
                        {u"発行日時"_s, Text, 19},
                        {u"担当者"_s, Text, 12},
                        {u"訂正元の控え番号"_s, Number, 16},
                        {u"ファイル名"_s, Text, 60},
                        {u"備考"_s, Text, 40},
                        {u"SHA-256"_s, Text, 64}}};
}

QVariantList indexed(const IssuedRow &row, const QString &fileName, DocumentState state)
{
    return {row.key,
            row.kind,
            row.number,
            row.date,
            row.counterpartName,
            row.amount,
            row.issuedAt,
            row.employee,
            row.corrected ? QVariant(*row.corrected) : QVariant(),
            fileName,
            state == DocumentState::Whole ? QString() : nameOf(state),
            row.hash};
}

/// A folder that goes again unless all of it came about.
class NewFolder
{
public:
    explicit NewFolder(const QString &path)
        : m_path(path)
    {}
    ~NewFolder()
    {
        if (!m_stays)
            QDir(m_path).removeRecursively();
    }
    NewFolder(const NewFolder &) = delete;
    NewFolder &operator=(const NewFolder &) = delete;

    base::Status make()
    {
        if (base::makeSharedFolder(m_path))
            return {};
        m_stays = true;
        return base::Error{
            u"フォルダ「%1」を作成できませんでした。書き込みのできる場所を選んでください。"_s.arg(
                QDir::toNativeSeparators(m_path))};
    }
    void stay() { m_stays = true; }

private:
    QString m_path;
    bool m_stays = false;
};

} // namespace

QString exportName(const IssuedRow &row)
{
    QStringList parts;
    for (const QString &part : {row.date, row.kind, row.number, row.counterpartName})
        parts << text::fileNamePart(part);
    QString name = text::cutToBytes(parts.join(u'_'), longestName);
    while (name.endsWith(u' ') || name.endsWith(u'.'))
        name.chop(1);
    return name + u".pdf"_s;
}

base::Result<ExportedDocuments> exportDocuments(db::Connection &connection, const std::vector<qint64> &keys,
                                                const QStringList &folders, const QString &target,
                                                const QDate &today, const base::Progress &progress)
{
    const auto rows = readIssued(connection, keys);
    if (!rows)
        return rows.error();
    ExportedDocuments exported;
    exported.folder = base::datedName(QDir(target).filePath(u"発行控え"_s), u"書き出し"_s, today);
    NewFolder folder(exported.folder);
    if (const base::Status made = folder.make(); !made)
        return made.error();
    base::Report index = emptyIndex();
    QSet<QString> used;
    qint64 done = 0;
    for (const IssuedRow &row : *rows) {
        if (!progress(done++, qint64(rows->size())))
            return base::cancelled();
        const FoundDocument found = findDocument(folders, row.place());
        QString name;
        if (found.state == DocumentState::Whole) {
            name = unusedName(exportName(row), used);
            if (const base::Status written = writeFile(QDir(exported.folder).filePath(name), found.pdf);
                !written)
                return written.error();
            ++exported.written;
        } else {
            exported.lacking.push_back(row);
        }
        index.rows.push_back({.values = indexed(row, name, found.state)});
    }
    if (const base::Status listed =
            tables::writeReport(QDir(exported.folder).filePath(u"索引.csv"_s), index, base::unwatched);
        !listed)
        return listed.error();
    folder.stay();
    return exported;
}

} // namespace slips
