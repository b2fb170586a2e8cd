#include "registers/postal/postal_dictionaries.h"

#include "registers/postal/postal_wards.h"
#include "text/euc_jp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStringDecoder>

#include <functional>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// Many times what the country needs.
constexpr qint64 highestSize = 64 * 1024 * 1024; // bytes

base::Error unreadable(const QString &fileName, const QString &reason)
{
    return {u"郵便番号の辞書「%1」を読み取れませんでした。(%2)"_s.arg(fileName, reason)};
}

base::Result<QString> textOf(const QString &fileName)
{
    // Opening a pipe would wait for its writer, a device has no end.
    if (!QFileInfo(fileName).isFile())
        return unreadable(fileName, u"ファイルがありません"_s);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(fileName, file.errorString());
    if (file.size() > highestSize)
        return unreadable(fileName, u"大きすぎます"_s);
    const QByteArray content = file.readAll();
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(content);
    if (!utf8.hasError())
        return text;
    if (auto decoded = text::fromEucJp(content))
        return *std::move(decoded);
    return unreadable(fileName, u"文字コードが違います"_s);
}

using Entry = std::function<void(QStringView code, QStringView words, int line)>;

// Shows each candidate of the dictionary's lines "code /candidate;annotation/candidate/".
void readEntries(const QString &text, PostalRefusals &refused, const Entry &show)
{
    int number = 0;
    for (QStringView line : QStringTokenizer(text, u'\n')) {
        ++number;
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(u';'))
            continue;
        const qsizetype blank = line.indexOf(u' ');
        const QStringView code = line.first(std::max<qsizetype>(blank, 0));
        const QStringView candidates = line.sliced(blank + 1);
        if (!isPostalCode(code) || candidates.size() < 3 || !candidates.startsWith(u'/') ||
            !candidates.endsWith(u'/')) {
            refused.add(u"「番号 /住所/」の形ではない"_s, number);
            continue;
        }
        for (QStringView words : candidates.sliced(1).chopped(1).tokenize(u'/')) {
            const qsizetype annotation = words.indexOf(u';');
            show(code, annotation < 0 ? words : words.first(annotation), number);
        }
    }
}

// The dictionary has taken the brackets of the official notes apart, which left some odd ends.
QString cleanedTown(QStringView rest)
{
    QString town = rest.toString();
    town.remove(u"）（"_s).remove(u"大字"_s);
    if (town.contains(u"の次に"_s))
        return {};
    if (town.endsWith(u"番地のみ"_s))
        town.chop(4);
    return town;
}

// Where the city of \a address ends: with the shortest address of the list that it begins with.
qsizetype cityEnd(QStringView address, qsizetype prefecture, const QSet<QStringView> &addresses)
{
    static const QString endings = u"市区町村"_s;
    for (qsizetype end = prefecture + 2; end <= address.size(); ++end)
        if (endings.contains(address[end - 1]) && addresses.contains(address.first(end)))
            return end;
    return 0;
}

void addInWardOfToday(PostalSource &source, PostalArea area)
{
    if (area.town.isEmpty() && isDividedWard(area.city))
        return;
    area.city = withWardOfToday(area.city + area.town).chopped(area.town.size());
    source.areas.push_back(std::move(area));
}

} // namespace

PostalSource areasOfDictionary(const QString &text)
{
    PostalSource source;
    QSet<QStringView> addresses;
    PostalRefusals reportedBelow;
    readEntries(text, reportedBelow,
                [&](QStringView, QStringView address, int) { addresses.insert(address); });
    readEntries(text, source.refused, [&](QStringView code, QStringView address, int line) {
        const QStringView prefecture = prefectureOf(address);
        if (prefecture.isEmpty()) {
            source.refused.add(u"都道府県がない"_s, line);
            return;
        }
        const qsizetype end = cityEnd(address, prefecture.size(), addresses);
        if (end == 0) {
            source.refused.add(u"市区町村が分からない"_s, line);
            return;
        }
        addInWardOfToday(source, {code.toString(), prefecture.toString(),
                                  address.first(end).sliced(prefecture.size()).toString(),
                                  cleanedTown(address.sliced(end))});
    });
    return source;
}

PostalSource officesOfDictionary(const QString &text)
{
    PostalSource source;
    readEntries(text, source.refused, [&](QStringView code, QStringView words, int line) {
        const QString separator = u" @ "_s;
        const qsizetype at = words.indexOf(separator);
        if (at < 1) {
            source.refused.add(u"「事業所名 @ 住所」の形ではない"_s, line);
            return;
        }
        source.offices.push_back({code.toString(), words.first(at).toString(),
                                  withWardOfToday(words.sliced(at + separator.size()).toString())});
    });
    return source;
}

base::Result<PostalSource> readPostalDictionaries(const QString &folder, const base::Progress &progress)
{
    const QDir dir(folder);
    PostalSource source;
    const auto read = [&](const QString &name, PostalSource (*parse)(const QString &)) -> base::Status {
        const QString fileName = dir.filePath(name);
        const auto text = textOf(fileName);
        if (!text)
            return text.error();
        PostalSource part = parse(*text);
        if (part.areas.empty() && part.offices.empty())
            return unreadable(fileName, u"郵便番号の辞書ではありません"_s);
        source.add(std::move(part));
        return progress(0, 0) ? base::Status() : base::cancelled();
    };
    if (const base::Status done = read(u"SKK-JISYO.zipcode"_s, areasOfDictionary); !done)
        return done.error();
    if (const base::Status done = read(u"SKK-JISYO.office.zipcode"_s, officesOfDictionary); !done)
        return done.error();
    return source;
}

} // namespace registers
