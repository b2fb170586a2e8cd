#pragma once

#include "printing/pdf.h"
#include "printing/queue/print_system.h"
#include "printing/renderer.h"

#include <algorithm>

/// Printers that keep what they are given.
class FakePrinters : public printing::PrintSystem
{
public:
    struct Given
    {
        printing::JobSettings settings;
        QByteArray pdf;
    };

    QStringList names{QStringLiteral("LASER"), QStringLiteral("DOT")};
    QString usual = QStringLiteral("LASER");
    std::map<QString, printing::QueueAbilities> can; // others take all paper
    std::optional<base::Error> noService;            // what every call fails with
    std::optional<base::Error> refusal;              // of whatever is handed over
    int asked = 0;                                   // how often for the queues
    std::vector<Given> given;
    std::vector<printing::PrintJob> list;
    std::vector<int> cancelled; // numbers
    bool hasProperties = true;  // the desktop can show them
    QStringList shown;          // whose properties were

    base::Result<printing::Queues> queues() override
    {
        ++asked;
        if (noService)
            return *noService;
        return printing::Queues{names, usual};
    }
    base::Result<printing::QueueAbilities> abilities(const QString &queue) override
    {
        const auto found = can.find(queue);
        return found == can.end() ? printing::QueueAbilities{.mostCopies = 999} : found->second;
    }
    base::Result<int> print(const printing::Document &document, const printing::Look &look,
                            const printing::JobSettings &settings, const base::Progress &progress) override
    {
        if (refusal)
            return *refusal;
        const auto pdf = printing::pdfOf(document, printing::lookOn(settings, look), progress);
        return pdf ? printPdf(*pdf, document.title, settings) : pdf.error();
    }
    QByteArray takeHandedOver() override { return given.empty() ? QByteArray() : given.back().pdf; }
    [[nodiscard]] bool takesPdf() const override { return true; }
    base::Result<int> printPdf(const QByteArray &pdf, const QString &,
                               const printing::JobSettings &settings) override
    {
        if (refusal)
            return *refusal;
        given.push_back({settings, pdf});
        return static_cast<int>(given.size());
    }
    base::Result<std::vector<printing::PrintJob>> jobs() override
    {
        return noService ? base::Result<std::vector<printing::PrintJob>>(*noService) : list;
    }
    base::Status cancel(const printing::PrintJob &job) override
    {
        cancelled.push_back(job.number);
        std::erase_if(list, [&job](const printing::PrintJob &each) { return each.number == job.number; });
        return {};
    }
    bool showPrinterProperties(const QString &queue) override
    {
        if (hasProperties)
            shown << queue;
        return hasProperties;
    }
};
