#include "carriers.h"

#include "walker.h"

#include "app/main_window/frmAMain.h"
#include "shipping/carriers/DialogCarrierExport.h"
#include "shipping/carriers/DialogCarrierSettings.h"
#include "shipping/carriers/DialogTrackingImport.h"
#include "shipping/slips/shipment_store.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QDialog>
#include <QFile>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

// Three parcels, one of which no carrier would take so.
std::vector<qint64> parcels(workspace::Workspace &workspace)
{
    const struct
    {
        QString name;
        QString zip;
        QString address1;
        QString address2;
        QString tel;
        QString method;
    } consignees[] = {
        {u"山田　太郎"_s, u"154-0017"_s, u"東京都世田谷区世田谷1-2-3"_s, {}, u"03-1234-5678"_s, u"宅急便"_s},
        {u"渡邊　恵子"_s,
         u"060-0001"_s,
         u"北海道札幌市中央区北一条西2-1"_s,
         u"札幌時計台マンション３０５号"_s,
         {},
         u"宅急便　コレクト"_s},
        {u"髙島商店　仕入部　𠮷田"_s, u"53000"_s, u"大阪府大阪市北区梅田2-4-9"_s, u"ブリーゼ大阪１２階"_s,
         u"06-6345-0001"_s, u"宅急便"_s}};
    std::vector<qint64> ids;
    for (const auto &to : consignees) {
        shipping::Shipment parcel;
        parcel.accepted = workspace.today();
        parcel.delivery = workspace.today().addDays(2);
        parcel.sender = {u"有限会社かんばん堂"_s,      {}, u"380-0821"_s,
                         u"長野県長野市上千歳町1-1"_s, {}, u"026-200-0000"_s};
        parcel.consignee = {to.name, {}, to.zip, to.address1, to.address2, to.tel};
        parcel.goods = u"信州りんご　サンふじ"_s;
        parcel.price = 3980;
        parcel.method = to.method;
        parcel.timeSlot = u"14-16"_s;
        if (const auto id = shipping::addShipment(workspace.connection, parcel))
            ids.push_back(*id);
    }
    return ids;
}

QString answer(const QDir &folder, const std::vector<qint64> &ids)
{
    QFile file(folder.filePath(u"発行済みデータ.csv"_s));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("お客様管理番号,お届け先名,伝票番号\n");
        qint64 number = 39123456789;
        for (const qint64 id : ids) {
            file.write(u"KB-%1,,%2%3\n"_s.arg(id).arg(number).arg(number % 7).toUtf8());
            ++number;
        }
        file.write("WEB-77,鈴木,391234567894\nKB-1,山田　太郎,\n");
    }
    return file.fileName();
}

void fillSettings(Walker &walker, QDialog &screen)
{
    walker.visit(
        u"settings of the carriers"_s, [&] { walker.on(screen).press(u"cmdSettings"_s); },
        [&](QDialog &settings) {
            walker.on(settings).type(u"txtB2Customer"_s, u"0262000000"_s);
            walker.on(settings).type(u"txtB2Prefix"_s, u"KB-"_s);
            walker.picture(settings, u"carrier-settings"_s);
            walker.on(settings).press(u"cmdOK"_s);
        });
}

void exportParcels(Walker &walker, QDialog &screen, const QDir &folder)
{
    fillSettings(walker, screen);
    walker.picture(screen, u"carrier-export"_s);
    walker.on(screen).type(u"txtFirst"_s, u"011-211-0005"_s);
    walker.on(screen).press(u"cmdMend"_s);
    walker.on(screen).type(u"txtFirst"_s, u"530-0001"_s);
    walker.on(screen).press(u"cmdMend"_s);
    walker.on(screen).type(u"txtFirst"_s, u"髙島商店　仕入部　吉田"_s);
    walker.on(screen).press(u"cmdMend"_s);
    const QString file = folder.filePath(u"b2.csv"_s);
    ui::file_dialogs::expectFile(file);
    ui::prompts::expectInform({}, ui::prompts::anyRemark);
    walker.on(screen).press(u"cmdExport"_s);
    walker.check(QFile::exists(file), u"there is no file for the carrier"_s);
    walker.picture(screen, u"carrier-exported"_s);
}

} // namespace

void handToCarriers(Walker &walker, workspace::Workspace &workspace, app::frmAMain &window,
                    const QDir &folder)
{
    const std::vector<qint64> ids = parcels(workspace);
    walker.visit(
        u"export to a carrier"_s,
        [&] {
            shipping::DialogCarrierExport screen(workspace, &window);
            screen.listShipments(ids);
            screen.exec();
        },
        [&](QDialog &screen) { exportParcels(walker, screen, folder); });
    walker.visit(
        u"tracking numbers"_s, [&] { shipping::DialogTrackingImport(workspace, &window).exec(); },
        [&](QDialog &screen) {
            ui::file_dialogs::expectFile(answer(folder, ids));
            walker.on(screen).press(u"Command1"_s);
            walker.picture(screen, u"tracking-numbers"_s);
            walker.visit(
                u"columns of the answer"_s, [&] { walker.on(screen).press(u"Command4"_s); },
                [&](QDialog &columns) { walker.picture(columns, u"columns-of-the-answer"_s); });
            ui::prompts::expectAskCautiously({}, true);
            ui::prompts::expectInform({});
            walker.on(screen).press(u"Command2"_s);
        });
}

} // namespace tour
