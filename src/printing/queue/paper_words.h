#pragma once

#include <QSize>
#include <QSizeF>
#include <QString>

// Papers and bins by their Windows codes, in words.
namespace printing
{

/// The code of paper that the user sizes himself. Codes above it are the driver's own.
inline constexpr int userPaper = 256;

/// The constant by which Windows publishes the paper ("JAPANESE_POSTCARD"), or "UNKNOWN(200)", "USER(257)".
QString paperNameText(int code);

/// The paper in words; by its size on the printer, whole millimetres, where there are none of its own.
QString paperSizeText(int code, const QSize &physicalMillimetres);

/// What is done for the bin \a code; empty for one that is not known.
QString binText(int code);

/// A length on the printer in whole millimetres, as the description of a paper tells it: whole twips by 57,
/// without the rest, and so a little short (an A4 sheet is 208 wide). That is meant.
int describedMillimetres(double pixels, double twipsPerPixel);

/// The same of both sides of a paper in millimetres.
QSize describedMillimetres(const QSizeF &paper);

} // namespace printing
