#pragma once

#include "db/old_files/old_reader/frames.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace db::old_reader
{

/// Puts frames together and sends them. Ends the process when nobody listens any more.
class FrameWriter
{
public:
    explicit FrameWriter(std::FILE *pipe)
        : m_pipe(pipe)
    {}

    void begin(Frame kind)
    {
        m_start = m_buffer.size();
        m_buffer.push_back(static_cast<char>(kind));
        number<std::uint32_t>(0); // the length, known at the end
    }

    void end()
    {
        const auto length = static_cast<std::uint32_t>(m_buffer.size() - m_start - frameHeadSize);
        std::memcpy(m_buffer.data() + m_start + 1, &length, sizeof length);
        if (m_buffer.size() > sendFrom)
            send();
    }

    /// Takes back the frame that was begun.
    void drop() { m_buffer.resize(m_start); }

    void cell(Cell kind) { m_buffer.push_back(static_cast<char>(kind)); }

    /// The machines that this runs on are little-endian.
    template <class T>
    void number(T value)
    {
        char bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        m_buffer.append(bytes, sizeof value);
    }

    void text(std::string_view bytes)
    {
        number(static_cast<std::uint32_t>(bytes.size()));
        m_buffer.append(bytes);
    }

    void send()
    {
        if (std::fwrite(m_buffer.data(), 1, m_buffer.size(), m_pipe) != m_buffer.size() ||
            std::fflush(m_pipe) != 0)
            std::_Exit(1);
        m_buffer.clear();
    }

private:
    static constexpr std::size_t sendFrom = 60'000;

    std::FILE *m_pipe;
    std::string m_buffer;
    std::size_t m_start = 0;
};

} // namespace db::old_reader
