#include "tables/shared_strings.h"

#include "tables/format_writer.h"

namespace tables
{

namespace
{

// Names of cities, categories and people in charge come again and again; a register's other texts do not.
constexpr qsizetype mostKnown = 50000;
constexpr qsizetype headSize = 3;      // a text's length and its flag
constexpr qint64 positionOfCounts = 4; // behind the head of the first record

} // namespace

base::Status SharedStrings::open()
{
    if (!m_file.open())
        return writeError(m_file.errorString());
    m_record.add(quint32(0)).add(quint32(0)); // the counts, which finish() knows
    return {};
}

quint32 SharedStrings::add(const QString &text)
{
    ++m_uses;
    if (const auto known = m_known.constFind(text); known != m_known.constEnd())
        return *known;
    if (m_known.size() < mostKnown)
        m_known.insert(text, m_count);
    write(text);
    return m_count++;
}

// A text may begin in one record and go on in the next, which then repeats the flag before the characters;
// its head must not be parted, and neither a character.
void SharedStrings::write(const QString &text)
{
    const bool wide = biff::isWide(text);
    const qsizetype characterSize = wide ? 2 : 1;
    if (m_record.size() + headSize + characterSize > biff::longestRecord)
        endRecord();
    m_record.add(quint16(text.size())).add(quint8(wide));
    QStringView rest = text;
    while (true) {
        const qsizetype room = (biff::longestRecord - m_record.size()) / characterSize;
        const QStringView fitting = rest.first(std::min(rest.size(), room));
        m_record.addCharacters(fitting, wide);
        rest = rest.sliced(fitting.size());
        if (rest.isEmpty())
            return;
        endRecord();
        m_record.add(quint8(wide));
    }
}

void SharedStrings::endRecord()
{
    const QByteArray bytes = biff::record(m_number, m_record);
    m_failed = m_failed || m_file.write(bytes) != bytes.size();
    m_number = biff::Continue;
    m_record.clear();
}

base::Result<QFile *> SharedStrings::finish()
{
    endRecord();
    biff::Bytes counts;
    counts.add(m_uses).add(m_count);
    const bool done = !m_failed && m_file.seek(positionOfCounts) &&
                      m_file.write(counts.content()) == counts.size() && m_file.flush() && m_file.seek(0);
    return done ? base::Result<QFile *>(&m_file) : writeError(m_file.errorString());
}

} // namespace tables
