#include "printing/print_frame.h"

#include "printing/font_names.h"
#include "printing/queue/print_system.h"
#include "printing/sheet.h"
#include "workspace/settings.h"

#include <QFontDatabase>
#include <QPainter>

#include <array>
#include <cmath>
#include <utility>

namespace printing
{

namespace
{

struct PurposeKeys
{
    const workspace::SettingKey &printer;
    const workspace::SettingKey &font;
};

// In the order of Purpose.
constexpr std::array<PurposeKeys, 7> purposes{{
    {workspace::keys::printerName, workspace::keys::printerFont},
    {workspace::keys::kuroPrinterName, workspace::keys::kuroPrinterFont},
    {workspace::keys::motoPrinterName, workspace::keys::motoFont},
    {workspace::keys::meiboPrinterName, workspace::keys::meiboPrinterFont},
    {workspace::keys::oderPrinterName, workspace::keys::oderPrinterFont},
    {workspace::keys::fuPrinterName, workspace::keys::fuPrinterFont},
    {workspace::keys::hagakiPrinterName, workspace::keys::hagakiPrinterFont},
}};

const PurposeKeys &keysOf(Purpose purpose) { return purposes.at(static_cast<std::size_t>(purpose)); }

} // namespace

const workspace::SettingKey &printerKey(Purpose purpose) { return keysOf(purpose).printer; }

const workspace::SettingKey &fontKey(Purpose purpose) { return keysOf(purpose).font; }

base::Result<SelectedPrinter> selectPrinter(PrintSystem &system, const workspace::Settings &settings,
                                            Purpose purpose)
{
    const auto installed = system.queues();
    if (!installed)
        return installed.error();
    SelectedPrinter selected{*installed, settings.text(printerKey(purpose)), {}};
    if (installed->contains(selected.name))
        return selected;
    selected.missing = std::exchange(selected.name, QString());
    if (const auto usual = system.usualQueue(); usual && installed->contains(*usual))
        selected.name = *usual;
    else if (!installed->isEmpty())
        selected.name = installed->front();
    return selected;
}

QString fontFace(const workspace::Settings &settings, Purpose purpose)
{
    const QString face = installedFace(settings.text(fontKey(purpose)), QFontDatabase::families());
    if (!face.isEmpty())
        return face;
    const QStringList japanese = QFontDatabase::families(QFontDatabase::Japanese);
    return japanese.isEmpty() ? QString() : japanese.first();
}

int typePixels(double points) { return std::max(1, static_cast<int>(std::lround(points * twipsPerPoint))); }

QFont typeFont(const QString &face, double points, bool bold)
{
    QFont font(face);
    font.setPixelSize(typePixels(points));
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

void applyFont(QPainter &painter, const QString &face, double points, bool bold)
{
    painter.setFont(typeFont(face, points, bold));
}

} // namespace printing
