#include "printing/queue/cups_system.h"

#include "printing/pdf.h"
#include "printing/queue/printer_settings.h"
#include "printing/renderer.h"

#include <cups/cups.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int longestWait = 5000;    // milliseconds, for the service to take a connection
constexpr double longestSilence = 4; // seconds, of one that took the connection; libcups would wait a minute
constexpr double unitsPerMm = 100;   // CUPS counts in hundredths of a millimetre

struct CloseConnection
{
    void operator()(http_t *http) const { httpClose(http); }
};
using Http = std::unique_ptr<http_t, CloseConnection>;

struct FreeInfo
{
    void operator()(cups_dinfo_t *info) const { cupsFreeDestInfo(info); }
};
using Info = std::unique_ptr<cups_dinfo_t, FreeInfo>;

/// Queues, freed together.
class Destinations
{
public:
    explicit Destinations(http_t *http)
        : m_count(cupsGetDests2(http, &m_first))
    {}
    Destinations(http_t *http, const QString &name)
        : m_first(cupsGetNamedDest(http, name.toUtf8().constData(), nullptr))
        , m_count(m_first ? 1 : 0)
    {}
    ~Destinations() { cupsFreeDests(m_count, m_first); }
    Destinations(const Destinations &) = delete;
    Destinations &operator=(const Destinations &) = delete;

    [[nodiscard]] bool isEmpty() const { return m_count == 0; }
    [[nodiscard]] cups_dest_t *begin() const { return m_first; }
    [[nodiscard]] cups_dest_t *end() const { return m_first + m_count; }

private:
    cups_dest_t *m_first = nullptr;
    int m_count = 0;
};

class Options
{
public:
    Options() = default;
    ~Options() { cupsFreeOptions(m_count, m_first); }
    Options(const Options &) = delete;
    Options &operator=(const Options &) = delete;

    void add(const char *name, const QString &value)
    {
        m_count = cupsAddOption(name, value.toUtf8().constData(), m_count, &m_first);
    }
    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] cups_option_t *first() const { return m_first; }

private:
    cups_option_t *m_first = nullptr;
    int m_count = 0;
};

base::Error lastError(const QString &what)
{
    const char *words = cupsLastErrorString();
    const QString said = words ? QString::fromUtf8(words) : QString();
    return base::Error{said.isEmpty() ? what : what + u"（"_s + said + u"）"_s};
}

base::Error noService()
{
    return base::Error{u"印刷サービス（CUPS）に接続できません。プリンタの設定を確かめるか、PDF に"
                       "保存してください。"_s};
}

base::Result<Http> connection()
{
    Http http(
        httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, longestWait, nullptr));
    if (!http)
        return noService();
    httpSetTimeout(
        http.get(), longestSilence, [](http_t *, void *) { return 0; }, nullptr);
    return http;
}

// Of a call that names queues: none is no failure.
bool hasAnswered()
{
    return cupsLastError() <= IPP_STATUS_OK_CONFLICTING || cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND;
}

// As the service tells it with each queue.
QueueState stateOf(const cups_dest_t &queue)
{
    const auto option = [&queue](const char *name) {
        const char *value = cupsGetOption(name, queue.num_options, queue.options);
        return value ? QString::fromUtf8(value) : QString();
    };
    QueueState state;
    state.isStopped = option("printer-state").toInt() == IPP_PSTATE_STOPPED;
    state.isAccepting = option("printer-is-accepting-jobs") != u"false"_s;
    state.reasons = option("printer-state-reasons").split(u',', Qt::SkipEmptyParts);
    state.reasons.removeAll(u"none"_s);
    return state;
}

base::Error noSuchQueue(const QString &queue)
{
    return base::Error{u"プリンタ「%1」が見つかりません。プリンタを選び直してください。"_s.arg(queue)};
}

