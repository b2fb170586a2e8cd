#pragma once

#include <QFont>
#include <QStringList>

class QPainter;
class QPrinter;

namespace workspace
{
class Settings;
struct SettingKey;
} // namespace workspace

// What every print routine shares: each purpose keeps its own printer and font in the settings.
namespace printing
{

enum class Purpose {
    DeliveryNotesAndBills, // and receipts of goods
    ShippingSlips,
    GiftSheets,
    Rosters,
    TransferForms,
    Addresses,
    AddressRange, // over a chosen range of the customers
};

const workspace::SettingKey &printerKey(Purpose purpose);
const workspace::SettingKey &fontKey(Purpose purpose);

/// The names of the system's printers, as the clerk knows them.
QStringList installedPrinters();

/// Makes the purpose's stored printer the one \a printer prints on. \return its name, to be shown; where the
/// stored one is not installed the system's default stays, and its name (empty: no printer at all) is
/// returned
QString selectPrinter(QPrinter &printer, const workspace::Settings &settings, Purpose purpose);

/// The face to print the purpose with: the stored one, without the "@" of vertical writing, or what stands in
/// for it on this machine.
QString fontFace(const workspace::Settings &settings, Purpose purpose);

/// The size of type of so many points, in units of a painter that counts in twips.
int typePixels(double points);

/// The font to draw \a face with on such a painter.
QFont typeFont(const QString &face, double points, bool bold);

/// Sets the font of \a painter, whose units are twips, to \a face at \a points.
void applyFont(QPainter &painter, const QString &face, double points, bool bold = false);

} // namespace printing
