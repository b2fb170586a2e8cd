#include "text/euc_jp.h"

#ifndef Q_OS_WIN
#include <iconv.h>
#endif

namespace text
{

#ifdef Q_OS_WIN

// Windows has no converter with the additions; what is written in this code comes from Unix systems.
std::optional<QString> fromEucJp(const QByteArray &) { return std::nullopt; }

#else

std::optional<QString> fromEucJp(const QByteArray &bytes)
{
    const iconv_t converter = iconv_open("UTF-16LE", "EUC-JISX0213");
    if (converter == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    QByteArray from = bytes;
    // At most two units come of two bytes (a kana with its combining mark).
    QByteArray to(2 * bytes.size() + 16, Qt::Uninitialized);
    char *in = from.data();
    char *out = to.data();
    auto left = static_cast<std::size_t>(from.size());
    auto room = static_cast<std::size_t>(to.size());
    bool failed = iconv(converter, &in, &left, &out, &room) == static_cast<std::size_t>(-1);
    // A kana that might still get its mark is held back until told that nothing follows.
    failed = failed || iconv(converter, nullptr, nullptr, &out, &room) == static_cast<std::size_t>(-1);
    iconv_close(converter);
    if (failed)
        return std::nullopt;
    const qsizetype size = to.size() - static_cast<qsizetype>(room);
    QString text(size / 2, Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto low = static_cast<unsigned char>(to[2 * i]);
        const auto high = static_cast<unsigned char>(to[2 * i + 1]);
        text[i] = QChar(static_cast<char16_t>(high << 8 | low));
    }
    return text;
}

#endif

} // namespace text