QStringList keywords(ipp_attribute_t *attribute)
{
    QStringList words;
    for (int i = 0; attribute && i < ippGetCount(attribute); ++i)
        words << QString::fromUtf8(ippGetString(attribute, i, nullptr));
    return words;
}

std::vector<Resolution> resolutions(ipp_attribute_t *attribute)
{
    std::vector<Resolution> found;
    for (int i = 0; attribute && i < ippGetCount(attribute); ++i) {
        ipp_res_t unit = IPP_RES_PER_INCH;
        Resolution resolution;
        resolution.across = ippGetResolution(attribute, i, &resolution.along, &unit);
        if (unit == IPP_RES_PER_INCH)
            found.push_back(resolution);
    }
    return found;
}

Medium mediumFrom(const cups_size_t &size)
{
    return {
        QString::fromUtf8(size.media),
        {size.width / unitsPerMm, size.length / unitsPerMm},
        {size.left / unitsPerMm, size.top / unitsPerMm, size.right / unitsPerMm, size.bottom / unitsPerMm}};
}

std::vector<Medium> media(http_t *http, cups_dest_t *queue, cups_dinfo_t *info)
{
    std::vector<Medium> found;
    const int count = cupsGetDestMediaCount(http, queue, info, 0);
    for (int i = 0; i < count; ++i) {
        cups_size_t size;
        if (cupsGetDestMediaByIndex(http, queue, info, i, 0, &size) != 0)
            found.push_back(mediumFrom(size));
    }
    return found;
}

// Of the user's own options, else of the queue. (cupsGetDestMediaDefault knows the former alone, and takes a
// letter for the latter.)
std::optional<Medium> usualPaper(http_t *http, cups_dest_t *queue, cups_dinfo_t *info)
{
    const char *name = cupsGetOption("media", queue->num_options, queue->options);
    ipp_attribute_t *usual = name ? nullptr : cupsFindDestDefault(http, queue, info, "media");
    if (usual)
        name = ippGetString(usual, 0, nullptr);
    cups_size_t size;
    if (!name || cupsGetDestMediaByName(http, queue, info, name, 0, &size) == 0)
        return std::nullopt;
    return mediumFrom(size);
}

QString usualBin(http_t *http, cups_dest_t *queue, cups_dinfo_t *info)
{
    if (const char *own = cupsGetOption("media-source", queue->num_options, queue->options))
        return QString::fromUtf8(own);
    ipp_attribute_t *column = cupsFindDestDefault(http, queue, info, "media-col");
    if (!column || ippGetValueTag(column) != IPP_TAG_BEGIN_COLLECTION)
        return {};
    ipp_attribute_t *source = ippFindAttribute(ippGetCollection(column, 0), "media-source", IPP_TAG_ZERO);
    return source ? QString::fromUtf8(ippGetString(source, 0, nullptr)) : QString();
}

// The margins of paper that the queue does not know by name are alike whatever its size.
QMarginsF customMargins(http_t *http, cups_dest_t *queue, cups_dinfo_t *info, const QSizeF &paper)
{
    cups_size_t size;
    const auto units = [](double mm) { return static_cast<int>(std::lround(mm * unitsPerMm)); };
    if (cupsGetDestMediaBySize(http, queue, info, units(paper.width()), units(paper.height()), 0, &size) == 0)
        return {};
    return mediumFrom(size).margins;
}

int mostCopies(ipp_attribute_t *attribute)
{
    int most = 1;
    if (attribute && ippGetValueTag(attribute) == IPP_TAG_RANGE)
        ippGetRange(attribute, 0, &most);
    return std::max(1, most);
}

// Size and bin as one collection: named by a keyword, a size that the queue does not know lands on its
// default paper, and a bin is passed over.
QString mediumText(const JobSettings &settings)
{
    const auto units = [](double mm) { return QString::number(std::lround(mm * unitsPerMm)); };
    QString text = u"{media-size={x-dimension=%1 y-dimension=%2}"_s.arg(units(settings.paper.width()),
                                                                        units(settings.paper.height()));
    if (!settings.bin.isEmpty())
        text += u" media-source="_s + settings.bin;
    return text + u'}';
}

