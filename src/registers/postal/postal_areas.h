#pragma once

#include "base/result.h"

#include <QFile>

#include <functional>
#include <optional>

namespace registers
{

/// One record of the table of areas, 70 bytes: a code of seven digits, three blanks, and an address in the
/// system's code page filled up with blanks. It comes from outside: nothing about its bytes is sure.
class PostalRecord
{
public:
    static constexpr qint64 size = 70; // bytes

    /// \a bytes: \c size of them, which must outlive the record.
    explicit PostalRecord(QByteArrayView bytes)
        : m_bytes(bytes)
    {}

    /// "NNN-NNNN", or nothing when there are no seven digits.
    [[nodiscard]] std::optional<QString> code() const;
    /// The address as it is stored, with its blanks; nothing when it is no text of the code page.
    [[nodiscard]] std::optional<QString> field() const;

    /// The part of a \a field that is compared: a half-width blank within its first 30 characters ends it.
    static QString address(const QString &field);

private:
    QByteArrayView m_bytes;
};

/// "ZIPCODE.txt", read by record number. Open as long as the object lives.
class PostalAreas
{
public:
    explicit PostalAreas(const QString &fileName);

    base::Status open();
    /// Records in the open file; a last one that is cut short does not count.
    [[nodiscard]] qint64 count() const { return m_count; }

    /// Shows the records from \a first to \a last, counted from 1, to \a visit in their order until it
    /// returns false. Numbers outside of the file name no record.
    base::Status read(qint64 first, qint64 last, const std::function<bool(const PostalRecord &)> &visit);

private:
    QFile m_file;
    qint64 m_count = 0;
};

/// "1234567" → "123-4567"; nothing when these are not seven digits.
std::optional<QString> hyphenated(QByteArrayView digits);

} // namespace registers
