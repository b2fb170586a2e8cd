#include "db/old_files/old_file.h"

#include "base/dated_name.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numeric>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// Offsets in bytes of the file's first page.
constexpr qsizetype versionAt = 0x14;
constexpr qsizetype hiddenAt = 0x18; // from here the header is obscured
constexpr qsizetype hiddenSize = 128;
constexpr qsizetype passwordAt = 0x42;
constexpr qsizetype dateAt = 0x72;
constexpr qsizetype headerSize = hiddenAt + hiddenSize;

constexpr qint64 pageSize3 = 2048;
constexpr qint64 pageSize4 = 4096;
constexpr int passwordSize3 = 20;
constexpr int passwordSize4 = 40;

// RC4 with a key that is the same in all files.
QByteArray uncovered(QByteArray header)
{
    static constexpr std::array<quint8, 4> key{0xc7, 0xda, 0x39, 0x6b};
    std::array<quint8, 256> state{};
    std::iota(state.begin(), state.end(), quint8(0));
    for (unsigned i = 0, j = 0; i < state.size(); ++i) {
        j = (j + state[i] + key[i % key.size()]) % 256;
        std::swap(state[i], state[j]);
    }
    unsigned i = 0;
    unsigned j = 0;
    for (qsizetype at = hiddenAt; at < header.size(); ++at) {
        i = (i + 1) % 256;
        j = (j + state[i]) % 256;
        std::swap(state[i], state[j]);
        header[at] =
            static_cast<char>(static_cast<quint8>(header.at(at)) ^ state[(state[i] + state[j]) % 256]);
    }
    return header;
}

// Version 4 covers the password with the day on which the file was made.
bool hasPassword(const QByteArray &header, bool isVersion4)
{
    std::array<char, 4> mask{};
    if (isVersion4) {
        const double date = qFromLittleEndian<double>(header.constData() + dateAt);
        if (std::isfinite(date) && std::abs(date) < 1e9)
            qToLittleEndian(static_cast<qint32>(date), mask.data());
    } else {
        static constexpr std::array<quint8, passwordSize3> clear3{};
        return std::memcmp(header.constData() + passwordAt, clear3.data(), clear3.size()) != 0;
    }
    for (int i = 0; i < passwordSize4; ++i) {
        if (header.at(passwordAt + i) != mask[static_cast<std::size_t>(i) % mask.size()])
            return true;
    }
    return false;
}

QByteArray headerOf(const QString &fileName)
{
    // A pipe or a device would keep the program waiting.
    if (!QFileInfo(fileName).isFile())
        return {};
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.read(headerSize) : QByteArray();
}

OldFormat formatOf(const QByteArray &header)
{
    static constexpr QByteArrayView jet("\0\1\0\0Standard Jet DB\0", 20);
    static constexpr QByteArrayView newer("\0\1\0\0Standard ACE DB\0", 20);
    if (header.size() < headerSize)
        return OldFormat::None;
    if (header.startsWith(newer) || (header.startsWith(jet) && static_cast<quint8>(header.at(versionAt)) > 1))
        return OldFormat::Newer;
    return header.startsWith(jet) ? OldFormat::Jet : OldFormat::None;
}

} // namespace

OldFormat oldFormatOf(const QString &fileName) { return formatOf(headerOf(fileName)); }

base::Status checkOldFile(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!info.isFile() || !info.isReadable())
        return base::Error{u"ファイルを読み取れないため、変換できませんでした。("_s + fileName + u")"_s};
    const QByteArray header = headerOf(fileName);
    switch (formatOf(header)) {
    case OldFormat::None:
        return base::Error{u"以前の形式のデータベースファイルではないため、変換できませんでした。("_s +
                           fileName + u")"_s};
    case OldFormat::Newer:
        return base::Error{
            u"このプログラムが以前使っていた形式より新しい形式のため、変換できませんでした。("_s + fileName +
            u")"_s};
    case OldFormat::Jet:
        break;
    }
    const bool isVersion4 = header.at(versionAt) == 1;
    if (hasPassword(uncovered(header), isVersion4))
        return base::Error{u"パスワードが設定されているため、変換できませんでした。"
                           "以前のプログラムの環境でパスワードを解除してから、もう一度実行してください。"_s};
    if (info.size() % (isVersion4 ? pageSize4 : pageSize3) != 0)
        return base::Error{u"ファイルが途中で切れているため、変換できませんでした。コピーし直すか、"
                           "バックアップファイルを使ってください。"_s};
    return {};
}

base::Status putOldFileAside(const QString &fileName)
{
    if (oldFormatOf(fileName) == OldFormat::None)
        return {};
    const QDate written = QFileInfo(fileName).lastModified().date();
    if (QFile::rename(fileName, base::datedName(fileName, u"以前の形式"_s, written)))
        return {};
    return base::Error{u"以前の形式のファイルの名前を変更できませんでした。("_s + fileName + u")"_s};
}

} // namespace db
