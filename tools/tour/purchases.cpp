#include "purchases.h"

#include "walker.h"

#include "ui/file_dialogs.h"

#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

void find(Walker &walker, QDialog &screen, const QString &key)
{
    walker.on(screen).the<QLineEdit>(u"txtKey1"_s).setText(key);
    walker.on(screen).press(u"Command1"_s);
}

void buy(Walker &walker, QDialog &screen)
{
    const struct
    {
        const char16_t *supplier;
        const char16_t *quantity;
        const char16_t *price;
    } slips[] = {{u"千曲", u"120", u"215"}, {u"安曇野", u"40", u"1980"}, {u"千曲", u"33", u"499"}};
    for (const auto &slip : slips) {
        find(walker, screen, QString::fromUtf16(slip.supplier));
        walker.on(screen).press(u"cmdMasterUpdate"_s);
        walker.on(screen).choose(u"dbcShohin"_s, u"りんご　原料用"_s);
        walker.on(screen).enter(u"txtCnt"_s, QString::fromUtf16(slip.quantity));
        walker.on(screen).enter(u"txtTanka"_s, QString::fromUtf16(slip.price));
        walker.on(screen).press(u"cmdSubAdd"_s);
        walker.on(screen).press(u"cmdNext"_s);
    }
}

void enterTax(Walker &walker, QDialog &screen)
{
    find(walker, screen, u"千曲"_s);
    walker.checkText(screen, u"txtPurchases"_s, u"42,267"_s);
    walker.checkText(screen, u"txtKingaku"_s, u"4,226"_s);
    walker.picture(screen, u"purchase-tax"_s);
    walker.on(screen).press(u"cmdSubAdd"_s);
    walker.checkText(screen, u"txtUnbooked"_s, u"0"_s);
    walker.checkText(screen, u"txtBalance"_s, u"46,493"_s);
    walker.picture(screen, u"purchase-tax-entered"_s);
}

} // namespace

void buyAndList(Walker &walker, QWidget &window, const QDir &folder)
{
    walker.visit(
        u"purchases"_s, [&] { walker.on(window).press(u"Command39"_s); },
        [&](QDialog &screen) { buy(walker, screen); });
    walker.visit(
        u"purchase tax"_s, [&] { walker.on(window).press(u"Command40"_s); },
        [&](QDialog &screen) { enterTax(walker, screen); });
    const QString fileName = folder.filePath(u"purchase-list.pdf"_s);
    walker.visit(
        u"purchase list"_s, [&] { walker.on(window).press(u"Command17"_s); },
        [&](QDialog &screen) {
            QApplication::processEvents(); // the list comes when the screen is there
            walker.checkText(screen, u"txtTotalBalance"_s, u"191,113"_s);
            // 124,620 yen from one who is not registered, with 11,329 of tax.
            walker.checkText(screen, u"txtTotalDeductible"_s, u"9,063"_s);
            walker.picture(screen, u"purchase-list"_s);
            walker.visit(
                u"purchase list preview"_s, [&] { walker.on(screen).press(u"Command2"_s); },
                [&](QDialog &preview) {
                    ui::file_dialogs::expectFile(fileName);
                    walker.on(preview).press(u"cmdPdf"_s);
                });
        });
    walker.check(QFileInfo(fileName).size() > 1000, u"the list of purchases is not there as PDF"_s);
}

} // namespace tour
