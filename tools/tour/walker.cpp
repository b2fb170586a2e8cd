#include "walker.h"

#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

constexpr int patience = 5000; // milliseconds until a screen must have come

} // namespace

Walker::Walker(const QDir &folder)
    : m_folder(folder)
{
    m_folder.mkpath(u"."_s);
}

void Walker::visit(const QString &what, const std::function<void()> &trigger,
                   const std::function<void(QDialog &)> &work)
{
    const QString before = std::exchange(m_where, what);
    const QWidget *host = QApplication::activeModalWidget();
    QPointer<QWidget> window = QApplication::activeWindow();
    bool came = false;
    QElapsedTimer waited;
    waited.start();
    // The screen opens in an event loop of its own; the timer works in there.
    QTimer knock;
    knock.setInterval(5);
    QObject::connect(&knock, &QTimer::timeout, &knock, [&] {
        auto *screen = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!screen || screen == host || !screen->isVisible() || screen->objectName() == "progress"_L1)
            return;
        knock.stop();
        came = true;
        QTest::qWait(0);
        try {
            work(*screen);
        } catch (const std::exception &trouble) {
            m_troubles << m_where + u": "_s + QString::fromUtf8(trouble.what());
        }
        if (screen->isVisible())
            screen->close();
        if (screen->isVisible()) {
            m_troubles << m_where + u": does not close"_s;
            screen->done(QDialog::Rejected);
        }
    });
    knock.start();
    try {
        trigger();
    } catch (const std::exception &trouble) {
        m_troubles << m_where + u": "_s + QString::fromUtf8(trouble.what());
    }
    while (!came && waited.elapsed() < patience && QApplication::activeModalWidget() != host)
        QTest::qWait(5);
    check(came, u"the screen did not come"_s);
    // Without a window manager nobody else makes the window below the active one again.
    if (window) {
        window->activateWindow();
        check(QTest::qWaitForWindowActive(window), u"the window below does not become active again"_s);
    }
    m_where = before;
}

Hands Walker::on(QWidget &screen)
{
    QTest::qWait(0);
    return Hands(&screen);
}

void Hands::lost(const QString &what) const { throw std::runtime_error(what.toStdString()); }

void Walker::picture(QWidget &screen, const QString &name)
{
    QTest::qWait(20);
    const QString fileName = u"%1-%2.png"_s.arg(++m_pictures, 2, 10, QChar(u'0')).arg(name);
    check(screen.grab().save(m_folder.filePath(fileName)), fileName + u" cannot be written"_s);
}

void Walker::pages(const QString &fileName, const QString &name)
{
    const QString pictures = u"%1-%2"_s.arg(++m_pictures, 2, 10, QChar(u'0')).arg(name);
    const int code = QProcess::execute(u"pdftoppm"_s,
                                       {u"-r"_s, u"80"_s, u"-png"_s, fileName, m_folder.filePath(pictures)});
    check(code == 0, pictures + u" cannot be drawn"_s);
}

void Walker::check(bool good, const QString &what)
{
    if (!good)
        m_troubles << m_where + u": "_s + what;
}

void Walker::checkText(QWidget &screen, const QString &box, const QString &expected)
{
    const QString shown = on(screen).box(box).text();
    check(shown == expected, box + u" shows "_s + shown + u" instead of "_s + expected);
}

QStringList Walker::troubles()
{
    for (const QString &unexpected : {ui::prompts::takeUnexpected(), ui::file_dialogs::takeUnexpected()}) {
        if (!unexpected.isEmpty())
            m_troubles << unexpected;
    }
    return m_troubles;
}

} // namespace tour
