#include "shop_maker.h"

#include "shop_names.h"

#include "db/create.h"
#include "db/errors.h"

#include <QDate>

#include <sqlite3.h>

#include <random>
#include <string>

namespace bench
{

namespace
{

const QDate lastDay(2026, 3, 31);
constexpr int days = 12 * 365 + 3;

// The standard's distributions differ between libraries; the engine itself does not.
class Dice
{
public:
    explicit Dice(std::uint64_t seed)
        : m_engine(seed)
    {}
    int upTo(int sides) { return static_cast<int>(m_engine() % static_cast<std::uint64_t>(sides)); }
    template <class List>
    const auto &from(const List &list)
    {
        return list[static_cast<std::size_t>(upTo(static_cast<int>(list.size())))];
    }

private:
    std::mt19937_64 m_engine;
};

/// One prepared INSERT, used for all rows of a table.
class Insert
{
public:
    Insert(sqlite3 *handle, const char *sql) { sqlite3_prepare_v2(handle, sql, -1, &m_statement, nullptr); }
    ~Insert() { sqlite3_finalize(m_statement); }
    Insert(const Insert &) = delete;
    Insert &operator=(const Insert &) = delete;

    Insert &operator<<(std::int64_t value)
    {
        return bound(sqlite3_bind_int64(m_statement, ++m_index, value));
    }
    Insert &operator<<(int value) { return *this << std::int64_t(value); }
    Insert &operator<<(double value) { return bound(sqlite3_bind_double(m_statement, ++m_index, value)); }
    Insert &operator<<(std::string_view value)
    {
        return bound(
            sqlite3_bind_text(m_statement, ++m_index, value.data(), int(value.size()), SQLITE_TRANSIENT));
    }
    Insert &null() { return bound(sqlite3_bind_null(m_statement, ++m_index)); }

    bool done()
    {
        const bool stepped = m_good && sqlite3_step(m_statement) == SQLITE_DONE;
        sqlite3_reset(m_statement);
        m_index = 0;
        m_good = true;
        return stepped;
    }

private:
    Insert &bound(int code)
    {
        m_good = m_good && code == SQLITE_OK;
        return *this;
    }

