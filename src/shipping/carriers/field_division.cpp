#include "shipping/carriers/field_division.h"

#include "registers/postal/prefectures.h"
#include "text/cp932.h"

#include <algorithm>
#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr qsizetype longestText = 300; // characters; more is in no parcel's address
constexpr int impossible = std::numeric_limits<int>::max() / 4;

// What it costs the reader when a field ends at a place, or when a line goes on in the field of another.
enum Cost {
    BetweenLines = 0,
    JoinedLines = 3,
    AtBlank = 4,
    BehindNumber = 6,
    BehindCity = 8,
    BetweenScripts = 20,
    WithinWord = 40
};

int highestCost(Borders borders)
{
    switch (borders) {
    case Borders::Blanks:
        return AtBlank;
    case Borders::Sensible:
        return BehindCity;
    case Borders::Any:
        break;
    }
    return WithinWord;
}

bool isBlank(QChar c) { return c == u' ' || c == u'　'; }

bool isNumberSign(QChar c) { return c.isDigit() || u"-－‐−ー〇一二三四五六七八九十"_s.contains(c); }

bool isKatakana(QChar c) { return c.script() == QChar::Script_Katakana || c == u'ー'; }

bool isAlphanumeric(QChar c) { return c.isDigit() || c.script() == QChar::Script_Latin; }

qsizetype prefectureLength(const QString &text)
{
    for (const QStringView prefecture : registers::prefectures) {
        if (text.startsWith(prefecture))
            return prefecture.size();
    }
    return 0;
}

/// The lines as one text, and what a border costs before each of its characters.
class Divided
{
public:
    Divided(const QStringList &lines, Borders borders)
    {
        std::vector<qsizetype> lineStarts;
        for (const QString &line : lines) {
            const QString plain = line.trimmed();
            if (plain.isEmpty())
                continue;
            if (!m_text.isEmpty()) {
                if (isAlphanumeric(m_text.back()) && isAlphanumeric(plain.front()))
                    m_text += u'　';
                lineStarts.push_back(m_text.size());
            }
            m_text += plain;
        }
        m_costs.assign(std::size_t(m_text.size()) + 1, impossible);
        for (qsizetype at = 1; at < m_text.size(); ++at) {
            if (const int found = costBefore(at); found <= highestCost(borders))
                cost(at) = found;
        }
        for (const qsizetype start : lineStarts)
            cost(start) = BetweenLines;
        m_lineStarts = std::move(lineStarts);
    }

    [[nodiscard]] const QString &text() const { return m_text; }

    // The text from \a at on in the fields from \a field on, with the least cost.
    std::optional<QStringList> fill(const QList<int> &widths)
    {
        const auto size = std::size_t(m_text.size()) + 1;
        const auto fields = std::size_t(widths.size());
        std::vector<std::vector<int>> best(fields + 1, std::vector<int>(size, impossible));
        std::vector<std::vector<qsizetype>> ends(fields, std::vector<qsizetype>(size, 0));
        best[fields][size - 1] = 0;
        for (std::size_t field = fields; field-- > 0;) {
            for (qsizetype at = 0; at <= m_text.size(); ++at) {
                const auto [end, least] = bestEnd(at, widths[qsizetype(field)], best[field + 1]);
                ends[field][std::size_t(at)] = end;
                best[field][std::size_t(at)] = least;
            }
        }
        return best[0][0] < impossible ? std::optional(cut(ends)) : std::nullopt;
    }

private:
    int &cost(qsizetype at) { return m_costs[std::size_t(at)]; }

    [[nodiscard]] int costBefore(qsizetype at) const
    {
        const QChar before = m_text[at - 1];
        const QChar behind = m_text[at];
        if (isBlank(before) || isBlank(behind))
            return AtBlank;
        if (before.isHighSurrogate() || (isNumberSign(before) && isNumberSign(behind)))
            return impossible;
        if (endsNumber(at))
            return BehindNumber;
        const bool isCity = u"市区町村郡"_s.contains(before) && at > prefectureLength(m_text) + 1;
        if (at == prefectureLength(m_text) || isCity)
            return BehindCity;
        if (isAlphanumeric(before) && isAlphanumeric(behind))
            return impossible;
        return isKatakana(before) != isKatakana(behind) ? BetweenScripts : WithinWord;
    }

    // Whether "1-2-3" or "3階" is complete before \a at.
    [[nodiscard]] bool endsNumber(qsizetype at) const
    {
        if (m_text[at - 1].isDigit())
            return !u"丁番号階FＦ室条区市棟"_s.contains(m_text[at]);
        const QStringView before = QStringView(m_text).first(at);
        return before.endsWith(u"丁目") || before.endsWith(u"番地") ||
               (u"号階室棟"_s.contains(before.back()) && at > 1 && m_text[at - 2].isDigit());
    }

    [[nodiscard]] int joinsWithin(qsizetype from, qsizetype to) const
    {
        return JoinedLines * int(std::count_if(m_lineStarts.begin(), m_lineStarts.end(),
                                               [&](qsizetype start) { return start > from && start < to; }));
    }

    // Where the field that begins with \a at ends best, and what all from there costs.
    [[nodiscard]] std::pair<qsizetype, int> bestEnd(qsizetype at, int width,
                                                    const std::vector<int> &behind) const
    {
        std::pair<qsizetype, int> best{at, at == m_text.size() ? 0 : impossible};
        const qsizetype most = at + text::leftCp932(QStringView(m_text).sliced(at), width).size();
        const bool endsInBlank = most < m_text.size() && isBlank(m_text[most]);
        for (qsizetype end = at + 1; end <= most + (endsInBlank ? 1 : 0); ++end) {
            const int border = end == m_text.size() ? 0 : m_costs[std::size_t(end)];
            const int rest = behind[std::size_t(end)];
            if (border >= impossible || rest >= impossible)
                continue;
            if (const int sum = border + rest + joinsWithin(at, end); sum <= best.second)
                best = {end, sum};
        }
        return best;
    }

    [[nodiscard]] QStringList cut(const std::vector<std::vector<qsizetype>> &ends) const
    {
        QStringList fields;
        qsizetype at = 0;
        for (const auto &of : ends) {
            const qsizetype end = of[std::size_t(at)];
            fields << m_text.sliced(at, end - at).trimmed();
            at = end;
        }
        return fields;
    }

    QString m_text;
    std::vector<int> m_costs;
    std::vector<qsizetype> m_lineStarts;
};

} // namespace

std::optional<QStringList> divided(const QStringList &lines, const QList<int> &widths, Borders borders)
{
    Divided division(lines, borders);
    return division.text().size() <= longestText ? division.fill(widths) : std::nullopt;
}

} // namespace shipping
