#pragma once

#include <QColor>
#include <QString>
#include <QTextCharFormat>

namespace masters
{

/// The character formatting that the company-name block knows: all that is read, shown, pasted and written.
struct TextLook
{
    QString family;
    double points = 12;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    QColor colour; // invalid: the printer's or the screen's own text colour

    bool operator==(const TextLook &) const = default;
};

/// The look of \a format; what the format leaves open comes from \a defaultFont.
TextLook lookOf(const QTextCharFormat &format, const QFont &defaultFont);

/// The format that shows \a look, with the size brought within the permitted range.
QTextCharFormat formatOf(const TextLook &look);

/// \a text without the characters that a text document gives a meaning of its own (frame and object marks,
/// paragraph separators, control characters); halves of surrogate pairs become U+FFFD. Tabs and line
/// separators stay.
QString plainCharacters(QStringView text);

} // namespace masters
