#include "export_operations.h"

#include "bare.h"
#include "measuring.h"

#include "registers/frmNouhin.h"
#include "registers/lists/customer_export.h"
#include "ui/grid.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

std::size_t addRow(std::vector<Row> &rows, const char *operation, const char *size, double allowed)
{
    rows.push_back({operation, size, allowed});
    return rows.size() - 1;
}

/// An open shop whose customers are written into a folder that goes with it.
class ExportDesk
{
public:
    explicit ExportDesk(const QString &fileName)
        : m_shop(fileName)
    {}

    double secondsToWrite(const QString &name)
    {
        const QString target = path(name);
        return secondsOf([&] {
            const auto written = registers::exportCustomers(m_shop.connection, target, base::unwatched);
            if (!written)
                qFatal("%s", qPrintable(written.error().text));
        });
    }

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    OpenShop m_shop;
};

// The formats are held against the program's own CSV, and that against SQLite's rows printed as they come.
void exports(const Shops &shops, std::vector<Row> &rows)
{
    const QString large = shops.shop(100000, 1000);
    auto desk = std::make_shared<ExportDesk>(large);
    auto bare = std::make_shared<Bare>(large);
    const std::size_t csv = addRow(rows, "customers exported as .csv", "100,000 customers", 0);
    add(csv, "ours", [desk] { return desk->secondsToWrite(u"a.csv"_s); });
    add(csv, "bare",
        [desk, bare] { return secondsOf([&] { bare->writeCustomers(desk->path(u"bare.csv"_s)); }); });
    const std::size_t xlsx =
        addRow(rows, "customers exported as .xlsx (against .csv)", "100,000 customers", 3);
    add(xlsx, "ours", [desk] { return desk->secondsToWrite(u"a.xlsx"_s); });
    add(xlsx, "bare", [desk] { return desk->secondsToWrite(u"b.csv"_s); });
    const std::size_t xls = addRow(rows, "customers exported as .xls (against .csv)", "60,000 customers", 3);
    auto small = std::make_shared<ExportDesk>(shops.shop(60000, 1000));
    add(xls, "ours", [small] { return small->secondsToWrite(u"a.xls"_s); });
    add(xls, "bare", [small] { return small->secondsToWrite(u"b.csv"_s); });
}

/// An open register, worked with keys, each timed until the screen is painted again.
class RegisterDesk
{
public:
    explicit RegisterDesk(const QString &fileName)
        : m_shop(fileName)
        , m_screen(m_shop.workspace)
        , m_grid(m_driver.the<ui::Grid>("DataGrid1"))
    {
        m_screen.show();
        settle();
    }

    double secondsOf(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        return bench::secondsOf([&] {
            QKeyEvent pressed(QEvent::KeyPress, key, modifiers);
            QCoreApplication::sendEvent(&m_grid, &pressed);
            settle();
        });
    }

    double secondsToSave()
    {
        auto &box = m_driver.box("txtTantou");
        box.setFocus();
        box.selectAll();
        box.insert(u"担当%1"_s.arg(++m_saved));
        settle();
        return bench::secondsOf([&] {
            m_driver.button("cmdNewDate").click();
            settle();
        });
    }

    [[nodiscard]] bool isAtEnd() const
    {
        return m_grid.currentIndex().row() == m_grid.model()->rowCount() - 1;
    }

private:
    OpenShop m_shop;
    registers::frmNouhin m_screen;
    ScreenDriver m_driver{&m_screen};
    ui::Grid &m_grid;
    int m_saved = 0;
};

void largeRegister(const Shops &shops, std::vector<Row> &rows)
{
    const char *size = "1000000 customers";
    const QString file = shops.copy(1000000, 1000, u"register"_s);
    auto desk = std::make_shared<RegisterDesk>(file);
    auto bare = std::make_shared<Bare>(file);
    add(addRow(rows, "a page further in the customer register", size, 0), "ours",
        [desk] { return desk->secondsOf(Qt::Key_PageDown); });
    add(addRow(rows, "to the end of the customer register and back", size, 0), "ours", [desk] {
        const double there = desk->secondsOf(Qt::Key_End, Qt::ControlModifier);
        if (!desk->isAtEnd())
            qFatal("the register's end was not reached");
        return there + desk->secondsOf(Qt::Key_Home, Qt::ControlModifier);
    });
    const std::size_t saved = addRow(rows, "customer saved in the register", size, 0);
    add(saved, "ours", [desk] { return desk->secondsToSave(); });
    add(saved, "bare", [bare] { return secondsOf([&] { bare->saveCustomer(500000); }); });
}

} // namespace

void registerExports(const Shops &shops, std::vector<Row> &rows)
{
    exports(shops, rows);
    largeRegister(shops, rows);
}

} // namespace bench
