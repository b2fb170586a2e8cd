#pragma once

#include "printing/queue/print_system.h"

#include <utility>

namespace printing
{

/// The queues of CUPS, the one that the environment names (CUPS_SERVER) or the machine's own. Every call has
/// a connection of its own, so that a service that was started anew is found again.
class CupsSystem : public PrintSystem
{
public:
    base::Result<Queues> queues() override;
    base::Result<QueueAbilities> abilities(const QString &queue) override;
    base::Result<int> print(const Document &document, const Look &look, const JobSettings &settings,
                            const base::Progress &progress) override;
    QByteArray takeHandedOver() override { return std::exchange(m_handedOver, {}); }
    [[nodiscard]] bool takesPdf() const override { return true; }
    base::Result<int> printPdf(const QByteArray &pdf, const QString &title,
                               const JobSettings &settings) override;
    base::Result<std::vector<PrintJob>> jobs() override;
    base::Status cancel(const PrintJob &job) override;
    bool showPrinterProperties(const QString &queue) override;

private:
    QByteArray m_handedOver;
};

} // namespace printing
