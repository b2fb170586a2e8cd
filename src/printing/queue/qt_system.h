#pragma once

#include "printing/queue/print_system.h"

namespace printing
{

/// The printers as the toolkit reaches them, where there is no CUPS (on Windows). It does not tell whether a
/// job was refused, and knows of no jobs.
class QtSystem : public PrintSystem
{
public:
    base::Result<Queues> queues() override;
    base::Result<QueueAbilities> abilities(const QString &queue) override;
    base::Result<int> print(const Document &document, const Look &look, const JobSettings &settings,
                            const base::Progress &progress) override;
    QByteArray takeHandedOver() override { return {}; }
    [[nodiscard]] bool takesPdf() const override { return false; }
    base::Result<int> printPdf(const QByteArray &pdf, const QString &title,
                               const JobSettings &settings) override;
    base::Result<std::vector<PrintJob>> jobs() override;
    base::Status cancel(const PrintJob &job) override;
    bool showPrinterProperties(const QString &queue) override;
};

} // namespace printing
