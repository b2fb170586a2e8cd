#include "ui/file_dialogs.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QQueue>
#include <QStandardPaths>
#include <QStringList>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace ui::file_dialogs
{

namespace
{

struct Script
{
    bool running = false;
    QQueue<QVariant> choices; // an invalid one cancels
    QStringList unexpected;
    QString lastFolder;
};

Script &script()
{
    static Script theScript;
    return theScript;
}

QVariant scripted(const QString &title)
{
    Script &s = script();
    if (s.choices.isEmpty()) {
        s.unexpected << u"unexpected dialog: "_s + title;
        return {};
    }
    return s.choices.dequeue();
}

} // namespace

QString openFile(QWidget *parent, const QString &title, const QString &filters, const QString &folder)
{
    script().lastFolder = folder;
    if (script().running)
        return scripted(title).toString();
    return QFileDialog::getOpenFileName(parent, title, folder, filters);
}

QString saveFile(QWidget *parent, const QString &title, const QString &filters, const QString &suffix,
                 const QString &proposal)
{
    QString chosen = script().running
                         ? scripted(title).toString()
                         : QFileDialog::getSaveFileName(parent, title, proposal, filters, nullptr,
                                                        QFileDialog::DontConfirmOverwrite);
    if (!chosen.isEmpty() && !suffix.isEmpty() && QFileInfo(chosen).suffix().isEmpty())
        chosen += u'.' + suffix;
    return chosen;
}

QString chooseFolder(QWidget *parent, const QString &title)
{
    if (script().running)
        return scripted(title).toString();
    return QFileDialog::getExistingDirectory(
        parent, title, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

QString proposedFile(const QString &title, const QString &suffix)
{
    static const QString forbidden = u"\\/:*?\"<>|"_s;
    constexpr qsizetype longest = 80; // characters; file systems take 255 bytes
    QString name = title.left(longest).trimmed();
    for (QChar &c : name) {
        if (forbidden.contains(c) || !c.isPrint())
            c = u'_';
    }
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + u'/' + name + u'.' + suffix;
}

std::optional<QColor> chooseColor(QWidget *parent, const QColor &first, const QString &title)
{
    const QColor chosen =
        script().running ? scripted(title).value<QColor>() : QColorDialog::getColor(first, parent, title);
    return chosen.isValid() ? std::optional(chosen) : std::nullopt;
}

std::optional<QFont> chooseFont(QWidget *parent, const QFont &first, const QString &title)
{
    if (script().running) {
        const QVariant font = scripted(title);
        return font.isValid() ? std::optional(font.value<QFont>()) : std::nullopt;
    }
    bool accepted = false;
    const QFont chosen = QFontDialog::getFont(&accepted, first, parent, title);
    return accepted ? std::optional(chosen) : std::nullopt;
}

void beginScript() { script().running = true; }

void expectFile(const QString &fileName)
{
    script().choices.enqueue(fileName.isEmpty() ? QVariant() : QVariant(fileName));
}

void expectColor(const std::optional<QColor> &color)
{
    script().choices.enqueue(color ? QVariant(*color) : QVariant());
}

void expectFont(const std::optional<QFont> &font)
{
    script().choices.enqueue(font ? QVariant(*font) : QVariant());
}

QString lastFolder() { return script().lastFolder; }

QString takeUnexpected()
{
    Script &s = script();
    if (!s.choices.isEmpty())
        s.unexpected << u"%1 dialog(s) never came"_s.arg(s.choices.size());
    s.choices.clear();
    const QString all = s.unexpected.join(u'\n');
    s.unexpected.clear();
    return all;
}

} // namespace ui::file_dialogs
