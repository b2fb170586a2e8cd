#include "operations.h"

#include "bare.h"
#include "bill_operations.h"
#include "document_operations.h"
#include "export_operations.h"
#include "glance_operations.h"
#include "ledger_operations.h"
#include "measuring.h"
#include "search_operations.h"
#include "shipping_operations.h"

#include "app/main_window/frmAMain.h"
#include "app/main_window/screens.h"
#include "book/slip_store.h"
#include "registers/frmNouhin.h"
#include "slips/correction/frmOutAmd.h"
#include "slips/entry/frmOut.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QTableView>

#include <array>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

/// An open sales screen with one customer found, ready for 確認.
class SalesDesk
{
public:
    explicit SalesDesk(const QString &fileName, bool followsTaxTable = false)
        : m_shop(fileName)
        , m_screen(m_shop.workspace)
    {
        m_shop.workspace.panel.followsTaxTable = followsTaxTable;
        m_shop.workspace.panel.employeeId = 1;
        m_screen.show();
    }

    double secondsToFind(const QString &key)
    {
        m_driver.box("txtKey1").setText(key);
        return secondsOf("Command1");
    }

    double secondsToSaveFiveLines()
    {
        double seconds = secondsOf("cmdMasterUpdate");
        for (int line = 0; line < 5; ++line)
            seconds += secondsToEnterLine();
        return seconds + secondsOf("cmdNext");
    }

    /// A line typed into the slip that is open, from 入力 until it and the sums are shown.
    double secondsToEnterLine()
    {
        m_driver.list("dbcShohin").setEditText(u"りんご"_s);
        m_driver.list("dbcKikaku").setEditText(u"贈答用"_s);
        m_driver.list("dbcTani").setEditText(u"箱"_s);
        m_driver.box("txtCnt").setText(u"2"_s);
        m_driver.box("txtTanka").setText(u"3980"_s);
        return secondsOf("cmdSubAdd");
    }

    /// Saves the header for the customer \a key.
    void begin(const QString &key)
    {
        secondsToFind(key);
        secondsOf("cmdMasterUpdate");
    }

    void finish() { secondsOf("cmdNext"); }

private:
    double secondsOf(const char *button)
    {
        const double seconds = secondsToPress(m_driver.button(button));
        settle();
        return seconds;
    }

    OpenShop m_shop;
    slips::frmOut m_screen;
    ScreenDriver m_driver{&m_screen};
};

class Operations
{
public:
    explicit Operations(const Shops &shops)
        : m_shops(shops)
    {}

    std::vector<Row> all()
    {
        slipSaved();
        lineEntered(1000, 10000, false);
        lineEntered(100000, 1000000, false);
        lineEntered(100000, 1000000, true);
        keySearch();
        screensOpened();
        previousSales(1000, 10000);
        previousSales(100000, 1000000);
        start(1000, 10000);
        start(1000000, 1000);
        start(100000, 1000000);
        return m_rows;
    }

private:
    std::size_t row(std::string operation, std::string size, double allowed)
    {
        m_rows.push_back({std::move(operation), std::move(size), allowed});
        return m_rows.size() - 1;
    }

    // Twice: what is stored, step by step as the screen has it stored, and the screen with all that it shows.
    void slipSaved()
    {
        const std::string what = "slip of five lines and tax saved line by line, ";
        const std::size_t stored = row(what + "stored", "10,000 slips", 1.3);
        const std::size_t shown = row(what + "with its screen", "10,000 slips", 0);
        const QString file = m_shops.copy(1000, 10000, u"saved"_s);
        auto bare = std::make_shared<Bare>(file);
        // One customer of tax class 0, so that a tax line is added each time.
        const qint64 customer = bare->customerOfClass(0);
        const QString key = bare->searchKeyOf(customer);
        auto shop = std::make_shared<OpenShop>(file);
        auto desk = std::make_shared<SalesDesk>(file);
        add(stored, "ours",
            [shop, customer] { return secondsOf([&] { storeSlip(shop->connection, customer); }); });
        add(shown, "ours", [desk, key] {
            desk->secondsToFind(key);
            return desk->secondsToSaveFiveLines();
        });
        for (const std::size_t at : {stored, shown})
            add(at, "bare", [bare, customer] { return secondsOf([&] { bare->saveSlip(customer); }); });
    }

