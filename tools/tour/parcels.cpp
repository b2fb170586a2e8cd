#include "parcels.h"

#include "walker.h"

#include "db/connection.h"
#include "workspace/workspace.h"

#include <QDialog>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

void print(Walker &walker, QDialog &screen, bool asksForPrinter)
{
    if (!asksForPrinter) {
        walker.on(screen).press(u"Command2"_s);
        return;
    }
    walker.visit(
        u"printing of a parcel's slip"_s, [&] { walker.on(screen).press(u"Command2"_s); },
        [&](QDialog &dialog) { walker.on(dialog).press(u"cmdPrint"_s); });
}

void search(Walker &walker, QDialog &screen, const QString &key)
{
    walker.on(screen).type(u"txtKey1"_s, key);
    walker.on(screen).press(u"Command5"_s);
}

void sendByMailOrder(Walker &walker, QWidget &window)
{
    walker.visit(
        u"mail-order slip"_s, [&] { walker.on(window).press(u"Command54"_s); },
        [&](QDialog &screen) {
            search(walker, screen, u"ｻｻｷ"_s);
            walker.on(screen).choose(u"dbcKubun"_s, u"お中元"_s);
            walker.on(screen).choose(u"dbcShohin"_s, 1);
            walker.on(screen).enter(u"txtDate2"_s, u"４／３"_s);
            walker.on(screen).enter(u"Text1"_s, u"３９８０"_s);
            walker.checkText(screen, u"Text1"_s, u"3,980"_s);
            walker.on(screen).enter(u"txtKDenNo"_s, u"1234-5678-9013"_s);
            walker.picture(screen, u"mail-order-slip"_s);
            print(walker, screen, true);
            walker.checkText(screen, u"txtNName1"_s, {});
            walker.picture(screen, u"mail-order-slip-next"_s);
            walker.on(screen).choose(u"Combo5"_s, u"宛名ラベル"_s);
            walker.picture(screen, u"mail-order-slip-label"_s);
            walker.on(screen).choose(u"Combo5"_s, u"佐川急便"_s);
        });
}

void sendGifts(Walker &walker, QWidget &window)
{
    walker.visit(
        u"gift slip"_s, [&] { walker.on(window).press(u"Command55"_s); },
        [&](QDialog &screen) {
            search(walker, screen, u"髙島"_s);
            walker.on(screen).choose(u"dbcKubun"_s, u"お中元"_s);
            walker.on(screen).enter(u"txtHinmei"_s, u"シャインマスカット２房"_s);
            walker.on(screen).enter(u"txtMemo1"_s, u"御中元"_s);
            walker.on(screen).enter(u"txtMemo2"_s, u"髙島商店"_s);
            bool asksForPrinter = true;
            for (const char16_t *name : {u"ホテル白樺", u"株式会社アルプス食品"}) {
                walker.on(screen).enter(u"txtNName1"_s, QString::fromUtf16(name));
                walker.on(screen).enter(u"txtNZip"_s, u"３９１－０３０１"_s);
                walker.on(screen).enter(u"txtNAddress1"_s, u"長野県茅野市北山4035-1"_s);
                walker.on(screen).enter(u"txtNTel1"_s, u"0266-67-0009"_s);
                print(walker, screen, asksForPrinter);
                asksForPrinter = false;
            }
            walker.picture(screen, u"gift-slip"_s);
        });
}

} // namespace

void sendParcels(Walker &walker, workspace::Workspace &workspace, QWidget &window)
{
    const auto before = workspace.connection.integers(u"SELECT count(*) FROM 発送マスター"_s);
    sendByMailOrder(walker, window);
    sendGifts(walker, window);
    const auto sent = workspace.connection.select(
        u"SELECT count(*), count(印刷日), count(依頼主ID), count(納品先ID) FROM 発送マスター "
        "WHERE 発送ID > ?"_s,
        {before ? before->front() : 0});
    walker.check(sent && sent->rows.front() == QVariantList{3, 3, 2, 1},
                 u"the history has not the parcels"_s);
}

} // namespace tour
