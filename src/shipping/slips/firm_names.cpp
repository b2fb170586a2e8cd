#include "shipping/slips/firm_names.h"

#include "text/width.h"

#include <QRegularExpression>

#include <algorithm>
#include <string_view>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

// As they stand in full width.
constexpr QStringView anywhere[] = {
    u"株式会社", u"有限会社",   u"合資会社", u"合名会社", u"合同会社", u"相互会社",   u"㈱",
    u"㈲",       u"（株",       u"（有",     u"（資",     u"（名",     u"（同",       u"（社",
    u"（財",     u"（医",       u"法人",     u"ＮＰＯ",   u"非営利",   u"独立行政",   u"協同組合",
    u"商工会",   u"（カ）",     u"（ユ）",   u"カ）",     u"Ｃｏ．",   u"Ｌｔｄ",     u"Ｉｎｃ",
    u"ＬＬＣ",   u"㈳",         u"㈶",       u"㍿",       u"ホテル",   u"レストラン", u"カフェ",
    u"スーパー", u"クリニック", u"センター", u"サービス", u"ストア",   u"マート",     u"ショップ",
    u"クラブ",   u"ペンション", u"スナック", u"喫茶",     u"居酒屋",   u"旅館",       u"民宿",
    u"食堂",     u"病院",       u"農協",     u"漁協",     u"生協"};

constexpr QStringView atEnd[] = {
    u"店",     u"会",   u"商会",   u"商事",   u"工業",   u"産業",   u"興業",   u"製作所", u"製菓",
    u"食品",   u"物産", u"農園",   u"果樹園", u"医院",   u"診療所", u"歯科",   u"薬局",   u"大学",
    u"学校",   u"高校", u"中学",   u"学園",   u"幼稚園", u"保育園", u"市役所", u"区役所", u"町役場",
    u"村役場", u"役所", u"役場",   u"県庁",   u"税務署", u"警察署", u"消防署", u"郵便局", u"銀行",
    u"金庫",   u"組合", u"事務所", u"研究所", u"工場",   u"美容室", u"理容室", u"神社",   u"教会",
    u"建設",   u"運送", u"電機",   u"不動産", u"酒造",   u"醸造",   u"出版社", u"新聞社", u"倶楽部",
    u"機構",   u"連盟", u"財団",   u"公社",   u"事業団", u"学院",   u"保健所", u"裁判所"};

// Ends of firms that are ends of family names, too: 土屋, 小園. With three characters and more they are
// firms'.
constexpr QStringView atEndOfLonger[] = {u"屋", u"園", u"堂", u"亭", u"庵", u"舎", u"館", u"社"};

constexpr QStringView sections[] = {u"部",     u"課",       u"係",     u"室",   u"支店", u"支社", u"支所",
                                    u"営業所", u"出張所",   u"事業所", u"本部", u"本店", u"工場", u"センター",
                                    u"窓口",   u"グループ", u"チーム", u"売場", u"局",   u"科"};

// Family names that end as sections do.
constexpr QStringView families[] = {
    u"阿部",   u"安部",   u"服部",   u"渡部",   u"岡部",     u"矢部",     u"磯部", u"田部", u"園部",
    u"綾部",   u"物部",   u"海部",   u"江部",   u"刑部",     u"卜部",     u"占部", u"戸部", u"真部",
    u"武部",   u"建部",   u"宮部",   u"南部",   u"石部",     u"池部",     u"神部", u"草部", u"坂部",
    u"高部",   u"林部",   u"吉部",   u"軽部",   u"伊部",     u"間部",     u"児部", u"黒部", u"長部",
    u"長谷部", u"日下部", u"曽我部", u"春日部", u"長宗我部", u"長曽我部", u"小室", u"大室", u"氷室",
    u"三室",   u"岩室",   u"仁科",   u"山科",   u"倉科",     u"更科",     u"保科", u"明科", u"蓼科"};

constexpr QStringView titles[] = {
    u"社長",   u"会長",   u"部長",   u"課長", u"係長",   u"店長",     u"所長",        u"院長",   u"園長",
    u"校長",   u"室長",   u"局長",   u"場長", u"理事長", u"館長",     u"組合長",      u"班長",   u"次長",
    u"学長",   u"取締役", u"代表",   u"専務", u"常務",   u"理事",     u"監事",        u"責任者", u"主任",
    u"支配人", u"顧問",   u"相談役", u"役員", u"店主",   u"リーダー", u"マネージャー"};

template <std::size_t Count>
bool endsWithOneOf(const QString &name, const QStringView (&ends)[Count])
{
    return std::ranges::any_of(
        ends, [&](QStringView end) { return name.size() > end.size() && name.endsWith(end); });
}

/// Full width, and without blanks: a clerk puts them anywhere.
QString folded(const QString &name)
{
    static const QRegularExpression blanks(u"\\s+"_s);
    return text::toFullWidth(name).remove(blanks);
}

} // namespace

bool isFirm(const QString &name)
{
    const QString whole = folded(name);
    const bool holdsOne =
        std::ranges::any_of(anywhere, [&](QStringView word) { return whole.contains(word); });
    // 山田　屋 would be a person of that name.
    const bool oneWord = !text::toFullWidth(name).trimmed().contains(u'　');
    return holdsOne || endsWithOneOf(whole, atEnd) ||
           (oneWord && whole.size() > 2 && endsWithOneOf(whole, atEndOfLonger));
}

bool isSection(const QString &name)
{
    const QString last = text::toFullWidth(name.simplified()).section(u'　', -1);
    const bool isFamily = std::ranges::find(families, last) != std::end(families);
    return !isFamily && endsWithOneOf(folded(name), sections);
}

bool isTitle(const QString &name)
{
    const QString whole = folded(name.section(u'　', -1));
    return std::ranges::any_of(titles, [&](QStringView end) { return whole.endsWith(end); });
}

} // namespace shipping
