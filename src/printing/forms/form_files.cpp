#include "printing/forms/form_files.h"

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

} // namespace

QString formFolder(const QString &applicationFolder)
{
    return QDir(applicationFolder).filePath(u"layouts"_s);
}

Form builtInForm(const QString &fileName, const FormItems &items)
{
    addBuiltInLayouts();
    QFile file(u":/layouts/"_s + fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("there is no built-in layout %s", qPrintable(fileName));
    const auto form = readForm(file.readAll(), fileName, items);
    if (!form)
        qFatal("%s", qPrintable(form.error().text));
    return *form;
}

FormFile loadForm(const QString &applicationFolder, const QString &fileName, const FormItems &items)
{
    QFile file(QDir(formFolder(applicationFolder)).filePath(fileName));
    if (!file.exists())
        return {builtInForm(fileName, items), {}};
    const QString instead = u"\n組み込みのレイアウトで印刷します。"_s;
    if (!file.open(QIODevice::ReadOnly))
        return {builtInForm(fileName, items),
                u"%1 を開けません（%2）。"_s.arg(fileName, file.errorString()) + instead};
    const auto own = readForm(file.read(mostBytes), fileName, items);
    if (!own)
        return {builtInForm(fileName, items), own.error().text + instead};
    return {*own, {}};
}

} // namespace printing
