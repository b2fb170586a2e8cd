#include "receipts.h"

#include "walker.h"

#include "app/main_window/frmAMain.h"
#include "ui/file_dialogs.h"

#include <QDialog>
#include <QFile>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

QString payments(const QDir &folder)
{
    QFile list(folder.filePath(u"入金明細.csv"_s));
    if (list.open(QIODevice::WriteOnly))
        list.write("取引日,摘要,お支払金額,お預り金額,振込依頼人名\n"
                   "2026/04/01,振込,,3822,ﾔﾏﾀﾞ ﾀﾛｳ\n"
                   "2026/04/01,電気料金,8400,,ﾃﾞﾝﾘﾖｸ\n"
                   "2026/04/01,振込,,5000,ﾐﾔｻﾞｷ\n"
                   "2026/04/01,振込,,一万円,ｻﾄｳ ﾊﾅｺ\n"
                   "2026/04/01,振込,,120000,ｶ)ﾅｿﾞﾉｶｲｼﾔ\n");
    return list.fileName();
}

} // namespace

void lookAtPayments(Walker &walker, app::frmAMain &window, const QDir &folder)
{
    walker.visit(
        u"receipts from a list"_s, [&] { walker.on(window).press(u"Command18"_s); },
        [&](QDialog &screen) {
            ui::file_dialogs::expectFile(payments(folder));
            walker.on(screen).press(u"Command1"_s);
            walker.picture(screen, u"receipts-from-a-list"_s);
            walker.visit(
                u"columns of a list"_s, [&] { walker.on(screen).press(u"Command4"_s); },
                [&](QDialog &columns) { walker.picture(columns, u"columns-of-a-list"_s); });
        });
}

} // namespace tour
