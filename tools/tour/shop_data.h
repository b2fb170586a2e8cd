#pragma once

#include <QList>
#include <QString>

// What the clerk of the tour types on the shop's first day.
namespace tour
{

struct Customer
{
    const char16_t *name;
    const char16_t *kana; // as typed before the conversion
    const char16_t *name2;
    const char16_t *zip;
    const char16_t *address1;
    const char16_t *address2;
    const char16_t *telephone;
    const char16_t *category;
    int closingDay; // 0: month end
    int taxClass;   // 0 on delivery, 1 on the bill, 2 included
};

inline constexpr const char16_t *company1 = u"有限会社かんばん堂";
inline constexpr const char16_t *company2 = u"信州の味とご贈答";
inline constexpr const char16_t *employees[] = {u"小林　由美子", u"宮下　健一"};
inline constexpr const char16_t *categories[] = {u"一般のお客様", u"法人", u"お得意様"};
inline constexpr const char16_t *units[] = {u"箱", u"本", u"袋", u"枚"};
inline constexpr const char16_t *specifications[] = {u"５ｋｇ", u"１０ｋｇ", u"７２０ｍｌ",
                                                     u"贈答用化粧箱入"};
inline constexpr const char16_t *products[] = {
    u"信州りんご　サンふじ", u"シャインマスカット", u"日本酒　純米吟醸",
    u"信州そば　乾麺",       u"野沢菜漬",           u"のし紙",
};

inline constexpr Customer customers[] = {
    {u"山田　太郎", u"やまだたろう", u"", u"154-0017", u"東京都世田谷区世田谷1-2-3", u"", u"03-1234-5678",
     u"一般のお客様", 0, 0},
    {u"株式会社髙島商店", u"たかしましょうてん", u"仕入部", u"530-0001", u"大阪府大阪市北区梅田2-4-9",
     u"ブリーゼ大阪１２階", u"06-6345-0001", u"法人", 20, 1},
    {u"佐々木　花子", u"ささきはなこ", u"", u"980-0811", u"宮城県仙台市青葉区一番町3-7-1", u"",
     u"022-221-0002", u"お得意様", 0, 2},
    {u"鈴木　一郎", u"すずきいちろう", u"", u"420-0853", u"静岡県静岡市葵区追手町5-1", u"", u"054-254-0003",
     u"一般のお客様", 0, 0},
    {u"㈱宮﨑水産", u"みやざきすいさん", u"購買課", u"880-0805", u"宮崎県宮崎市橘通東1-9-10", u"",
     u"0985-26-0004", u"法人", 15, 0},
    {u"渡邊　恵子", u"わたなべけいこ", u"", u"060-0001", u"北海道札幌市中央区北一条西2-1",
     u"札幌時計台マンション３０５号", u"011-211-0005", u"一般のお客様", 0, 0},
    {u"有限会社みどり園", u"みどりえん", u"", u"600-8216", u"京都府京都市下京区東塩小路町721-1", u"",
     u"075-343-0006", u"法人", 25, 2},
    {u"中村　誠", u"なかむらまこと", u"", u"810-0001", u"福岡県福岡市中央区天神1-8-1", u"", u"092-711-0007",
     u"一般のお客様", 0, 0},
    {u"伊藤　久美子", u"いとうくみこ", u"", u"460-0008", u"愛知県名古屋市中区栄3-15-33", u"", u"052-241-0008",
     u"お得意様", 0, 0},
    {u"ホテル白樺", u"ほてるしらかば", u"調理部", u"391-0301", u"長野県茅野市北山4035-1", u"",
     u"0266-67-0009", u"法人", 10, 1},
    {u"小林　浩", u"こばやしひろし", u"", u"380-0821", u"長野県長野市上千歳町1137-23", u"", u"026-224-0010",
     u"お得意様", 0, 0},
    {u"加藤　幸子", u"かとうさちこ", u"", u"231-0005", u"神奈川県横浜市中区本町6-50-10", u"", u"045-671-0011",
     u"一般のお客様", 0, 0},
    {u"株式会社アルプス食品", u"あるぷすしょくひん", u"営業第二課", u"390-0811", u"長野県松本市中央1-18-1",
     u"Ｍウイング５階", u"0263-32-0012", u"法人", 0, 1},
    {u"吉田　直樹", u"よしだなおき", u"", u"330-0854", u"埼玉県さいたま市大宮区桜木町1-7-5", u"",
     u"048-643-0013", u"一般のお客様", 0, 0},
    {u"松本　美咲", u"まつもとみさき", u"", u"730-0011", u"広島県広島市中区基町6-78", u"", u"082-228-0014",
     u"一般のお客様", 0, 2},
    {u"清水　明美", u"しみずあけみ", u"", u"950-0087", u"新潟県新潟市中央区東大通1-1-1", u"", u"025-245-0015",
     u"お得意様", 0, 0},
    {u"喫茶キャッチー", u"きゃっちー", u"", u"650-0021", u"兵庫県神戸市中央区三宮町1-5-1", u"",
     u"078-391-0016", u"法人", 30, 0},
    {u"森　陽子", u"もりようこ", u"", u"760-0023", u"香川県高松市寿町1-3-2", u"", u"087-821-0017",
     u"一般のお客様", 0, 0},
    {u"長谷川　修", u"はせがわおさむ", u"", u"900-0015", u"沖縄県那覇市久茂地1-1-1", u"", u"098-867-0018",
     u"一般のお客様", 0, 0},
    {u"石井　和夫", u"いしいかずお", u"", u"260-0013", u"千葉県千葉市中央区中央2-5-1",
     u"千葉中央ツインビル２号館", u"043-224-0019", u"お得意様", 0, 0},
};

struct Supplier
{
    const char16_t *code;
    const char16_t *name;
    const char16_t *contact;
    const char16_t *zip;
    const char16_t *address1;
    const char16_t *telephone;
    const char16_t *payment;
    const char16_t *bank;
    int taxClass;
    const char16_t *registration; // a number, or what is chosen without one; empty: nothing is known
};

inline constexpr Supplier suppliers[] = {
    {u"S01", u"安曇野　果樹園", u"丸山", u"399-8303", u"長野県安曇野市穂高5521", u"0263-82-0101",
     u"月末締め翌月末振込", u"安曇野農協　穂高支所　普通　0012345", 0, u"登録なし"},
    {u"S02", u"株式会社千曲醸造", u"営業部　滝沢", u"387-0013", u"長野県千曲市小島3131", u"026-272-0102",
     u"２０日締め翌月１０日振込", u"八十二銀行　屋代支店　当座　2233445", 1, u"T9234567890123"},
    {u"S03", u"戸隠そば製粉所", u"武井", u"381-4101", u"長野県長野市戸隠3506", u"026-254-0103", u"納品時現金",
     u"", 2, u""},
};

struct Line
{
    int product;
    int specification; // -1: none
    const char16_t *quantity;
    int unit;
    const char16_t *price;
};

struct Slip
{
    const char16_t *customerKey; // what the clerk searches for
    QList<Line> lines;
    const char16_t *total; // the total that the screen must show before the tax
    const char16_t *tax;   // the tax that the screen must show
};

/// Ten slips over all three tax classes at 10 %. The last one has so many lines that its note takes three
/// pages.
inline QList<Slip> slips()
{
    QList<Line> many;
    for (int i = 0; i < 45; ++i)
        many << Line{i % 6, i % 4, u"2", i % 4, u"1,250"};
    return {
        {u"やまだ", {{0, 0, u"2", 0, u"3,980"}, {5, -1, u"2", 3, u"30"}}, u"8,020", u"802"},
        {u"髙島", {{0, 1, u"１０", 0, u"７２００"}, {3, 3, u"20", 0, u"2150"}}, u"115,000", u""},
        {u"ﾊﾅｺ", {{2, 2, u"3", 1, u"1,850"}}, u"5,550", u"504.545454545"},
        {u"054-254", {{1, -1, u"1", 0, u"5800"}, {4, -1, u"2.5", 2, u"101"}}, u"6,052", u"605"},
        {u"みやざき", {{0, 0, u"4", 0, u"3,980"}}, u"15,920", u"1,592"},
        {u"わたなべ",
         {{3, 3, u"1", 0, u"3,240"}, {4, -1, u"3", 2, u"540"}, {5, -1, u"4", 3, u"30"}},
         u"4,980",
         u"498"},
        {u"みどり園", {{0, 1, u"2", 0, u"7,200"}}, u"14,400", u"1309.09090909"},
        {u"しらかば", {{2, 2, u"12", 1, u"1,680"}, {4, -1, u"10", 2, u"480"}}, u"24,960", u""},
        {u"小林浩", {{5, -1, u"1", 3, u"9"}}, u"9", u"0"},
        {u"いしい", many, u"112,500", u"11,250"},
    };
}

} // namespace tour
