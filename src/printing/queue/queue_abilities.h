#pragma once

#include <QMarginsF>
#include <QSizeF>
#include <QStringList>

#include <optional>
#include <vector>

// What a print queue says that it can do. All measures of paper are millimetres, as it is fed.
namespace printing
{

/// A paper that the queue knows.
struct Medium
{
    QString name; // as the system names it: "iso_a4_210x297mm"
    QSizeF size;
    QMarginsF margins; // where the printer cannot print
};

/// Paper of any size between the two. A length that the queue does not tell has no bound.
struct CustomSizes
{
    QSizeF least;
    double widest = 0;
    std::optional<double> longest;
    QMarginsF margins{}; // where the printer cannot print on such paper
};

/// Dots to the inch.
struct Resolution
{
    int across = 0;
    int along = 0;

    friend bool operator==(const Resolution &, const Resolution &) = default;
};

/// How a queue is just now.
struct QueueState
{
    bool isStopped = false;
    bool isAccepting = true;
    QStringList reasons{}; // as the system names them: "media-empty-error"
};

struct QueueAbilities
{
    std::vector<Medium> media{};
    std::optional<CustomSizes> custom{};
    std::optional<Medium> usualPaper{}; // that it prints on unless it is told otherwise
    QStringList bins{};                 // as the system names them: "tray-1", "manual"
    QString usualBin{};                 // that it feeds from unless it is told otherwise; empty: unknown
    int mostCopies = 1;
    std::vector<Resolution> resolutions{};
    std::optional<Resolution> usualResolution{};
    QueueState state{};
};

/// The bounds that the queue names among its media, as "custom_min_25.4x25.4mm" and "custom_max_15x30in".
/// Nothing without both.
std::optional<CustomSizes> customSizesFrom(const QStringList &media);

/// Whether the queue takes paper of this size: one that it knows, to a millimetre, or that it lets anybody
/// name. A queue that tells of no paper at all (one that passes everything on) takes all.
bool takesPaper(const QueueAbilities &abilities, const QSizeF &paper);

/// Where the queue cannot print on \a paper: by that paper, else as on a sheet of any size or on its usual
/// one; none where the queue does not tell.
QMarginsF unprintableOn(const QueueAbilities &abilities, const QSizeF &paper);

/// The resolution to ask for: nothing where the usual one will do. Dot-matrix printers begin with 60 dots to
/// the inch, too few for a kanji to be read.
std::optional<Resolution> resolutionToAskFor(const QueueAbilities &abilities);

} // namespace printing
