#include "parcel_history.h"

#include "walker.h"

#include "app/main_window/frmAMain.h"
#include "db/connection.h"
#include "workspace/workspace.h"

#include <QAction>
#include <QDialog>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

void numberParcels(Walker &walker, QWidget &window)
{
    walker.visit(
        u"history of parcels"_s, [&] { walker.on(window).press(u"Command56"_s); },
        [&](QDialog &screen) {
            walker.picture(screen, u"parcel-history"_s);
            walker.on(screen).type(u"txtKey2"_s, u"アルプス"_s);
            walker.on(screen).leave(u"txtKey2"_s);
            walker.checkText(screen, u"txtNName1"_s, u"株式会社アルプス食品"_s);
            walker.on(screen).type(u"txtNumber"_s, u"A415624751765A"_s);
            walker.on(screen).leave(u"txtNumber"_s);
            walker.checkText(screen, u"txtKDenNo"_s, u"415624751765"_s);
            walker.picture(screen, u"parcel-numbered"_s);
        });
}

void correctParcel(Walker &walker, QWidget &window)
{
    walker.visit(
        u"correction of parcels"_s, [&] { walker.on(window).press(u"Command59"_s); },
        [&](QDialog &screen) {
            walker.on(screen).type(u"txtMemo2"_s, u"髙島"_s);
            walker.on(screen).press(u"Command3"_s);
            walker.picture(screen, u"parcel-correction"_s);
        });
}

// Looked at alone.
void lookAtDeletion(Walker &walker, QWidget &window)
{
    walker.visit(
        u"deletion of the history"_s, [&] { walker.on(window).press(u"Command26"_s); },
        [&](QDialog &screen) {
            walker.on(screen).choose(u"cmbKubun"_s, 0);
            walker.picture(screen, u"parcel-deletion"_s);
        });
}

void sendSale(Walker &walker, QWidget &window)
{
    walker.visit(
        u"sale that is sent"_s, [&] { window.findChild<QAction *>(u"mnuDenOutAmd"_s)->trigger(); },
        [&](QDialog &sale) {
            walker.visit(
                u"parcel of a sale"_s, [&] { walker.on(sale).press(u"cmdParcel"_s); },
                [&](QDialog &screen) { walker.picture(screen, u"parcel-of-a-sale"_s); });
            walker.picture(sale, u"sale-that-is-sent"_s);
        });
}

} // namespace

void lookIntoParcels(Walker &walker, workspace::Workspace &workspace, QWidget &window)
{
    numberParcels(walker, window);
    correctParcel(walker, window);
    lookAtDeletion(walker, window);
    sendSale(walker, window);
    const auto numbered =
        workspace.connection.select(u"SELECT count(*) FROM 発送マスター WHERE 送り状番号 = '415624751765'"_s);
    walker.check(numbered && numbered->rows.front().front().toInt() == 1, u"the parcel has no number"_s);
}

} // namespace tour
