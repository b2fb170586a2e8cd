#include "ui/reading_line_edit.h"

#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QtTest>

using namespace Qt::StringLiterals;

class TestReadingLineEdit : public QObject
{
    Q_OBJECT

private slots:
    void collectsReadings_data()
    {
        // Each step: composition, then after "|" what is confirmed.
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("readings");
        QTest::newRow("converted") << QStringList{u"や"_s,     u"やま"_s, u"やまd"_s,
                                                  u"やまだ"_s, u"山田"_s, u"|山田"_s}
                                   << u"山田"_s << QStringList{u"ﾔﾏﾀﾞ"_s};
        QTest::newRow("n before conversion")
            << QStringList{u"ほn"_s, u"本"_s, u"|本"_s} << u"本"_s << QStringList{u"ﾎﾝ"_s};
        QTest::newRow("confirmed as kana")
            << QStringList{u"さくら"_s, u"|サクラ"_s} << u"サクラ"_s << QStringList{u"ｻｸﾗ"_s};
        QTest::newRow("kana and kanji") << QStringList{u"さくらや"_s, u"さくら屋"_s, u"|さくら屋"_s}
                                        << u"さくら屋"_s << QStringList{u"ｻｸﾗﾔ"_s};
        QTest::newRow("long vowel and small kana")
            << QStringList{u"きゃっちー"_s, u"|キャッチー"_s} << u"キャッチー"_s << QStringList{u"ｷｬｯﾁｰ"_s};
        QTest::newRow("letters") << QStringList{u"ＡＢＣ"_s, u"|ＡＢＣ"_s} << u"ＡＢＣ"_s
                                 << QStringList{u"ABC"_s};
        QTest::newRow("through letters among the candidates")
            << QStringList{u"やまだ"_s, u"yamada"_s, u"山田"_s, u"|山田"_s} << u"山田"_s
            << QStringList{u"ﾔﾏﾀﾞ"_s};
        QTest::newRow("two names") << QStringList{u"やまだ"_s, u"山田"_s, u"|山田"_s,
                                                  u"たろう"_s, u"太郎"_s, u"|太郎"_s}
                                   << u"山田太郎"_s << QStringList{u"ﾔﾏﾀﾞ"_s, u"ﾀﾛｳ"_s};
        QTest::newRow("confirmed by typing on")
            << QStringList{u"いしい"_s, u"石井"_s, u"い|石井"_s, u"いちろう"_s, u"|一郎"_s} << u"石井一郎"_s
            << QStringList{u"ｲｼｲ"_s, u"ｲﾁﾛｳ"_s};
        QTest::newRow("confirmed piece by piece")
            << QStringList{u"やまだたろう"_s, u"山田たろう"_s, u"たろう|山田"_s, u"太郎"_s, u"|太郎"_s}
            << u"山田太郎"_s << QStringList{u"ﾔﾏﾀﾞ"_s, u"ﾀﾛｳ"_s};
        QTest::newRow("given up") << QStringList{u"やまだ"_s, QString(), u"|山"_s} << u"山"_s
                                  << QStringList{};
        QTest::newRow("conversion undone, shortened and done again")
            << QStringList{u"やまだた"_s, u"山田他"_s, u"やまだた"_s, u"やまだ"_s, u"山田"_s, u"|山田"_s}
            << u"山田"_s << QStringList{u"ﾔﾏﾀﾞ"_s};
        QTest::newRow("two clauses chosen one after the other")
            << QStringList{u"やまだたろう"_s, u"山田たろう"_s, u"ヤマダ太郎"_s, u"山田太郎"_s, u"|山田太郎"_s}
            << u"山田太郎"_s << QStringList{u"ﾔﾏﾀﾞﾀﾛｳ"_s};
        QTest::newRow("blank between the names")
            << QStringList{u"やまだ　たろう"_s, u"山田　太郎"_s, u"|山田　太郎"_s} << u"山田　太郎"_s
            << QStringList{u"ﾔﾏﾀﾞ ﾀﾛｳ"_s};
        QTest::newRow("voiced u and wave dash")
            << QStringList{u"ゔぃら〜"_s, u"ヴィラ"_s, u"|ヴィラ"_s} << u"ヴィラ"_s << QStringList{u"ｳﾞｨﾗ"_s};
        QTest::newRow("blank") << QStringList{u"|　"_s} << u"　"_s << QStringList{};
        QTest::newRow("kanji of unknown reading") << QStringList{u"|山田"_s} << u"山田"_s << QStringList{};
    }

    void collectsReadings()
    {
        QFETCH(QStringList, steps);
        ui::ReadingLineEdit box;
        QStringList readings;
        connect(&box, &ui::ReadingLineEdit::readingConfirmed, &box,
                [&](const QString &kana) { readings << kana; });
        for (const QString &step : steps) {
            QInputMethodEvent event(step.section(u'|', 0, 0), {});
            event.setCommitString(step.section(u'|', 1));
            QCoreApplication::sendEvent(&box, &event);
        }
        QTEST(box.text(), "text");
        QTEST(readings, "readings");
    }

    void typedAndPastedTextHasNoReading()
    {
        ui::ReadingLineEdit box;
        QSignalSpy confirmed(&box, &ui::ReadingLineEdit::readingConfirmed);
        QTest::keyClicks(&box, u"ABC"_s);
        box.insert(u"やまだ"_s);
        QCOMPARE(confirmed.count(), 0);
    }
};

QTEST_MAIN(TestReadingLineEdit)
#include "tst_reading_line_edit.moc"
