#include "printing/sheets.h"

namespace printing
{

const Sheet &Sheets::operator[](std::size_t index) const
{
    if (!m_make)
        return m_lying[index];
    if (m_shown != index) {
        m_last = m_make(index);
        m_shown = index;
    }
    return m_last;
}

Sheets Sheets::part(std::size_t first, std::size_t count) const
{
    if (m_make)
        return {count, [make = m_make, first](std::size_t index) { return make(first + index); }};
    const auto begin = m_lying.begin() + static_cast<std::ptrdiff_t>(first);
    return std::vector<Sheet>(begin, begin + static_cast<std::ptrdiff_t>(count));
}

} // namespace printing
