#include "registers/postal/postal_lookup.h"

#include "registers/postal/postal_areas.h"
#include "registers/postal/prefectures.h"
#include "text/cp932.h"
#include "text/sequential_fields.h"
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

QString withoutBlanks(QStringView text) { return text.toString().remove(u' ').remove(u'　'); }

// The areas of one group after the other, as long as the search goes on.
class GroupSearch
{
public:
    GroupSearch(const PostalData &data, const base::Progress &progress)
        : m_index(groupsOf(data))
        , m_progress(progress)
        , m_areas(inFolder(data, u"ZIPCODE.txt"_s))
    {}

    base::Status run(const QString &text);

    PostalFinds finds;
    /// Up to where in the text the area of the code reaches, in characters, blanks aside.
    qsizetype reach = 0;
    /// What stands before that area in the text.
    QString before;

private:
    [[nodiscard]] bool isOver() const { return finds.stopped || !finds.lines.isEmpty(); }
    base::Status search(std::size_t k, QStringView text);
    void compare(const PostalRecord &record, QStringView text);

    const PostalIndex &m_index;
    const base::Progress &m_progress;
    PostalAreas m_areas;
    bool m_open = false;
};

base::Status GroupSearch::search(std::size_t k, QStringView text)
{
    if (!m_open) {
        if (const base::Status opened = m_areas.open(); !opened)
            return opened;
        m_open = true;
    }
    const qint64 first = m_index[k].firstRecord;
    const qint64 last = k + 1 < m_index.size() ? qint64(m_index[k + 1].firstRecord) - 1 : m_areas.count();
    qint64 done = 0;
    return m_areas.read(first, last, [&](const PostalRecord &record) {
        finds.stopped = !m_progress(++done, last - first + 1);
        if (!finds.stopped)
            compare(record, text);
        return !finds.stopped;
    });
}

void GroupSearch::compare(const PostalRecord &record, QStringView text)
{
    // A record that cannot be read, or has no address, is no area.
    const auto field = record.field();
    const QString address = field ? PostalRecord::address(*field) : QString();
    if (address.isEmpty())
        return;
    const bool named = text.contains(address);
    if (!named && !address.contains(text))
        return;
    const auto code = record.code();
    if (!code)
        return;
    if (named) {
        finds.code = *code;
        const qsizetype at = text.indexOf(address);
        reach = withoutBlanks(text.first(at + address.size())).size();
        before = text.first(at).toString();
    }
    finds.lines += *code + u"  "_s + *field;
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
base::Status GroupSearch::run(const QString &text)
{
    if (text.isEmpty())
        return {};
    if (const std::size_t k = groupNamedIn(m_index, text); k != noGroup) {
        if (const base::Status searched = search(k, text); !searched || isOver())
            return searched;
    }
    const std::vector<std::size_t> groups = groupsByLength(m_index, text);
    for (std::size_t length = groups.size() - 1; length > 0 && groups[length] != noGroup; --length) {
        const QStringView beginning = QStringView(text).first(static_cast<qsizetype>(length));
        if (const base::Status searched = search(groups[length], beginning); !searched || isOver())
            return searched;
    }
    return {};
}

// --- Tables of comma-separated entries ---

base::Result<QByteArray> tableContent(const QString &fileName)
{
    const auto unreadable = [&](const QString &reason) {
        return base::Error{u"郵便番号表 "_s + QFileInfo(fileName).fileName() +
                           u" を読み取れませんでした。("_s + reason + u")"_s};
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

base::Result<PostalFinds> searchEntries(const QString &fileName, const QString &text,
                                        const base::Progress &progress)
{
    const auto content = tableContent(fileName);
    if (!content)
        return content.error();
    PostalFinds finds;
    if (text.isEmpty())
        return finds;
    text::SequentialFields fields(*content);
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

// The prefecture written first in \a text (東京都 in 東京都府中市, in which 京都府 stands too); empty: none.
QStringView prefectureIn(const QString &text)
{
    QStringView first;
    qsizetype firstAt = text.size();
    for (const QStringView prefecture : prefectures) {
        const qsizetype at = text.indexOf(prefecture);
        if (at >= 0 && at < firstAt) {
            firstAt = at;
            first = prefecture;
        }
    }
    return first;
}

// Whether the area that was found lies in another prefecture than the one written \a before it.
bool liesElsewhere(const PostalData &data, const QString &code, const QString &before)
{
    const QStringView written = prefectureIn(before);
    if (written.isEmpty())
        return false;
    const auto areas = addressesOf(data, code);
    return areas && !areas->isEmpty() &&
           std::none_of(areas->cbegin(), areas->cend(),
                        [&](const QString &area) { return area.startsWith(written); });
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
    const base::Progress unwatched = base::unwatched;
    GroupSearch typed(data, unwatched);
    if (!typed.run(text))
        return {};
    // Few of the table's addresses hold blanks; typed ones may, between their parts. As it is typed such an
    // address often names no more than its city.
    const QString compact = withoutBlanks(text);
    GroupSearch joined(data, unwatched);
    const bool reachesFurther = compact != text && joined.run(compact) && joined.reach > typed.reach;
    const GroupSearch &found = reachesFurther ? joined : typed;
    return liesElsewhere(data, found.finds.code, found.before) ? QString() : found.finds.code;
}

base::Result<PostalFinds> searchAreas(const PostalData &data, const QString &text,
                                      const base::Progress &progress)
{
    GroupSearch search(data, progress);
    if (const base::Status searched = search.run(text); !searched)
        return searched.error();
    if (search.finds.stopped || !search.finds.lines.isEmpty())
        return search.finds;
    return searchEntries(inFolder(data, u"ZipCode1.txt"_s), text, progress);
}

base::Result<PostalFinds> searchOffices(const PostalData &data, const QString &text,
                                        const base::Progress &progress)
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
    return hyphenated(code.toLatin1());
}

base::Result<QStringList> addressesOf(const PostalData &data, const QString &code)
{
    const auto content = tableContent(inFolder(data, u"ZipCode1.txt"_s));
    if (!content)
        return content.error();
    const QByteArray wanted = code.toLatin1();
    QStringList addresses;
    // Looking for the code's bytes is many times faster than taking all fields apart.
    for (qsizetype at = 0; wanted.size() == codeLength && (at = content->indexOf(wanted, at)) >= 0; ++at) {
        const char before = at > 0 ? content->at(at - 1) : '\n';
        if (!QByteArrayView("\",\r\n").contains(before))
            continue;
        text::SequentialFields fields(QByteArrayView(*content).sliced(before == '"' ? at - 1 : at));
        const auto entry = text::fromCp932(fields.next().toByteArray());
        const QString address = entry ? entry->sliced(codeLength).trimmed() : QString();
        if (!address.isEmpty() && !addresses.contains(address))
            addresses += address;
    }
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

bool isGeneralFor(const PostalData &data, const QString &code, const QString &standing)
{
    const auto general = addressesOf(data, code);
    const auto areas = addressesOf(data, standing);
    if (!general || !areas)
        return false;
    const PostalIndex &groups = groupsOf(data);
    return std::any_of(general->cbegin(), general->cend(), [&](const QString &city) {
        const bool isCity = std::any_of(groups.cbegin(), groups.cend(),
                                        [&](const PostalGroup &group) { return group.name == city; });
        const bool holdsStanding =
            areas->isEmpty() || std::any_of(areas->cbegin(), areas->cend(),
                                            [&](const QString &area) { return area.startsWith(city); });
        return isCity && holdsStanding;
    });
}

} // namespace registers
