#pragma once

#include "base/result.h"
#include "registers/import/import_fields.h"

// The field mapping of the customer import as a file; docs/customer-import.md describes it.
namespace registers
{

/// In the application folder.
inline constexpr const char16_t *importMappingFileName = u"KanbaloreCSV1.log";

/// How tables of one kind are assigned, whatever the order of their columns.
struct ImportMapping
{
    struct Source
    {
        int field;       // by place in importFields()
        QString heading; // empty: by number
        int number = 0;  // of the column, from 1
    };
    bool hasHeadings = false;
    qint64 defaultCategory = 0;
    ImportMatch match = ImportMatch::None;
    bool numbersCodes = false;
    QList<Source> sources = {};
    QStringList leftOut = {}; // folded headings of columns that are there, and not taken by choice
};

/// The mapping in \a fileName; nothing when there is no such file. What is wrong in single lines is passed
/// over; fails when the whole is no mapping.
base::Result<std::optional<ImportMapping>> readImportMapping(const QString &fileName);

/// Replaces \a fileName when the new one is complete.
base::Status writeImportMapping(const QString &fileName, const ImportMapping &mapping);

/// The mapping that \a assignment of a table with \a firstRow stands for.
ImportMapping mappingOf(const ImportAssignment &assignment, const QStringList &firstRow);

/// \a mapping applied to a table of \a columns columns; nothing when it does not fit, the name having no
/// column there.
std::optional<ImportAssignment> assignmentByMapping(const ImportMapping &mapping, const QStringList &firstRow,
                                                    qsizetype columns);

} // namespace registers
