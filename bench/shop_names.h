#pragma once

#include <array>
#include <string_view>

// The stuff that generated shops are made of: common surnames, given names, places and goods.
namespace bench
{

struct Named
{
    std::string_view text;
    std::string_view reading; // half-width katakana
};

inline constexpr std::array surnames{
    Named{"佐藤", "ｻﾄｳ"},   Named{"鈴木", "ｽｽﾞｷ"},  Named{"高橋", "ﾀｶﾊｼ"}, Named{"田中", "ﾀﾅｶ"},
    Named{"伊藤", "ｲﾄｳ"},   Named{"渡辺", "ﾜﾀﾅﾍﾞ"}, Named{"山本", "ﾔﾏﾓﾄ"}, Named{"中村", "ﾅｶﾑﾗ"},
    Named{"小林", "ｺﾊﾞﾔｼ"}, Named{"加藤", "ｶﾄｳ"},   Named{"吉田", "ﾖｼﾀﾞ"}, Named{"山田", "ﾔﾏﾀﾞ"},
    Named{"佐々木", "ｻｻｷ"}, Named{"山口", "ﾔﾏｸﾞﾁ"}, Named{"松本", "ﾏﾂﾓﾄ"}, Named{"井上", "ｲﾉｳｴ"},
    Named{"木村", "ｷﾑﾗ"},   Named{"林", "ﾊﾔｼ"},     Named{"斎藤", "ｻｲﾄｳ"}, Named{"清水", "ｼﾐｽﾞ"},
    Named{"山崎", "ﾔﾏｻﾞｷ"}, Named{"森", "ﾓﾘ"},      Named{"池田", "ｲｹﾀﾞ"}, Named{"橋本", "ﾊｼﾓﾄ"},
    Named{"阿部", "ｱﾍﾞ"},   Named{"石川", "ｲｼｶﾜ"},  Named{"前田", "ﾏｴﾀﾞ"}, Named{"藤田", "ﾌｼﾞﾀ"},
    Named{"小川", "ｵｶﾞﾜ"},  Named{"岡田", "ｵｶﾀﾞ"},  Named{"後藤", "ｺﾞﾄｳ"}, Named{"長谷川", "ﾊｾｶﾞﾜ"},
    Named{"村上", "ﾑﾗｶﾐ"},  Named{"近藤", "ｺﾝﾄﾞｳ"}, Named{"石井", "ｲｼｲ"},  Named{"髙島", "ﾀｶｼﾏ"},
    Named{"坂本", "ｻｶﾓﾄ"},  Named{"遠藤", "ｴﾝﾄﾞｳ"}, Named{"青木", "ｱｵｷ"},  Named{"藤井", "ﾌｼﾞｲ"},
};

inline constexpr std::array givenNames{
    Named{"太郎", "ﾀﾛｳ"},  Named{"花子", "ﾊﾅｺ"},   Named{"一郎", "ｲﾁﾛｳ"},  Named{"恵子", "ｹｲｺ"},
    Named{"健一", "ｹﾝｲﾁ"}, Named{"由美子", "ﾕﾐｺ"}, Named{"誠", "ﾏｺﾄ"},     Named{"久美子", "ｸﾐｺ"},
    Named{"浩", "ﾋﾛｼ"},    Named{"幸子", "ｻﾁｺ"},   Named{"和夫", "ｶｽﾞｵ"},  Named{"洋子", "ﾖｳｺ"},
    Named{"翔", "ｼﾖｳ"},    Named{"さくら", "ｻｸﾗ"}, Named{"大輔", "ﾀﾞｲｽｹ"}, Named{"美咲", "ﾐｻｷ"},
    Named{"直樹", "ﾅｵｷ"},  Named{"陽子", "ﾖｳｺ"},   Named{"修", "ｵｻﾑ"},     Named{"明美", "ｱｹﾐ"},
};

struct Place
{
    std::string_view zip; // first three digits
    std::string_view city;
    std::string_view areaCode;
};

inline constexpr std::array places{
    Place{"060", "北海道札幌市中央区", "011"},     Place{"980", "宮城県仙台市青葉区", "022"},
    Place{"330", "埼玉県さいたま市大宮区", "048"}, Place{"260", "千葉県千葉市中央区", "043"},
    Place{"100", "東京都千代田区", "03"},          Place{"154", "東京都世田谷区", "03"},
    Place{"231", "神奈川県横浜市中区", "045"},     Place{"380", "長野県長野市", "026"},
    Place{"420", "静岡県静岡市葵区", "054"},       Place{"460", "愛知県名古屋市中区", "052"},
    Place{"600", "京都府京都市下京区", "075"},     Place{"530", "大阪府大阪市北区", "06"},
    Place{"650", "兵庫県神戸市中央区", "078"},     Place{"700", "岡山県岡山市北区", "086"},
    Place{"730", "広島県広島市中区", "082"},       Place{"760", "香川県高松市", "087"},
    Place{"810", "福岡県福岡市中央区", "092"},     Place{"860", "熊本県熊本市中央区", "096"},
    Place{"890", "鹿児島県鹿児島市", "099"},       Place{"900", "沖縄県那覇市", "098"},
};

inline constexpr std::array<std::string_view, 12> towns{"本町", "中央",   "栄町",   "旭町",   "緑町", "新町",
                                                        "元町", "大手町", "桜ヶ丘", "若葉台", "南",   "東"};

inline constexpr std::array<std::string_view, 5> companyForms{"株式会社", "有限会社", "㈱", "合同会社", "㈲"};

struct Product
{
    std::string_view name;
    std::string_view unit;
    int price; // yen
};

inline constexpr std::array products{
    Product{"信州りんご　サンふじ", "箱", 3980},
    Product{"有田みかん　Ｌ", "箱", 2980},
    Product{"宇治煎茶　１００ｇ", "袋", 1080},
    Product{"佃煮詰合せ", "折", 3240},
    Product{"手延べそうめん", "箱", 2500},
    Product{"紀州梅干　１ｋｇ", "個", 4320},
    Product{"新巻鮭", "本", 6800},
    Product{"明太子　並切", "ｇ", 3},
    Product{"カステラ　１号", "本", 1620},
    Product{"日本酒　純米　７２０ｍｌ", "本", 1850},
    Product{"包装材", "枚", 12},
    Product{"のし紙", "枚", 30},
};

inline constexpr std::array<std::string_view, 6> specifications{"贈答用",   "ご自宅用", "５ｋｇ",
                                                                "１０ｋｇ", "Ｌ玉",     "化粧箱入"};

} // namespace bench
