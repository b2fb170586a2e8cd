#include "registers/import/import_fields.h"

#include "text/width.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using enum ImportRule;

struct Row
{
    const char16_t *column;
    ImportRule rule;
    const char16_t *headings; // with blanks between
};

constexpr Row fieldRows[] = {
    {u"コード", Text, u"納品先コード 顧客コード 得意先コード 取引先コード 顧客番号 code"},
    {u"納品先名1", NameLine,
     u"納品先名 納品先 会社名 会社名1 法人名 顧客名 顧客名1 得意先名 得意先名1 取引先名 取引先名1 氏名 氏名1 "
     u"名前 "
     "お名前 宛名 名称 name company"},
    {u"納品先名2", NameLine,
     u"部署 部署名 役職 役職名 所属 担当部署名 会社名2 顧客名2 得意先名2 取引先名2 氏名2 department"},
    {u"納品先名3", NameLine, u"会社名3 顧客名3 得意先名3 取引先名3 氏名3"},
    {u"敬称", Honorific, u"宛名敬称 称号 honorific"},
    {u"フリガナ", Reading,
     u"カナ カナ名 カナ氏名 読み 読み仮名 ヨミガナ 氏名カナ 会社名カナ 顧客名カナ kana"},
    {u"郵便番号", PostalCode, u"〒 郵便 zip zipcode postalcode"},
    {u"住所1", NameLine, u"住所 所在地 address address1"},
    {u"住所2", NameLine, u"建物名 ビル名 マンション名 address2"},
    {u"TEL1", Phone, u"TEL 電話 電話1 電話番号 電話番号1 phone telephone"},
    {u"TEL2", Phone, u"電話2 電話番号2 携帯 携帯電話 携帯番号 携帯電話番号 mobile"},
    {u"FAX", Phone, u"FAX番号 ファックス ファックス番号 ファクス ファクシミリ"},
    {u"メール", Mail, u"メールアドレス 電子メール Eメール mail email mailaddress"},
    {u"メモ", Note, u"備考 摘要 コメント memo note"},
    {u"登録日", Date, u"登録年月日"},
    {u"誕生日", Birthday, u"生年月日 birthday"},
    {u"区分ID", Category, u"区分 区分名 納品先区分 顧客区分 登録区分 分類"},
    {u"担当者名", Text, u"担当者 担当"},
    {u"締め日", ClosingDay, u"締日 請求締日 請求書の締め日"},
    {u"元帳出力", YesNo, u""},
    {u"消費税区分", TaxClass, u"税区分"},
    {u"納品先ID", Key, u""},
};

// Headings of this program's own export that are made anew for every customer.
const QStringList &ownColumns()
{
    static const QStringList columns{u"納品先名キー"_s, u"更新日"_s};
    return columns;
}

struct Headings
{
    QHash<QString, int> own;
    QHash<QString, int> others;
};

const Headings &knownHeadings()
{
    static const Headings known = [] {
        Headings headings;
        for (int field = 0; field < importFields().size(); ++field) {
            const ImportField &described = importFields().at(field);
            headings.own.insert(foldedHeading(described.column), field);
            for (const QString &heading : described.headings)
                headings.others.insert(foldedHeading(heading), field);
        }
        for (const QString &column : ownColumns())
            headings.own.insert(foldedHeading(column), -1);
        return headings;
    }();
    return known;
}

void assign(ImportAssignment &assignment, const QStringList &folded, const QHash<QString, int> &known)
{
    for (qsizetype column = 0; column < folded.size(); ++column) {
        const auto found = known.constFind(folded.at(column));
        if (found == known.cend())
            continue;
        assignment.hasHeadings = true;
        if (assignment.fields.at(column) < 0 && assignment.columnOf(*found) < 0)
            assignment.fields[column] = *found;
    }
}

} // namespace

const QList<ImportField> &importFields()
{
    static const QList<ImportField> fields = [] {
        QList<ImportField> rows;
        for (const Row &row : fieldRows)
            rows.push_back({QString::fromUtf16(row.column), row.rule,
                            QString::fromUtf16(row.headings).split(u' ', Qt::SkipEmptyParts)});
        return rows;
    }();
    return fields;
}

int importFieldOf(const QString &column)
{
    const auto &fields = importFields();
    const auto found = std::find_if(fields.cbegin(), fields.cend(),
                                    [&](const ImportField &field) { return field.column == column; });
    return found == fields.cend() ? -1 : static_cast<int>(found - fields.cbegin());
}

int ImportAssignment::matchField() const
{
    switch (match) {
    case ImportMatch::Key:
        return importFieldOf(u"納品先ID"_s);
    case ImportMatch::Code:
        return importFieldOf(u"コード"_s);
    case ImportMatch::None:
        break;
    }
    return -1;
}

bool ImportAssignment::namesCustomers() const
{
    const int matched = matchField();
    return columnOf(importFieldOf(u"納品先名1"_s)) >= 0 || (matched >= 0 && columnOf(matched) >= 0);
}

QStringList leftOutHeadings(const ImportAssignment &assignment, const QStringList &firstRow)
{
    QStringList leftOut;
    for (qsizetype column = 0; assignment.hasHeadings && column < firstRow.size(); ++column) {
        const QString heading = firstRow.at(column).simplified();
        const bool isOurs = ownColumns().contains(heading) || heading == importFields().constLast().column;
        if (assignment.fields.value(column, -1) < 0 && !heading.isEmpty() && !isOurs)
            leftOut += heading;
    }
    return leftOut;
}

QString foldedHeading(const QString &heading)
{
    QString folded = text::toHalfWidth(heading).toCaseFolded();
    folded.removeIf([](QChar c) { return c.isSpace() || u"･_-.:"_s.contains(c); });
    return folded;
}

ImportAssignment assignmentByHeadings(const QStringList &firstRow, qsizetype columns)
{
    ImportAssignment assignment;
    assignment.fields.fill(-1, columns);
    QStringList folded;
    for (const QString &heading : firstRow.first(std::min(columns, firstRow.size())))
        folded << foldedHeading(heading);
    assign(assignment, folded, knownHeadings().own);
    assign(assignment, folded, knownHeadings().others);
    return assignment;
}

} // namespace registers
