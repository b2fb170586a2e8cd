#include "printing/queue/qt_system.h"

#include "printing/queue/printer_settings.h"
#include "printing/renderer.h"

#include <QPrinter>
#include <QPrinterInfo>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int mostCopiesAtOnce = 999;

CustomSizes customSizes(const QPrinterInfo &printer)
{
    const QPageSize least = printer.minimumPhysicalPageSize();
    const QPageSize most = printer.maximumPhysicalPageSize();
    const QSizeF greatest = most.size(QPageSize::Millimeter);
    CustomSizes sizes{least.size(QPageSize::Millimeter), greatest.width(), std::nullopt, {}};
    if (greatest.height() > 0)
        sizes.longest = greatest.height();
    return sizes;
}

base::Error noSuchPrinter(const QString &queue)
{
    return base::Error{u"プリンタ「%1」が見つかりません。プリンタを選び直してください。"_s.arg(queue)};
}

} // namespace

base::Result<Queues> QtSystem::queues()
{
    return Queues{QPrinterInfo::availablePrinterNames(), QPrinterInfo::defaultPrinterName()};
}

base::Result<QueueAbilities> QtSystem::abilities(const QString &queue)
{
    const QPrinterInfo printer = QPrinterInfo::printerInfo(queue);
    if (printer.isNull())
        return noSuchPrinter(queue);
    QueueAbilities abilities{.mostCopies = mostCopiesAtOnce};
    for (const QPageSize &size : printer.supportedPageSizes())
        abilities.media.push_back({size.key(), size.size(QPageSize::Millimeter), {}});
    if (printer.supportsCustomPageSizes())
        abilities.custom = customSizes(printer);
    return abilities;
}

base::Result<int> QtSystem::print(const Document &document, const Look &look, const JobSettings &settings,
                                  const base::Progress &progress)
{
    // An unknown name would leave the usual printer in its place.
    if (QPrinterInfo::printerInfo(settings.queue).isNull())
        return noSuchPrinter(settings.queue);
    QPrinter printer(QPrinter::HighResolution);
    printer.setPrinterName(settings.queue);
    printer.setDocName(document.title);
    Look there = look;
    there.fed = settings.paper;
    setPage(printer, document, there);
    printer.setCopyCount(std::max(1, settings.copies));
    printer.setCollateCopies(true);
    const base::Status printed = printDocument(printer, document, there, progress);
    return printed ? base::Result<int>(0) : printed.error();
}

base::Result<int> QtSystem::printPdf(const QByteArray &, const QString &title, const JobSettings &)
{
    return base::Error{
        u"「%1」は、ここからは印刷できません。PDF を開いて、その画面から印刷してください。"_s.arg(title)};
}

base::Result<std::vector<PrintJob>> QtSystem::jobs() { return std::vector<PrintJob>(); }

base::Status QtSystem::cancel(const PrintJob &job)
{
    return base::Error{
        u"印刷「%1」は、ここからは取り消せません。プリンタの画面で取り消してください。"_s.arg(job.title)};
}

bool QtSystem::showPrinterProperties(const QString &queue) { return openPrinterSettings(queue); }

} // namespace printing
