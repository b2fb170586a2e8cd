#include "registers/postal/postal_lookup.h"

#include "registers/postal/postal_areas.h"
#include "registers/postal/postal_search.h"
#include "text/cp932.h"
#include "text/sequential_fields.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr qsizetype codeLength = 8; // "NNN-NNNN"
// Many times the nationwide tables.
constexpr qint64 highestTableSize = 256 * 1024 * 1024; // bytes

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

// Several questions are asked of it about one address.
base::Result<QByteArray> nationwideTable(const PostalData &data)
{
    if (!data.nationwide) {
        auto content = tableContent(postalFile(data, u"ZipCode1.txt"_s));
        if (!content)
            return content.error();
        data.nationwide = std::move(*content);
    }
    return *data.nationwide;
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

} // namespace

base::Result<PostalFinds> searchAreas(const PostalData &data, const QString &text,
                                      const base::Progress &progress)
{
    PostalSearch search(data, progress);
    const QString known = inWardsOfTheList(data, text);
    if (const base::Status searched = search.run(known); !searched)
        return searched.error();
    if (search.finds.stopped || !search.finds.lines.isEmpty())
        return search.finds;
    return searchEntries(postalFile(data, u"ZipCode1.txt"_s), known, progress);
}

base::Result<PostalFinds> searchOffices(const PostalData &data, const QString &text,
                                        const base::Progress &progress)
{
    return searchEntries(postalFile(data, u"ZIPCODE2.txt"_s), text, progress);
}

base::Result<QStringList> addressesOf(const PostalData &data, const QString &code)
{
    const auto content = nationwideTable(data);
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

namespace
{

bool isCity(const PostalData &data, const QString &address)
{
    return std::ranges::find(postalGroups(data).groups(), address, &PostalGroup::name) !=
           postalGroups(data).groups().end();
}

} // namespace

bool isOfWholeCity(const PostalData &data, const QString &code)
{
    const auto areas = addressesOf(data, code);
    return areas && std::any_of(areas->cbegin(), areas->cend(),
                                [&](const QString &area) { return isCity(data, area); });
}

bool isGeneralFor(const PostalData &data, const QString &code, const QString &standing)
{
    const auto general = addressesOf(data, code);
    const auto areas = addressesOf(data, standing);
    if (!general || !areas)
        return false;
    return std::any_of(general->cbegin(), general->cend(), [&](const QString &city) {
        const bool holdsStanding =
            areas->isEmpty() || std::any_of(areas->cbegin(), areas->cend(),
                                            [&](const QString &area) { return area.startsWith(city); });
        return holdsStanding && isCity(data, city);
    });
}

} // namespace registers
