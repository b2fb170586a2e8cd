#pragma once

#include "base/result.h"
#include "printing/purposes.h"

#include <QFont>
#include <QStringList>

class QPainter;

namespace workspace
{
class Settings;
} // namespace workspace

// What every print routine shares: each purpose keeps its own printer and font in the settings.
namespace printing
{

class PrintSystem;

/// The printer of a purpose, and what it was chosen from.
struct SelectedPrinter
{
    QStringList installed;
    QString name;    // to print on, and to be shown; empty: there is no printer at all
    QString missing; // the stored one, where it is not installed any more
};

/// Says of \a selected that the stored printer is gone, and which one stands in; empty where it is there.
QString missingInWords(const SelectedPrinter &selected);

/// The printer that is stored for \a purpose, or \a other in its place; where that is gone, the usual one.
base::Result<SelectedPrinter> selectPrinter(PrintSystem &system, const workspace::Settings &settings,
                                            Purpose purpose, const QString &other = {});

/// The face to print the purpose with: the stored one or \a other, without the "@" of vertical writing, or
/// what stands in for it on this machine.
QString fontFace(const workspace::Settings &settings, Purpose purpose, const QString &other = {});

/// Writes the settings to their store. Fails where they cannot be.
base::Status flushed(workspace::Settings &settings);

/// The size of type of so many points, in units of a painter that counts in twips.
int typePixels(double points);

/// The font to draw \a face with on such a painter.
QFont typeFont(const QString &face, double points, bool bold);

/// Sets the font of \a painter, whose units are twips, to \a face at \a points.
void applyFont(QPainter &painter, const QString &face, double points, bool bold = false);

} // namespace printing
