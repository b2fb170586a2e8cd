#include "printing/forms/form_files.h"

#include "base/dated_name.h"
#include "base/file_rights.h"
#include "base/replacement.h"
#include "printing/forms/form_reader.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

// A static library's resources are linked only where something asks for them.
static void addBuiltInLayouts() { Q_INIT_RESOURCE(forms); }

namespace printing
{

namespace
{

constexpr qint64 mostBytes = 1024 * 1024 + 1; // one more than a layout may have

QByteArray builtInLayout(const QString &fileName)
{
    addBuiltInLayouts();
    QFile file(u":/layouts/"_s + fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("there is no built-in layout %s", qPrintable(fileName));
    return file.readAll();
}

QString ownLayout(const QString &applicationFolder, const QString &fileName)
{
    return QDir(formFolder(applicationFolder)).filePath(fileName);
}

/// Leaves a copy of \a own under a dated name, where it is there and not what is \a known of it. \return that
/// name, else an empty one
base::Result<QString> keepForeign(const QString &own, const QByteArray &known, const QDate &today)
{
    QFile file(own);
    if (!file.exists())
        return QString();
    if (!file.open(QIODevice::ReadOnly))
        return base::Error{
            u"レイアウトファイル「%1」を読み取れないため、保存しませんでした。「組み込みに戻す」を"
            "押すと、別の名前で残してから保存できます。"_s.arg(own)};
    if (file.read(mostBytes) == known)
        return QString();
    const QString kept = base::datedName(own, u"以前"_s, today);
    if (!QFile::copy(own, kept))
        return base::Error{
            u"ほかで変更されたレイアウトファイル「%1」を別の名前で残せないため、保存しませんでした。"_s.arg(
                own)};
    return kept;
}

base::Status write(const base::Replacement &replacement, const QByteArray &content)
{
    QFile file(replacement.name());
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush())
        return {};
    return base::Error{u"レイアウトファイル「%1」に書き込めませんでした（%2）。"_s.arg(replacement.target(),
                                                                                       file.errorString())};
}

} // namespace

QString formFolder(const QString &applicationFolder)
{
    return QDir(applicationFolder).filePath(u"layouts"_s);
}

Form builtInForm(const QString &fileName, const FormItems &items)
{
    const auto form = readForm(builtInLayout(fileName), fileName, items);
    if (!form)
        qFatal("%s", qPrintable(form.error().text));
    return *form;
}

LayoutFile loadLayout(const QString &applicationFolder, const QString &fileName, const FormItems &items)
{
    QFile file(ownLayout(applicationFolder, fileName));
    if (!file.exists())
        return {builtInLayout(fileName), false, {}};
    const QString instead = u"\n組み込みのレイアウトで印刷します。"_s;
    if (!file.open(QIODevice::ReadOnly))
        return {builtInLayout(fileName), false,
                u"%1 を開けません（%2）。"_s.arg(fileName, file.errorString()) + instead};
    const QByteArray content = file.read(mostBytes);
    if (const auto own = readForm(content, fileName, items); !own)
        return {builtInLayout(fileName), false, own.error().text + instead};
    return {content, true, {}};
}

FormFile loadForm(const QString &applicationFolder, const QString &fileName, const FormItems &items)
{
    const LayoutFile layout = loadLayout(applicationFolder, fileName, items);
    if (!layout.isOwn)
        return {builtInForm(fileName, items), layout.complaint};
    return {*readForm(layout.content, fileName, items), {}};
}

base::Status saveOwnLayout(const QString &applicationFolder, const QString &fileName,
                           const QByteArray &content, const QByteArray &known, const QDate &today)
{
    const QString target = ownLayout(applicationFolder, fileName);
    if (!base::makeSharedFolder(formFolder(applicationFolder)))
        return base::Error{u"フォルダ「%1」を作成できませんでした。"_s.arg(formFolder(applicationFolder))};
    base::Replacement file(target);
    if (const base::Status begun = file.begin(); !begun)
        return begun;
    if (const base::Status written = write(file, content); !written)
        return written;
    const auto kept = keepForeign(target, known, today);
    if (!kept)
        return kept.error();
    const base::Status finished = file.finish();
    if (!finished && !kept->isEmpty())
        QFile::remove(*kept);
    return finished;
}

base::Result<QString> dropOwnLayout(const QString &applicationFolder, const QString &fileName,
                                    const QDate &today)
{
    const QString own = ownLayout(applicationFolder, fileName);
    if (!QFile::exists(own))
        return QString();
    const QString kept = base::datedName(own, u"以前"_s, today);
    if (!QFile::rename(own, kept))
        return base::Error{u"レイアウトファイル「%1」の名前を変更できませんでした。"_s.arg(own)};
    return kept;
}

} // namespace printing
