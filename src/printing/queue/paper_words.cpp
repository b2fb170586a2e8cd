#include "printing/queue/paper_words.h"

#include "printing/queue/windows_papers.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int twipsPerMillimetre = 57; // 56.7, rounded before it divides
constexpr double twipsPerTrueMillimetre = 1440 / 25.4;

bool isWithin(int code, std::size_t count) { return code >= 1 && code <= static_cast<int>(count); }

} // namespace

QString paperNameText(int code)
{
    if (isWithin(code, windowsPapers.size()))
        return QString::fromUtf16(windowsPapers.at(static_cast<std::size_t>(code - 1)).name);
    return (code < userPaper ? u"UNKNOWN(%1)"_s : u"USER(%1)"_s).arg(code);
}

QString paperSizeText(int code, const QSize &physicalMillimetres)
{
    if (isWithin(code, windowsPaperWords.size()))
        return QString::fromUtf16(windowsPaperWords.at(static_cast<std::size_t>(code - 1)));
    const QString what = code == userPaper ? u"ユーザー定義サイズ  "_s : u"User Size  "_s;
    return what + u"H %1 × W %2㎜"_s.arg(physicalMillimetres.height()).arg(physicalMillimetres.width());
}

QString binText(int code)
{
    for (const WindowsBin &bin : windowsBins) {
        if (bin.code == code)
            return QString::fromUtf16(bin.words);
    }
    return {};
}

int describedMillimetres(double pixels, double twipsPerPixel)
{
    return static_cast<int>(std::nearbyint(pixels * twipsPerPixel)) / twipsPerMillimetre;
}

QSize describedMillimetres(const QSizeF &paper)
{
    return {describedMillimetres(paper.width(), twipsPerTrueMillimetre),
            describedMillimetres(paper.height(), twipsPerTrueMillimetre)};
}

} // namespace printing
