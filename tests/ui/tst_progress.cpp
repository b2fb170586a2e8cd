#include "ui/progress.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressDialog>
#include <QPushButton>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

QProgressDialog *shownDialog()
{
    for (QWidget *window : QApplication::topLevelWidgets())
        if (auto *dialog = qobject_cast<QProgressDialog *>(window); dialog && dialog->isVisible())
            return dialog;
    return nullptr;
}

} // namespace

class TestProgress : public QObject
{
    Q_OBJECT

private slots:
    void shortWorkShowsNothing()
    {
        bool seen = false;
        QVERIFY(ui::runWithProgress(nullptr, u"短い"_s, [&](const base::Progress &progress) -> base::Status {
            for (int n = 0; n < 1000; ++n) {
                progress(n, 1000);
                seen = seen || shownDialog();
            }
            return {};
        }));
        QVERIFY(!seen);
    }

    void longWorkCanBeStopped_data()
    {
        QTest::addColumn<qint64>("total");
        QTest::newRow("known length") << qint64(10'000'000'000);
        QTest::newRow("unknown length") << qint64(0);
    }
    void longWorkCanBeStopped()
    {
        QFETCH(qint64, total);
        QString told;
        QElapsedTimer time;
        time.start();
        const auto stopped = ui::runWithProgress(
            nullptr, u"書き出しています。"_s, [&](const base::Progress &progress) -> base::Status {
                for (qint64 n = 0; time.elapsed() < 20'000; ++n) {
                    if (auto *dialog = shownDialog(); dialog && told.isEmpty()) {
                        told = dialog->labelText();
                        QTest::mouseClick(dialog->findChild<QPushButton *>(), Qt::LeftButton);
                    }
                    if (!progress(n, total))
                        return base::cancelled();
                }
                return {};
            });
        QVERIFY(!stopped);
        QVERIFY(stopped.error().cancelled);
        QCOMPARE(told, u"書き出しています。"_s);
        QVERIFY(time.elapsed() < 15'000);
        QVERIFY(!shownDialog());
    }
};

QTEST_MAIN(TestProgress)
#include "tst_progress.moc"
