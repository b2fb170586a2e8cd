#include "app/main_window/menu_letters.h"

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QChar markedLetter(const QString &caption)
{
    for (qsizetype at = caption.indexOf(u'&'); at >= 0 && at + 1 < caption.size();
         at = caption.indexOf(u'&', at + 2)) {
        if (caption.at(at + 1) != u'&')
            return caption.at(at + 1).toUpper();
    }
    return {};
}

class UnmarkedLetters : public QObject
{
public:
    explicit UnmarkedLetters(QMenu &menu)
        : QObject(&menu)
        , m_menu(menu)
    {
        menu.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return QObject::eventFilter(watched, event);
        const auto *key = static_cast<QKeyEvent *>(event);
        const QString typed = key->text().toUpper();
        if (typed.size() != 1 || key->modifiers() & (Qt::ControlModifier | Qt::MetaModifier))
            return QObject::eventFilter(watched, event);
        return choose(typed.front()) || QObject::eventFilter(watched, event);
    }

private:
    // \return false where every item with \a letter bears its mark: the toolkit knows what to do then
    bool choose(QChar letter)
    {
        QList<QAction *> meant;
        bool marked = true;
        const auto items = m_menu.actions();
        for (QAction *item : items) {
            if (!item->isVisible() || !item->isEnabled() || letterOf(item->text()) != letter)
                continue;
            meant << item;
            marked = marked && !markedLetter(item->text()).isNull();
        }
        if (marked)
            return false;
        m_menu.setActiveAction(meant.at((meant.indexOf(m_menu.activeAction()) + 1) % meant.size()));
        if (meant.size() == 1) {
            QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
            QApplication::sendEvent(&m_menu, &enter);
        }
        return true;
    }

    QMenu &m_menu;
};

} // namespace

QChar letterOf(const QString &caption)
{
    if (const QChar marked = markedLetter(caption); !marked.isNull())
        return marked;
    const qsizetype size = caption.size();
    const bool inBrackets = size >= 3 && caption.at(size - 3) == u'(' && caption.at(size - 1) == u')';
    return inBrackets && caption.at(size - 2).isLetter() ? caption.at(size - 2).toUpper() : QChar();
}

void heedUnmarkedLetters(QMenu &menu) { new UnmarkedLetters(menu); }

} // namespace app
