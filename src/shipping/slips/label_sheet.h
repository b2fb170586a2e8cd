#pragma once

#include "base/result.h"
#include "printing/sheet.h"

#include <QRectF>

#include <cstddef>
#include <functional>
#include <vector>

// Sheets of labels, and of tags that are cut apart: where their places are, and how several labels fill them.
// Measures are millimetres from the corner of the A4 paper.
namespace shipping
{

struct LabelSheet
{
    QString name; // as it is offered and stored
    int across = 1;
    int down = 1;
    double width = 0; // of a label
    double height = 0;
    double left = 0; // of the first one
    double top = 0;
    double pitchX = 0; // from the left edge of a label to that of the next one
    double pitchY = 0;
    double inset = 0; // what text keeps free along a label's edges; more at the paper's own

    [[nodiscard]] int places() const { return across * down; }
};

/// The label sheets that are sold, by the makers' measures.
const std::vector<LabelSheet> &labelSheets();

/// The one of labelSheets() called \a name; the first where there is none.
const LabelSheet &labelSheet(const QString &name);

/// Where the label in \a place stands; places count from 1, row by row. Fails for one that the sheet has not.
base::Result<QRectF> labelArea(const LabelSheet &sheet, int place);

/// The part of it that text may take: within the inset, and 8 mm from the paper's edges, which no printer
/// reaches. Fails as labelArea().
base::Result<QRectF> labelRoom(const LabelSheet &sheet, int place);

/// Where one of several labels comes to stand.
struct LabelSpot
{
    std::size_t page = 0;
    int place = 1;

    friend bool operator==(const LabelSpot &, const LabelSpot &) = default;
};

/// The places of \a count labels that fill sheets one after the other from the place \a first on. Fails as
/// labelArea().
base::Result<std::vector<LabelSpot>> labelSpots(const LabelSheet &sheet, std::size_t count, int first);

/// What a label says, as a sheet of any size of its own.
using LabelContent = std::function<printing::Sheet(std::size_t label)>;

/// The A4 pages of \a count labels from the place \a first on. What \a content makes is drawn out to a
/// label's room; its type gets larger or smaller by the lesser of both measures. Everything is \a moved right
/// and down, as the printer is adjusted. Fails as labelArea().
base::Result<std::vector<printing::Sheet>> labelPages(const LabelSheet &sheet, std::size_t count, int first,
                                                      const LabelContent &content, const QPointF &moved = {});

} // namespace shipping
