#include "ui/progress.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProgressDialog>
#include <QPushButton>

#include <limits>

using namespace Qt::StringLiterals;

namespace ui
{

namespace
{

constexpr int firstShown = 500; // ms
constexpr int stepTime = 40;    // ms between two looks at the dialog
constexpr int steps = 1000;     // of the bar; totals may exceed what it can hold

// The dialog and its clock. Its bar runs to and fro while nobody knows the length.
class Watch
{
public:
    Watch(QWidget *parent, const QString &what)
        : m_dialog(what, u"中止(&S)"_s, 0, 0, parent)
    {
        m_dialog.setObjectName(u"progress"_s);
        m_dialog.setWindowTitle(u"Kanbalore"_s);
        m_dialog.setWindowModality(Qt::ApplicationModal);
        m_dialog.setAutoReset(false);
        m_dialog.setAutoClose(false);
        m_dialog.setMinimumDuration(std::numeric_limits<int>::max()); // it is shown below, by our clock
        m_dialog.setMinimumWidth(360);
        m_sinceStart.start();
        m_sinceLook.start();
    }

    bool report(qint64 done, qint64 total)
    {
        if (m_sinceLook.elapsed() < stepTime)
            return !m_dialog.wasCanceled();
        m_dialog.setMaximum(total > 0 ? steps : 0);
        const double part = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 0;
        m_dialog.setValue(qBound(0, static_cast<int>(part * steps), steps - 1));
        if (m_sinceStart.elapsed() >= firstShown) {
            m_dialog.show();
            // Not before the dialog stands over everything: a click elsewhere must not be taken meanwhile.
            QCoreApplication::processEvents();
        }
        m_sinceLook.start();
        return !m_dialog.wasCanceled();
    }

private:
    QProgressDialog m_dialog;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceLook;
};

} // namespace

void watched(QWidget *parent, const QString &what, const std::function<void(const base::Progress &)> &work)
{
    Watch watch(parent, what);
    work([&watch](qint64 done, qint64 total) { return watch.report(done, total); });
}

} // namespace ui
