#pragma once

#include "base/progress.h"
#include "db/old_files/old_reader/frames.h"

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <vector>

namespace db
{

/// A table of an old file.
struct OldTable
{
    QString name;
    qint64 rows = 0; // as its head declares
    QStringList columns;
};

/// A value of an old file: numbers as the file stores them, text decoded.
struct OldCell
{
    old_reader::Cell kind = old_reader::Cell::Null;
    qint64 integer = 0; // Boolean, Integer; Money in ten-thousandths
    double real = 0;    // Double, Single; Date in days since 1899-12-30
    QString text;       // Text4, Text3, Digits
};

/// Reads an old file through a process of its own, which the file may bring down or keep busy for ever; both
/// end in an error here. What the process says is checked as if the file itself had written it.
class OldFileReader
{
public:
    enum class Step { TableBegins, Row, TableEnds, Finished };

    /// \a silence: how long, in ms, the process may say nothing.
    OldFileReader(const QString &program, int silence);
    ~OldFileReader();
    OldFileReader(const OldFileReader &) = delete;
    OldFileReader &operator=(const OldFileReader &) = delete;

    /// Begins with \a fileName and reads which tables it has. \a watch is called while waiting.
    base::Status open(const QString &fileName, const std::function<bool()> &watch);

    [[nodiscard]] const std::vector<OldTable> &tables() const { return m_tables; }

    /// The names of tables that the file has as links alone: their rows lie in other files.
    [[nodiscard]] const QStringList &linked() const { return m_linked; }

    /// Goes one step ahead through the tables and rows.
    base::Result<Step> next();

    /// The table that was begun last.
    [[nodiscard]] std::size_t tableIndex() const { return m_table; }
    /// The row of the last step, a cell for each column of its table.
    [[nodiscard]] const std::vector<OldCell> &row() const { return m_row; }

private:
    base::Status fill(qsizetype size);
    base::Result<old_reader::Frame> nextFrame();
    bool takeTable();
    bool takeLink();
    bool takeRow();

    QString m_program;
    int m_silence;
    QProcess m_process;
    std::function<bool()> m_watch;
    QByteArray m_buffer;
    qsizetype m_at = 0;       // of the next frame in the buffer
    QByteArrayView m_content; // of the last frame
    qint64 m_received = 0;
    qint64 m_mostReceived = 0;
    bool m_hasAhead = false;
    old_reader::Frame m_ahead{}; // the frame that ended the list of tables, read but not yet returned
    std::vector<OldTable> m_tables;
    QStringList m_linked;
    std::size_t m_table = 0;
    bool m_inTable = false;
    std::vector<OldCell> m_row;
};

/// The program that reads old files: beside this one, or where it is installed.
QString oldFileReaderProgram();

/// The sentence for an old file that cannot be read to its end.
base::Error oldFileDamaged(const QString &detail);

} // namespace db
