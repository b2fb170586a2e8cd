#include "printing/print_frame.h"

#include "app/settings.h"
#include "printing/font_names.h"
#include "printing/sheet.h"

#include <QFontDatabase>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

#include <array>
#include <cmath>

namespace printing
{

namespace
{

struct PurposeKeys
{
    const app::SettingKey &printer;
    const app::SettingKey &font;
};

// In the order of Purpose.
constexpr std::array<PurposeKeys, 7> purposes{{
    {app::keys::printerName, app::keys::printerFont},
    {app::keys::kuroPrinterName, app::keys::kuroPrinterFont},
    {app::keys::motoPrinterName, app::keys::motoFont},
    {app::keys::meiboPrinterName, app::keys::meiboPrinterFont},
    {app::keys::oderPrinterName, app::keys::oderPrinterFont},
    {app::keys::fuPrinterName, app::keys::fuPrinterFont},
    {app::keys::hagakiPrinterName, app::keys::hagakiPrinterFont},
}};

const PurposeKeys &keysOf(Purpose purpose) { return purposes.at(static_cast<std::size_t>(purpose)); }

} // namespace

const app::SettingKey &printerKey(Purpose purpose) { return keysOf(purpose).printer; }

const app::SettingKey &fontKey(Purpose purpose) { return keysOf(purpose).font; }

QStringList installedPrinters() { return QPrinterInfo::availablePrinterNames(); }

QString selectPrinter(QPrinter &printer, const app::Settings &settings, Purpose purpose)
{
    const QString stored = settings.text(printerKey(purpose));
    const QStringList installed = installedPrinters();
    if (installed.contains(stored))
        printer.setPrinterName(stored);
    else if (const QString usual = QPrinterInfo::defaultPrinterName(); !usual.isEmpty())
        printer.setPrinterName(usual);
    return installed.isEmpty() ? QString() : printer.printerName();
}

QString fontFace(const app::Settings &settings, Purpose purpose)
{
    const QString face = installedFace(settings.text(fontKey(purpose)), QFontDatabase::families());
    if (!face.isEmpty())
        return face;
    const QStringList japanese = QFontDatabase::families(QFontDatabase::Japanese);
    return japanese.isEmpty() ? QString() : japanese.first();
}

void applyFont(QPainter &painter, const QString &face, double points, bool bold)
{
    QFont font(face);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(points * twipsPerPoint))));
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    painter.setFont(font);
}

} // namespace printing