    // The third line of a slip, until it is shown.
    void lineEntered(int customers, int slipCount, bool followsTaxTable)
    {
        const std::size_t at =
            row(followsTaxTable ? "line entered, taxed by the table" : "line entered in the sales screen",
                QLocale(QLocale::English).toString(slipCount).toStdString() + " slips",
                followsTaxTable ? 1.5 : 1.2);
        const QString file =
            m_shops.copy(customers, slipCount, u"entered-%1-%2"_s.arg(slipCount).arg(followsTaxTable));
        auto bare = std::make_shared<Bare>(file);
        const qint64 customer = bare->customerOfClass(0);
        const QString key = bare->searchKeyOf(customer);
        auto desk = std::make_shared<SalesDesk>(file, followsTaxTable);
        add(at, "ours", [desk, key] {
            desk->begin(key);
            desk->secondsToEnterLine();
            desk->secondsToEnterLine();
            const double seconds = desk->secondsToEnterLine();
            desk->finish();
            return seconds;
        });
        add(at, "bare", [bare, customer] {
            const std::int64_t slip = bare->saveHeader(customer);
            bare->enterLine(slip);
            bare->enterLine(slip);
            return secondsOf([&] { bare->enterLine(slip); });
        });
    }

    // Every statement of the sales screen between 確認 and 次の伝票 but the list of earlier lines, which has
    // a row of its own.
    static void storeSlip(db::Connection &connection, qint64 customer)
    {
        book::NewSlip slip;
        slip.date = QDate(2026, 4, 1);
        slip.counterpart = customer;
        slip.employee = 1;
        slip.taxRate = 5;
        slip.stamp = slip.date;
        const auto header = book::saveHeader(connection, slip);
        bool good = bool(header);
        for (int line = 0; good && line < 5; ++line) {
            good =
                book::addLine(connection, header->id, {u"りんご"_s, u"贈答用"_s, 2, u"箱"_s, 3980, 7960}) &&
                book::slipSums(connection, header->id, 5);
        }
        if (!good || !book::closeSlip(connection, header->id, 5, book::TaxClass::OnDelivery, false))
            qFatal("the slip was not saved");
    }

    void keySearch()
    {
        const QString file = m_shops.shop(100000, 1000000);
        auto desk = std::make_shared<SalesDesk>(file);
        auto bare = std::make_shared<Bare>(file);
        const struct
        {
            const char *what;
            QString key;
            double allowed;
        } searches[] = {{"kanji", u"山田"_s, 1.5}, {"kana", u"ﾔﾏﾀﾞ"_s, 1.5}, {"telephone", u"052-"_s, 1.2}};
        for (const auto &search : searches) {
            const std::size_t at = row(std::string("customers found by key, ") + search.what,
                                       "100,000 customers", search.allowed);
            add(at, "ours", [desk, key = search.key] { return desk->secondsToFind(key); });
            add(at, "bare",
                [bare, key = search.key] { return secondsOf([&] { bare->searchCustomers(key); }); });
        }
    }

    // A table a thousand times as long may take this much longer to show, to leaf through and to go to the
    // end of, milliseconds.
    static constexpr double mostForLength = 10;

    // Away from where a screen opens.
    struct Leafing
    {
        const char *action;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
    };

