#pragma once

#include "db/connection.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include "support/screen_driver.h"

#include <QAbstractButton>
#include <QDir>
#include <QElapsedTimer>

#include <functional>

// What every measurement needs: shops to measure in, clocks, and hands on the screens.
namespace bench
{

/// The shops to measure in, made once and kept in a folder.
class Shops
{
public:
    explicit Shops(const QDir &folder)
        : m_folder(folder)
    {}

    /// The file of a shop of that size; made when it is not there yet. One that an earlier version of the
    /// program made is brought up to date.
    QString shop(int customers, int slips) const;
    /// The same with at least so many shipments in its history; they are added where they are missing.
    QString shopWithShipments(int customers, int slips, int shipments) const;
    /// A copy of it that may be written to.
    QString copy(int customers, int slips, const QString &name) const;

private:
    QDir m_folder;
};

/// A shop as the program has it open, to set screens upon.
struct OpenShop
{
    /// Nothing open yet.
    OpenShop();
    explicit OpenShop(const QString &fileName);

    db::Connection connection;
    workspace::Settings settings;
    workspace::Workspace workspace;
};

/// Registers a benchmark of the table's \a row; its time is what \a seconds returns for one run.
void add(std::size_t row, const char *whose, std::function<double()> seconds);

template <class Work>
double secondsOf(Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e9;
}

/// How long what a button does takes, without the mouse's way to it.
double secondsToPress(QAbstractButton &button);

/// Until the screen is painted and takes the next key. The toolkit's painting is timed only where a screen
/// opens: SQLite has nothing to set against it.
void settle();

/// Until no screen, of other rows either, has anything left to read or to paint.
void settleWholly();

} // namespace bench