    sqlite3_stmt *m_statement = nullptr;
    int m_index = 0;
    bool m_good = true;
};

std::string date(int daysBefore) { return lastDay.addDays(-daysBefore).toString(Qt::ISODate).toStdString(); }

std::string digits(Dice &dice, int count)
{
    std::string text;
    while (count-- > 0)
        text += static_cast<char>('0' + dice.upTo(10));
    return text;
}

struct Address
{
    std::string zip, line1, telephone;
};

// The dice are thrown one a statement: within an expression their order would be the compiler's.
Address address(Dice &dice)
{
    const Place &place = dice.from(places);
    Address a;
    a.zip = std::string(place.zip) + "-";
    a.zip += digits(dice, 4);
    a.line1 = place.city;
    a.line1 += dice.from(towns);
    a.line1 += std::to_string(1 + dice.upTo(9)) + "-";
    a.line1 += std::to_string(1 + dice.upTo(30)) + "-";
    a.line1 += std::to_string(1 + dice.upTo(20));
    a.telephone = std::string(place.areaCode) + "-";
    a.telephone += digits(dice, 4) + "-";
    a.telephone += digits(dice, 4);
    return a;
}

bool addMasters(sqlite3 *handle)
{
    bool good = true;
    const auto list = [&](const char *sql, const auto &texts, auto textOf) {
        Insert insert(handle, sql);
        int key = 0;
        for (const auto &text : texts)
            good = good && (insert << ++key << textOf(text)).done();
    };
    const auto same = [](std::string_view text) { return text; };
    const auto name = [](const Product &product) { return product.name; };
    list("INSERT INTO 単位 (単位ID, 単位) VALUES (?, ?)",
         std::array<std::string_view, 6>{"個", "箱", "本", "袋", "折", "枚"}, same);
    list("INSERT INTO 規格 (規格ID, 規格) VALUES (?, ?)", specifications, same);
    list("INSERT INTO 登録区分 (区分ID, 区分名) VALUES (?, ?)",
         std::array<std::string_view, 3>{"一般", "法人", "お得意様"}, same);
    list("INSERT INTO 発送区分 (発送区分ID, 発送区分名) VALUES (?, ?)",
         std::array<std::string_view, 3>{"通常", "お中元", "お歳暮"}, same);
    list("INSERT INTO 納品商品 (商品ID, 商品名) VALUES (?, ?)", products, name);
    list("INSERT INTO 仕入商品 (商品ID, 商品名) VALUES (?, ?)", products, name);
    list("INSERT INTO 社員 (社員ID, 社員名) VALUES (?, ?)", std::array<std::string_view, 2>{"店長", "受付"},
         same);
    Insert company(handle,
                   "INSERT INTO 自社情報 (会社ID, 会社名1, 郵便番号, 住所1, TEL1) VALUES (?, ?, ?, ?, ?)");
    return good &&
           (company << 1 << std::string_view("有限会社かんばん堂") << std::string_view("380-0821")
                    << std::string_view("長野県長野市上千歳町1-1") << std::string_view("026-200-0000"))
               .done();
}

bool addCustomers(sqlite3 *handle, Dice &dice, int count)
{
    Insert insert(handle, "INSERT INTO 納品先 (納品先ID, コード, 納品先名1, 納品先名2, フリガナ, "
                          "納品先名キー, 区分ID, 郵便番号, "
                          "住所1, TEL1, 登録日, 更新日, 締め日, 消費税区分, 元帳出力) "
                          "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0)");
    bool good = true;
    for (int id = 1; good && id <= count; ++id) {
        const Named &surname = dice.from(surnames);
        const Named &given = dice.from(givenNames);
        const bool company = dice.upTo(5) == 0;
        const std::string name =
            company ? std::string(dice.from(companyForms)) + std::string(surname.text) + "商店"
                    : std::string(surname.text) + "　" + std::string(given.text);
        const std::string reading =
            std::string(surname.reading) + std::string(company ? "ｼﾖｳﾃﾝ" : given.reading);
        const std::string joined = company ? name : std::string(surname.text) + std::string(given.text);
        const std::string code = dice.upTo(4) == 0 ? std::string("C").append(std::to_string(id)) : "";
        const Address home = address(dice);
        const int since = dice.upTo(days);
        insert << id << code << name << std::string_view(company ? "購買部" : "") << reading
               << joined + (company ? "購買部 " : " ") + code + " " + home.telephone + " " + reading
               << 1 + (company ? 1 : dice.upTo(3)) << home.zip << home.line1 << home.telephone << date(since)
               << date(dice.upTo(since + 1)) << dice.upTo(31) << dice.upTo(3);
        good = insert.done();
    }
    return good;
}

bool addSuppliers(sqlite3 *handle, Dice &dice, int count)
{
    Insert insert(handle,
                  "INSERT INTO 仕入先 (仕入先ID, 仕入先名1, 仕入先名キー, 郵便番号, 住所1, TEL1, 消費税区分) "
                  "VALUES (?, ?, ?, ?, ?, ?, ?)");
    bool good = true;
    for (int id = 1; good && id <= count; ++id) {
        const Named &surname = dice.from(surnames);
        const std::string name = std::string(dice.from(companyForms)) + std::string(surname.text) + "物産";
        const Address seat = address(dice);
        good = (insert << id << name << name + "  " + seat.telephone << seat.zip << seat.line1
                       << seat.telephone << dice.upTo(3))
                   .done();
    }
    return good;
}

// Twenty slips in a row hold all kinds in the proportion of a shop that sells more than it buys.
char kindOf(int id) { return "OOOOROOOIOOPOOROMOIR"[id % 20]; }

/// Slips in the order of their dates, as they were entered.
class SlipWriter
{
public:
    SlipWriter(sqlite3 *handle, Dice &dice, const ShopSize &size, int suppliers)
        : m_header(handle, "INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率) "
                           "VALUES (?, ?, ?, ?, ?, ?)")
        , m_line(handle, "INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) VALUES (?, ?, ?, "
                         "?, ?, ?, ?)")
        , m_dice(dice)
        , m_size(size)
        , m_suppliers(suppliers)
    {}

