#pragma once

#include <QObject>

#include <functional>

namespace app
{

/// Whether the program is gone in a moment, or someone may still stop that and it goes on.
enum class Ending { Certain, Possible };

/// Has work done when the program ends without having been closed: it is told to by the operating system, the
/// user logs out, or the display is lost. There is one of it at a time.
class SuddenEnd : public QObject
{
    Q_OBJECT

public:
    using Work = std::function<void(Ending)>;

    /// \a work takes no more than a second or two and asks nothing.
    explicit SuddenEnd(Work work);
    ~SuddenEnd() override;

private:
    void listenToSignals();
    void takeSignal();

    int m_heard = -1; // where the signals are read
};

} // namespace app
