#include "registers/postal/postal_origin.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr qint64 highestOriginSize = 4096; // bytes

constexpr auto originFile = u"ZIPORIGIN.txt";

bool isFile(const QString &folder, const QString &name)
{
    return QFileInfo(QDir(folder).filePath(name)).isFile();
}

// Files that are of use together only.
struct Unit
{
    QStringList needed;
    QStringList files;
    QString PostalOrigin::*origin;
};

const std::vector<Unit> &units()
{
    static const std::vector<Unit> all = {
        {{u"ZIPID1.txt"_s, u"ZIPCODE.txt"_s},
         {u"ZIPCODE.txt"_s, u"ZIPID1.txt"_s, u"ZipCode1.txt"_s},
         &PostalOrigin::areas},
        {{u"ZIPCODE2.txt"_s}, {u"ZIPCODE2.txt"_s}, &PostalOrigin::offices},
    };
    return all;
}

PostalFile fileOf(const PostalOrigin &origin)
{
    return {QString::fromUtf16(originFile),
            u"areas=%1\r\noffices=%2\r\n"_s.arg(origin.areas, origin.offices).toUtf8()};
}

bool isWanted(const Unit &unit, const QString &source, const PostalOrigin &delivered, const QString &folder,
              const PostalOrigin &own)
{
    const auto lacks = [&](const QString &name) { return isFile(source, name) && !isFile(folder, name); };
    if (std::any_of(unit.needed.begin(), unit.needed.end(), lacks))
        return true;
    return (own.*unit.origin).startsWith(u"dictionary:") && !(delivered.*unit.origin).isEmpty() &&
           own.*unit.origin != delivered.*unit.origin;
}

} // namespace

PostalOrigin postalOriginOf(const QString &folder)
{
    PostalOrigin origin;
    const QString fileName = QDir(folder).filePath(QString::fromUtf16(originFile));
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return origin;
    const QStringList lines = QString::fromUtf8(file.read(highestOriginSize)).split(u'\n');
    for (const QString &line : lines) {
        const QString value = line.section(u'=', 1).trimmed();
        if (line.startsWith(u"areas="))
            origin.areas = value;
        else if (line.startsWith(u"offices="))
            origin.offices = value;
    }
    return origin;
}

base::Status replacePostalFiles(const QString &folder, const std::vector<PostalFile> &files,
                                const PostalOrigin &origin)
{
    const PostalOrigin before = postalOriginOf(folder);
    PostalOrigin between = origin;
    for (const Unit &unit : units())
        if (before.*unit.origin != origin.*unit.origin)
            between.*unit.origin = u"dictionary:incomplete"_s;
    if (const base::Status noted = replaceTogether(folder, {fileOf(between)}); !noted)
        return noted;
    const base::Status replaced = replaceTogether(folder, files);
    const base::Status noted = replaceTogether(folder, {fileOf(replaced ? origin : before)});
    return replaced ? noted : replaced;
}

base::Status bringPostalData(const QString &source, const QString &folder)
{
    const PostalOrigin delivered = postalOriginOf(source);
    PostalOrigin own = postalOriginOf(folder);
    std::vector<PostalFile> files;
    for (const Unit &unit : units()) {
        if (!isWanted(unit, source, delivered, folder, own))
            continue;
        for (const QString &name : unit.files) {
            QFile file(QDir(source).filePath(name));
            if (!isFile(source, name))
                continue;
            if (!file.open(QIODevice::ReadOnly))
                return base::Error{u"郵便番号データ「%1」を読み取れませんでした。(%2)"_s.arg(
                    file.fileName(), file.errorString())};
            files.push_back({name, file.readAll()});
        }
        own.*unit.origin = delivered.*unit.origin;
    }
    if (files.empty())
        return {};
    return replacePostalFiles(folder, files, own);
}

} // namespace registers
