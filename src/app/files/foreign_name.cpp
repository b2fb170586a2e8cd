#include "app/files/foreign_name.h"

#include "text/cp932.h"
#include "text/euc_jp.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

std::optional<QString> utf8Text(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

// Two bytes of EUC-JP read in Shift-JIS as two kana of half width, which few names have.
std::optional<QString> textOf(const QByteArray &name)
{
    const auto shiftJis = text::fromCp932(name);
    const auto isHalfKana = [](QChar c) { return c >= u'｡' && c <= u'ﾟ'; };
    if (shiftJis && std::none_of(shiftJis->cbegin(), shiftJis->cend(), isHalfKana))
        return shiftJis;
    const auto eucJp = text::fromEucJp(name);
    return eucJp ? eucJp : shiftJis;
}

bool isFile(const QByteArray &raw)
{
    struct stat found
    {};
    return stat(raw.constData(), &found) == 0 && S_ISREG(found.st_mode);
}

} // namespace

std::optional<QString> readableName(const QByteArray &raw)
{
    if (utf8Text(raw) || !isFile(raw))
        return std::nullopt;
    const qsizetype end = raw.lastIndexOf('/') + 1;
    const auto folder = utf8Text(raw.first(end));
    const auto name = textOf(raw.sliced(end));
    // Bytes of another encoding may read as a separator.
    if (!folder || !name || name->isEmpty() || name->contains(u'/') || name->contains(QChar(0)))
        return std::nullopt;
    return *folder + *name;
}

base::Status giveName(const QByteArray &raw, const QString &name)
{
    if (QFileInfo::exists(name))
        return base::Error{u"同じ名前のファイルがあるため、ファイルの名前を変更できませんでした。("_s + name +
                           u")"_s};
    if (std::rename(raw.constData(), QFile::encodeName(name).constData()) == 0)
        return {};
    return base::Error{u"ファイルの名前を変更できませんでした。("_s +
                       QString::fromLocal8Bit(std::strerror(errno)) + u")"_s};
}

} // namespace app
