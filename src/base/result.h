#pragma once

#include <QString>

#include <utility>
#include <variant>

namespace base
{

/// What went wrong: one Japanese sentence for the clerk that says what was not done and what to do.
struct Error
{
    QString text;
    bool cancelled = false; // the clerk stopped it; nothing went wrong
    bool gone = false;      // what it was to be done to has been deleted meanwhile
    bool changed = false;   // another program has changed that meanwhile
};

/// What long work returns when it was told to stop, after it left everything as it was.
inline Error cancelled() { return {QStringLiteral("中止しました。"), true}; }

template <class T>
class Result;

using Status = Result<void>;

/// A value, or the error that kept it from coming about.
template <class T>
class [[nodiscard]] Result
{
public:
    Result(T value)
        : m_content(std::move(value))
    {}
    Result(Error error)
        : m_content(std::move(error))
    {}

    explicit operator bool() const { return std::holds_alternative<T>(m_content); }
    const T &operator*() const { return std::get<T>(m_content); }
    T &operator*() { return std::get<T>(m_content); }
    const T *operator->() const { return &std::get<T>(m_content); }
    T *operator->() { return &std::get<T>(m_content); }
    [[nodiscard]] const Error &error() const { return std::get<Error>(m_content); }
    /// Whether it came about, without the value.
    [[nodiscard]] Status status() const;

private:
    std::variant<T, Error> m_content;
};

/// Done, or the error that kept it from being done.
template <>
class [[nodiscard]] Result<void>
{
public:
    Result() = default;
    Result(Error error)
        : m_error(std::move(error))
        , m_failed(true)
    {}

    explicit operator bool() const { return !m_failed; }
    [[nodiscard]] const Error &error() const { return m_error; }
    [[nodiscard]] const Result &status() const { return *this; }

private:
    Error m_error;
    bool m_failed = false;
};

template <class T>
Status Result<T>::status() const
{
    return *this ? Status() : Status(error());
}

} // namespace base
