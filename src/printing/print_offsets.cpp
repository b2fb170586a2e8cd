#include "printing/print_offsets.h"

#include "text/numbers.h"
#include "workspace/settings.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

// Four points, the height of an empty line of the old forms; and half a ten-point character.
constexpr int stepDown = 141;
constexpr int stepRight = 175;

constexpr double slipTwipsHigh = 13041; // 230 mm
constexpr double slipTwipsWide = 6486;  // 114.4 mm

constexpr double transferLong = 184; // millimetres; the form itself is 180, the rest lies right
constexpr double transferShort = 114;

constexpr double mostSteps = 10'000; // what a box can hold in earnest

// "4.23", "3.5", "7"
QString millimetres(int hundredths) { return text::formatPlain(std::abs(hundredths) / 100.0); }

int wholeTwips(double twips) { return static_cast<int>(std::nearbyint(twips)); }

int stepsOf(const workspace::Settings &settings, const OffsetRule &rule)
{
    return offsetFrom(settings.text(rule.key), rule);
}

// Of offsets in millimetres. Tenths of a twip are whole numbers, so that a half is one.
QPoint twipsOf(const workspace::Settings &settings, const OffsetRule &right, const OffsetRule &down)
{
    constexpr double tenths = 10;
    const auto twips = [&settings](const OffsetRule &rule) {
        return wholeTwips(stepsOf(settings, rule) * (twipsPerMillimetre * tenths) / tenths);
    };
    return {twips(right), twips(down)};
}

} // namespace

namespace keys = workspace::keys;

const OffsetRule billDown{keys::offsetA, -4, -4, 20, stepDown, u"下へ", u"上へ"};
const OffsetRule noteDown{keys::offsetB, -4, -4, 20, stepDown, u"下へ", u"上へ"};
const OffsetRule receiptDown{keys::offsetC, -4, -4, 20, stepDown, u"下へ", u"上へ"};
const OffsetRule noteRight{keys::offsetL, -8, -8, 20, stepRight, u"右へ", u"左へ"};
const OffsetRule addresseeRight{keys::offsetF, std::nullopt, -10, 20};
const OffsetRule slipRight{keys::kuOffsetX, std::nullopt, -30, 60};
const OffsetRule slipDown{keys::kuOffsetY, std::nullopt, -30, 60};
const OffsetRule letterRight{keys::letterOffsetX, std::nullopt, -30, 60};
const OffsetRule letterDown{keys::letterOffsetY, std::nullopt, -30, 60};
const OffsetRule giftRight{keys::stOffsetAppX, std::nullopt, -30, 60};
const OffsetRule giftDown{keys::stOffsetAppY, std::nullopt, -30, 60};
const OffsetRule transferRight{keys::oderOffsetX, -2, -2, 20};
const OffsetRule transferDown{keys::oderOffsetY, -8, -8, 20};

int offsetFrom(const QString &text, const OffsetRule &rule)
{
    const double number = std::clamp(text::numberOrZero(text), -mostSteps, mostSteps);
    const int steps = static_cast<int>(number);
    return rule.lowest ? std::max(*rule.lowest, steps) : steps;
}

QString offsetLabel(int steps, const OffsetRule &rule)
{
    if (steps == 0)
        return u"標準"_s;
    return QString::fromUtf16(steps > 0 ? rule.forward : rule.backward) +
           millimetres(steps * rule.hundredths) + u"㎜移動"_s;
}

bool isFarOff(int steps, const OffsetRule &rule) { return steps < rule.least || steps > rule.most; }

NoteSteps noteSteps(const workspace::Settings &settings)
{
    return {stepsOf(settings, billDown),  stepsOf(settings, noteDown),       stepsOf(settings, receiptDown),
            stepsOf(settings, noteRight), stepsOf(settings, addresseeRight), settings.checked(keys::offsetD)};
}

void storeNoteSteps(workspace::Settings &settings, const NoteSteps &steps)
{
    settings.write(billDown.key, steps.billDown);
    settings.write(noteDown.key, steps.noteDown);
    settings.write(receiptDown.key, steps.receiptDown);
    settings.write(noteRight.key, steps.right);
    settings.write(addresseeRight.key, steps.addresseeRight);
    settings.write(keys::offsetD, steps.totalsHigher);
}

QPoint shipOffsetTwips(const workspace::Settings &settings) { return twipsOf(settings, slipRight, slipDown); }

QPoint letterOffsetTwips(const workspace::Settings &settings)
{
    return twipsOf(settings, letterRight, letterDown);
}

QPoint giftListOffsetTwips(const workspace::Settings &settings)
{
    return twipsOf(settings, giftRight, giftDown);
}

QPoint physicalOffsetTwips(const QMarginsF &unprintable)
{
    constexpr double twips = twipsPerInch / 25.4;
    return {wholeTwips(unprintable.left() * twips), wholeTwips(unprintable.top() * twips)};
}

std::optional<QSizeF> slipPaper(bool declared)
{
    if (!declared)
        return std::nullopt;
    return QSizeF(slipTwipsWide / twipsPerMillimetre, slipTwipsHigh / twipsPerMillimetre);
}

void setSlipPaper(Sheet &sheet)
{
    const QSizeF paper = *slipPaper(true);
    sheet.paperWidth = paper.width();
    sheet.paperHeight = paper.height();
    sheet.turned = true;
    sheet.drawnClockwise = true;
}

QPoint transferFormOffset(const workspace::Settings &settings)
{
    return {stepsOf(settings, transferRight), stepsOf(settings, transferDown)};
}

void setTransferFormPaper(Sheet &sheet, const workspace::Settings &settings)
{
    sheet.turned = settings.checked(keys::oderOption1);
    sheet.paperWidth = sheet.turned ? transferShort : transferLong;
    sheet.paperHeight = sheet.turned ? transferLong : transferShort;
}

} // namespace printing
