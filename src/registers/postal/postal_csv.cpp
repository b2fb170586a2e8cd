#include "registers/postal/postal_csv.h"

#include "tables/csv_reader.h"
#include "tables/text_file.h"

#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// Several times the largest of the lists.
constexpr qint64 highestSize = 128 * 1024 * 1024; // bytes
constexpr qsizetype areaColumns = 15;
constexpr qsizetype officeColumns = 13;
// A list that is cut short in its quotes or brackets must not gather up without end.
constexpr qsizetype longestTown = 4000; // characters

// Takes the lines of both lists in their order.
class CsvLines
{
public:
    void take(const QStringList &fields, int line)
    {
        if (fields.size() == areaColumns) {
            takeArea(fields, line);
        } else if (fields.size() == officeColumns) {
            takeOffice(fields, line);
        } else {
            source.refused.add(u"列の数が15でも13でもない"_s, line);
        }
    }

    /// A town whose brackets never closed goes out as it stands.
    void finish()
    {
        if (m_open.code.isEmpty())
            return;
        m_open.town = townOfCsv(m_open.town, m_open.city);
        source.areas.push_back(m_open);
        m_open = {};
    }

    PostalSource source;

private:
    void takeArea(const QStringList &fields, int line);
    void takeOffice(const QStringList &fields, int line);

    PostalArea m_open; // its town goes on in the next line
};

void CsvLines::takeArea(const QStringList &fields, int line)
{
    PostalArea area{fields[2], fields[6], fields[7], fields[8]};
    if (!isPostalCode(area.code)) {
        source.refused.add(u"郵便番号が7桁の数字ではない"_s, line);
        return;
    }
    if (prefectureOf(area.prefecture).size() != area.prefecture.size() || area.prefecture.isEmpty() ||
        area.city.isEmpty()) {
        source.refused.add(u"都道府県名か市区町村名が正しくない"_s, line);
        return;
    }
    if (fields[13] == u'2') {
        source.refused.add(u"廃止された番号"_s, line);
        return;
    }
    if (m_open.code == area.code && m_open.city == area.city && m_open.town.size() < longestTown)
        area.town.prepend(m_open.town);
    else
        finish();
    m_open = area;
    if (area.town.count(u'（') <= area.town.count(u'）'))
        finish();
}

void CsvLines::takeOffice(const QStringList &fields, int line)
{
    if (!isPostalCode(fields[7])) {
        source.refused.add(u"郵便番号が7桁の数字ではない"_s, line);
        return;
    }
    if (fields[2].isEmpty()) {
        source.refused.add(u"事業所名がない"_s, line);
        return;
    }
    source.offices.push_back({fields[7], fields[2], fields[3] + fields[4] + fields[5] + fields[6]});
}

} // namespace

QString townOfCsv(const QString &written, const QString &city)
{
    static const QRegularExpression note(u"（[^（）]*(）|$)"_s);
    static const QRegularExpression floor(u"（[０-９]+階）$"_s);
    QString town = written;
    if (floor.match(town).hasMatch())
        town.remove(u'（').remove(u'）');
    // Brackets within brackets are gone after a second round.
    for (qsizetype before = -1; before != town.size();) {
        before = town.size();
        town.remove(note);
    }
    if (town == u"以下に掲載がない場合"_s || town.contains(u"の次に"_s))
        return {};
    // "小笠原村一円": the whole village. 一円 alone is a town in its own right.
    if (town.endsWith(u"一円"_s) && town.size() > 2 && city.endsWith(QStringView(town).chopped(2)))
        return {};
    return town;
}

base::Result<PostalSource> readPostalCsv(const QString &fileName, const base::Progress &progress)
{
    const auto content = tables::readTextFile(fileName, highestSize);
    const auto notAList = [&] {
        return base::Error{u"ファイル「%1」は郵便番号データ（utf_ken_all.csv、KEN_ALL.CSV、JIGYOSYO.CSV）では"
                           "ないため、読み込みませんでした。ダウンロードしたファイルが圧縮されているときは、"
                           "展開してからお試しください。"_s.arg(QFileInfo(fileName).fileName())};
    };
    if (!content) {
        // What can be read and is no text is none of the lists; they come compressed, too.
        const QFileInfo file(fileName);
        return file.isFile() && file.isReadable() && file.size() <= highestSize ? notAList()
                                                                                : content.error();
    }
    tables::CsvReader reader(*content);
    CsvLines lines;
    lines.source.areasFrom = lines.source.officesFrom = PostalPublisher::PostalService;
    QStringList fields;
    qint64 characters = 0;
    while (reader.next(fields)) {
        lines.take(fields, reader.line());
        for (const QString &field : std::as_const(fields))
            characters += field.size() + 1;
        if (!progress(characters, content->size()))
            return base::cancelled();
    }
    lines.finish();
    if (lines.source.areas.empty() && lines.source.offices.empty())
        return notAList();
    return std::move(lines.source);
}

} // namespace registers
