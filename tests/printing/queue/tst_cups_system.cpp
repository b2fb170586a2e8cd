#include "printing/print_offsets.h"
#include "printing/queue/cups_system.h"
#include "printing/queue/paper_codes.h"
#include "printing/queue/paper_words.h"
#include "printing/queue/qt_system.h"
#include "printing/renderer.h"
#include "support/private_cups.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <memory>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

// A delivery note's paper with one word whose place can be found again.
Document note()
{
    Sheet sheet;
    sheet.paperWidth = 241.3;
    sheet.paperHeight = 114.3;
    sheet.origin = Origin::PaperEdge;
    sheet.texts.push_back(
        {.x = twipsFromMillimetres(120), .y = twipsFromMillimetres(50), .text = u"納品書"_s, .points = 12});
    Document document{.title = u"納品書 O123"_s, .remark = {}, .sheets = std::vector{sheet}, .richTexts = {}};
    return document;
}

JobSettings onto(const QString &queue, const QSizeF &paper)
{
    return {.queue = queue, .paper = paper, .bin = {}, .copies = 1, .resolution = {}};
}

base::Result<int> printed(PrintSystem &system, const JobSettings &settings)
{
    return system.print(note(), Look{u"IPAMincho"_s}, settings, base::unwatched);
}

// The left and the upper edge of the first word, points.
QPointF placeOfWord(const QByteArray &pdf)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-bbox"_s, u"-"_s, u"-"_s});
    reader.write(pdf);
    reader.closeWriteChannel();
    reader.waitForFinished();
    static const QRegularExpression word(u"<word xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\""_s);
    const auto match = word.match(QString::fromUtf8(reader.readAll()));
    return {match.captured(1).toDouble(), match.captured(2).toDouble()};
}

} // namespace

class TestCupsSystem : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::PrivateCups> m_cups;
    CupsSystem m_system;

