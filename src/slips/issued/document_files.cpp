#include "slips/issued/document_files.h"

#include "base/file_rights.h"
#include "base/flush.h"
#include "base/replacement.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

constexpr qint64 largest = 500 << 20; // bytes; what is larger is no document of ours

base::Error notStored(const QString &why)
{
    return base::Error{u"控えの PDF を保存できませんでした。"_s + why};
}

QString yearOf(const QDate &date)
{
    return date.isValid() ? u"%1"_s.arg(date.year(), 4, 10, QChar(u'0')) : u"日付なし"_s;
}

base::Status write(const QString &fileName, const QByteArray &pdf)
{
    QFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(pdf) == pdf.size() && file.flush())
        return {};
    if (file.error() == QFileDevice::ResourceError)
        return notStored(u"ディスクの空き容量が足りません。"_s);
    return notStored(u"("_s + file.errorString() + u")"_s);
}

// Against a slip of the hand: a viewer offers to save what was filled in or marked.
void protect(const QString &fileName)
{
    constexpr QFile::Permissions writing = QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup;
    QFile::setPermissions(fileName, QFile::permissions(fileName) & ~writing);
}

QByteArray bytesOf(const QString &fileName)
{
    QFile file(fileName);
    return file.size() <= largest && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

base::Status makeFolders(const QString &folder, const QString &ofYear)
{
    for (const QString &made : {folder, ofYear}) {
        if (QFileInfo(made).isDir())
            continue;
        if (!base::makeSharedFolder(made))
            return notStored(
                u"フォルダ「%1」を作成できません。書き込みのできる場所か確かめてください。"_s.arg(
                    QDir::toNativeSeparators(made)));
        base::flushFolder(QFileInfo(made).absolutePath());
    }
    return {};
}

} // namespace

QString hashOf(const QByteArray &pdf)
{
    return QString::fromLatin1(QCryptographicHash::hash(pdf, QCryptographicHash::Sha256).toHex());
}

// The hash comes out of a file that others may have written.
QString pathOf(const DocumentPlace &place)
{
    constexpr qsizetype digits = 64;
    const auto isDigit = [](QChar c) { return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f'); };
    const bool isHash = place.hash.size() == digits && std::ranges::all_of(place.hash, isDigit);
    return isHash ? yearOf(place.date) + u'/' + place.hash + u".pdf"_s : QString();
}

base::Status storeDocument(const QString &folder, const DocumentPlace &place, const QByteArray &pdf)
{
    const QString path = pathOf(place);
    if (path.isEmpty() || pdf.isEmpty())
        return notStored(u"内容がありません。"_s);
    if (findDocument({folder}, place).state == DocumentState::Whole)
        return {};
    const QString fileName = QDir(folder).filePath(path);
    if (const base::Status made = makeFolders(folder, QFileInfo(fileName).path()); !made)
        return made;
    base::Replacement file(fileName);
    base::Status done = file.begin();
    if (done)
        done = write(file.name(), pdf);
    if (done)
        done = file.finish();
    if (done)
        protect(fileName);
    return done;
}

FoundDocument findDocument(const QStringList &folders, const DocumentPlace &place)
{
    FoundDocument found;
    const QString path = pathOf(place);
    if (path.isEmpty())
        return found;
    for (const QString &folder : folders) {
        const QString fileName = QDir(folder).filePath(path);
        if (!QFileInfo(fileName).isFile())
            continue;
        QByteArray pdf = bytesOf(fileName);
        if (hashOf(pdf) == place.hash)
            return {DocumentState::Whole, fileName, std::move(pdf)};
        found.state = DocumentState::Damaged;
    }
    return found;
}

} // namespace slips
