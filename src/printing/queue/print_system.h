#pragma once

#include "base/progress.h"
#include "base/result.h"
#include "printing/queue/queue_abilities.h"

#include <QDateTime>

#include <memory>

namespace workspace
{
class Workspace;
}

// The way from a finished document to paper.
namespace printing
{

struct Document;
struct Look;

/// What a queue is told of a document.
struct JobSettings
{
    QString queue;
    QSizeF paper;  // millimetres, as it is fed
    QString bin{}; // as the system names it; empty: the queue's own choice
    int copies = 1;
    std::optional<Resolution> resolution{}; // where the queue's usual one is not to be used
    std::optional<QMarginsF> unprintable{}; // of the queue on this paper, millimetres, where it tells
};

/// The queues of this machine.
struct Queues
{
    QStringList names; // as the clerk knows them; none where none is set up
    QString usual{};   // that the desktop prints on; empty where it has none
};

enum class JobState { Waiting, Held, Printing, Stopped, Cancelled, Failed, Done };

/// A document that a queue took.
struct PrintJob
{
    int number = 0; // the system's own
    QString queue;
    QString title;
    JobState state = JobState::Waiting;
    QDateTime taken;      // when the queue took it
    QueueState printer{}; // its queue just now, while it may still come out

    /// Whether it may still come out.
    [[nodiscard]] bool isUnderWay() const
    {
        return state == JobState::Waiting || state == JobState::Held || state == JobState::Printing ||
               state == JobState::Stopped;
    }
};

/// The printers of this machine and what was given to them.
class PrintSystem
{
public:
    virtual ~PrintSystem() = default;

    /// May take a moment: the system looks about the network, too. Fails where there is no print service.
    virtual base::Result<Queues> queues() = 0;
    /// Fails where there is no such queue, or its printer does not answer.
    virtual base::Result<QueueAbilities> abilities(const QString &queue) = 0;
    /// Draws \a document whole and hands it over. \return the number of the job that the queue made of it.
    /// Fails with the queue's own words where it takes none, and when \a progress stops the drawing; then
    /// nothing comes out.
    virtual base::Result<int> print(const Document &document, const Look &look, const JobSettings &settings,
                                    const base::Progress &progress) = 0;
    /// What went to the queue by the last print(), which is forgotten then; empty where it was no PDF.
    virtual QByteArray takeHandedOver() = 0;
    /// Whether finished PDFs can be handed over.
    [[nodiscard]] virtual bool takesPdf() const = 0;
    /// Hands \a pdf over as it is, as a job called \a title. As print().
    virtual base::Result<int> printPdf(const QByteArray &pdf, const QString &title,
                                       const JobSettings &settings) = 0;
    /// This user's jobs, finished ones too as long as the system remembers them; the newest first.
    virtual base::Result<std::vector<PrintJob>> jobs() = 0;
    /// Takes a job back. What has reached the printer comes out all the same.
    virtual base::Status cancel(const PrintJob &job) = 0;
    /// Has the system show its own window of the queue's properties, which stays beside ours. \return whether
    /// there is one
    virtual bool showPrinterProperties(const QString &queue) = 0;
};

/// The print system that the screens work with: this machine's own, unless another one was kept.
PrintSystem &printSystem(workspace::Workspace &workspace);

/// Keeps another one in its place.
void keepPrintSystem(workspace::Workspace &workspace, std::shared_ptr<PrintSystem> system);

} // namespace printing
