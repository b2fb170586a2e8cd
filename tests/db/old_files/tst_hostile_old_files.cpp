// Old files that are damaged in every way: each is either carried over as the program counts it, or refused
// with a sentence and without a new file; none brings the program down or keeps it waiting.
// KANBALORE_DAMAGED_FILES: how many; KANBALORE_SEED: which ones.
#include "db/connection.h"
#include "db/old_files/conversion.h"
#include "support/damage.h"
#include "support/numbers.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int silence = 2'000; // ms

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

// The sentence without its table and its numbers.
QString sortOf(QString sentence)
{
    static const QRegularExpression particulars(uR"([^(]+: 本来 \d+ 行のところ \d+ 行)"_s);
    return sentence.replace(particulars, u"行数"_s);
}

} // namespace

class TestHostileOldFiles : public QObject
{
    Q_OBJECT

private slots:
    void damaged();
};

void TestHostileOldFiles::damaged()
{
    const QByteArray original = contentOf(QStringLiteral(LEGACY_FILE));
    QVERIFY(!original.isEmpty());
    const QTemporaryDir folder;
    const QString source = folder.filePath(u"old.cdb"_s);
    const QString target = folder.filePath(u"new.cdb"_s);
    db::ConversionOptions options;
    options.reader = QStringLiteral(OLD_FILE_READER);
    options.silence = silence;
    Damage damage(static_cast<quint32>(numberFrom("KANBALORE_SEED", 1)));
    QMap<QString, int> outcomes;
    const int files = numberFrom("KANBALORE_DAMAGED_FILES", 150);
    for (int i = 0; i < files; ++i) {
        const QByteArray damaged = damage.to(original);
        QVERIFY(write(source, damaged));
        QElapsedTimer time;
        time.start();
        const auto converted = db::convertOldFile(source, target, base::unwatched, options);
        QVERIFY2(time.elapsed() < 30'000, qPrintable(u"file %1 took %2 ms"_s.arg(i).arg(time.elapsed())));
        QCOMPARE(contentOf(source), damaged);
        QCOMPARE(QFileInfo(target).dir().entryList({u"*.tmp"_s}), QStringList());
        QCOMPARE(QFile::exists(target), bool(converted));
        if (!converted) {
            QVERIFY(!converted.error().text.isEmpty());
            ++outcomes[sortOf(converted.error().text)];
            continue;
        }
        ++outcomes[converted->isComplete() ? u"(whole)"_s : u"(with losses)"_s];
        db::Connection connection;
        QVERIFY(connection.open(target));
        QCOMPARE(connection.select(u"PRAGMA integrity_check"_s)->rows.front().front().toString(), u"ok"_s);
        connection.close();
        QVERIFY(QFile::remove(target));
    }
    for (auto outcome = outcomes.cbegin(); outcome != outcomes.cend(); ++outcome)
        qInfo("%5d %s", outcome.value(), qPrintable(outcome.key()));
    QVERIFY(outcomes.size() > 2); // the damages reach further than the header
}

QTEST_GUILESS_MAIN(TestHostileOldFiles)
#include "tst_hostile_old_files.moc"
