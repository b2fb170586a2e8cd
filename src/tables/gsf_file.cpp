#include "tables/gsf_file.h"

#include "tables/format_writer.h"

#include <QFile>

#include <cerrno>
#include <cstring>

#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile-zip.h>
#include <gsf/gsf-output-stdio.h>
#include <gsf/gsf-utils.h>

namespace tables
{

namespace
{

// A sheet's repetitive text shrinks to a tenth at the quickest level already; the usual one takes three
// times as long for little more.
constexpr int quickest = 1;

std::FILE *openForWriting(const QString &fileName)
{
#ifdef Q_OS_WIN
    return _wfopen(reinterpret_cast<const wchar_t *>(fileName.utf16()), L"wb");
#else
    return std::fopen(QFile::encodeName(fileName).constData(), "wbe");
#endif
}

base::Error systemError() { return writeError(QString::fromLocal8Bit(std::strerror(errno))); }

} // namespace

GsfFile::~GsfFile() { release(); }

base::Status GsfFile::open(const QString &fileName, Container container)
{
    static const bool prepared = (gsf_init(), true);
    Q_UNUSED(prepared)
    m_file = openForWriting(fileName);
    if (!m_file)
        return m_state = systemError();
    GsfOutput *sink = gsf_output_stdio_new_FILE("", m_file, TRUE);
    m_container =
        container == Container::Ole ? gsf_outfile_msole_new(sink) : gsf_outfile_zip_new(sink, nullptr);
    g_object_unref(sink);
    check(m_container != nullptr);
    return m_state;
}

void GsfFile::beginStream(const char *path)
{
    endStream();
    if (!m_state)
        return;
    m_stream = GSF_IS_OUTFILE_ZIP(m_container)
                   ? gsf_outfile_new_child_full(m_container, path, FALSE, "deflate-level", quickest, nullptr)
                   : gsf_outfile_new_child(m_container, path, FALSE);
    check(m_stream != nullptr);
}

void GsfFile::write(QByteArrayView bytes)
{
    if (m_state && !bytes.isEmpty())
        check(gsf_output_write(m_stream, static_cast<std::size_t>(bytes.size()),
                               reinterpret_cast<const guint8 *>(bytes.data())));
}

void GsfFile::endStream()
{
    if (!m_stream)
        return;
    check(gsf_output_close(m_stream));
    g_object_unref(m_stream);
    m_stream = nullptr;
}

base::Status GsfFile::close()
{
    endStream();
    if (m_container)
        check(gsf_output_close(GSF_OUTPUT(m_container)));
    // The container's last words may still lie in the buffer.
    if (m_file)
        check(std::fflush(m_file) == 0 && std::ferror(m_file) == 0);
    release();
    return m_state;
}

void GsfFile::check(bool done)
{
    if (!done && m_state)
        m_state = systemError();
}

void GsfFile::release()
{
    if (m_stream)
        g_object_unref(m_stream);
    if (m_container)
        g_object_unref(m_container);
    if (m_file && std::fclose(m_file) != 0)
        check(false);
    m_stream = nullptr;
    m_container = nullptr;
    m_file = nullptr;
}

} // namespace tables
