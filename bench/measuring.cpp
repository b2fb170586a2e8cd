#include "measuring.h"

#include "base/dated_name.h"
#include "db/file_header.h"
#include "db/migrations.h"
#include "db/schema.h"

#include "shipment_maker.h"
#include "shop_maker.h"

#include <QCoreApplication>
#include <QFile>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

QString settingsFile() { return QDir::temp().filePath(u"kanbalore-bench.ini"_s); }

// A shop that was migrated measures as one that is made anew, which takes minutes.
bool isUpToDate(const QString &fileName)
{
    const auto version = db::storedVersion(fileName);
    if (version > 0 && version < db::schemaVersion) {
        const QDate day(2026, 4, 1);
        const QString copy = base::datedName(fileName, u"版%1"_s.arg(version), day);
        if (!db::migrate(fileName, day))
            return false;
        QFile::remove(copy);
    }
    return db::storedVersion(fileName) == db::schemaVersion;
}

} // namespace

QString Shops::shop(int customers, int slips) const
{
    const QString fileName = m_folder.filePath(u"shop-%1-%2.cdb"_s.arg(customers).arg(slips));
    if (isUpToDate(fileName))
        return fileName;
    QFile::remove(fileName);
    m_folder.mkpath(u"."_s);
    // Under another name until it is complete, should the run be interrupted.
    const QString unfinished = fileName + u".new"_s;
    QFile::remove(unfinished);
    if (const base::Status made = makeShop(unfinished, {customers, slips, 1}); !made)
        qFatal("%s", qPrintable(made.error().text));
    QFile::rename(unfinished, fileName);
    return fileName;
}

QString Shops::shopWithShipments(int customers, int slips, int shipments) const
{
    const QString fileName = shop(customers, slips);
    if (const base::Status made = addShipments(fileName, shipments); !made)
        qFatal("%s", qPrintable(made.error().text));
    return fileName;
}

QString Shops::copy(int customers, int slips, const QString &name) const
{
    const QString source = shop(customers, slips);
    const QString target = m_folder.filePath(name + u".cdb"_s);
    QFile::remove(target);
    if (!QFile::copy(source, target))
        qFatal("%s cannot be written", qPrintable(target));
    return target;
}

OpenShop::OpenShop()
    : settings(settingsFile())
    , workspace(connection, settings, QDir::tempPath())
{}

OpenShop::OpenShop(const QString &fileName)
    : OpenShop()
{
    if (const base::Status opened = connection.open(fileName); !opened)
        qFatal("%s", qPrintable(opened.error().text));
}

void add(std::size_t row, const char *whose, std::function<double()> seconds)
{
    const std::string name = std::to_string(row) + "/" + whose;
    benchmark::RegisterBenchmark(name.c_str(),
                                 [seconds = std::move(seconds)](benchmark::State &state) {
                                     for (auto _ : state)
                                         state.SetIterationTime(seconds());
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

double secondsToPress(QAbstractButton &button)
{
    return secondsOf([&button] { button.click(); });
}

void settle() { QCoreApplication::processEvents(); }

void settleWholly()
{
    for (int quiet = 0; quiet < 5;)
        quiet = secondsOf(settle) < 0.0005 ? quiet + 1 : 0;
}

} // namespace bench
