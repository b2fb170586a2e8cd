#pragma once

#include <QList>
#include <QStringList>

#include <optional>

// Addresses, names and goods stand on lines of the shop's own; a carrier's file has fields of other widths.
namespace shipping
{

enum class Borders {
    Blanks,   // between lines and at blanks
    Sensible, // also behind prefecture, city and house number
    Any,      // where it must be also within a word, but never within a number
};

/// \a lines in at most as many fields as \a widths, in bytes of CP932: all characters are there again, but
/// for blanks at a border. Lines stay apart where there is room, and two that meet in one field with a digit
/// or letter on either side get a blank between them. Nothing where they do not fit.
std::optional<QStringList> divided(const QStringList &lines, const QList<int> &widths, Borders borders);

} // namespace shipping
