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
    Birthday,   // a day, or whatever else was noted
    Honorific,  // by name
    Category,   // key or name
    ClosingDay, // number or name
    TaxClass,   // number or name
    YesNo,
    Key // of a customer that is there
};

struct ImportField
{
    QString column; // of 納品先
    ImportRule rule;
    QStringList headings; // by which tables name it besides the column's own name
};

/// The fields that are imported. The search key and the day of the last change are made anew, and so is the
/// key, the last field, which only tells customers that are there.
const QList<ImportField> &importFields();

/// The place of \a column in importFields(); -1 when it is not imported.
int importFieldOf(const QString &column);

/// By what a row of a table is taken for a customer that is there, and changes it.
enum class ImportMatch { None, Key, Code };

/// The columns of a table as fields of a customer.
struct ImportAssignment
{
    bool hasHeadings = false;   // the first row holds no customer
    QList<int> fields = {};     // of every column, by place in importFields(); -1: left out
    qint64 defaultCategory = 0; // 区分ID of rows that name none; 0: such rows are refused
    ImportMatch match = ImportMatch::None;
    bool makesCategories = false; // those that are named and not registered are made with their customers
    bool numbersCodes = false;    // customers without a code get the next numbers
    bool mergesRepeats = false;   // what a later row of the same key or code says goes into the first one

    /// The column that \a field comes from; -1 when none does.
    [[nodiscard]] qsizetype columnOf(int field) const { return fields.indexOf(field); }
    /// The field that customers are matched by; -1 when none is.
    [[nodiscard]] int matchField() const;
    /// Whether the rows tell whose they are: by a name, or by what they are matched by. Without it there is
    /// nothing to import.
    [[nodiscard]] bool namesCustomers() const;
};

/// The headings of the columns that \a assignment leaves out, but for those that are made anew for every
/// customer and the keys where nothing is matched by them.
QStringList leftOutHeadings(const ImportAssignment &assignment, const QStringList &firstRow);

/// What a heading is compared by: upper and lower case, widths, both kana, blanks and marks do not count.
QString foldedHeading(const QString &heading);

/// Assigns \a columns columns by the headings in \a firstRow. A field's own name goes before other words for
/// it, then the first column before the later ones. A first row without any known heading is no heading.
ImportAssignment assignmentByHeadings(const QStringList &firstRow, qsizetype columns);

} // namespace registers
