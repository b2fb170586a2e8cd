#include "registers/import/import_mapping.h"

#include "tables/text_file.h"

#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr qint64 highestFileSize = 64 * 1024;

const QString firstLine = u"KanbaloreCSV1"_s;
const QString headingsKey = u"見出し行"_s;
const QString withHeadings = u"あり"_s;
const QString withoutHeadings = u"なし"_s;
const QString categoryKey = u"区分の既定値"_s;
const QString matchKey = u"登録済みの納品先を更新"_s;
const QString codesKey = u"コードの続き番号"_s;
const QString numbered = u"付ける"_s;
const QString leftOutKey = u"取り込まない列"_s;
const QString byHeading = u"見出し:"_s;
const QString byNumber = u"列:"_s;

ImportMatch matchBy(const QString &column)
{
    for (const ImportMatch match : {ImportMatch::Key, ImportMatch::Code}) {
        if (importFieldOf(column) >= 0 &&
            ImportAssignment{.match = match}.matchField() == importFieldOf(column))
            return match;
    }
    return ImportMatch::None;
}

void takeLine(ImportMapping &mapping, const QString &key, const QString &value)
{
    if (key == headingsKey) {
        mapping.hasHeadings = value == withHeadings;
    } else if (key == categoryKey) {
        mapping.defaultCategory = std::max<qint64>(0, value.toLongLong());
    } else if (key == matchKey) {
        mapping.match = matchBy(value);
    } else if (key == codesKey) {
        mapping.numbersCodes = value == numbered;
    } else if (key == leftOutKey) {
        mapping.leftOut += foldedHeading(value);
    } else if (const int field = importFieldOf(key); field >= 0) {
        const QString heading = value.startsWith(byHeading) ? value.sliced(byHeading.size()) : QString();
        const int number = value.startsWith(byNumber) ? value.sliced(byNumber.size()).toInt() : 0;
        if (!foldedHeading(heading).isEmpty() || number > 0)
            mapping.sources.push_back({field, heading, number});
    }
}

} // namespace

base::Result<std::optional<ImportMapping>> readImportMapping(const QString &fileName)
{
    if (!QFileInfo::exists(fileName))
        return std::optional<ImportMapping>();
    const auto text = tables::readTextFile(fileName, highestFileSize);
    if (!text)
        return text.error();
    QStringList lines = text->split(u'\n');
    if (lines.takeFirst().trimmed() != firstLine)
        return base::Error{
            u"設定ファイル「%1」の内容が正しくありません。"_s.arg(QFileInfo(fileName).fileName())};
    ImportMapping mapping;
    for (const QString &line : std::as_const(lines)) {
        const qsizetype sign = line.indexOf(u'=');
        if (sign > 0)
            takeLine(mapping, line.first(sign).trimmed(), line.sliced(sign + 1).trimmed());
    }
    return std::optional(mapping);
}

base::Status writeImportMapping(const QString &fileName, const ImportMapping &mapping)
{
    QStringList lines{firstLine, headingsKey + u'=' + (mapping.hasHeadings ? withHeadings : withoutHeadings)};
    if (mapping.defaultCategory > 0)
        lines << categoryKey + u'=' + QString::number(mapping.defaultCategory);
    if (const int matched = ImportAssignment{.match = mapping.match}.matchField(); matched >= 0)
        lines << matchKey + u'=' + importFields().at(matched).column;
    if (mapping.numbersCodes)
        lines << codesKey + u'=' + numbered;
    for (const ImportMapping::Source &source : mapping.sources) {
        const QString from =
            source.heading.isEmpty() ? byNumber + QString::number(source.number) : byHeading + source.heading;
        lines << importFields().at(source.field).column + u'=' + from;
    }
    for (const QString &heading : mapping.leftOut)
        lines << leftOutKey + u'=' + heading;
    const QByteArray content = (lines.join(u"\r\n"_s) + u"\r\n"_s).toUtf8();
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return {};
    return base::Error{u"設定ファイル「%1」を保存できませんでした。(%2)"_s.arg(QFileInfo(fileName).fileName(),
                                                                               file.errorString())};
}

ImportMapping mappingOf(const ImportAssignment &assignment, const QStringList &firstRow)
{
    ImportMapping mapping{.hasHeadings = assignment.hasHeadings,
                          .defaultCategory = assignment.defaultCategory,
                          .match = assignment.match,
                          .numbersCodes = assignment.numbersCodes};
    for (const QString &heading : leftOutHeadings(assignment, firstRow))
        mapping.leftOut += foldedHeading(heading);
    QStringList folded;
    for (const QString &heading : firstRow)
        folded << foldedHeading(heading);
    for (qsizetype column = 0; column < assignment.fields.size(); ++column) {
        if (assignment.fields.at(column) < 0)
            continue;
        // A heading that stands over several columns, or over none, cannot tell which one is meant.
        const QString heading = folded.value(column);
        const bool tells = assignment.hasHeadings && !heading.isEmpty() && folded.count(heading) == 1;
        mapping.sources.push_back({assignment.fields.at(column),
                                   tells ? firstRow.at(column).simplified() : QString(),
                                   static_cast<int>(column) + 1});
    }
    return mapping;
}

std::optional<ImportAssignment> assignmentByMapping(const ImportMapping &mapping, const QStringList &firstRow,
                                                    qsizetype columns)
{
    ImportAssignment assignment{.hasHeadings = mapping.hasHeadings,
                                .defaultCategory = mapping.defaultCategory,
                                .match = mapping.match,
                                .numbersCodes = mapping.numbersCodes};
    assignment.fields.fill(-1, columns);
    QStringList folded;
    for (const QString &heading : firstRow)
        folded << foldedHeading(heading);
    for (const ImportMapping::Source &source : mapping.sources) {
        const qsizetype column =
            source.heading.isEmpty() ? source.number - 1 : folded.indexOf(foldedHeading(source.heading));
        const bool isFree = column >= 0 && column < columns && assignment.fields.at(column) < 0;
        if (isFree && assignment.columnOf(source.field) < 0)
            assignment.fields[column] = source.field;
    }
    // A file of today may have columns that the one of the settings had not.
    if (mapping.hasHeadings) {
        const ImportAssignment byHeadings = assignmentByHeadings(firstRow, columns);
        for (qsizetype column = 0; column < columns; ++column) {
            const int field = byHeadings.fields.value(column, -1);
            const bool isFree =
                assignment.fields.at(column) < 0 && !mapping.leftOut.contains(folded.value(column));
            if (isFree && field >= 0 && assignment.columnOf(field) < 0)
                assignment.fields[column] = field;
        }
    }
    // A table with headings is not taken for one without, which would make a customer of its headings.
    const bool isOtherKind = !mapping.hasHeadings && assignmentByHeadings(firstRow, columns).hasHeadings;
    if (isOtherKind || !assignment.namesCustomers())
        return std::nullopt;
    return assignment;
}

} // namespace registers
