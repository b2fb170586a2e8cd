#include "registers/postal/postal_search.h"

#include "registers/postal/postal_folding.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr std::size_t noGroup = std::numeric_limits<std::size_t>::max();

} // namespace

QString postalFile(const PostalData &data, const QString &name)
{
    const bool ends = data.folder.endsWith(u'/') || data.folder.endsWith(u'\\');
    return ends ? data.folder + name : data.folder + u'/' + name;
}

const PostalIndex &postalGroups(const PostalData &data)
{
    static const PostalIndex none;
    return data.index ? *data.index : none;
}

QString withoutBlanks(QStringView text) { return text.toString().remove(u' ').remove(u'　'); }

PostalSearch::PostalSearch(const PostalData &data, const base::Progress &progress, Names names)
    : m_groups(names == Names::Folded ? postalGroups(data).folded() : postalGroups(data).groups())
    , m_progress(progress)
    , m_names(names)
    , m_areas(postalFile(data, u"ZIPCODE.txt"_s))
{}

QString PostalSearch::inOurNames(const QString &name) const
{
    return m_names == Names::Folded ? foldedPlace(name) : name;
}

base::Status PostalSearch::search(std::size_t k, QStringView text)
{
    if (!m_open) {
        if (const base::Status opened = m_areas.open(); !opened)
            return opened;
        m_open = true;
    }
    const qint64 first = m_groups[k].firstRecord;
    const qint64 last = k + 1 < m_groups.size() ? qint64(m_groups[k + 1].firstRecord) - 1 : m_areas.count();
    qint64 done = 0;
    return m_areas.read(first, last, [&](const PostalRecord &record) {
        finds.stopped = !m_progress(++done, last - first + 1);
        if (!finds.stopped)
            compare(k, record, text);
        return !finds.stopped;
    });
}

void PostalSearch::compare(std::size_t k, const PostalRecord &record, QStringView text)
{
    // A record that cannot be read, or has no address, is no area.
    const auto field = record.field();
    const QString area = field ? PostalRecord::address(*field) : QString();
    const QString address = inOurNames(area);
    if (address.isEmpty())
        return;
    const bool named = text.contains(address);
    if (!named && !address.contains(text))
        return;
    const auto code = record.code();
    if (!code)
        return;
    if (named)
        take(k, *code, area, address, text);
    finds.lines += *code + u"  "_s + *field;
}

// The last area that is met counts. In a group they stand from short to long.
void PostalSearch::take(std::size_t k, const QString &code, const QString &area, const QString &compared,
                        QStringView text)
{
    const qsizetype at = text.indexOf(compared);
    const qsizetype reached = withoutBlanks(text.first(at + compared.size())).size();
    const bool isAnother = code != finds.code && area != m_area;
    isDoubtful = m_names == Names::Folded && reached == reach && (isDoubtful || isAnother);
    finds.code = code;
    m_area = area;
    reach = reached;
    before = text.first(at).toString();
    isCityAlone = compared == m_groups[k].name || compared == m_groups[k].shortName;
}

// The first group whose first name occurs in \a text.
std::size_t PostalSearch::groupNamedIn(const QString &text) const
{
    for (std::size_t k = 0; k < m_groups.size(); ++k) {
        const QString &name = m_groups[k].name;
        if (!name.isEmpty() && text.contains(name))
            return k;
    }
    return noGroup;
}

// For each length of a beginning of \a text, the first group whose second name occurs in that beginning.
std::vector<std::size_t> PostalSearch::groupsByLength(const QString &text) const
{
    std::vector<std::size_t> groups(static_cast<std::size_t>(text.size()) + 1, noGroup);
    for (std::size_t k = 0; k < m_groups.size(); ++k) {
        const QString &name = m_groups[k].shortName;
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

base::Status PostalSearch::run(const QString &typed)
{
    const QString text = inOurNames(typed);
    if (text.isEmpty())
        return {};
    if (const std::size_t k = groupNamedIn(text); k != noGroup) {
        if (const base::Status searched = search(k, text); !searched || isOver())
            return searched;
    }
    const std::vector<std::size_t> groups = groupsByLength(text);
    for (std::size_t length = groups.size() - 1; length > 0 && groups[length] != noGroup; --length) {
        const QStringView beginning = QStringView(text).first(static_cast<qsizetype>(length));
        if (const base::Status searched = search(groups[length], beginning); !searched || isOver())
            return searched;
    }
    return {};
}

} // namespace registers