    bool write()
    {
        bool good = true;
        for (int id = 1; good && id <= m_size.slips; ++id)
            good = writeSlip(id);
        return good;
    }

private:
    bool writeSlip(int id)
    {
        const int daysBefore = static_cast<int>(std::int64_t(days) * (m_size.slips - id) / m_size.slips);
        const char kind = openingKind(id);
        const bool customer = kind == 'O' || kind == 'R' || kind == 'M' || kind == 'B';
        const int counterpart = 1 + m_dice.upTo(customer ? m_size.customers : m_suppliers);
        const bool header =
            (m_header << id << date(daysBefore) << std::string(1, kind).append(std::to_string(id))
                      << counterpart << 1 + m_dice.upTo(2) << 5.0)
                .done();
        return header && (kind == 'O' || kind == 'I' || kind == 'M' || kind == 'T' ? writeGoods(id, kind)
                                                                                   : writeMoney(id, kind));
    }

    // The books open with balances carried forward and a stocktake.
    char openingKind(int id) const
    {
        const int opening = m_size.slips / 100;
        return id > opening ? kindOf(id) : "BAT"[id % 3];
    }

    bool writeGoods(int id, char kind)
    {
        const bool taxed = kind != 'M' && kind != 'T' && m_dice.upTo(3) == 0;
        double total = 0;
        bool good = true;
        for (int lines = 1 + m_dice.upTo(5); good && lines > 0; --lines) {
            const Product &product = m_dice.from(products);
            const int quantity = 1 + m_dice.upTo(12);
            const double amount = double(quantity) * product.price;
            total += amount;
            good = (m_line << id << product.name << m_dice.from(specifications) << double(quantity)
                           << product.unit << double(product.price) << amount)
                       .done();
        }
        const auto tax = static_cast<std::int64_t>(total) * 5 / 100;
        if (good && taxed && tax != 0)
            good = (m_line << id << std::string_view("消費税"))
                       .null()
                       .null()
                       .null()
                       .null()
                       .
                       operator<<(double(tax))
                       .done();
        return good;
    }

    bool writeMoney(int id, char kind)
    {
        const std::string_view item = kind == 'R' ? "入　金" : kind == 'P' ? "支　払" : "繰越";
        return (m_line << id << item << std::string_view("銀行振込"))
            .null()
            .null()
            .null()
            .
            operator<<(double(100 * (1 + m_dice.upTo(900))))
            .done();
    }

    Insert m_header;
    Insert m_line;
    Dice &m_dice;
    const ShopSize &m_size;
    int m_suppliers;
};

bool fill(sqlite3 *handle, const ShopSize &size)
{
    Dice dice(size.seed);
    const int suppliers = 1 + size.customers / 100;
    return addMasters(handle) && addCustomers(handle, dice, size.customers) &&
           addSuppliers(handle, dice, suppliers) && SlipWriter(handle, dice, size, suppliers).write();
}

} // namespace

base::Status makeShop(const QString &fileName, const ShopSize &size)
{
    if (const base::Status created = db::createDatabase(fileName); !created)
        return created;
    sqlite3 *handle = nullptr;
    bool good =
        sqlite3_open(fileName.toUtf8().constData(), &handle) == SQLITE_OK &&
        sqlite3_exec(
            handle, "PRAGMA synchronous = OFF; PRAGMA journal_mode = OFF; PRAGMA cache_size = -200000; BEGIN",
            nullptr, nullptr, nullptr) == SQLITE_OK &&
        fill(handle, size) && sqlite3_exec(handle, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK;
    const base::Status made = good ? base::Status() : base::Status(db::errorFrom(handle));
    sqlite3_close(handle);
    return made;
}

} // namespace bench
