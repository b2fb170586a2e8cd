// Measures what a clerk waits for against the least that SQLite needs for it, and prints one table.
// run [--folder DIR] [options of Google Benchmark]; the shops are made in DIR on the first run.
#include "conversion_operations.h"
#include "day_report_operations.h"
#include "file_operations.h"
#include "form_operations.h"
#include "migration_operations.h"
#include "operations.h"
#include "postal_operations.h"

#include "ui/prompts.h"

#include <QApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    // No box may wait for a clerk; one that comes is a failed measurement.
    ui::prompts::beginScript();

    QString folder = QCoreApplication::applicationDirPath() + u"/../bench-shops"_s;
    std::vector<char *> options;
    for (int i = 0; i < argc; ++i) {
        if (i > 0 && i + 1 < argc && QLatin1StringView(argv[i]) == "--folder"_L1)
            folder = QFile::decodeName(argv[++i]);
        else
            options.push_back(argv[i]);
    }
    // Each row's two sides take turns, so that what else the machine does falls upon both.
    const char *defaults[] = {"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=7",
                              "--benchmark_min_time=0.1"};
    for (const char *option : defaults)
        options.insert(options.begin() + 1, const_cast<char *>(option));
    int count = static_cast<int>(options.size());
    benchmark::Initialize(&count, options.data());

    const bench::Shops shops{QDir(folder)};
    std::vector<bench::Row> rows = bench::registerOperations(shops);
    bench::registerConversion(QDir(folder), rows);
    bench::registerFileOperations(shops, rows);
    bench::registerMigration(shops, rows);
    bench::registerPostalOperations(QDir(folder), rows);
    bench::registerFormOperations(rows);
    bench::registerDayReports(rows);
    bench::TableReporter reporter(std::move(rows));
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::ClearRegisteredBenchmarks(); // they hold screens, which go before the application
    const QString unexpected = ui::prompts::takeUnexpected();
    if (!unexpected.isEmpty())
        std::fprintf(stderr, "%s\n", qPrintable(unexpected));
    return reporter.kept() && unexpected.isEmpty() ? 0 : 1;
}
