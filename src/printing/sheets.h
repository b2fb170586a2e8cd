#pragma once

#include "printing/sheet.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace printing
{

/// The sheets of a document in their order. They lie there, or each is made anew when it is asked for: then a
/// long document takes no more room, and its first page comes no later, than a short one's.
class Sheets
{
public:
    /// Makes the sheet of an index, each time the same one.
    using Make = std::function<Sheet(std::size_t)>;

    Sheets() = default;
    Sheets(std::vector<Sheet> sheets)
        : m_count(sheets.size())
        , m_lying(std::move(sheets))
    {}
    Sheets(std::size_t count, Make make)
        : m_count(count)
        , m_make(std::move(make))
    {}

    [[nodiscard]] std::size_t size() const { return m_count; }
    [[nodiscard]] bool empty() const { return m_count == 0; }

    /// Lasts until another one is asked for.
    const Sheet &operator[](std::size_t index) const;
    [[nodiscard]] const Sheet &front() const { return (*this)[0]; }
    [[nodiscard]] const Sheet &back() const { return (*this)[m_count - 1]; }

    /// Adds one to those that lie there.
    void push_back(Sheet sheet)
    {
        m_lying.push_back(std::move(sheet));
        m_count = m_lying.size();
    }

    /// \a count sheets from \a first on.
    [[nodiscard]] Sheets part(std::size_t first, std::size_t count) const;

    class Iterator
    {
    public:
        Iterator(const Sheets &sheets, std::size_t index)
            : m_sheets(&sheets)
            , m_index(index)
        {}
        const Sheet &operator*() const { return (*m_sheets)[m_index]; }
        Iterator &operator++()
        {
            ++m_index;
            return *this;
        }
        bool operator==(const Iterator &other) const { return m_index == other.m_index; }

    private:
        const Sheets *m_sheets;
        std::size_t m_index;
    };

    [[nodiscard]] Iterator begin() const { return {*this, 0}; }
    [[nodiscard]] Iterator end() const { return {*this, m_count}; }

private:
    std::size_t m_count = 0;
    std::vector<Sheet> m_lying;
    Make m_make;
    mutable std::optional<std::size_t> m_shown; // that was made last
    mutable Sheet m_last;
};

} // namespace printing