    template <class Screen>
    void screenOpened(const std::string &what, const std::string &unit, const QString &smallFile,
                      const QString &largeFile, const std::array<Leafing, 2> &leafings)
    {
        const Leafing opening{" opened", Qt::Key_unknown, Qt::NoModifier};
        for (const Leafing &action : {opening, leafings[0], leafings[1]}) {
            const std::size_t small = row(what + action.action, "1,000 " + unit, 0);
            const std::size_t large = row(what + action.action, "1,000,000 " + unit, 0);
            m_rows[large].most = mostForLength;
            m_rows[large].over = small;
            for (const auto &[at, file] : {std::pair(small, smallFile), std::pair(large, largeFile)}) {
                auto shop = std::make_shared<OpenShop>(file);
                add(at, "ours", [shop, action] {
                    settleWholly();
                    std::unique_ptr<Screen> screen;
                    const double opened = secondsOf([&] {
                        screen = std::make_unique<Screen>(shop->workspace);
                        screen->show();
                        settle();
                    });
                    if (action.key == Qt::Key_unknown)
                        return opened;
                    auto *grid = screen->template findChild<QTableView *>(u"DataGrid1"_s);
                    return secondsOf([&] {
                        QKeyEvent event(QEvent::KeyPress, action.key, action.modifiers);
                        QCoreApplication::sendEvent(grid, &event);
                        settle();
                    });
                });
            }
        }
    }

    void screensOpened()
    {
        screenOpened<registers::frmNouhin>("customer register", "customers", m_shops.shop(1000, 10000),
                                           m_shops.shop(1000000, 1000),
                                           {{{", PgDn right after", Qt::Key_PageDown, Qt::NoModifier},
                                             {", Ctrl+End right after", Qt::Key_End, Qt::ControlModifier}}});
        screenOpened<slips::frmOutAmd>("sales correction", "slips", m_shops.shop(1000, 1000),
                                       m_shops.shop(100000, 1000000),
                                       {{{", PgUp right after", Qt::Key_PageUp, Qt::NoModifier},
                                         {", Ctrl+Home right after", Qt::Key_Home, Qt::ControlModifier}}});
    }

    // Each customer has as many slips in either shop: the second one shows what the others' slips cost.
    void previousSales(int customers, int slipCount)
    {
        const std::size_t at =
            row("earlier sales of a customer listed",
                QLocale(QLocale::English).toString(slipCount).toStdString() + " slips", 1.2);
        const QString file = m_shops.shop(customers, slipCount);
        auto shop = std::make_shared<OpenShop>(file);
        auto bare = std::make_shared<Bare>(file);
        add(at, "ours", [shop, customers, customer = qint64(0)]() mutable {
            customer = customer % customers + 1;
            return secondsOf([&] { (void)book::previousLines(shop->connection, book::sale, customer); });
        });
        add(at, "bare", [bare, customers, customer = std::int64_t(0)]() mutable {
            customer = customer % customers + 1;
            return secondsOf([&] { bare->previousSales(customer); });
        });
    }

    void start(int customers, int slips)
    {
        const std::size_t at =
            row("start to usable main window",
                std::to_string(customers) + " customers, " + std::to_string(slips) + " slips", 0);
        const QString file = m_shops.shop(customers, slips);
        add(at, "ours", [file] {
            std::unique_ptr<OpenShop> shop;
            std::unique_ptr<app::frmAMain> window;
            const double seconds = secondsOf([&] {
                shop = std::make_unique<OpenShop>();
                window = std::make_unique<app::frmAMain>(shop->workspace, app::screenOpeners());
                window->load(u'"' + file + u'"');
                window->show();
                settle();
            });
            return seconds;
        });
    }

    const Shops &m_shops;
    std::vector<Row> m_rows;
};

} // namespace

std::vector<Row> registerOperations(const Shops &shops)
{
    std::vector<Row> rows = Operations(shops).all();
    registerExports(shops, rows);
    registerSearches(shops, rows);
    registerLedgers(shops, rows);
    registerBills(shops, rows);
    registerGlance(shops, rows);
    registerDocuments(shops, rows);
    registerShipping(shops, rows);
    return rows;
}

} // namespace bench
