#include "search_operations.h"

#include "bare.h"
#include "measuring.h"

#include "printing/frmPreview.h"
#include "printing/list_sheet.h"
#include "registers/lists/frmNouhinFind.h"
#include "registers/lists/roster.h"

#include <QComboBox>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

/// An open search screen.
class SearchDesk
{
public:
    explicit SearchDesk(const QString &fileName)
        : m_shop(fileName)
        , m_screen(m_shop.workspace)
    {
        m_screen.show();
    }

    double secondsToFind(const QString &item, const QString &condition,
                         const QString &order = u"検索項目昇順"_s)
    {
        m_driver.list("Combo2").setCurrentText(order);
        auto &items = m_driver.list("Combo1");
        items.setCurrentIndex(items.findText(item));
        m_driver.box("txtKey").setText(condition);
        const double seconds = secondsToPress(m_driver.button("Command2"));
        settle();
        return seconds;
    }

private:
    OpenShop m_shop;
    registers::frmNouhinFind m_screen;
    ScreenDriver m_driver{&m_screen};
};

// From the choice of the columns to the preview's first page.
void registerRoster(const Shops &shops, std::vector<Row> &rows, int customers)
{
    rows.push_back({"roster laid out and previewed", std::to_string(customers) + " customers", 0});
    auto shop = std::make_shared<OpenShop>(shops.shop(customers, 10000));
    add(rows.size() - 1, "ours", [shop] {
        const auto keys = shop->connection.integers(u"SELECT 納品先ID FROM 納品先"_s);
        const registers::RosterOptions options{
            u"顧客名簿"_s, {u"TEL"_s, u"TEL"_s, u"FAX"_s}, registers::rosterColumnsFrom({})};
        std::unique_ptr<printing::frmPreview> preview;
        return secondsOf([&] {
            const auto report = registers::roster(shop->connection, *keys, options, base::unwatched);
            printing::Document document;
            document.title = report->documentName;
            document.purpose = printing::Purpose::Rosters;
            document.sheets =
                printing::listSheets(*report, u"2026年4月1日 現在"_s, printing::ListPaper::Upright);
            preview = std::make_unique<printing::frmPreview>(shop->workspace, std::move(document));
            preview->show();
            settle();
        });
    });
}

} // namespace

void registerSearches(const Shops &shops, std::vector<Row> &rows)
{
    const QString file = shops.shop(100000, 1000);
    auto desk = std::make_shared<SearchDesk>(file);
    auto bare = std::make_shared<Bare>(file);
    const struct
    {
        const char *what;
        QString condition;
    } searches[] = {{"kanji", u"山田"_s}, {"kana", u"ﾔﾏﾀﾞ"_s}, {"telephone", u"052-"_s}};
    for (const auto &search : searches) {
        rows.push_back({std::string("customers found by any part of the key, ") + search.what,
                        "100,000 customers", 1.2});
        add(rows.size() - 1, "ours",
            [desk, text = search.condition] { return desk->secondsToFind(u"納品先名"_s, text); });
        add(rows.size() - 1, "bare",
            [bare, text = search.condition] { return secondsOf([&] { bare->findCustomers(text); }); });
    }
    rows.push_back({"every customer selected in the search", "100,000 customers", 0});
    add(rows.size() - 1, "ours", [desk] { return desk->secondsToFind(u"すべて選択"_s, {}); });
    add(rows.size() - 1, "bare", [bare] { return secondsOf([&] { bare->findCustomers({}); }); });
    rows.push_back({"every customer in the order of the sounds", "100,000 customers", 0});
    add(rows.size() - 1, "ours", [desk] { return desk->secondsToFind(u"すべて選択"_s, {}, u"ﾌﾘｶﾞﾅ昇順"_s); });
    registerRoster(shops, rows, 10000);
}

} // namespace bench
