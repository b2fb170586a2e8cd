#include "printing/DialogPrintJobs.h"

#include "printing/queue/job_watch.h"
#include "printing/queue/queue_words.h"
#include "ui/prompts.h"
#include "ui_DialogPrintJobs.h"
#include "workspace/workspace.h"

#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int lookAgain = 3000; // milliseconds

std::vector<base::Column> jobColumns()
{
    using enum base::Format;
    return {{u"時刻"_s, Text, 7},
            {u"文書"_s, Text, 30, 20, true},
            {u"プリンタ"_s, Text, 20},
            {u"状態"_s, Text, 36},
            {u"番号"_s, Number, 7}};
}

} // namespace

DialogPrintJobs::DialogPrintJobs(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogPrintJobs>())
    , m_clock(new QTimer(this))
{
    m_ui->setupUi(this);
    m_ui->gridJobs->showColumns(jobColumns());
    connect(m_ui->gridJobs->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &DialogPrintJobs::showChoice);
    connect(m_ui->cmdRefresh, &QPushButton::clicked, this, &DialogPrintJobs::read);
    connect(m_ui->cmdCancelJob, &QPushButton::clicked, this, &DialogPrintJobs::cancel);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogPrintJobs::reject);
    connect(m_clock, &QTimer::timeout, this, &DialogPrintJobs::read);
    setUp();
    read();
}

DialogPrintJobs::~DialogPrintJobs() = default;

// A failure stands in the window: a box every three seconds would not let the clerk out of it. A service that
// cannot be reached is not asked again by itself: each answer takes seconds.
void DialogPrintJobs::read()
{
    const auto jobs = printSystem(workspace()).jobs();
    if (jobs)
        m_clock->start(lookAgain);
    else
        m_clock->stop();
    m_jobs = jobs ? *jobs : std::vector<PrintJob>();
    std::erase_if(m_jobs, [this](const PrintJob &job) {
        return job.taken.date() != workspace().today() && !job.isUnderWay();
    });
    base::Report report{.columns = jobColumns()};
    for (const PrintJob &job : m_jobs) {
        if (job.state == JobState::Cancelled)
            (void)passOn(job); // at the next look once more
        const QString trouble = troubleInWords(job.printer);
        const bool isToday = job.taken.date() == workspace().today();
        report.rows.push_back({{job.taken.toString(isToday ? u"HH:mm"_s : u"MM/dd"_s), job.title, job.queue,
                                trouble.isEmpty() ? stateInWords(job.state) : trouble, job.number},
                               job.number});
    }
    m_ui->gridJobs->setReport(std::move(report));
    m_ui->lblCount->setText(!jobs            ? jobs.error().text
                            : m_jobs.empty() ? u"今日の印刷はありません。"_s
                                             : u"今日の印刷　%1 件"_s.arg(m_jobs.size()));
    showChoice();
}

const PrintJob *DialogPrintJobs::current() const
{
    const int number = m_ui->gridJobs->currentLink().toInt();
    const auto found = std::find_if(m_jobs.begin(), m_jobs.end(),
                                    [number](const PrintJob &job) { return job.number == number; });
    return found == m_jobs.end() ? nullptr : &*found;
}

void DialogPrintJobs::showChoice()
{
    const PrintJob *job = current();
    m_ui->cmdCancelJob->setEnabled(job && job->isUnderWay());
}

void DialogPrintJobs::cancel()
{
    if (!current())
        return;
    const PrintJob job = *current();
    // The list is read anew meanwhile; the question is about this job all the same.
    if (!ui::prompts::askCautiously(this, u"「%1」の印刷を取り消します。よろしいですか。"_s.arg(job.title),
                                    u"プリンタに届いている分は、そのまま出ることがあります。"_s))
        return;
    if (tell(printSystem(workspace()).cancel(job)))
        tell(passOn(job));
    read();
}

base::Status DialogPrintJobs::passOn(const PrintJob &job)
{
    const auto watch = workspace().kept<JobWatch>();
    if (!watch || m_passedOn.contains(job.number))
        return {};
    const base::Status done = watch->cancelled(job);
    if (done)
        m_passedOn.insert(job.number);
    return done;
}

} // namespace printing
