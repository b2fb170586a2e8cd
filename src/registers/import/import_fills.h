#pragma once

#include <QString>

// What a new customer gets besides what the table gives.
namespace registers
{

/// The reading that stands in \a name itself, its words for the form of the company left out: "㈱ヤマダ電機"
/// has none, "㈱やまだ" has ﾔﾏﾀﾞ. Empty when anything in it is not kana.
QString readingInName(const QString &name);

/// Counts codes up: the next one after the highest number there is, as wide as that was written.
class CodeNumbers
{
public:
    /// Takes note of a code that is there. Codes that are no numbers of at most 15 digits do not count.
    void take(const QString &code);

    [[nodiscard]] QString next();

private:
    qint64 m_highest = 0;
    qsizetype m_width = 0; // characters
};

} // namespace registers
