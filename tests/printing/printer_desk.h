#pragma once

#include "printing/DialogPrinterP.h"
#include "printing/DialogPrinterSet.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "ui/up_down.h"
#include "workspace/settings.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

// The printer dialogs over two printers of different kinds.
namespace printing
{

using namespace Qt::StringLiterals;

inline const QSizeF continuous(241.3, 114.3);

inline QueueAbilities laser()
{
    return {.media = {{u"iso_a5_148x210mm"_s, {148, 210}, {4, 4, 4, 4}},
                      {u"iso_a4_210x297mm"_s, {210, 297}, {4, 4, 4, 4}},
                      {u"odd"_s, {95, 95}, {4, 4, 4, 4}}},
            .usualPaper = Medium{u"iso_a4_210x297mm"_s, {210, 297}, {4, 4, 4, 4}},
            .bins = {u"tray-1"_s, u"manual"_s},
            .usualBin = u"manual"_s,
            .mostCopies = 999};
}

inline QueueAbilities needles()
{
    return {.media = {{u"na_fanfold-us"_s, {377.8, 279.4}, {6, 6, 6, 6}}},
            .custom = CustomSizes{{50, 50}, 381, std::nullopt, {6, 6, 6, 6}},
            .usualPaper = Medium{u"custom"_s, continuous, {6, 6, 6, 6}},
            .usualBin = u"tractor"_s,
            .mostCopies = 1};
}

// A dialog over two printers, "LASER" for cut paper and "DOT" for continuous forms.
template <class Dialog>
struct Desk
{
    template <class... More>
    explicit Desk(const std::function<void(FakePrinters &, FreshShop &)> &prepare, More &&...more)
    {
        printers->can = {{u"LASER"_s, laser()}, {u"DOT"_s, needles()}};
        if (prepare)
            prepare(*printers, shop);
        keepPrintSystem(shop.workspace, printers);
        dialog = std::make_unique<Dialog>(shop.workspace, std::forward<More>(more)...);
        driver = std::make_unique<ScreenDriver>(dialog.get());
        driver->show();
    }

    [[nodiscard]] QString stored(const workspace::SettingKey &key) const { return shop.settings.text(key); }
    [[nodiscard]] QString label(const char *name) const
    {
        auto &found = driver->template the<QLabel>(name);
        return found.isVisible() ? found.text() : QString();
    }
    [[nodiscard]] QString box(const char *name) const { return driver->box(name).text(); }
    void click(const char *arrows, bool up) const
    {
        const auto buttons = driver->template the<ui::UpDown>(arrows).template findChildren<QToolButton *>();
        QTest::mouseClick(buttons.at(up ? 0 : 1), Qt::LeftButton);
    }
    void esc() const { QTest::keyClick(dialog.get(), Qt::Key_Escape); }

    FreshShop shop;
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    std::unique_ptr<Dialog> dialog;
    std::unique_ptr<ScreenDriver> driver;
};

// Notes on a continuous form, with one word that is moved by the steps.
inline base::Result<Document> note(const NoteSteps &steps)
{
    Sheet sheet;
    sheet.paperWidth = continuous.width();
    sheet.paperHeight = continuous.height();
    sheet.texts.push_back({1000, 1000, u"下へ%1段"_s.arg(steps.noteDown), 12});
    Document document;
    document.title = u"位置合わせ"_s;
    document.sheets.push_back(sheet);
    return document;
}

struct NoteDesk : Desk<DialogPrinterSet>
{
    explicit NoteDesk(const std::function<void(FakePrinters &, FreshShop &)> &prepare = {})
        : Desk(prepare, note)
    {}
};

struct SlipDesk : Desk<DialogPrinterP>
{
    explicit SlipDesk(const std::function<void(FakePrinters &, FreshShop &)> &prepare = {})
        : Desk(prepare)
    {}
};

} // namespace printing
