// What needs no window.
#include "app/files/backups.h"
#include "app/files/failing_actions.h"
#include "base/dated_name.h"
#include "db/care/plain_handle.h"
#include "db/care/salvage.h"
#include "db/migrations.h"
#include "db/old_files/conversion.h"
#include "registers/import/customer_import.h"
#include "registers/import/import_mapping.h"
#include "registers/lists/customer_deletion.h"
#include "reports/bills/bill_run.h"
#include "reports/bills/receipts/payment_taking.h"
#include "shipping/addresses/address_run.h"
#include "shipping/carriers/carrier_export.h"
#include "shipping/carriers/tracking_matches.h"
#include "shipping/slips/shipment_store.h"
#include "shipping/slips/slip_printer.h"
#include "slips/issued/issued_documents.h"
#include "support/earlier_version.h"
#include "support/fake_printers.h"
#include <numeric>

using namespace Qt::StringLiterals;

namespace
{

void openShop(Scene &scene)
{
    scene.logic = std::make_unique<FreshShop>();
    Stage::fill(*scene.logic);
    scene.logic->run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '一般')"_s);
}

void closeShop(Scene &scene)
{
    openShop(scene);
    scene.logic->connection.close();
}

void leaveShopOfVersion1(Scene &scene)
{
    closeShop(scene);
    const QString file = scene.logic->path(u"shop.cdb"_s);
    QFile::remove(file);
    makeVersion(1, file,
                "INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (1, 'O1'), (2, 'I2');"
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300) "
                "INSERT INTO 入出庫サブ (ID, 商品名, 金額) SELECT 1 + i % 2, '商品' || i, i FROM n");
}

void closeShopBesideBackup(Scene &scene)
{
    closeShop(scene);
    copyOver(scene.logic->path(u"shop.cdb"_s), scene.logic->path(u"backup.cdb"_s));
    if (!scene.logic->connection.open(scene.logic->path(u"shop.cdb"_s)))
        qFatal("no shop");
    scene.logic->run(u"DELETE FROM 納品先"_s);
    scene.logic->connection.close();
}

QString deleteCustomers(Scene &scene)
{
    std::vector<qint64> ids(200);
    std::iota(ids.begin(), ids.end(), 1);
    return told(registers::deleteCustomers(scene.logic->connection, ids, registers::WithSlips::Delete));
}

QString importCustomers(Scene &scene)
{
    QString text = u"納品先名1\t住所1\n"_s;
    for (int i = 0; i < 100; ++i)
        text += u"新規%1\t東京都千代田区%1\n"_s.arg(i);
    const auto table = registers::tableFromClipboard(text);
    auto assignment = registers::assignmentByHeadings(table->firstRow(), table->columns);
    assignment.defaultCategory = 1;
    const auto candidates =
        registers::importCandidates(scene.logic->connection, *table, assignment, base::unwatched);
    if (!candidates)
        return candidates.error().text;
    std::vector<const registers::ImportCandidate *> rows;
    for (const auto &candidate : *candidates)
        rows.push_back(&candidate);
    return told(
        registers::importCustomers(scene.logic->connection, rows, scene.logic->now.date(), base::unwatched));
}

QString keepDocument(Scene &scene)
{
    FreshShop &shop = *scene.logic;
    const slips::IssuedDocument note{.kind = u"納品書"_s,
                                     .number = u"O1"_s,
                                     .date = shop.now.date(),
                                     .slipKind = book::sale,
                                     .counterpart = 1,
                                     .counterpartName = u"顧客1"_s,
                                     .amount = 100};
    return told(slips::keepDocument(shop.connection, shop.path(u"shop.発行控"_s), note,
                                    QByteArray(30000, 'x'), shop.now, u"山田"_s));
}

void openShopWithSales(Scene &scene)
{
    openShop(scene);
    scene.logic->run(u"UPDATE 納品先 SET 消費税区分 = 1, 締め日 = 0"_s);
    scene.logic->run(
        u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率) SELECT 9000 + 納品先ID, "
        "'2026-03-15', 'O' || (9000 + 納品先ID), 納品先ID, 10 FROM 納品先 WHERE 納品先ID <= 20"_s);
    scene.logic->run(
        u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) SELECT ID, 'ほうじ茶', 1000 FROM 入出庫マスター "
        "WHERE ID > 9000"_s);
}

