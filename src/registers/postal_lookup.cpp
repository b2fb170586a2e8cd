#include "registers/postal_lookup.h"

#include "registers/postal_areas.h"
#include "registers/sequential_fields.h"
#include "text/cp932.h"
#include "text/width.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr std::size_t noGroup = std::numeric_limits<std::size_t>::max();
constexpr qsizetype codeLength = 8; // "NNN-NNNN"
// Many times the nationwide tables.
constexpr qint64 highestTableSize = 256 * 1024 * 1024; // bytes

QString inFolder(const PostalData &data, const QString &name)
{
    const bool ends = data.folder.endsWith(u'/') || data.folder.endsWith(u'\\');
    return ends ? data.folder + name : data.folder + u'/' + name;
}

const PostalIndex &groupsOf(const PostalData &data)
{
    static const PostalIndex none;
    return data.index ? *data.index : none;
}

// The areas of one group after the other, as long as the search goes on.
class GroupSearch
{
public:
    GroupSearch(const PostalData &data, const db::Progress &progress)
        : m_index(groupsOf(data))
        , m_progress(progress)
        , m_areas(inFolder(data, u"ZIPCODE.txt"_s))
    {}

    db::Status run(const QString &text);

    // Shows the areas of the group \a k, as code, address and stored field.
    db::Status visit(std::size_t k,
                     const std::function<void(const PostalRecord &, const QString &, const QString &)> &area);

    PostalFinds finds;

private:
    [[nodiscard]] bool isOver() const { return finds.stopped || !finds.lines.isEmpty(); }
    db::Status search(std::size_t k, QStringView text);

    const PostalIndex &m_index;
    const db::Progress &m_progress;
    PostalAreas m_areas;
    bool m_open = false;
};

db::Status
GroupSearch::visit(std::size_t k,
                   const std::function<void(const PostalRecord &, const QString &, const QString &)> &area)
{
    if (!m_open) {
        if (const db::Status opened = m_areas.open(); !opened)
            return opened;
        m_open = true;
    }
    const qint64 first = m_index[k].firstRecord;
    const qint64 last = k + 1 < m_index.size() ? qint64(m_index[k + 1].firstRecord) - 1 : m_areas.count();
    qint64 done = 0;
    return m_areas.read(first, last, [&](const PostalRecord &record) {
        finds.stopped = !m_progress(++done, last - first + 1);
        // A record that cannot be read, or has no address, is no area.
        const auto field = record.field();
        const QString address = field ? PostalRecord::address(*field) : QString();
        if (!finds.stopped && !address.isEmpty())
            area(record, address, *field);
        return !finds.stopped;
    });
}

db::Status GroupSearch::search(std::size_t k, QStringView text)
{
    return visit(k, [&](const PostalRecord &record, const QString &address, const QString &field) {
        const bool named = text.contains(address);
        if (!named && !address.contains(text))
            return;
        const auto code = record.code();
        if (!code)
            return;
        if (named)
            finds.code = *code;
        finds.lines += *code + u"  "_s + field;
    });
}

// The first group whose first name occurs in \a text.
std::size_t groupNamedIn(const PostalIndex &index, const QString &text)
{
    for (std::size_t k = 0; k < index.size(); ++k)
        if (!index[k].name.isEmpty() && text.contains(index[k].name))
            return k;
    return noGroup;
}

// For each length of a beginning of \a text, the first group whose second name occurs in that beginning.
std::vector<std::size_t> groupsByLength(const PostalIndex &index, const QString &text)
{
    std::vector<std::size_t> groups(static_cast<std::size_t>(text.size()) + 1, noGroup);
    for (std::size_t k = 0; k < index.size(); ++k) {
        const QString &name = index[k].shortName;
        const qsizetype at = name.isEmpty() ? -1 : text.indexOf(name);
        if (at >= 0) {
            std::size_t &first = groups[static_cast<std::size_t>(at + name.size())];
            first = std::min(first, k);
        }
    }
    for (std::size_t length = 1; length < groups.size(); ++length)
        groups[length] = std::min(groups[length], groups[length - 1]);
    return groups;
}

// First the group of the first name, then that of the second name in the whole text and, shortened by one
// character after the other, in its beginnings.
db::Status GroupSearch::run(const QString &text)
{
    if (text.isEmpty())
        return {};
    if (const std::size_t k = groupNamedIn(m_index, text); k != noGroup) {
        if (const db::Status searched = search(k, text); !searched || isOver())
            return searched;
    }
    const std::vector<std::size_t> groups = groupsByLength(m_index, text);
    for (std::size_t length = groups.size() - 1; length > 0 && groups[length] != noGroup; --length) {
        const QStringView beginning = QStringView(text).first(static_cast<qsizetype>(length));
        if (const db::Status searched = search(groups[length], beginning); !searched || isOver())
            return searched;
    }
    return {};
}

// The most specific area that a text begins with, the prefecture perhaps left out.
class BeginningSearch
{
public:
    BeginningSearch(const PostalData &data, const QString &text)
        : m_index(groupsOf(data))
        , m_text(text)
        , m_search(data, m_unwatched)
    {}

    // Empty when several codes are as likely.
    QString run();

private:
    void look(std::size_t k, bool shortened);

    const PostalIndex &m_index;
    const QString &m_text;
    db::Progress m_unwatched = db::unwatched;
    GroupSearch m_search;
    QString m_code;
    qsizetype m_length = 0;
    std::size_t m_group = noGroup; // of m_code
};

