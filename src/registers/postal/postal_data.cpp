#include "registers/postal/postal_data.h"

#include "registers/postal/postal_groups.h"
#include "registers/postal/postal_origin.h"
#include "text/cp932.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int codeLength = 10;           // bytes; seven digits, filled up with blanks
constexpr int addressLength = 60;        // bytes
constexpr qsizetype comparedLength = 30; // characters in which a blank ends what is compared
constexpr std::size_t mostGroups = 50000;

// Texts in the files' code page.
class Encoder
{
public:
    QByteArray encoded(const QString &text)
    {
        if (const auto bytes = text::toCp932(text))
            return *bytes;
        ++m_replaced;
        QString known = text;
        // What input methods deliver for characters of the code page.
        static const auto twins = std::to_array<std::pair<QStringView, QStringView>>({{u"—", u"―"},
                                                                                      {u"𠮷", u"吉"},
                                                                                      {u"鷗", u"鴎"},
                                                                                      {u"頰", u"頬"},
                                                                                      {u"剝", u"剥"},
                                                                                      {u"塡", u"填"},
                                                                                      {u"蠟", u"蝋"},
                                                                                      {u"瘦", u"痩"},
                                                                                      {u"繫", u"繋"},
                                                                                      {u"麵", u"麺"},
                                                                                      {u"蟬", u"蝉"},
                                                                                      {u"簞", u"箪"}});
        for (const auto &[from, to] : twins)
            known.replace(from.toString(), to.toString());
        QByteArray bytes;
        for (qsizetype i = 0; i < known.size(); ++i) {
            const bool isPair = known[i].isHighSurrogate() && i + 1 < known.size();
            bytes += text::toCp932(QStringView(known).sliced(i, 1)).value_or(missingCharacter());
            i += isPair ? 1 : 0;
        }
        return bytes;
    }

    [[nodiscard]] qsizetype replaced() const { return m_replaced; }

private:
    // 〓, the mark that printers put in the place of a missing type.
    static QByteArray missingCharacter() { return QByteArrayLiteral("\x81\xac"); }

    qsizetype m_replaced = 0;
};

// One entry of a comma-separated file; the files know no doubled quotes.
QByteArray entry(const QString &code, QString text, Encoder &encoder)
{
    text.replace(u'"', u'”');
    return '"' + (withHyphen(code) + u"  "_s).toLatin1() + encoder.encoded(text) + "\"\r\n";
}

class AreaFiles
{
public:
    AreaFiles(const std::vector<PostalArea> &areas, Encoder &encoder)
        : m_areas(areas)
        , m_cities(postalCities(areas))
        , m_groups(m_cities)
        , m_encoder(encoder)
    {}

    base::Status make(const base::Progress &progress);
    [[nodiscard]] QByteArray nationwide() const;

    QByteArray table;
    QByteArray index;
    qsizetype shortened = 0;

    [[nodiscard]] qsizetype groups() const { return static_cast<qsizetype>(m_groups.size()); }
    [[nodiscard]] qsizetype records() const { return table.size() / (codeLength + addressLength); }

private:
    void add(const PostalRunRecord &record);

    const std::vector<PostalArea> &m_areas;
    std::vector<PostalCity> m_cities;
    PostalGroups m_groups;
    Encoder &m_encoder;
};

base::Status AreaFiles::make(const base::Progress &progress)
{
    if (m_groups.size() > mostGroups)
        return base::Error{u"市区町村が多すぎるため、郵便番号データを作成しませんでした。"_s};
    for (std::size_t k = 0; k < m_groups.size(); ++k) {
        if (!progress(static_cast<qint64>(k), groups()))
            return base::cancelled();
        const QString names = u"\"%1\",\"%2\","_s.arg(m_groups.name(k), m_groups.shortName(k));
        index += m_encoder.encoded(names) + QByteArray::number(records() + 1) + "\r\n";
        const std::vector<PostalRunRecord> run = m_groups.run(k);
        for (const PostalRunRecord &record : run)
            add(record);
    }
    return {};
}

void AreaFiles::add(const PostalRunRecord &record)
{
    QString place = record.place;
    place.replace(u' ', u'　');
    // What it loses at its front does not keep it from being found in an address.
    if (text::cp932Bytes(place) > addressLength)
        place.remove(0, prefectureOf(place).size());
    if (text::cp932Bytes(place) > addressLength) {
        place = text::leftCp932(place, addressLength);
        ++shortened;
    }
    const bool hasRoom = place.size() < comparedLength && !record.remark.isEmpty();
    const QString field = hasRoom ? text::leftCp932(place + u' ' + record.remark, addressLength) : place;
    table += record.code.toLatin1().leftJustified(codeLength, ' ');
    table += m_encoder.encoded(field).leftJustified(addressLength, ' ', true);
}

