#pragma once

#include <cmath>

namespace slips
{

/// A sum of amounts or quantities of up to four decimals. It counts whole ten-thousandths, which a double
/// holds exactly up to 900,000,000,000: ten times 0.1 is 1, and no balance drifts however many lines it has.
class ExactSum
{
public:
    ExactSum() = default;
    static ExactSum ofTenThousandths(double count) { return ExactSum(std::nearbyint(count)); }

    void add(double amount) { m_count += std::nearbyint(amount * perUnit); }
    void add(const ExactSum &other) { m_count += other.m_count; }

    [[nodiscard]] double value() const { return m_count / perUnit + 0.0; } // no -0
    [[nodiscard]] bool isZero() const { return m_count == 0; }

private:
    static constexpr double perUnit = 10000;

    explicit ExactSum(double count)
        : m_count(count)
    {}

    double m_count = 0;
};

} // namespace slips
