#pragma once

#include "printing/sheet.h"

#include <QMarginsF>
#include <QPoint>
#include <QSizeF>

#include <optional>

namespace workspace
{
class Settings;
struct SettingKey;
} // namespace workspace

// How far the print positions are moved: the shopkeeper's adjustments of the printer dialogs, and what the
// printer itself cannot reach. docs/printers.md tells the shopkeeper's side.
namespace printing
{

/// A box of the printer dialogs in which a position is moved by whole steps.
struct OffsetRule
{
    const workspace::SettingKey &key;
    std::optional<int> lowest; // nothing less can be entered
    int least;                 // as far as the arrows go
    int most;
    int hundredths = 0;            // of a millimetre a step, for its label; 0: it has none
    const char16_t *forward = u""; // words of the label
    const char16_t *backward = u"";
};

extern const OffsetRule billDown;       // OffsetA
extern const OffsetRule noteDown;       // OffsetB
extern const OffsetRule receiptDown;    // OffsetC, of the receipt of goods
extern const OffsetRule noteRight;      // OffsetL, of all three
extern const OffsetRule addresseeRight; // OffsetF, half-width characters
extern const OffsetRule slipRight;      // kuOffsetX, millimetres
extern const OffsetRule slipDown;       // kuOffsetY, millimetres
extern const OffsetRule letterRight;    // letterOffsetX, of postcards and envelopes, millimetres
extern const OffsetRule letterDown;     // letterOffsetY, millimetres
extern const OffsetRule giftRight;      // stOffsetAppX, of the gift list by sender, millimetres
extern const OffsetRule giftDown;       // stOffsetAppY, millimetres
extern const OffsetRule transferRight;  // OderOffsetX, of postal transfer forms, millimetres
extern const OffsetRule transferDown;   // OderOffsetY, millimetres

/// What \a text counts as: whole steps, none where it is no number, and not below the lowest.
int offsetFrom(const QString &text, const OffsetRule &rule);

/// "下へ2.82㎜移動", "標準" for none.
QString offsetLabel(int steps, const OffsetRule &rule);

/// Whether \a steps are more than anybody needs, so that they are rather a slip of the hand.
bool isFarOff(int steps, const OffsetRule &rule);

/// How delivery notes, receipts of goods and bills are moved, in steps of the rules above.
struct NoteSteps
{
    int billDown = 0;
    int noteDown = 0;
    int receiptDown = 0;
    int right = 0;
    int addresseeRight = 0;
    bool totalsHigher = false; // those of the receipt of goods

    friend bool operator==(const NoteSteps &, const NoteSteps &) = default;
};

NoteSteps noteSteps(const workspace::Settings &settings);
void storeNoteSteps(workspace::Settings &settings, const NoteSteps &steps);

/// How far shipping slips are moved right and down, whole twips; half a twip goes to the even one.
QPoint shipOffsetTwips(const workspace::Settings &settings);

/// The same of postcards and envelopes, and of the gift list by sender.
QPoint letterOffsetTwips(const workspace::Settings &settings);
QPoint giftListOffsetTwips(const workspace::Settings &settings);

/// What the printer cannot reach at the left and at the top, whole twips of its own scaling, 1440 to the
/// inch.
QPoint physicalOffsetTwips(const QMarginsF &unprintable);

/// The paper that shipping slips are declared on, as it is fed, millimetres; nothing where the printer's own
/// is to be taken. \a declared: what the box "用紙サイズの通知" says.
std::optional<QSizeF> slipPaper(bool declared);

/// Declares the paper of a shipping slip on \a sheet, which is read across it.
void setSlipPaper(Sheet &sheet);

/// How far postal transfer forms are moved, whole millimetres, from where their layout has them. The two
/// millimetres by which the forms have always begun further down are in the layout, whose measures so are
/// those of the paper.
QPoint transferFormOffset(const workspace::Settings &settings);

/// Declares the paper of a postal transfer form on \a sheet, upright or turned as the settings say.
void setTransferFormPaper(Sheet &sheet, const workspace::Settings &settings);

} // namespace printing
