#include "gifts.h"

#include "shop_data.h"
#include "walker.h"

#include "shipping/slips/shipment_store.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QApplication>
#include <QDateEdit>
#include <QDialog>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

shipping::Party partyOf(const Customer &customer)
{
    const auto text = [](const char16_t *part) { return QString::fromUtf16(part); };
    return {text(customer.name),     text(customer.name2),    text(customer.zip),
            text(customer.address1), text(customer.address2), text(customer.telephone)};
}

// Eight parcels of a company, last spring.
void rememberLastYear(Walker &walker, db::Connection &connection)
{
    constexpr int sender = 1;
    for (int consignee = 2; consignee < 10; ++consignee) {
        shipping::Shipment gift;
        gift.accepted = QDate(2025, 4, 20).addDays(consignee % 3);
        gift.sender = partyOf(customers[sender]);
        gift.consignee = partyOf(customers[consignee]);
        gift.goods = QString::fromUtf16(products[consignee % 4]);
        gift.price = 3980 + 250 * (consignee % 4);
        gift.carriage = 880;
        gift.category = u"お中元"_s;
        gift.method = u"宅急便"_s;
        gift.memo1 = u"御中元"_s;
        gift.memo2 = u"髙島商店"_s;
        gift.trackingNumber = u"4023-1187-06%1"_s.arg(10 + consignee);
        walker.check(bool(shipping::addShipment(connection, gift)), u"a gift of last year is not kept"_s);
    }
}

void savePages(Walker &walker, QDialog &screen, const QString &button, const QString &fileName,
               const QString &name)
{
    walker.visit(
        name + u" preview"_s, [&] { walker.on(screen).press(button); },
        [&](QDialog &preview) {
            ui::file_dialogs::expectFile(fileName);
            walker.on(preview).press(u"cmdPdf"_s);
        });
    walker.check(QFileInfo(fileName).size() > 1000, name + u" is not there as PDF"_s);
    walker.pages(fileName, name);
}

void fillSheet(Walker &walker, QDialog &screen, const QDir &folder)
{
    walker.on(screen).type(u"cmbSender"_s, u"髙島"_s);
    walker.on(screen).press(u"Command5"_s);
    walker.on(screen).choose(u"dbcKubun"_s, u"お中元"_s);
    walker.on(screen).enter(u"txtDate2"_s, u"7/10"_s);
    walker.on(screen).enter(u"txtMemo1"_s, u"御中元"_s);
    walker.on(screen).press(u"cmdLastYear"_s);
    QApplication::processEvents();
    walker.check(walker.on(screen).the<ui::Grid>(u"DataGrid1"_s).model()->rowCount() == 9,
                 u"last year's list has not eight consignees"_s);
    walker.picture(screen, u"gift-order"_s);
    savePages(walker, screen, u"cmdSheet"_s, folder.filePath(u"gift-order.pdf"_s), u"gift-order-sheet"_s);
    ui::prompts::expectAskHowToLeave(u"まだ発行していないお届け先が 8 件あります。"_s,
                                     ui::prompts::Choice::Discard, ui::prompts::Choice::Save);
}

void lookAtList(Walker &walker, QDialog &screen, const QDir &folder, const QString &name)
{
    walker.on(screen).the<QDateEdit>(u"DTPicker1"_s).setDate({2025, 4, 1});
    walker.on(screen).press(u"cmdList"_s);
    QApplication::processEvents();
    walker.picture(screen, name);
    walker.visit(
        name + u" printing"_s, [&] { walker.on(screen).press(u"Command2"_s); },
        [&](QDialog &dialog) {
            walker.picture(dialog, name + u"-printing"_s);
            walker.on(dialog).choose(u"Combo1"_s, u"A4無地 横"_s);
            savePages(walker, dialog, u"Command49"_s, folder.filePath(name + u".pdf"_s), name + u"-paper"_s);
        });
}

} // namespace

void sendGifts(Walker &walker, workspace::Workspace &workspace, QWidget &window, const QDir &folder)
{
    rememberLastYear(walker, workspace.connection);
    walker.visit(
        u"gift order"_s, [&] { walker.on(window).press(u"Command57"_s); },
        [&](QDialog &screen) { fillSheet(walker, screen, folder); });
    walker.visit(
        u"gifts by sender"_s, [&] { walker.on(window).press(u"Command47"_s); },
        [&](QDialog &screen) { lookAtList(walker, screen, folder, u"gifts-by-sender"_s); });
    walker.visit(
        u"gifts sent"_s, [&] { walker.on(window).press(u"Command46"_s); },
        [&](QDialog &screen) { lookAtList(walker, screen, folder, u"gifts-sent"_s); });
}

} // namespace tour