QByteArray AreaFiles::nationwide() const
{
    QByteArray content;
    for (const PostalArea &area : m_areas)
        content += entry(area.code, area.prefecture + area.city + area.town, m_encoder);
    return content;
}

QByteArray officesFile(const std::vector<PostalOffice> &offices, Encoder &encoder)
{
    QByteArray content;
    for (const PostalOffice &office : offices)
        content += entry(office.code, office.name + u'　' + office.address, encoder);
    return content;
}

QString originOf(PostalPublisher publisher, const QByteArray &content)
{
    const QString prefix = publisher == PostalPublisher::Dictionary ? u"dictionary:"_s : u"postal-service:"_s;
    return prefix + QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha1).toHex());
}

} // namespace

base::Result<PostalReport> writePostalData(const PostalSource &source, const QString &folder,
                                           const base::Progress &progress)
{
    Encoder encoder;
    PostalReport report;
    PostalOrigin origin = postalOriginOf(folder);
    std::vector<PostalFile> files;
    if (!source.areas.empty()) {
        AreaFiles areas(source.areas, encoder);
        if (const base::Status made = areas.make(progress); !made)
            return made.error();
        report.groups = areas.groups();
        report.records = areas.records();
        report.shortened = areas.shortened;
        origin.areas = originOf(source.areasFrom, areas.table);
        files.push_back({u"ZIPCODE.txt"_s, areas.table});
        files.push_back({u"ZIPID1.txt"_s, areas.index});
        files.push_back({u"ZipCode1.txt"_s, areas.nationwide()});
    }
    if (!source.offices.empty()) {
        const QByteArray offices = officesFile(source.offices, encoder);
        origin.offices = originOf(source.officesFrom, offices);
        files.push_back({u"ZIPCODE2.txt"_s, offices});
    }
    for (const char16_t *name : {u"ZIPCODE.txt", u"ZIPID1.txt", u"ZipCode1.txt", u"ZIPCODE2.txt"}) {
        const QString fileName = QString::fromUtf16(name);
        const auto isSame = [&](const PostalFile &file) { return file.name == fileName; };
        if (std::none_of(files.begin(), files.end(), isSame) &&
            !QFileInfo::exists(QDir(folder).filePath(fileName)))
            files.push_back({fileName, {}});
    }
    if (const base::Status replaced = replacePostalFiles(folder, files, origin); !replaced)
        return replaced.error();
    report.areas = static_cast<qsizetype>(source.areas.size());
    report.offices = static_cast<qsizetype>(source.offices.size());
    report.replaced = encoder.replaced();
    return report;
}

QString postalDoubt(const PostalSource &source)
{
    constexpr int allPrefectures = 47;
    // The postal service's list has had more than 120,000 areas for decades; one broken off on its way here
    // can reach into the last prefecture.
    constexpr std::size_t fewestAreas = 110'000;
    if (source.areas.empty())
        return {};
    if (source.prefectureCount() != allPrefectures)
        return u"選択したファイルには%1都道府県分の郵便番号しか含まれていません。"
               "更新すると、その他の都道府県の郵便番号は検索できなくなります。更新しますか？"_s.arg(
                   source.prefectureCount());
    if (source.areas.size() < fewestAreas)
        return u"選択したファイルには町域が %L1件しかありません。全国版は12万件以上あるため、"
               "ファイルが途中で切れている可能性があります。更新しますか？"_s.arg(source.areas.size());
    return {};
}

QString postalSummary(const PostalSource &source, const PostalReport &report)
{
    QStringList taken;
    if (report.areas > 0)
        taken += u"町域 %L1件"_s.arg(report.areas);
    if (report.offices > 0)
        taken += u"事業所 %L1件"_s.arg(report.offices);
    QString text = u"郵便番号データを更新しました。\n"_s + taken.join(u'、') + u"を取り込みました。"_s;
    if (report.shortened > 0)
        text += u"\n住所が長いため、%L1件を途中までとしました。"_s.arg(report.shortened);
    if (report.replaced > 0)
        text += u"\n使えない文字があるため、%L1件の文字を置き換えました。"_s.arg(report.replaced);
    if (source.refused.count() > 0)
        text += u"\n\n取り込まなかった行が %L1行あります。\n"_s.arg(source.refused.count()) +
                source.refused.summary().join(u'\n');
    return text;
}

} // namespace registers
