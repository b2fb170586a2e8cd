#pragma once

#include <cmath>
#include <limits>

namespace base
{

/// A sum of amounts or quantities of up to four decimals. It counts whole ten-thousandths, which a double
/// holds exactly up to 900,000,000,000: ten times 0.1 is 1, and no balance drifts however many lines it has.
/// A sum that was greater than that on its way, or had something added that is no number, is not a number.
class ExactSum
{
public:
    ExactSum() = default;
    static ExactSum ofTenThousandths(double count) { return ExactSum(std::nearbyint(count)); }

    void add(double amount) { m_count = held(m_count + std::nearbyint(amount * perUnit)); }
    void add(const ExactSum &other) { m_count = held(m_count + other.m_count); }

    /// The sum \a factor times, which is a sign or nothing.
    [[nodiscard]] ExactSum times(int factor) const { return ExactSum(m_count * factor); }

    [[nodiscard]] double value() const { return m_count / perUnit + 0.0; } // no -0
    /// One that is not a number is the same as another such one.
    [[nodiscard]] bool isSame(const ExactSum &other) const
    {
        return m_count == other.m_count || (std::isnan(m_count) && std::isnan(other.m_count));
    }
    [[nodiscard]] bool isZero() const { return m_count == 0; }

private:
    static constexpr double perUnit = 10000;

    explicit ExactSum(double count)
        : m_count(held(count))
    {}

    static double held(double count)
    {
        constexpr double greatest = 9e15; // the greatest amount; every whole number up to it is exact
        return std::abs(count) <= greatest ? count : std::numeric_limits<double>::quiet_NaN();
    }

    double m_count = 0;
};

} // namespace base
