#pragma once

#include <QDate>
#include <QHash>
#include <QString>
#include <QStringList>

#include <map>
#include <variant>
#include <vector>

// The values that a form shows, under the names by which layout files call them.
namespace printing
{

enum class FormItemKind { Text, Number, Date, RichText };

/// What a kind of document has to show: the names that its layout files may use.
struct FormItems
{
    std::map<QString, FormItemKind> items;
    std::map<QString, FormItemKind> columns; // of the body's rows
    QStringList shifts;                      // offsets
    QString summed; // the column whose sum so far 繰越金額 tells; empty: there is none
};

/// The items that the engine knows by itself: "1 / 3" where there are several sheets, and the sum carried
/// over.
inline constexpr const char16_t *formPageItem = u"ページ";
inline constexpr const char16_t *formCarriedItem = u"繰越金額";

/// A rich text's value is the name under which the document holds it.
using FormValue = std::variant<QString, double, QDate>;
using FormRecord = QHash<QString, FormValue>;

/// An item without a value is left out, as is an empty text and a date that is none.
struct FormValues
{
    FormRecord items;
    std::vector<FormRecord> rows;
    QHash<QString, double> shifts; // millimetres
    QString summed;                // as FormItems
};

struct FormSource;

/// What \a source writes of \a record, without line breaks unless \a lines; empty where it has no value.
QString formText(const FormSource &source, const FormRecord &record, bool lines = false);

/// Whether \a item, where one is asked for, has a value.
bool formHas(const QString &item, const FormRecord &record);

/// Whether \a format can set a value of \a kind: "#,##0", "#,##0.##" and "0" a number, letters y, M and d a
/// date.
bool isFormFormat(const QString &format, FormItemKind kind);

} // namespace printing
