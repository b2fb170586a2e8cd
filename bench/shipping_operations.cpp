#include "shipping_operations.h"

#include "bare.h"
#include "bare_pages.h"

#include "db/recordset.h"
#include "printing/pdf.h"
#include "printing/renderer.h"
#include "shipping/carriers/carrier_file.h"
#include "shipping/history/history.h"
#include "shipping/slips/slip_document.h"
#include "shipping/slips/slip_run.h"
#include "support/fake_printers.h"

#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

constexpr int customers = 100000;
constexpr int slips = 1000;
constexpr int shipmentCount = 1'000'000;
constexpr int slipsInBulk = 500;
const QString face = QString::fromUtf16(bareFace);

QString historyFile(const Shops &shops) { return shops.shopWithShipments(customers, slips, shipmentCount); }

/// The history as its screens have it: the keys of what is found, and the rows that show at once.
class HistoryDesk
{
public:
    explicit HistoryDesk(const QString &fileName)
        : m_shop(fileName)
    {}

    double secondsToFind(const QString &sender, const QString &consignee)
    {
        constexpr int shownRows = 30;
        db::Recordset found(m_shop.connection);
        return secondsOf([&] {
            const base::Status opened =
                shipping::openHistory(found, {.sender = sender, .consignee = consignee});
            if (!opened)
                qFatal("%s", qPrintable(opened.error().text));
            if (!found.readAll())
                qFatal("the shipments are not read");
            for (int row = 0; row < std::min(shownRows, found.count()); ++row)
                (void)found.index(row, 0).data();
        });
    }

private:
    OpenShop m_shop;
};

void registerSearches(const Shops &shops, std::vector<Row> &rows)
{
    const struct
    {
        const char *what;
        QString sender;
        QString consignee;
    } searches[] = {{"consignee", {}, u"山田"_s},
                    {"sender and consignee", u"山田"_s, u"佐藤"_s},
                    {"a name in full", {}, u"山田商店"_s},
                    {"a name that is not there", {}, u"無名"_s}};
    auto file = std::make_shared<QString>();
    auto desk = std::make_shared<std::unique_ptr<HistoryDesk>>();
    auto bare = std::make_shared<std::unique_ptr<Bare>>();
    const auto fileName = [file, &shops] {
        if (file->isEmpty())
            *file = historyFile(shops);
        return *file;
    };
    for (const auto &search : searches) {
        rows.push_back({std::string("shipments found by ") + search.what, "1,000,000 shipments", 1.5});
        add(rows.size() - 1, "ours", [desk, fileName, search] {
            if (!*desk)
                *desk = std::make_unique<HistoryDesk>(fileName());
            return (*desk)->secondsToFind(search.sender, search.consignee);
        });
        add(rows.size() - 1, "bare", [bare, fileName, search] {
            if (!*bare)
                *bare = std::make_unique<Bare>(fileName());
            return secondsOf([&] { (*bare)->findShipments(search.sender, search.consignee); });
        });
    }
}

shipping::Shipment shipmentOf(int number)
{
    shipping::Shipment shipment;
    shipment.accepted = QDate(2026, 4, 1);
    shipment.delivery = QDate(2026, 4, 3);
    shipment.sender = {u"有限会社山田茶舗"_s,       {}, u"420-0001"_s,
                       u"静岡市葵区井宮町１２３"_s, {}, u"054-123-4567"_s};
    shipment.consignee = {
        u"株式会社東京百貨店第%1売場"_s.arg(number), u"仕入部"_s,
        u"150-%1"_s.arg(number, 4, 10, QChar(u'0')), u"東京都渋谷区神宮前%1－２－３"_s.arg(number),
        u"神宮前ビル%1階"_s.arg(number % 30 + 1),    u"03-1234-%1"_s.arg(number, 4, 10, QChar(u'0'))};
    shipment.goods = u"煎茶 %1号"_s.arg(number % 300);
    shipment.price = 3980;
    shipment.category = u"通常"_s;
    shipment.method = u"宅急便"_s;
    shipment.memo1 = u"御中元"_s;
    return shipment;
}