QString bookBillTaxes(Scene &scene)
{
    const reports::BillOptions options{10.0, false};
    auto bills = reports::billsOf(scene.logic->connection, {{QDate(2026, 3, 1), QDate(2026, 3, 31)}, 0},
                                  options, base::unwatched);
    if (!bills)
        return bills.error().text;
    std::erase_if(*bills, [](const auto &bill) { return bill.sums.unbooked.value_or(0) == 0; });
    book::NewSlip pattern;
    pattern.date = QDate(2026, 3, 31);
    pattern.employee = 1;
    pattern.taxRate = 10;
    return told(reports::bookBillTaxes(scene.logic->connection, *bills, options, pattern));
}

QString takePayments(Scene &scene)
{
    db::Connection &shop = scene.logic->connection;
    const auto customers = reports::PayingCustomers::read(shop, {}, scene.logic->now.date(), base::unwatched);
    if (!customers)
        return customers.error().text;
    std::vector<reports::PaymentMatch> payments;
    for (int i = 1; i <= 20; ++i)
        payments.push_back({.row = {.line = i,
                                    .date = scene.logic->now.date(),
                                    .amount = 100.0 * i,
                                    .payer = u"ﾔﾏﾀﾞ"_s,
                                    .key = QString::number(i)},
                            .customer = i,
                            .ticked = true});
    return told(reports::takePayments(shop, payments, *customers,
                                      {.employee = 1,
                                       .infix = {},
                                       .fileName = u"bank.csv"_s,
                                       .now = scene.logic->now,
                                       .taxRate = [](const QDate &) { return 10.0; }},
                                      base::unwatched));
}

void openShopWithParcels(Scene &scene)
{
    openShop(scene);
    for (int i = 0; i < 20; ++i) {
        shipping::Shipment parcel;
        parcel.accepted = parcel.exported = scene.logic->now.date();
        parcel.sender =
            parcel.consignee = {u"山田"_s, {}, u"380-0821"_s, u"長野市上千歳町1"_s, {}, u"026-200-0000"_s};
        parcel.goods = u"りんご"_s;
        parcel.method = u"佐川急便"_s;
        if (!shipping::addShipment(scene.logic->connection, parcel))
            qFatal("no parcels");
    }
}

std::vector<shipping::Shipment> parcels(Scene &scene)
{
    const shipping::CarrierQuery query{shipping::CarrierProgram::Hiden3, scene.logic->now.date(),
                                       scene.logic->now.date(), true, false};
    auto found = shipping::shipmentsFor(scene.logic->connection, query);
    return found ? std::move(*found) : std::vector<shipping::Shipment>();
}

QString exportParcels(Scene &scene)
{
    const FreshShop &shop = *scene.logic;
    auto settings = shipping::CarrierSettings::read(shop.settings, shipping::CarrierProgram::Hiden3);
    settings.set(u"customer"_s, u"123456789012"_s);
    std::vector<shipping::CarrierParcel> written;
    for (const shipping::Shipment &shipment : parcels(scene))
        written.push_back({.shipment = shipment, .shipDay = shop.now.date()});
    const base::Status done = shipping::writeCarrierFile(
        shop.path(u"parcels.csv"_s), shipping::CarrierProgram::Hiden3, written, settings, base::unwatched);
    return told(done ? shipping::markExported(scene.logic->connection, written, shop.now.date().addDays(1))
                     : done);
}

QString takeTrackingNumbers(Scene &scene)
{
    std::vector<shipping::TrackingMatch> matches;
    for (const shipping::Shipment &shipment : parcels(scene))
        matches.push_back({.line = int(shipment.id),
                           .management = QString::number(shipment.id),
                           .number = QString::number(390000000000 + shipment.id),
                           .consignee = {},
                           .state = shipping::TrackingState::New,
                           .shipment = shipment,
                           .ticked = true});
    return told(shipping::storeTracking(scene.logic->connection, matches, base::unwatched));
}

