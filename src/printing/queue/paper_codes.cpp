#include "printing/queue/paper_codes.h"

#include "printing/queue/paper_words.h"
#include "printing/queue/windows_papers.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr double tenths = 10;    // of a millimetre
constexpr double tolerance = 1;  // millimetres; makers round inches
constexpr double noPaper = 1000; // further off than any

double distance(const WindowsPaper &paper, const QSizeF &size)
{
    if (paper.width == 0)
        return noPaper;
    return std::max(std::abs(paper.width / tenths - size.width()),
                    std::abs(paper.height / tenths - size.height()));
}

} // namespace

// Of papers of the same size the first one is the usual: LETTER, not NOTE.
std::optional<int> paperCode(const QSizeF &size)
{
    const auto nearest = std::ranges::min_element(windowsPapers, {}, [&size](const WindowsPaper &paper) {
        return std::round(distance(paper, size) * tenths);
    });
    if (distance(*nearest, size) > tolerance)
        return std::nullopt;
    return static_cast<int>(nearest - windowsPapers.begin()) + 1;
}

std::vector<ListedPaper> listedPapers(const QueueAbilities &abilities)
{
    std::vector<ListedPaper> papers;
    int ofDriver = userPaper;
    for (const Medium &medium : abilities.media) {
        const auto code = paperCode(medium.size);
        // The same paper a second time is that without margins.
        if (!code || std::ranges::find(papers, *code, &ListedPaper::code) == papers.end())
            papers.push_back({code ? *code : ++ofDriver, medium.size});
    }
    if (abilities.custom)
        papers.push_back({userPaper, {}});
    return papers;
}

std::optional<ListedPaper> usualPaper(const QueueAbilities &abilities)
{
    if (!abilities.usualPaper)
        return std::nullopt;
    const auto papers = listedPapers(abilities);
    const auto found = std::ranges::find_if(
        papers, [code = paperCode(abilities.usualPaper->size), &abilities](const ListedPaper &paper) {
            return code ? paper.code == *code : paper.size == abilities.usualPaper->size;
        });
    return found == papers.end() ? ListedPaper{userPaper, abilities.usualPaper->size} : *found;
}

int binCode(const QString &source)
{
    static const std::array<std::pair<QString, int>, 20> codes{{
        {u"auto"_s, 7},
        {u"main"_s, 1},
        {u"top"_s, 1},
        {u"upper"_s, 1},
        {u"tray-1"_s, 1},
        {u"bottom"_s, 2},
        {u"lower"_s, 2},
        {u"tray-2"_s, 2},
        {u"middle"_s, 3},
        {u"manual"_s, 4},
        {u"by-pass-tray"_s, 4},
        {u"multipurpose"_s, 4},
        {u"envelope"_s, 5},
        {u"envelope-manual"_s, 6},
        {u"tractor"_s, 8},
        {u"hagaki"_s, 9},
        {u"small-format"_s, 9},
        {u"large-format"_s, 10},
        {u"large-capacity"_s, 11},
        {u"cassette"_s, 14},
    }};
    const auto found =
        std::ranges::find_if(codes, [&source](const auto &code) { return code.first == source; });
    return found == codes.end() ? 0 : found->second;
}

int usualBinCode(const QueueAbilities &abilities)
{
    const bool isSilent = abilities.usualBin.isEmpty() && !abilities.bins.isEmpty();
    return binCode(isSilent ? u"auto"_s : abilities.usualBin);
}

} // namespace printing
