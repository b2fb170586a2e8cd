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
    walker.find<QLineEdit>(screen, u"txtKey1"_s).setText(key);
    walker.click(screen, u"Command1"_s);
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
        walker.click(screen, u"cmdMasterUpdate"_s);
        walker.choose(screen, u"dbcShohin"_s, u"りんご　原料用"_s);
        walker.type(screen, u"txtCnt"_s, QString::fromUtf16(slip.quantity));
        walker.type(screen, u"txtTanka"_s, QString::fromUtf16(slip.price));
        walker.click(screen, u"cmdSubAdd"_s);
        walker.click(screen, u"cmdNext"_s);
    }
}

void enterTax(Walker &walker, QDialog &screen)
{
    find(walker, screen, u"千曲"_s);
    walker.checkText(screen, u"txtPurchases"_s, u"42,267"_s);
    walker.checkText(screen, u"txtKingaku"_s, u"4,226"_s);
    walker.picture(screen, u"purchase-tax"_s);
    walker.click(screen, u"cmdSubAdd"_s);
    walker.checkText(screen, u"txtUnbooked"_s, u"0"_s);
    walker.checkText(screen, u"txtBalance"_s, u"46,493"_s);
    walker.picture(screen, u"purchase-tax-entered"_s);
}

} // namespace

void buyAndList(Walker &walker, QWidget &window, const QDir &folder)
{
    walker.visit(
        u"purchases"_s, [&] { walker.click(window, u"Command39"_s); },
        [&](QDialog &screen) { buy(walker, screen); });
    walker.visit(
        u"purchase tax"_s, [&] { walker.click(window, u"Command40"_s); },
        [&](QDialog &screen) { enterTax(walker, screen); });
    const QString fileName = folder.filePath(u"purchase-list.pdf"_s);
    walker.visit(
        u"purchase list"_s, [&] { walker.click(window, u"Command17"_s); },
        [&](QDialog &screen) {
            QApplication::processEvents(); // the list comes when the screen is there
            walker.checkText(screen, u"txtTotalBalance"_s, u"191,113"_s);
            walker.picture(screen, u"purchase-list"_s);
            walker.visit(
                u"purchase list preview"_s, [&] { walker.click(screen, u"Command2"_s); },
                [&](QDialog &preview) {
                    ui::file_dialogs::expectFile(fileName);
                    walker.click(preview, u"cmdPdf"_s);
                });
        });
    walker.check(QFileInfo(fileName).size() > 1000, u"the list of purchases is not there as PDF"_s);
}

} // namespace tour