// On a queue that takes everything: a job whose marks are not stored is withdrawn.
QString printAddresses(Scene &scene)
{
    std::vector<shipping::Addressee> addressees(20);
    for (std::size_t i = 0; i < addressees.size(); ++i)
        addressees[i].customer = qint64(i) + 1;
    int taken = 0;
    int withdrawn = 0;
    const shipping::AddressRunOutcome outcome = shipping::printAddresses(
        scene.logic->connection, addressees,
        {.paper = u"はがき"_s, .today = scene.logic->now.date(), .jobSize = addressees.size()},
        [&taken](const auto &, int) { return base::Result<int>(++taken); },
        [&withdrawn](int) { ++withdrawn; }, base::unwatched);
    if (!outcome.failure)
        return {};
    if (withdrawn != taken)
        qFatal("a job without marks stays");
    return outcome.failure->text;
}

QString migrate(Scene &scene)
{
    return told(db::migrate(scene.logic->path(u"shop.cdb"_s), scene.logic->now.date()));
}

QString convert(Scene &scene)
{
    db::ConversionOptions options;
    options.reader = QStringLiteral(OLD_FILE_READER);
    return told(db::convertOldFile(QStringLiteral(LEGACY_FILE), scene.logic->path(u"new.cdb"_s),
                                   base::unwatched, options));
}

QString rebuild(Scene &scene)
{
    return told(
        db::rebuild(scene.logic->path(u"shop.cdb"_s), scene.logic->path(u"new.cdb"_s), base::unwatched));
}

QString restore(Scene &scene)
{
    const FreshShop &shop = *scene.logic;
    const QString target = shop.path(u"shop.cdb"_s);
    return told(app::restoreBackup(shop.path(u"backup.cdb"_s), target,
                                   base::datedName(target, u"復元前"_s, shop.now.date()), base::unwatched));
}

// What is told to have failed must not come out of the printer, either.
QString printParcel(Scene &scene)
{
    FreshShop &shop = *scene.logic;
    const auto printers = std::make_shared<FakePrinters>();
    printing::keepPrintSystem(shop.workspace, printers);
    shipping::Shipment parcel;
    parcel.method = u"宅急便"_s;
    parcel.consignee.name1 = u"佐藤花子"_s;
    shipping::SlipPrinter printer(shop.workspace);
    printer.take(parcel.method, {.queue = u"LASER"_s, .paper = {210, 297}});
    const auto issued = printer.issue(parcel, shipping::Record::Add);
    if (printers->given.size() - printers->cancelled.size() != (issued ? 1 : 0))
        qFatal("printed, and not in the history");
    return told(issued);
}

} // namespace

std::vector<Action> actionsOfLogic()
{
    return {
        {"customers deleted", openShop, deleteCustomers, u"shop.cdb"_s, true},
        {"customers imported", openShop, importCustomers, u"shop.cdb"_s, true},
        {"document kept", openShop, keepDocument, u"shop.cdb"_s, true},
        {"taxes of bills", openShopWithSales, bookBillTaxes, u"shop.cdb"_s, true},
        {"receipts from a list", openShopWithSales, takePayments, u"shop.cdb"_s, true},
        {"parcels for a carrier", openShopWithParcels, exportParcels, u"parcels.csv"_s},
        {"tracking numbers", openShopWithParcels, takeTrackingNumbers, u"shop.cdb"_s, true},
        {"parcel's slip", openShop, printParcel, u"shop.cdb"_s, true},
        {"addresses printed", openShop, printAddresses, u"shop.cdb"_s, true},
        {"migration", leaveShopOfVersion1, migrate, u"shop.cdb"_s},
        {"rebuilding", closeShop, rebuild, u"new.cdb"_s},
        {"backup restored", closeShopBesideBackup, restore, u"shop.cdb"_s},
        {"conversion", closeShop, convert, u"new.cdb"_s},
    };
}
