#pragma once

#include "base/result.h"
#include "tables/biff.h"

#include <QHash>
#include <QTemporaryFile>

namespace tables
{

/// The texts of a BIFF8 workbook, which stand together before the sheets and are named by their number. They
/// are kept in a temporary file; of the texts seen, only the first ones are remembered and not written
/// twice.
class SharedStrings
{
public:
    base::Status open();

    /// The number of \a text, at most 32,767 UTF-16 units long.
    quint32 add(const QString &text);

    /// Completes the records. \return the temporary file, to be read from its beginning
    base::Result<QFile *> finish();

private:
    void write(const QString &text);
    void endRecord();

    QTemporaryFile m_file;
    QHash<QString, quint32> m_known;
    biff::Bytes m_record;
    biff::Record m_number = biff::SharedStrings;
    quint32 m_uses = 0;
    quint32 m_count = 0;
    bool m_failed = false;
};

} // namespace tables