// The second name of the resolution is for queues whose driver is a PPD file.
void addResolution(Options &options, const Resolution &resolution)
{
    const QString across = QString::number(resolution.across);
    const QString along = QString::number(resolution.along);
    options.add("printer-resolution", across + u'x' + along + u"dpi"_s);
    options.add("Resolution", (across == along ? across : across + u'x' + along) + u"dpi"_s);
}

void fill(Options &options, const JobSettings &settings)
{
    options.add("media-col", mediumText(settings));
    options.add("copies", QString::number(std::max(1, settings.copies)));
    // A note of several sheets comes out whole before it comes out again.
    options.add("multiple-document-handling", u"separate-documents-collated-copies"_s);
    // Fitted to the printable area, a form would shrink away from its boxes.
    options.add("print-scaling", u"none"_s);
    if (settings.resolution)
        addResolution(options, *settings.resolution);
}

bool write(http_t *http, const QByteArray &pdf)
{
    constexpr qsizetype piece = 65536;
    for (qsizetype at = 0; at < pdf.size(); at += piece) {
        const auto length = static_cast<std::size_t>(std::min(piece, pdf.size() - at));
        if (cupsWriteRequestData(http, pdf.constData() + at, length) != HTTP_STATUS_CONTINUE)
            return false;
    }
    return true;
}

base::Result<int> hand(const QByteArray &pdf, const QString &name, const JobSettings &settings)
{
    const auto http = connection();
    if (!http)
        return http.error();
    const QByteArray queue = settings.queue.toUtf8();
    const QByteArray title = name.toUtf8();
    const QString refused = u"プリンタ「%1」が受け付けないため、印刷しませんでした。"_s.arg(settings.queue);
    Options options;
    fill(options, settings);
    const int job =
        cupsCreateJob(http->get(), queue.constData(), title.constData(), options.count(), options.first());
    if (job == 0)
        return lastError(refused);
    const bool isSent = cupsStartDocument(http->get(), queue.constData(), job, title.constData(),
                                          CUPS_FORMAT_PDF, 1) == HTTP_STATUS_CONTINUE &&
                        write(http->get(), pdf);
    if (cupsFinishDocument(http->get(), queue.constData()) <= IPP_STATUS_OK_CONFLICTING && isSent)
        return job;
    const base::Error error = lastError(refused);
    cupsCancelJob2(http->get(), queue.constData(), job, 0);
    return error;
}

JobState stateFrom(ipp_jstate_t state)
{
    switch (state) {
    case IPP_JSTATE_PENDING:
        return JobState::Waiting;
    case IPP_JSTATE_HELD:
        return JobState::Held;
    case IPP_JSTATE_PROCESSING:
        return JobState::Printing;
    case IPP_JSTATE_STOPPED:
        return JobState::Stopped;
    case IPP_JSTATE_CANCELED:
        return JobState::Cancelled;
    case IPP_JSTATE_ABORTED:
        return JobState::Failed;
    case IPP_JSTATE_COMPLETED:
        return JobState::Done;
    }
    return JobState::Failed;
}

// What the queues of the jobs that may still come out say of themselves.
void tellStates(http_t *http, std::vector<PrintJob> &jobs)
{
    std::map<QString, QueueState> states;
    for (PrintJob &job : jobs) {
        if (!job.isUnderWay())
            continue;
        auto known = states.find(job.queue);
        if (known == states.end()) {
            const Destinations found(http, job.queue);
            known = states.emplace(job.queue, found.isEmpty() ? QueueState() : stateOf(*found.begin())).first;
        }
        job.printer = known->second;
    }
}

} // namespace

