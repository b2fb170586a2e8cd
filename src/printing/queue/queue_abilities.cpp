#include "printing/queue/queue_abilities.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr double tolerance = 1;  // millimetres; makers round inches
constexpr int readable = 180;    // dots to the inch: 24 pins, the fewest that a kanji is drawn with
constexpr double perInch = 25.4; // millimetres

bool isAlike(const QSizeF &a, const QSizeF &b)
{
    return std::abs(a.width() - b.width()) <= tolerance && std::abs(a.height() - b.height()) <= tolerance;
}

// "custom_min_25.4x25.4mm"
std::optional<QSizeF> boundFrom(const QStringList &media, const QString &beginning)
{
    static const QRegularExpression measures(uR"(^(\d+(?:\.\d+)?)x(-?\d+(?:\.-?\d+)?)(mm|in)$)"_s);
    for (const QString &name : media) {
        if (!name.startsWith(beginning))
            continue;
        const auto match = measures.match(name.mid(beginning.size()));
        if (!match.hasMatch())
            continue;
        const double unit = match.capturedView(3) == u"in" ? perInch : 1;
        bool isNumber = false;
        const double height = match.captured(2).toDouble(&isNumber);
        return QSizeF(match.captured(1).toDouble() * unit, isNumber ? height * unit : -1);
    }
    return std::nullopt;
}

const Medium *knownPaper(const QueueAbilities &abilities, const QSizeF &paper)
{
    const auto found = std::ranges::find_if(
        abilities.media, [&paper](const Medium &medium) { return isAlike(medium.size, paper); });
    return found == abilities.media.end() ? nullptr : &*found;
}

bool isReadable(const Resolution &resolution)
{
    return resolution.across >= readable && resolution.along >= readable;
}

} // namespace

std::optional<CustomSizes> customSizesFrom(const QStringList &media)
{
    const auto least = boundFrom(media, u"custom_min_"_s);
    const auto most = boundFrom(media, u"custom_max_"_s);
    if (!least || !most)
        return std::nullopt;
    CustomSizes sizes{*least, most->width(), std::nullopt, {}};
    // CUPS counts a form of thirty metres, which its drivers of dot-matrix printers allow, over into negative
    // numbers: "15x-490.-931in".
    if (most->height() > 0)
        sizes.longest = most->height();
    return sizes;
}

bool takesPaper(const QueueAbilities &abilities, const QSizeF &paper)
{
    if (abilities.media.empty() && !abilities.custom)
        return true;
    if (knownPaper(abilities, paper))
        return true;
    if (!abilities.custom)
        return false;
    const CustomSizes &custom = *abilities.custom;
    return paper.width() >= custom.least.width() - tolerance && paper.width() <= custom.widest + tolerance &&
           paper.height() >= custom.least.height() - tolerance &&
           (!custom.longest || paper.height() <= *custom.longest + tolerance);
}

QMarginsF unprintableOn(const QueueAbilities &abilities, const QSizeF &paper)
{
    if (const Medium *medium = knownPaper(abilities, paper))
        return medium->margins;
    if (abilities.custom && !abilities.custom->margins.isNull())
        return abilities.custom->margins;
    return abilities.usualPaper ? abilities.usualPaper->margins : QMarginsF();
}

std::optional<Resolution> resolutionToAskFor(const QueueAbilities &abilities)
{
    if (!abilities.usualResolution || isReadable(*abilities.usualResolution))
        return std::nullopt;
    std::optional<Resolution> found;
    for (const Resolution &resolution : abilities.resolutions) {
        if (isReadable(resolution) &&
            (!found || resolution.across * resolution.along < found->across * found->along))
            found = resolution;
    }
    return found;
}

} // namespace printing
