#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// What of a customer can come from a table of another program, and under which headings.
namespace registers
{

/// The rule by which a cell becomes the value of a field.
enum class ImportRule {
    Text,
    NameLine,   // one printed line
    Note,       // the room of メモ
    Reading,    // half-width katakana
    PostalCode, // NNN-NNNN
    Phone,
    Mail,
    Date,
    Category,   // key or name
    ClosingDay, // number or name
    TaxClass,   // number or name
    YesNo
};

struct ImportField
{
    QString column; // of 納品先
    ImportRule rule;
    QStringList headings; // by which tables name it besides the column's own name
};

/// The fields that are imported. The key, the search key and the day of the last change are made anew.
const QList<ImportField> &importFields();

/// The place of \a column in importFields(); -1 when it is not imported.
int importFieldOf(const QString &column);

/// The columns of a table as fields of a customer.
struct ImportAssignment
{
    bool hasHeadings = false;   // the first row holds no customer
    QList<int> fields;          // of every column, by place in importFields(); -1: left out
    qint64 defaultCategory = 0; // 区分ID of rows that name none; 0: such rows are refused

    /// The column that \a field comes from; -1 when none does.
    [[nodiscard]] qsizetype columnOf(int field) const { return fields.indexOf(field); }
    /// Without names there is nothing to import.
    [[nodiscard]] bool hasName() const;
};

/// The headings of the columns that \a assignment leaves out, but for those that are made anew for every
/// customer.
QStringList leftOutHeadings(const ImportAssignment &assignment, const QStringList &firstRow);

/// What a heading is compared by: upper and lower case, widths, both kana, blanks and marks do not count.
QString foldedHeading(const QString &heading);

/// Assigns \a columns columns by the headings in \a firstRow. A field's own name goes before other words for
/// it, then the first column before the later ones. A first row without any known heading is no heading.
ImportAssignment assignmentByHeadings(const QStringList &firstRow, qsizetype columns);

} // namespace registers
