#include "postal_operations.h"

#include "registers/postal/postal_lookup.h"
#include "text/cp932.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

constexpr qsizetype sampleSize = 500;

/// Addresses as clerks type them, from all over the country: house numbers in either width, and every other
/// one without its prefecture.
QStringList sampleAddresses(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString content = text::fromCp932(file.readAll()).value_or(QString());
    const QStringList areas = content.split(u"\r\n"_s, Qt::SkipEmptyParts);
    const qsizetype step = std::max<qsizetype>(areas.size() / sampleSize, 1);
    QStringList addresses;
    for (qsizetype i = 0; i < areas.size(); i += step) {
        QString address = areas.at(i).mid(9).remove(u'"').trimmed(); // behind the code
        const qsizetype prefecture = address.indexOf(u'県') + 1;
        if (addresses.size() % 2 == 1)
            address.remove(0, prefecture);
        addresses += address + (addresses.size() % 4 < 2 ? u"1-2-3"_s : u"１－２－３"_s);
    }
    return addresses;
}

/// Seconds of the middle one of the lookups.
double medianLookup(const registers::PostalData &data, const QStringList &addresses)
{
    std::vector<double> seconds;
    for (const QString &address : addresses) {
        QElapsedTimer timer;
        timer.start();
        benchmark::DoNotOptimize(registers::postalCodeOf(data, address));
        seconds.push_back(double(timer.nsecsElapsed()) / 1e9);
    }
    const auto middle = seconds.begin() + std::ptrdiff_t(seconds.size() / 2);
    std::nth_element(seconds.begin(), middle, seconds.end());
    return *middle;
}

} // namespace

void registerPostalOperations(const QDir &folder, std::vector<Row> &rows)
{
    const QString index = u"ZIPID1.txt"_s;
    const QDir place = folder.exists(index) ? folder : QDir(QCoreApplication::applicationDirPath());
    auto groups = registers::loadPostalIndex(place.filePath(index));
    const QStringList addresses = sampleAddresses(place.filePath(u"ZipCode1.txt"_s));
    if (!groups || groups->groups().empty() || addresses.isEmpty()) {
        std::fputs("No postal-code files: the silent lookup is not measured.\n", stderr);
        return;
    }
    const registers::PostalData data{place.path(),
                                     std::make_shared<const registers::PostalIndex>(std::move(*groups))};
    const std::string name = std::to_string(rows.size()) + "/ours";
    rows.push_back(
        {"silent postal-code lookup, median", std::to_string(addresses.size()) + " addresses", 0, 1});
    benchmark::RegisterBenchmark(name.c_str(),
                                 [data, addresses](benchmark::State &state) {
                                     for (auto _ : state)
                                         state.SetIterationTime(medianLookup(data, addresses));
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
}

} // namespace bench
