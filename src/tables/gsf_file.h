#pragma once

#include "base/result.h"

#include <QByteArrayView>
#include <QString>

#include <cstdio>

using GsfOutfile = struct _GsfOutfile;
using GsfOutput = struct _GsfOutput;

namespace tables
{

/// A container file of libgsf that is being written: streams with names in an OLE or a zip container, one
/// after the other. The first failure is kept; what follows it does nothing.
class GsfFile
{
public:
    enum class Container { Ole, Zip };

    GsfFile() = default;
    ~GsfFile();
    GsfFile(const GsfFile &) = delete;
    GsfFile &operator=(const GsfFile &) = delete;

    base::Status open(const QString &fileName, Container container);

    /// Begins the stream \a path ("xl/workbook.xml"), after the one before is complete.
    void beginStream(const char *path);
    void write(QByteArrayView bytes);

    /// The first failure so far.
    [[nodiscard]] const base::Status &state() const { return m_state; }

    /// Completes the streams, the container and the file. \return whether all of it was written
    base::Status close();

private:
    void endStream();
    void check(bool done);
    void release();

    std::FILE *m_file = nullptr;
    GsfOutfile *m_container = nullptr;
    GsfOutput *m_stream = nullptr;
    base::Status m_state;
};

} // namespace tables