base::Result<Queues> CupsSystem::queues()
{
    const auto http = connection();
    if (!http)
        return http.error();
    Queues queues;
    const Destinations found(http->get());
    if (found.isEmpty() && !hasAnswered())
        return noService();
    for (const cups_dest_t &queue : found) {
        // An instance is a second name of the same queue with options of its own.
        if (!queue.instance)
            queues.names << QString::fromUtf8(queue.name);
        if (queue.is_default != 0)
            queues.usual = QString::fromUtf8(queue.name);
    }
    return queues;
}

base::Result<QueueAbilities> CupsSystem::abilities(const QString &queue)
{
    const auto http = connection();
    if (!http)
        return http.error();
    const Destinations found(http->get(), queue);
    if (found.isEmpty())
        return hasAnswered() ? noSuchQueue(queue) : noService();
    cups_dest_t *destination = found.begin();
    const Info info(cupsCopyDestInfo(http->get(), destination));
    if (!info)
        return lastError(u"プリンタ「%1」の情報を読み取れません。"_s.arg(queue));
    const auto supported = [&](const char *option) {
        return cupsFindDestSupported(http->get(), destination, info.get(), option);
    };
    QueueAbilities abilities{.media = media(http->get(), destination, info.get()),
                             .custom = customSizesFrom(keywords(supported("media"))),
                             .usualPaper = usualPaper(http->get(), destination, info.get()),
                             .bins = keywords(supported("media-source")),
                             .usualBin = usualBin(http->get(), destination, info.get()),
                             .mostCopies = mostCopies(supported("copies")),
                             .resolutions = resolutions(supported("printer-resolution")),
                             .state = stateOf(*destination)};
    if (abilities.custom)
        abilities.custom->margins =
            customMargins(http->get(), destination, info.get(), abilities.custom->least);
    const auto usual =
        resolutions(cupsFindDestDefault(http->get(), destination, info.get(), "printer-resolution"));
    if (!usual.empty())
        abilities.usualResolution = usual.front();
    return abilities;
}

base::Result<int> CupsSystem::print(const Document &document, const Look &look, const JobSettings &settings,
                                    const base::Progress &progress)
{
    auto pdf = pdfOf(document, lookOn(settings, look), progress);
    if (!pdf)
        return pdf.error();
    const auto job = hand(*pdf, document.title, settings);
    if (job)
        m_handedOver = std::move(*pdf);
    return job;
}

base::Result<int> CupsSystem::printPdf(const QByteArray &pdf, const QString &title,
                                       const JobSettings &settings)
{
    return hand(pdf, title, settings);
}

base::Result<std::vector<PrintJob>> CupsSystem::jobs()
{
    const auto http = connection();
    if (!http)
        return http.error();
    cups_job_t *found = nullptr;
    const int count = cupsGetJobs2(http->get(), &found, nullptr, 1, CUPS_WHICHJOBS_ALL);
    if (count < 0)
        return lastError(u"印刷の一覧を読み取れません。"_s);
    std::vector<PrintJob> jobs;
    for (int i = 0; i < count; ++i) {
        const cups_job_t &job = found[i];
        jobs.push_back({job.id, QString::fromUtf8(job.dest), QString::fromUtf8(job.title),
                        stateFrom(job.state), QDateTime::fromSecsSinceEpoch(job.creation_time)});
    }
    cupsFreeJobs(count, found);
    tellStates(http->get(), jobs);
    std::sort(jobs.begin(), jobs.end(),
              [](const PrintJob &a, const PrintJob &b) { return a.number > b.number; });
    return jobs;
}

base::Status CupsSystem::cancel(const PrintJob &job)
{
    const auto http = connection();
    if (!http)
        return http.error();
    if (cupsCancelJob2(http->get(), job.queue.toUtf8().constData(), job.number, 0) <=
        IPP_STATUS_OK_CONFLICTING)
        return {};
    return lastError(u"印刷「%1」を取り消せませんでした。"_s.arg(job.title));
}

bool CupsSystem::showPrinterProperties(const QString &queue) { return openPrinterSettings(queue); }

} // namespace printing
