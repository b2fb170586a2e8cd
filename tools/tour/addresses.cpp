#include "addresses.h"

#include "walker.h"

#include "ui/file_dialogs.h"

#include <QAction>
#include <QDialog>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

void addressOne(Walker &walker, QWidget &window)
{
    walker.visit(
        u"address printing"_s, [&] { walker.on(window).the<QAction>(u"mnuAdena"_s).trigger(); },
        [&](QDialog &screen) {
            walker.on(screen).type(u"txtKey"_s, u"山"_s);
            walker.on(screen).press(u"cmdFind"_s);
            walker.picture(screen, u"address-printing"_s);
            walker.visit(
                u"address options"_s, [&] { walker.on(screen).press(u"cmdPrint"_s); },
                [&](QDialog &options) {
                    walker.picture(options, u"address-options"_s);
                    walker.on(options).choose(u"cmbPaper"_s, u"宛名ラベル"_s);
                    walker.picture(options, u"address-label-options"_s);
                    walker.on(options).choose(u"cmbPaper"_s, u"はがき"_s);
                    walker.on(options).press(u"optVertical"_s);
                });
        });
}

} // namespace

void addressCustomers(Walker &walker, QWidget &window, const QDir &folder)
{
    addressOne(walker, window);
    const QString fileName = folder.filePath(u"addresses.pdf"_s);
    walker.visit(
        u"bulk addresses"_s, [&] { walker.on(window).press(u"Command61"_s); },
        [&](QDialog &screen) {
            walker.on(screen).choose(u"Combo1"_s, u"すべて選択"_s);
            walker.picture(screen, u"bulk-addresses"_s);
            walker.visit(
                u"addresses preview"_s, [&] { walker.on(screen).press(u"cmdPreview"_s); },
                [&](QDialog &preview) {
                    walker.picture(preview, u"addresses-preview"_s);
                    ui::file_dialogs::expectFile(fileName);
                    walker.on(preview).press(u"cmdPdf"_s);
                });
        });
    walker.pages(fileName, u"addresses"_s);
}

} // namespace tour