QString BeginningSearch::run()
{
    for (std::size_t k = 0; k < m_index.size(); ++k) {
        const PostalGroup &group = m_index[k];
        if (!group.name.isEmpty() && m_text.startsWith(group.name))
            look(k, false);
        else if (!group.shortName.isEmpty() && m_text.startsWith(group.shortName))
            look(k, true);
    }
    return m_code;
}

// Cities of the same name lie in several prefectures: without one, the city alone says nothing.
void BeginningSearch::look(std::size_t k, bool shortened)
{
    const QString &city = m_index[k].shortName;
    const auto compare = [&](const PostalRecord &record, const QString &address, const QString &) {
        const qsizetype at = shortened ? address.indexOf(city) : 0;
        const QStringView place = QStringView(address).sliced(std::max<qsizetype>(at, 0));
        const auto code = record.code();
        if (at < 0 || !code || (shortened && place == city) || place.size() < m_length ||
            !m_text.startsWith(place))
            return;
        const bool contradicts = place.size() == m_length && m_group != k && m_code != *code;
        m_code = contradicts ? QString() : *code;
        m_length = place.size();
        m_group = k;
    };
    if (!m_search.visit(k, compare))
        m_code.clear();
}

// --- Tables of comma-separated entries ---

db::Result<QByteArray> tableContent(const QString &fileName)
{
    const auto unreadable = [&](const QString &reason) {
        return db::Error{u"郵便番号表 "_s + QFileInfo(fileName).fileName() + u" を読み取れませんでした。("_s +
                         reason + u")"_s};
    };
    QFile file(fileName);
    // Opening a pipe would wait for its writer, a device has no end.
    if (!QFileInfo(fileName).isFile())
        return unreadable(u"ファイルがありません"_s);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file.errorString());
    if (file.size() > highestTableSize)
        return unreadable(u"大きすぎます"_s);
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return unreadable(file.errorString());
    return content;
}

db::Result<PostalFinds> searchEntries(const QString &fileName, const QString &text,
                                      const db::Progress &progress)
{
    const auto content = tableContent(fileName);
    if (!content)
        return content.error();
    PostalFinds finds;
    if (text.isEmpty())
        return finds;
    SequentialFields fields(*content);
    while (!finds.stopped && !fields.atEnd()) {
        const auto entry = text::fromCp932(fields.next().toByteArray());
        if (entry && !entry->isEmpty()) {
            const bool named = text.contains(*entry);
            if (named)
                finds.code = entry->first(std::min(codeLength, entry->size()));
            if (named || entry->contains(text))
                finds.lines += *entry;
        }
        finds.stopped = !progress(content->size() - fields.left(), content->size());
    }
    return finds;
}

} // namespace

QString postalSearchText(const QString &typed)
{
    const QString oaza = u"大字"_s;
    const qsizetype at = typed.indexOf(oaza);
    return at < 0 ? typed : typed.first(at) + typed.sliced(at + oaza.size());
}

QString postalCodeOf(const PostalData &data, const QString &address)
{
    const QString text = postalSearchText(address);
    const db::Progress unwatched = db::unwatched;
    GroupSearch search(data, unwatched);
    if (!search.run(text))
        return {};
    if (!search.finds.code.isEmpty())
        return search.finds.code;
    QString compact = text;
    compact.remove(u' ').remove(u'　');
    return BeginningSearch(data, compact).run();
}

db::Result<PostalFinds> searchAreas(const PostalData &data, const QString &text, const db::Progress &progress)
{
    GroupSearch search(data, progress);
    if (const db::Status searched = search.run(text); !searched)
        return searched.error();
    if (search.finds.stopped || !search.finds.lines.isEmpty())
        return search.finds;
    return searchEntries(inFolder(data, u"ZipCode1.txt"_s), text, progress);
}

db::Result<PostalFinds> searchOffices(const PostalData &data, const QString &text,
                                      const db::Progress &progress)
{
    return searchEntries(inFolder(data, u"ZIPCODE2.txt"_s), text, progress);
}

std::optional<QString> completePostalCode(const QString &typed)
{
    QString code = text::toHalfWidthAscii(typed).trimmed();
    // The hyphens that input methods deliver besides the full-width one.
    for (const QChar dash : u"‐‑‒–—―−ーｰ"_s)
        code.replace(dash, u'-');
    if (code.size() == codeLength && code[3] == u'-')
        code.remove(3, 1);
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (code.size() != codeLength - 1 || !std::all_of(code.cbegin(), code.cend(), isDigit))
        return std::nullopt;
    return hyphenated(code.toLatin1());
}

db::Result<QStringList> addressesOf(const PostalData &data, const QString &code)
{
    QByteArray digits = code.toLatin1();
    digits.replace('-', "");
    QStringList addresses;
    PostalAreas areas(inFolder(data, u"ZIPCODE.txt"_s));
    if (const db::Status opened = areas.open(); !opened)
        return opened.error();
    const db::Status read = areas.read(1, areas.count(), [&](const PostalRecord &record) {
        if (record.digits() != digits)
            return true;
        const auto field = record.field();
        const QString address = field ? PostalRecord::address(*field) : QString();
        if (!address.isEmpty() && !addresses.contains(address))
            addresses += address;
        return true;
    });
    if (!read)
        return read.error();
    return addresses;
}

bool shareAnArea(const PostalData &data, const QString &code, const QString &otherCode)
{
    const auto ones = addressesOf(data, code);
    const auto others = addressesOf(data, otherCode);
    return ones && others && std::any_of(ones->cbegin(), ones->cend(), [&](const QString &address) {
               return others->contains(address);
           });
}

} // namespace registers
