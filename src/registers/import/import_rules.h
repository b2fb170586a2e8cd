#pragma once

#include "masters/name_lists.h"
#include "registers/import/import_fields.h"

#include <QVariant>

// How a cell of a table becomes the value of a customer's field.
namespace registers
{

/// A value in its stored form; dates as yyyy-MM-dd, numbers as digits, empty: none.
struct ImportValue
{
    QString text;
    QString refusal;    // why the cell cannot be taken; empty: it can
    bool isCut = false; // the register's rule kept only its beginning
};

/// What \a cell says: one line, without what keeps a spreadsheet from taking a code for a number
/// (="0600001").
QString plainCell(const QString &cell);

/// The value of \a field for what \a cell says. \a categories can be named by key or by name.
ImportValue importValue(const ImportField &field, const QString &cell,
                        const std::vector<masters::Entry> &categories);

/// \a text of the field at place \a field in the type of its column; NULL when it is empty.
QVariant boundImportValue(int field, const QString &text);

} // namespace registers
