#include "app/main_window/sudden_end.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <cstdlib>
#include <utility>

#ifndef Q_OS_WIN
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace app
{

namespace
{

// Neither a signal nor the end of the process knows an object.
SuddenEnd::Work &lastWork()
{
    static SuddenEnd::Work work;
    return work;
}

void workOnce()
{
    if (const SuddenEnd::Work work = std::exchange(lastWork(), {}))
        work(Ending::Certain);
}

} // namespace

SuddenEnd::SuddenEnd(Work work)
{
    lastWork() = std::move(work);
    // The toolkit ends the process by exit() when the display is gone; what this work needs is older than
    // this and goes after it.
    std::atexit(workOnce);
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [] {
        // Someone may still stop the logout: the program goes on, and closes as always.
        if (lastWork())
            lastWork()(Ending::Possible);
    });
    listenToSignals();
}

SuddenEnd::~SuddenEnd() { lastWork() = {}; }

#ifdef Q_OS_WIN

void SuddenEnd::listenToSignals() {}
void SuddenEnd::takeSignal() {}

#else

namespace
{

int told = -1; // where the signals are written

void hear(int)
{
    const char any = 0;
    (void)!::write(told, &any, 1);
}

} // namespace

void SuddenEnd::listenToSignals()
{
    int ends[2] = {};
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_heard = ends[0];
    told = ends[1];
    auto *notifier = new QSocketNotifier(m_heard, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SuddenEnd::takeSignal);
    struct sigaction action = {};
    action.sa_handler = hear;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(number, &action, nullptr);
}

// Screens may stand open over each other, each with questions to ask before it closes: they are not asked.
void SuddenEnd::takeSignal()
{
    workOnce();
    std::_Exit(EXIT_SUCCESS);
}

#endif

} // namespace app
