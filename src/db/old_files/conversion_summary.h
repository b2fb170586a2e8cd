#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace db
{

/// What became of an old file's contents.
struct ConversionSummary
{
    struct Table
    {
        QString name;
        qint64 read = 0;
        qint64 written = 0;
    };

    std::vector<Table> tables; // this program's in the order of its schema, then those it does not know
    QStringList losses;        // what was not carried over, or not as it was; one sentence each
    QStringList notes;         // what is good to know: keys that changed, columns that the old file lacked

    /// Whether nothing is missing in the new file.
    [[nodiscard]] bool isComplete() const;

    /// "table TAB rows read TAB rows written", one a line; the losses and the notes below.
    [[nodiscard]] QString text() const;
};

} // namespace db
