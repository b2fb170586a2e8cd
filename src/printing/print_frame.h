#pragma once

#include "base/result.h"

#include <QFont>
#include <QStringList>

class QPainter;

namespace workspace
{
class Settings;
struct SettingKey;
} // namespace workspace

// What every print routine shares: each purpose keeps its own printer and font in the settings.
namespace printing
{

class PrintSystem;

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

/// The printer of a purpose, and what it was chosen from.
struct SelectedPrinter
{
    QStringList installed;
    QString name;    // to print on, and to be shown; empty: there is no printer at all
    QString missing; // the stored one, where it is not installed any more
};

/// The printer that is stored for \a purpose; where that is gone, the usual one.
base::Result<SelectedPrinter> selectPrinter(PrintSystem &system, const workspace::Settings &settings,
                                            Purpose purpose);

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
