#include "db/old_files/old_file_reader.h"

#include "text/cp932.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace db
{

using old_reader::Cell;
using old_reader::Frame;

namespace
{

constexpr int watchEvery = 100; // ms
constexpr qint64 readAtOnce = 1 << 20;

// A few rows that all claim the same long text could make a small file endless.
constexpr qint64 received(qint64 fileSize) { return (qint64(64) << 20) + 16 * fileSize; }

/// Takes values out of a frame; once one was missing, all that follow are.
class Content
{
public:
    explicit Content(QByteArrayView bytes)
        : m_rest(bytes)
    {}

    template <class T>
    T number()
    {
        const QByteArrayView bytes = take(sizeof(T));
        return bytes.isEmpty() ? T() : qFromLittleEndian<T>(bytes.data());
    }

    QByteArrayView bytes() { return take(number<quint32>()); }
    QString name() { return QString::fromUtf8(bytes()); }

    /// Whether everything was there.
    [[nodiscard]] bool isWhole() const { return m_whole; }
    [[nodiscard]] bool isAtEnd() const { return m_whole && m_rest.isEmpty(); }

private:
    QByteArrayView take(qsizetype size)
    {
        m_whole = m_whole && size <= m_rest.size();
        if (!m_whole)
            return {};
        const QByteArrayView taken = m_rest.first(size);
        m_rest = m_rest.sliced(size);
        return taken;
    }

    QByteArrayView m_rest;
    bool m_whole = true;
};

// Runs of characters below 256 may be stored in one byte each; a zero byte leads from one way to the other.
bool expand(QByteArrayView bytes, QString &text)
{
    bool compressed = true;
    for (qsizetype i = 0; i < bytes.size();) {
        if (bytes[i] == 0) {
            compressed = !compressed;
            ++i;
        } else if (compressed) {
            text += QLatin1Char(bytes[i++]);
        } else {
            if (i + 1 >= bytes.size())
                return false;
            text += QChar(qFromLittleEndian<quint16>(bytes.data() + i));
            i += 2;
        }
    }
    return true;
}

bool decode4(QByteArrayView bytes, QString &text)
{
    if (bytes.startsWith(QByteArrayView("\xff\xfe")))
        return expand(bytes.sliced(2), text);
    if (bytes.size() % 2 != 0)
        return false;
    text.reserve(bytes.size() / 2);
    for (qsizetype i = 0; i < bytes.size(); i += 2)
        text += QChar(qFromLittleEndian<quint16>(bytes.data() + i));
    return true;
}

void readText(Content &content, OldCell &cell)
{
    const QByteArrayView bytes = content.bytes();
    bool readable = true;
    if (cell.kind == Cell::Text4) {
        readable = decode4(bytes, cell.text);
    } else if (cell.kind == Cell::Text3) {
        const auto text = text::fromCp932(bytes.toByteArray());
        readable = text.has_value();
        cell.text = text.value_or(QString());
    } else {
        cell.text = QString::fromLatin1(bytes);
    }
    if (!readable)
        cell.kind = Cell::Unreadable;
}

bool readCell(Content &content, OldCell &cell)
{
    cell.kind = static_cast<Cell>(content.number<quint8>());
    cell.text.truncate(0);
    switch (cell.kind) {
    case Cell::Null:
    case Cell::Other:
    case Cell::Unreadable:
        return true;
    case Cell::Boolean:
        cell.integer = content.number<quint8>();
        return cell.integer <= 1;
    case Cell::Integer:
        cell.integer = content.number<qint32>();
        return true;
    case Cell::Money:
        cell.integer = content.number<qint64>();
        return true;
    case Cell::Single:
        cell.real = static_cast<double>(content.number<float>());
        return true;
    case Cell::Double:
    case Cell::Date:
        cell.real = content.number<double>();
        return true;
    case Cell::Digits:
    case Cell::Text4:
    case Cell::Text3:
        readText(content, cell);
        return true;
    }
    return false;
}

} // namespace

QString oldFileReaderProgram()
{
    const QString folder = QCoreApplication::applicationDirPath();
    const QString name = QString::fromLatin1(old_reader::programName);
    const QString installed = u'/' + QStringLiteral(KANBALORE_HELPERS) + u'/';
    // Beside the program in a build, and beside the tests' folder for these.
    for (const QString &place : {u"/"_s, installed, u"/../bin/"_s}) {
        for (const QString &suffix : {u""_s, u".exe"_s}) {
            if (const QFileInfo program(folder + place + name + suffix); program.isExecutable())
                return program.absoluteFilePath();
        }
    }
    return name;
}

base::Error oldFileDamaged(const QString &detail)
{
    return {u"以前の形式のファイルが壊れているため、変換できませんでした。以前のプログラムで"
            "「データベースの修復/最適化」を実行するか、バックアップファイルを使ってください。("_s +
            detail + u")"_s};
}

OldFileReader::OldFileReader(const QString &program, int silence)
    : m_program(program)
    , m_silence(silence)
{}

OldFileReader::~OldFileReader()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

base::Status OldFileReader::open(const QString &fileName, const std::function<bool()> &watch)
{
    m_watch = watch;
    m_mostReceived = received(QFileInfo(fileName).size());
    // The library listens to variables that a user may have set for other programs.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"MDBICONV", "MDBOPTS", "MDBPATH"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(u"MDB_JET3_CHARSET"_s, u"CP932"_s);
    m_process.setProcessEnvironment(environment);
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(m_program, {QFileInfo(fileName).absoluteFilePath()}, QIODevice::ReadOnly);
    if (!m_process.waitForStarted())
        return base::Error{u"以前の形式のファイルを読むプログラムを起動できないため、変換できませんでした。"
                           "インストールし直してください。("_s +
                           m_program + u")"_s};
    for (;;) {
        const auto frame = nextFrame();
        if (!frame)
            return frame.error();
        m_ahead = *frame;
        if (*frame != Frame::Table && *frame != Frame::Linked)
            break;
        if (!(*frame == Frame::Table ? takeTable() : takeLink()))
            return oldFileDamaged(u"テーブルの一覧"_s);
    }
    m_hasAhead = true;
    const bool readable = m_ahead == Frame::Begin || m_ahead == Frame::Finished;
    return readable ? base::Status() : oldFileDamaged(u"テーブルの一覧"_s);
}

// Has \a size bytes in the buffer from the next frame on.
base::Status OldFileReader::fill(qsizetype size)
{
    if (m_buffer.size() - m_at >= size)
        return {};
    m_buffer.remove(0, m_at);
    m_at = 0;
    QElapsedTimer silent;
    silent.start();
    while (m_buffer.size() < size) {
        const QByteArray more = m_process.read(readAtOnce);
        if (!more.isEmpty()) {
            m_buffer += more;
            m_received += more.size();
            silent.start();
        } else if (m_process.state() == QProcess::NotRunning && m_process.bytesAvailable() == 0) {
            return oldFileDamaged(u"読み取りが中断しました"_s);
        } else if (silent.elapsed() > m_silence) {
            return oldFileDamaged(u"読み取りが進みません"_s);
        } else {
            m_process.waitForReadyRead(watchEvery);
        }
        if (!m_watch())
            return base::cancelled();
        if (m_received > m_mostReceived)
            return oldFileDamaged(u"データが大きすぎます"_s);
    }
    return {};
}

base::Result<Frame> OldFileReader::nextFrame()
{
    if (const base::Status head = fill(old_reader::frameHeadSize); !head)
        return head.error();
    const auto length = qFromLittleEndian<quint32>(m_buffer.constData() + m_at + 1);
    if (length > old_reader::longestFrame)
        return oldFileDamaged(u"行が大きすぎます"_s);
    const qsizetype whole = old_reader::frameHeadSize + static_cast<qsizetype>(length);
    if (const base::Status all = fill(whole); !all)
        return all.error();
    m_content = QByteArrayView(m_buffer).sliced(m_at + old_reader::frameHeadSize, length);
    const auto kind = static_cast<Frame>(m_buffer.at(m_at));
    m_at += whole;
    return kind;
}

base::Result<OldFileReader::Step> OldFileReader::next()
{
    Frame frame = m_ahead;
    if (!m_hasAhead) {
        const auto read = nextFrame();
        if (!read)
            return read.error();
        frame = *read;
    }
    m_hasAhead = false;
    switch (frame) {
    case Frame::Begin: {
        Content content(m_content);
        m_table = content.number<quint32>();
        if (m_inTable || !content.isAtEnd() || m_table >= m_tables.size())
            break;
        m_inTable = true;
        m_row.resize(static_cast<std::size_t>(m_tables[m_table].columns.size()));
        return Step::TableBegins;
    }
    case Frame::Row:
        if (!m_inTable || !takeRow())
            break;
        return Step::Row;
    case Frame::End:
        if (!m_inTable)
            break;
        m_inTable = false;
        return Step::TableEnds;
    case Frame::Finished:
        if (m_inTable)
            break;
        return Step::Finished;
    case Frame::Table:
    case Frame::Linked:
    case Frame::Damaged:
        break;
    }
    return oldFileDamaged(u"テーブルの内容"_s);
}

bool OldFileReader::takeTable()
{
    Content content(m_content);
    OldTable table;
    table.rows = content.number<quint32>();
    const int columns = content.number<quint16>();
    table.name = content.name();
    for (int i = 0; i < columns && content.isWhole(); ++i)
        table.columns << content.name();
    m_tables.push_back(table);
    return content.isAtEnd();
}

bool OldFileReader::takeLink()
{
    Content content(m_content);
    m_linked << content.name();
    return content.isAtEnd();
}

bool OldFileReader::takeRow()
{
    Content content(m_content);
    for (OldCell &cell : m_row) {
        if (!readCell(content, cell))
            return false;
    }
    return content.isAtEnd();
}

} // namespace db