private slots:
    void initTestCase()
    {
        m_cups = std::make_unique<test::PrivateCups>();
        if (!m_cups->reasonNotToRun().isEmpty())
            QSKIP(qPrintable(m_cups->reasonNotToRun()));
        QVERIFY(m_cups->addQueue(u"cut"_s, QFINDTESTDATA("../../data/cut-paper.ppd")));
        QVERIFY(m_cups->addQueue(u"any"_s, QFINDTESTDATA("../../data/any-paper.ppd")));
        QVERIFY(m_cups->addQueue(u"needles"_s, u"drv:///sample.drv/epson24.ppd"_s));
    }

    void cleanupTestCase() { m_cups.reset(); }

    void queuesAndWhatTheyCanDo()
    {
        const auto queues = m_system.queues();
        QVERIFY(queues);
        QCOMPARE(QSet<QString>(queues->names.begin(), queues->names.end()),
                 (QSet<QString>{u"cut"_s, u"any"_s, u"needles"_s}));
        QVERIFY(test::PrivateCups::run(u"lpadmin"_s, {u"-d"_s, u"any"_s}));
        QCOMPARE(m_system.queues()->usual, u"any"_s);

        const QSizeF continuous(241.3, 114.3);
        const auto cut = m_system.abilities(u"cut"_s);
        QVERIFY(cut);
        QVERIFY(takesPaper(*cut, {210, 297}) && takesPaper(*cut, {148, 210}) &&
                !takesPaper(*cut, continuous));
        QCOMPARE(cut->bins.size(), 2);
        QVERIFY(cut->bins.contains(u"manual"_s));
        QVERIFY(cut->mostCopies > 1);
        // 12 points
        QVERIFY(std::abs(cut->media.front().margins.left() - 4.23) < 0.01);
        QCOMPARE(paperNameText(usualPaper(*cut)->code), u"A4"_s);
        QCOMPARE(binText(usualBinCode(*cut)), u"現在の既定値のトレーの用紙を使います。"_s);

        QVERIFY(takesPaper(*m_system.abilities(u"any"_s), continuous));
        const auto needles = m_system.abilities(u"needles"_s);
        QVERIFY(takesPaper(*needles, continuous));
        // A quarter of an inch all around, and twelve points.
        QCOMPARE(physicalOffsetTwips(unprintableOn(*needles, continuous)), QPoint(360, 360));
        QCOMPARE(physicalOffsetTwips(unprintableOn(*m_system.abilities(u"any"_s), continuous)),
                 QPoint(240, 240));
        QCOMPARE(resolutionToAskFor(*needles), (Resolution{180, 180}));
        QVERIFY(m_system.abilities(u"nobody"_s).error().text.contains(u"nobody"_s));
    }

    void whatArrivesIsWhatWasDrawn()
    {
        JobSettings settings = onto(u"any"_s, {241.3, 114.3});
        settings.bin = u"manual"_s;
        settings.copies = 3;
        const auto job = printed(m_system, settings);
        QVERIFY2(job, job ? "" : qPrintable(job.error().text));
        const QByteArray arrived = m_cups->arrived(*job);
        const QPointF place = placeOfWord(arrived);
        const double mm = 72 / 25.4;
        QVERIFY2(std::abs(place.x() - 120 * mm) < 0.3 * mm, qPrintable(QString::number(place.x() / mm)));
        QVERIFY2(std::abs(place.y() - 50 * mm) < 0.3 * mm, qPrintable(QString::number(place.y() / mm)));
        const QStringList options = m_cups->options(*job);
        QCOMPARE(options.front(), u"3"_s);
        for (const QString &option :
             {u"InputSlot=Manual"_s, u"PageSize=Custom.684x324"_s, u"print-scaling=none"_s,
              u"multiple-document-handling=separate-documents-collated-copies"_s})
            QVERIFY2(options.contains(option), qPrintable(options.join(u' ')));
    }

    // Fed as it lies and at its own length; with the keyword of a paper that no queue knows, the form would
    // run on to the length of a letter.
    void aContinuousFormKeepsItsLength()
    {
        JobSettings settings = onto(u"needles"_s, {241.3, 114.3});
        settings.resolution = resolutionToAskFor(*m_system.abilities(u"needles"_s));
        const auto job = printed(m_system, settings);
        QVERIFY(job);
        const QByteArray arrived = m_cups->arrived(*job);
        // ESC C n: n lines of a sixth of an inch; 114.3 mm are 27.
        QVERIFY2(arrived.contains(QByteArray("\x1b"
                                             "C\x1b",
                                             3)),
                 qPrintable(QString::fromLatin1(arrived.left(60).toHex())));
        QVERIFY(m_cups->options(*job).contains(u"Resolution=180dpi"_s));
    }

    void aRefusalIsToldInTheQueuesOwnWords()
    {
        QVERIFY(test::PrivateCups::run(u"cupsreject"_s, {u"any"_s}));
        const auto refused = printed(m_system, onto(u"any"_s, {241.3, 114.3}));
        QVERIFY(test::PrivateCups::run(u"cupsaccept"_s, {u"any"_s}));
        QVERIFY(!refused);
        QVERIFY2(refused.error().text.contains(u"not accepting jobs"_s), qPrintable(refused.error().text));
        QVERIFY(!printed(m_system, onto(u"nobody"_s, {210, 297})));
    }

    void aStoppedQueueKeepsTheJobUntilItIsTakenBack()
    {
        QVERIFY(test::PrivateCups::run(u"cupsdisable"_s, {u"any"_s}));
        const auto number = printed(m_system, onto(u"any"_s, {241.3, 114.3}));
        QVERIFY(number);
        const auto job = [&]() -> PrintJob {
            const auto jobs = m_system.jobs();
            for (const PrintJob &each : *jobs) {
                if (each.number == *number)
                    return each;
            }
            return {};
        };
        QCOMPARE(job().queue, u"any"_s);
        QCOMPARE(job().title, u"納品書 O123"_s);
        QVERIFY(job().isUnderWay());
        QVERIFY(job().printer.isStopped && m_system.abilities(u"any"_s)->state.isStopped);
        QVERIFY(job().taken.secsTo(QDateTime::currentDateTime()) < 60);
        QVERIFY(m_system.cancel(job()));
        QCOMPARE(job().state, JobState::Cancelled);
        QVERIFY(!m_system.cancel(job()));
        QVERIFY(test::PrivateCups::run(u"cupsenable"_s, {u"any"_s}));
    }

    // Nothing that was stopped while it was drawn reaches the queue.
    void aJobThatIsStoppedInTimeIsNone()
    {
        Document notes = note();
        notes.sheets = std::vector(3, notes.sheets.front());
        const auto before = m_system.jobs();
        const auto stopped = m_system.print(notes, Look{u"IPAMincho"_s}, onto(u"any"_s, {241.3, 114.3}),
                                            [](qint64 done, qint64) { return done < 2; });
        QVERIFY(!stopped && stopped.error().cancelled);
        QCOMPARE(m_system.jobs()->size(), before->size());
    }

    void theToolkitsWayKnowsTheSameQueues()
    {
        QtSystem toolkit;
        const auto queues = toolkit.queues();
        QVERIFY(queues->names.contains(u"any"_s) && queues->names.contains(u"cut"_s));
        const auto cut = toolkit.abilities(u"cut"_s);
        QVERIFY(takesPaper(*cut, {210, 297}) && !takesPaper(*cut, {241.3, 114.3}));
        QVERIFY(takesPaper(*toolkit.abilities(u"any"_s), {241.3, 114.3}));
        QVERIFY(!toolkit.abilities(u"nobody"_s));
        const auto before = m_system.jobs();
        QVERIFY(printed(toolkit, onto(u"any"_s, {241.3, 114.3})));
        QTRY_COMPARE(m_system.jobs()->size(), before->size() + 1);
        QVERIFY(!printed(toolkit, onto(u"nobody"_s, {241.3, 114.3})));
    }

    void noServiceIsAMessage()
    {
        const QByteArray server = qgetenv("CUPS_SERVER");
        qputenv("CUPS_SERVER", "/no such folder/cups.sock");
        cupsForget();
        QVERIFY(!m_system.queues());
        QVERIFY(printed(m_system, onto(u"any"_s, {210, 297})).error().text.contains(u"CUPS"_s));
        QVERIFY(!m_system.jobs());
        qputenv("CUPS_SERVER", server);
        cupsForget();
    }

    // It takes the connection and never answers: a service that was stopped, or hangs.
    void aSilentServiceIsGivenUp()
    {
        const QTemporaryDir folder;
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        const QByteArray path = QFile::encodeName(folder.filePath(u"cups.sock"_s));
        qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
        const int silent = ::socket(AF_UNIX, SOCK_STREAM, 0);
        QVERIFY(::bind(silent, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
                ::listen(silent, 5) == 0);
        const QByteArray server = qgetenv("CUPS_SERVER");
        qputenv("CUPS_SERVER", path);
        cupsForget();
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!m_system.jobs());
        QVERIFY(!m_system.queues()); // not none
        const qint64 waited = clock.elapsed();
        ::close(silent);
        qputenv("CUPS_SERVER", server);
        cupsForget();
        QVERIFY2(waited < 20'000, qPrintable(QString::number(waited)));
    }

private:
    // libcups reads the environment once.
    static void cupsForget();
};

} // namespace printing

#include <cups/cups.h>

void printing::TestCupsSystem::cupsForget() { cupsSetServer(qgetenv("CUPS_SERVER").constData()); }

QTEST_MAIN(printing::TestCupsSystem)
#include "tst_cups_system.moc"
