#include "masters/registration_number.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestRegistrationNumber : public QObject
{
    Q_OBJECT

private slots:
    void asPeopleWriteThem_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("remark"); // how it begins
        const QString right;
        const QString agency = u"T7000012050002"_s;
        const QString form = u"登録番号は"_s;
        const QString digit = u"法人番号の検査数字"_s;
        const auto row = [](const char *name, const QString &typed, const QString &stored,
                            const QString &remark) { QTest::newRow(name) << typed << stored << remark; };
        row("as printed", u"T7000012050002"_s, agency, right);
        row("full width", u"Ｔ７００００１２０５０００２"_s, agency, right);
        row("lower case", u"t7000012050002"_s, agency, right);
        row("lower case in full width", u"ｔ７００００１２０５０００２"_s, agency, right);
        row("digits alone", u"7000012050002"_s, agency, right);
        row("in groups", u"T7-0000-1205-0002"_s, agency, right);
        row("with blanks of both widths", u" T7 0000　1205 0002　"_s, agency, right);
        row("with the input method's marks", u"Ｔー７０００ー０１２０ー５０００２"_s, agency, right);
        row("with its half-width mark and a minus", u"T7000ｰ0120−50002"_s, agency, right);
        row("with dashes out of a letter", u"T7000–0120—50002"_s, agency, right);
        row("copied with its name", u"登録番号：Ｔ７００００１２０５０００２"_s, agency, right);
        row("with the whole name", u"適格請求書発行事業者登録番号　T7000012050002"_s, agency, right);
        row("with what nobody sees", u"\uFEFFT7000012050002\u200B\t\u00A0"_s, agency, right);
        row("another company", u"T8700110005901"_s, u"T8700110005901"_s, right);
        row("nothing", u"　 "_s, QString(), right);
        row("a slip of the hand, or a person's", u"T1234567890123"_s, u"T1234567890123"_s, digit);
        row("what its digits would be", u"T9234567890123"_s, u"T9234567890123"_s, right);
        row("two digits in the wrong order", u"T7000012050020"_s, u"T7000012050020"_s, digit);
        row("12 digits", u"T700001205000"_s, u"T700001205000"_s, form);
        row("14 digits", u"T70000120500022"_s, u"T70000120500022"_s, form);
        row("12 digits alone, a court's number", u"700001205000"_s, u"700001205000"_s, form);
        row("another letter", u"A7000012050002"_s, u"A7000012050002"_s, form);
        row("letters among the digits", u"T70000I2O5OOO2"_s, u"T70000I2O5OOO2"_s, form);
        row("words", u"申請中"_s, u"申請中"_s, form);
        row("words behind it", u"T7000012050002（登録番号）"_s, u"T7000012050002(登録番号)"_s, form);
        row("other people's digits", u"T٧٠٠٠٠١٢٠٥٠٠٠٢"_s, u"T٧٠٠٠٠١٢٠٥٠٠٠٢"_s, form);
        row("two of them", u"T7000012050002 T8700110005901"_s, u"T7000012050002T8700110005901"_s, form);
    }

    void asPeopleWriteThem()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        QFETCH(QString, remark);
        const QString number = masters::registrationNumber(typed);
        QCOMPARE(number, stored);
        QCOMPARE(masters::registrationNumber(number), number);
        const QString shown = masters::registrationRemark(typed);
        QVERIFY2(remark.isEmpty() ? shown.isEmpty() : shown.startsWith(remark), qPrintable(shown));
    }
};

QTEST_GUILESS_MAIN(TestRegistrationNumber)
#include "tst_registration_number.moc"
