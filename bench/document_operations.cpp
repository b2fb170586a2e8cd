#include "document_operations.h"

#include "bare.h"
#include "measuring.h"

#include "slips/issued/DialogIssued.h"
#include "slips/issued/document_copies.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QDir>
#include <QFile>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

struct Search
{
    const char *what;
    QDate from; // none: whatever the date
    QDate to;
    QString least;
    QString most;
    QString name;
    const char *condition; // the same for the bare query
};

const Search searches[] = {
    {"dates, amounts and counterpart", QDate(2024, 4, 1), QDate(2025, 3, 31), u"10000"_s, u"50000"_s,
     u"山田"_s,
     "日付 >= '2024-04-01' AND 日付 <= '2025-03-31' AND 税込金額 >= 10000 AND 税込金額 <= 50000 "
     "AND 相手先名 LIKE '%山田%'"},
    {"a month",
     QDate(2025, 3, 1),
     QDate(2025, 3, 31),
     {},
     {},
     {},
     "日付 >= '2025-03-01' AND 日付 <= '2025-03-31'"},
    {"amounts", {}, {}, u"12000"_s, u"13000"_s, {}, "税込金額 >= 12000 AND 税込金額 <= 13000"},
    {"counterpart", {}, {}, {}, {}, u"山田"_s, "相手先名 LIKE '%山田%'"},
};

int documentCount()
{
    const int wanted = qEnvironmentVariableIntValue("KANBALORE_BENCH_DOCUMENTS");
    return wanted > 0 ? wanted : 1'000'000;
}

// Of ten years, in the order in which they were issued, to one customer in a hundred called 山田.
QString shopWithDocuments(const Shops &shops, int count)
{
    const QString file = shops.copy(1000, 1000, u"documents-%1"_s.arg(count));
    OpenShop shop(file);
    const auto filled = shop.connection.execute(
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
        "INSERT INTO 発行控 (発行ID, 種類, 番号, 日付, 伝票種別, 相手先ID, 相手先名, 税込金額, 発行日時, "
        "社員名, ハッシュ) "
        "SELECT i, '納品書', 'O' || i, date('2016-04-01', (i * 3650 / ?) || ' days'), 'O', i * 7919 % 1000, "
        "CASE i * 7919 % 100 WHEN 0 THEN '山田商店' ELSE '株式会社顧客' || (i * 7919 % 1000) END, "
        "i * 104729 % 200000, '2026-04-01 10:00:00', '木村', printf('%064x', i) FROM n"_s,
        {count, count});
    if (!filled)
        qFatal("%s", qPrintable(filled.error().text));
    return file;
}

/// An open screen of issued documents.
class IssuedDesk
{
public:
    explicit IssuedDesk(const QString &fileName)
        : m_shop(fileName)
        , m_screen(m_shop.workspace)
    {
        m_screen.show();
        settleWholly();
    }

    double secondsToFind(const Search &search)
    {
        m_driver.the<QCheckBox>("chkDates").setChecked(search.from.isValid());
        if (search.from.isValid()) {
            m_driver.the<QDateEdit>("DTPicker1").setDate(search.from);
            m_driver.the<QDateEdit>("DTPicker2").setDate(search.to);
        }
        m_driver.box("txtLeast").setText(search.least);
        m_driver.box("txtMost").setText(search.most);
        m_driver.box("txtName").setText(search.name);
        const double seconds = secondsToPress(m_driver.button("cmdFind"));
        settle();
        return seconds;
    }

private:
    OpenShop m_shop;
    slips::DialogIssued m_screen;
    ScreenDriver m_driver{&m_screen};
};

constexpr int tenYears = 60'000; // documents of a small shop

/// A folder with the files of ten years, of which a backup goes by the names alone.
QString folderWithDocuments(const QDir &place)
{
    const QString folder = place.filePath(u"documents-60000.発行控"_s);
    for (int year = 2016; year <= 2026; ++year)
        place.mkpath(folder + u"/%1"_s.arg(year));
    for (int i = 1; i <= tenYears; ++i) {
        const QDate date = QDate(2016, 4, 1).addDays(qint64(i) * 3650 / tenYears);
        QFile file(folder + u"/%1/%2.pdf"_s.arg(date.year()).arg(i, 64, 16, QChar(u'0')));
        if (!file.exists() && !file.open(QIODevice::WriteOnly))
            qFatal("%s cannot be written", qPrintable(file.fileName()));
    }
    return folder;
}

// What each exit spends on documents that are in the backup already.
void registerBackup(const Shops &shops, std::vector<Row> &rows)
{
    rows.push_back({"issued documents looked through for a backup, none new", "60,000 documents", 0, 500});
    auto shop = std::make_shared<std::unique_ptr<OpenShop>>();
    auto folder = std::make_shared<QString>();
    add(rows.size() - 1, "ours", [shop, folder, &shops] {
        if (!*shop) {
            *shop = std::make_unique<OpenShop>(shopWithDocuments(shops, tenYears));
            *folder = folderWithDocuments(QFileInfo((*shop)->connection.fileName()).dir());
        }
        return secondsOf([&] {
            const auto copies =
                slips::copyDocuments((*shop)->connection, {*folder}, {*folder}, base::unwatched);
            if (!copies || copies->copied + copies->lacking > 0)
                qFatal("the documents are not there");
        });
    });
}

/// Both sides over one file, which is made when the first of them is asked for.
class Sides
{
public:
    Sides(const Shops &shops, int count)
        : m_shops(shops)
        , m_count(count)
    {}

    IssuedDesk &ours()
    {
        if (!m_ours)
            m_ours = std::make_unique<IssuedDesk>(file());
        return *m_ours;
    }
    Bare &bare()
    {
        if (!m_bare)
            m_bare = std::make_unique<Bare>(file());
        return *m_bare;
    }

private:
    QString file()
    {
        if (m_file.isEmpty())
            m_file = shopWithDocuments(m_shops, m_count);
        return m_file;
    }

    const Shops &m_shops;
    int m_count;
    QString m_file;
    std::unique_ptr<IssuedDesk> m_ours;
    std::unique_ptr<Bare> m_bare;
};

} // namespace

void registerDocuments(const Shops &shops, std::vector<Row> &rows)
{
    const int count = documentCount();
    auto sides = std::make_shared<Sides>(shops, count);
    for (const Search &search : searches) {
        rows.push_back({std::string("issued documents found by ") + search.what,
                        QLocale(QLocale::English).toString(count).toStdString() + " documents", 1.5});
        add(rows.size() - 1, "ours", [sides, &search] { return sides->ours().secondsToFind(search); });
        add(rows.size() - 1, "bare", [sides, &search] {
            Bare &bare = sides->bare();
            return secondsOf([&] { bare.findDocuments(search.condition); });
        });
    }
    registerBackup(shops, rows);
}

} // namespace bench
