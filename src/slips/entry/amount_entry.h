#pragma once

#include <QString>

#include <optional>

class QLineEdit;
class QWidget;

namespace slips
{

/// Reads the amount of money typed in \a box of \a screen, yen to four decimals. An amount that cannot be
/// taken is told, \a missing where there is none, and a negative one asked about; the cursor is then in the
/// box.
std::optional<double> readAmount(QWidget *screen, QLineEdit *box, const QString &missing);

} // namespace slips