std::vector<shipping::Shipment> shipmentsInBulk()
{
    std::vector<shipping::Shipment> shipments;
    for (int number = 1; number <= slipsInBulk; ++number)
        shipments.push_back(shipmentOf(number));
    return shipments;
}

/// Both sides of a run: a printer that keeps what it is given, and pages that are known beforehand.
struct Bulk
{
    explicit Bulk(const QString &file)
        : shop(file)
        , bare(file)
    {
        printing::keepPrintSystem(shop.workspace, printers);
        for (const shipping::Shipment &shipment : shipments)
            pages.emplace_back(*shipping::slipDocument(shop.workspace, shipment));
        settings = {.queue = u"LASER"_s, .paper = {210, 297}};
    }

    void draw()
    {
        for (const shipping::Shipment &shipment : shipments) {
            const auto document = shipping::slipDocument(shop.workspace, shipment);
            if (!document || !printing::pdfOf(*document, printing::Look{face, false}))
                qFatal("a slip was not drawn");
        }
    }
    void issue()
    {
        printers->given.clear();
        shipping::SlipPrinter printer(shop.workspace);
        printer.take(u"宅急便"_s, settings);
        if (shipping::issueAll(printer, shipments, shipping::Record::Add).issued.size() != shipments.size())
            qFatal("a slip was not issued");
    }
    void drawBare()
    {
        for (const BarePages &page : pages)
            page.write(folder.filePath(u"bare.pdf"_s));
    }
    void issueBare()
    {
        for (const BarePages &page : pages) {
            page.write(folder.filePath(u"bare.pdf"_s));
            bare.addShipment();
        }
    }

    std::vector<shipping::Shipment> shipments = shipmentsInBulk();
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    printing::JobSettings settings;
    OpenShop shop;
    Bare bare;
    std::vector<BarePages> pages;
    QTemporaryDir folder;
};

void registerBulk(const Shops &shops, std::vector<Row> &rows)
{
    auto bulk = std::make_shared<std::unique_ptr<Bulk>>();
    const auto made = [bulk, &shops]() -> Bulk & {
        if (!*bulk)
            *bulk = std::make_unique<Bulk>(shops.copy(1000, 1000, u"shipped"_s));
        return **bulk;
    };
    const struct
    {
        const char *what;
        void (Bulk::*ours)();
        void (Bulk::*bare)();
    } ways[] = {{"slips drawn, a document each", &Bulk::draw, &Bulk::drawBare},
                {"slips issued in bulk, a job and a row each", &Bulk::issue, &Bulk::issueBare}};
    for (const auto &way : ways) {
        rows.push_back({way.what, "500 slips", 1.5});
        add(rows.size() - 1, "ours", [made, way] {
            Bulk &run = made();
            return secondsOf([&] { (run.*way.ours)(); });
        });
        add(rows.size() - 1, "bare", [made, way] {
            Bulk &run = made();
            return secondsOf([&] { (run.*way.bare)(); });
        });
    }
}

// What the clerk waits for when the list of an export comes up.
void registerCarrierChecks(std::vector<Row> &rows)
{
    constexpr double most = 1000; // milliseconds
    rows.push_back({"parcels checked for a carrier's file", "500 parcels", 0, most});
    add(rows.size() - 1, "ours", [shipments = shipmentsInBulk()] {
        shipping::CarrierSettings settings;
        settings.set(u"payment"_s, u"0"_s);
        return secondsOf([&] {
            std::size_t found = 0;
            for (const shipping::Shipment &shipment : shipments)
                found += shipping::findingsOf(shipping::CarrierProgram::B2Cloud,
                                              {.shipment = shipment, .shipDay = shipment.accepted}, settings)
                             .size();
            if (found > 0)
                qFatal("a parcel does not fit");
        });
    });
}

} // namespace

void registerShipping(const Shops &shops, std::vector<Row> &rows)
{
    registerSearches(shops, rows);
    registerBulk(shops, rows);
    registerCarrierChecks(rows);
}

} // namespace bench
