#pragma once

#include <QString>

#include <vector>

// Vertical writing, character by character: the fonts' own vertical forms are out of Qt's reach, so
// horizontal ones are turned, mirrored and shifted as those forms would be.
namespace printing
{

/// How a character stands in its square of a vertical column.
enum class VerticalForm {
    Upright,  // kanji, kana, full-width letters and digits
    Turned,   // by 90 degrees clockwise: dashes, dots, brackets, Latin and half-width kana
    Mirrored, // turned and mirrored: ー and 〜, which merely turned curl the wrong way
    Comma,    // to the upper right: 、。
    SmallKana // a little to the upper right: っゃゅょ
};

VerticalForm verticalForm(char32_t character);

/// What takes one square: a character with the marks that belong to it, or two digits side by side.
struct VerticalSquare
{
    QString text;
    VerticalForm form = VerticalForm::Upright;
    bool pair = false; // two half-width digits in one square
};

/// \a text as squares from top to bottom. Half-width characters become full-width ones first.
/// \a pairDigits: a run of exactly two digits shares a square; one of another length stands digit by digit.
std::vector<VerticalSquare> verticalSquares(const QString &text, bool pairDigits);

/// How long the column of \a text is at \a points, millimetres.
double columnLength(const QString &text, bool pairDigits, double points);

/// How far a form moves within its square, in parts of its size: right, and up.
double verticalShift(VerticalForm form);

} // namespace printing
