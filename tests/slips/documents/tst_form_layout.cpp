#include "printing/DialogFormLayout.h"
#include "printing/forms/form_files.h"
#include "printing/sheet_view.h"
#include "slips/documents/adjustable_forms.h"
#include "slips/documents/delivery_note.h"
#include "support/fresh_shop.h"
#include "support/ordinary_user.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <cmath>

using namespace Qt::StringLiterals;
using ui::prompts::Choice;

Q_DECLARE_METATYPE(ui::prompts::Choice)

namespace
{

const QString layout = QString::fromUtf16(slips::plainDeliveryNoteLayout);
const QString unsaved = u"用紙の調整が保存されていません。保存しますか。"_s;
const QString backToBuiltIn = u"この用紙の調整をやめて、組み込みの位置に戻します。よろしいですか。"_s;

struct Desk
{
    explicit Desk(const std::function<void(FreshShop &)> &prepare)
    {
        prepare(shop);
        open();
    }
    explicit Desk(const QByteArray &own = {})
    {
        if (!own.isEmpty())
            write(own);
        open();
    }
    void open()
    {
        screen = std::make_unique<printing::DialogFormLayout>(shop.workspace,
                                                              slips::adjustableForms(shop.settings));
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
    }

    [[nodiscard]] QString ownFile(const QString &name = layout) const
    {
        return shop.path(u"layouts/"_s + name);
    }
    void write(const QByteArray &content)
    {
        QVERIFY(QDir(shop.folder.path()).mkpath(u"layouts"_s));
        QFile file(ownFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    // Where the item \a name stands when a note is printed.
    [[nodiscard]] QPointF printed(const QString &name) const
    {
        const auto form = printing::loadForm(shop.folder.path(), layout, slips::deliveryNoteItems()).form;
        for (const printing::FormText &text : form.texts) {
            if (text.source.item == name)
                return {text.place.x, text.place.y};
        }
        return {};
    }
    // Goes to the row of the element that shows \a name.
    void choose(const QString &name)
    {
        auto &grid = driver->the<ui::ReportGrid>("gridElements");
        for (int row = 0; row < grid.rowCount(); ++row) {
            if (grid.model()->index(row, 1).data().toString() == name) {
                grid.setFocus();
                grid.setCurrentIndex(grid.model()->index(row, 0));
                return;
            }
        }
        qFatal("no element %s", qPrintable(name));
    }
    QDoubleSpinBox &box(int number) { return driver->the<QDoubleSpinBox>(u"spnMeasure%1"_s.arg(number)); }
    void type(int number, const QString &text)
    {
        box(number).setFocus();
        box(number).selectAll();
        QTest::keyClicks(&box(number), text);
        QTest::keyClick(&box(number), Qt::Key_Return);
    }
    QString message() { return driver->the<QLabel>("lblMessage").text(); }
    QStringList files() const { return QDir(shop.path(u"layouts"_s)).entryList(QDir::Files, QDir::Name); }

    FreshShop shop;
    std::unique_ptr<printing::DialogFormLayout> screen;
    std::unique_ptr<ScreenDriver> driver;
};

} // namespace

class TestFormLayout : public ScriptedTest
{
    Q_OBJECT

private slots:
    void movedByItsBoxes();
    void everyFormIsShown();
    void whatLeavesThePaperIsTakenBack();
    void unsavedMovesAreAskedFor_data();
    void unsavedMovesAreAskedFor();
    void builtInOneComesBack();
    void faultyOwnFileIsKept();
    void fileChangedMeanwhileIsKept();
    void clickChoosesTheElement();
    void failedStoringKeepsTheMoves();
    void failedStoringKeepsTheOtherFile_data();
    void failedStoringKeepsTheOtherFile();
    void trialComesOutAsInUse();
    void whatIsStillBeingTypedCounts_data();
    void whatIsStillBeingTypedCounts();
    void wheelMovesNothing();
};

void TestFormLayout::movedByItsBoxes()
{
    Desk desk;
    const QPointF before = desk.printed(u"日付"_s);
    desk.choose(u"日付"_s);
    QCOMPARE(desk.box(1).value(), before.x());
    desk.type(1, u"150.25"_s);
    QTest::keyClick(&desk.box(2), Qt::Key_Up);
    QTest::keyClick(&desk.box(2), Qt::Key_Up);
    QCOMPARE(desk.driver->the<ui::ReportGrid>("gridElements").report().rows.at(5).values.at(2).toDouble(),
             150.25);
    // Nothing is in the file before it is stored.
    QCOMPARE(desk.printed(u"日付"_s), before);
    desk.driver->press("cmdStore");
    QCOMPARE(desk.printed(u"日付"_s), QPointF(150.25, before.y() + 1));
    // The explanations of the built-in file are there for who opens it with an editor.
    QFile own(desk.ownFile());
    QVERIFY(own.open(QIODevice::ReadOnly));
    QVERIFY(QString::fromUtf8(own.readAll()).contains(u"# 番号がなくても見出しは出す"_s));

    QVERIFY(!desk.driver->the("cmdUndo").isEnabled()); // not beyond what was stored
    desk.type(1, u"10"_s);
    desk.driver->press("cmdUndo");
    QCOMPARE(desk.box(1).value(), 150.25);
    desk.driver->key(Qt::Key_Escape);
    QVERIFY(!desk.screen->isVisible());
}

void TestFormLayout::everyFormIsShown()
{
    Desk desk;
    auto &forms = desk.driver->list("cboForm");
    for (int i = 1; i < forms.count(); ++i) {
        desk.driver->choose("cboForm", i);
        const auto &grid = desk.driver->the<ui::ReportGrid>("gridElements");
        QVERIFY2(grid.rowCount() > 10, qPrintable(forms.itemText(i)));
        // Not one of them is over the boxes that there are.
        for (int row = 0; row < grid.rowCount(); ++row)
            desk.driver->the<ui::ReportGrid>("gridElements").setCurrentIndex(grid.model()->index(row, 0));
        QCOMPARE(desk.message(), QString());
    }
}

void TestFormLayout::whatLeavesThePaperIsTakenBack()
{
    Desk desk;
    const double before = desk.printed(u"日付"_s).x();
    desk.choose(u"日付"_s);
    desk.type(1, u"500"_s);
    QCOMPARE(desk.box(1).value(), before);
    QVERIFY2(desk.message().startsWith(u"「左から」には"_s) && desk.message().contains(u"0 から 210"_s),
             qPrintable(desk.message()));
    QVERIFY(!desk.driver->the("cmdStore").isEnabled());
}

void TestFormLayout::unsavedMovesAreAskedFor_data()
{
    QTest::addColumn<bool>("closes"); // or goes to another form
    QTest::addColumn<Choice>("choice");

    for (const bool closes : {true, false}) {
        const char *how = closes ? "closed" : "another form";
        QTest::addRow("%s, stored", how) << closes << Choice::Save;
        QTest::addRow("%s, dropped", how) << closes << Choice::Discard;
        QTest::addRow("%s, gone back", how) << closes << Choice::Cancel;
    }
}

void TestFormLayout::unsavedMovesAreAskedFor()
{
    QFETCH(bool, closes);
    QFETCH(Choice, choice);
    Desk desk;
    desk.choose(u"日付"_s);
    desk.type(1, u"150"_s);
    ui::prompts::expectAskHowToLeave(unsaved, choice, Choice::Save);
    if (closes)
        desk.driver->key(Qt::Key_Escape);
    else
        QTest::keyClick(&desk.driver->list("cboForm"), Qt::Key_Down);
    QCOMPARE(QFile::exists(desk.ownFile()), choice == Choice::Save);
    QCOMPARE(desk.screen->isVisible(), !closes || choice == Choice::Cancel);
    QCOMPARE(desk.driver->list("cboForm").currentIndex(), closes || choice == Choice::Cancel ? 0 : 1);
    if (choice != Choice::Cancel)
        return;
    QCOMPARE(desk.box(1).value(), 150.0);
    ui::prompts::expectAskHowToLeave(unsaved, Choice::Discard, Choice::Save);
    desk.driver->key(Qt::Key_Escape);
}

void TestFormLayout::builtInOneComesBack()
{
    Desk desk;
    const QPointF builtIn = desk.printed(u"日付"_s);
    QVERIFY(!desk.driver->the("cmdBuiltIn").isEnabled());
    desk.choose(u"日付"_s);
    desk.type(1, u"150"_s);
    desk.driver->press("cmdStore");
    ui::prompts::expectAskCautiously(backToBuiltIn, false, ui::prompts::anyRemark);
    desk.driver->press("cmdBuiltIn");
    QCOMPARE(desk.printed(u"日付"_s).x(), 150.0);
    ui::prompts::expectAskCautiously(backToBuiltIn, true, ui::prompts::anyRemark);
    desk.driver->press("cmdBuiltIn");
    QCOMPARE(desk.printed(u"日付"_s), builtIn);
    QCOMPARE(desk.files(), QStringList{u"delivery-note-a4 以前 2026-04-01.toml"_s});
    QVERIFY(!desk.driver->the("cmdBuiltIn").isEnabled());
}

void TestFormLayout::faultyOwnFileIsKept()
{
    Desk desk("format = 1\nname = \"x\nname");
    QVERIFY2(desk.message().startsWith(layout + u":2:"_s), qPrintable(desk.message()));
    desk.choose(u"日付"_s);
    desk.type(1, u"150"_s);
    desk.driver->press("cmdStore");
    QCOMPARE(desk.printed(u"日付"_s).x(), 150.0);
    QCOMPARE(desk.files(), (QStringList{u"delivery-note-a4 以前 2026-04-01.toml"_s, layout}));
}

// With an editor, or by another program of the shop.
void TestFormLayout::fileChangedMeanwhileIsKept()
{
    Desk desk;
    desk.choose(u"日付"_s);
    desk.type(1, u"150"_s);
    desk.write("# 別の人");
    desk.driver->press("cmdStore");
    QFile kept(desk.ownFile(u"delivery-note-a4 以前 2026-04-01.toml"_s));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), "# 別の人");
}

void TestFormLayout::clickChoosesTheElement()
{
    Desk desk;
    auto &view = desk.driver->the<printing::SheetView>("viewSheet");
    emit view.pointedAt({185, 29.5}); // 日付 ends at 195
    QCOMPARE(
        desk.driver->the<ui::ReportGrid>("gridElements").currentIndex().siblingAtColumn(1).data().toString(),
        u"日付"_s);
    QCOMPARE(desk.box(1).value(), 195.0);
}

void TestFormLayout::failedStoringKeepsTheMoves()
{
    Desk desk;
    QFile inTheWay(desk.shop.path(u"layouts"_s));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    desk.choose(u"日付"_s);
    desk.type(1, u"150"_s);
    ui::prompts::expectInform(u"フォルダ「%1」を作成できませんでした。"_s.arg(desk.shop.path(u"layouts"_s)));
    desk.driver->press("cmdStore");
    QCOMPARE(desk.box(1).value(), 150.0);
    QVERIFY(desk.driver->the("cmdStore").isEnabled());
    ui::prompts::expectAskHowToLeave(unsaved, Choice::Discard, Choice::Save);
    desk.driver->key(Qt::Key_Escape);
}

void TestFormLayout::failedStoringKeepsTheOtherFile_data()
{
    QTest::addColumn<bool>("unreadable"); // the file; else nothing can be written into the folder
    QTest::newRow("no rights for the folder") << false;
    QTest::newRow("a file of somebody else") << true;
}

// What a colleague made meanwhile stays where it is, and in use.
void TestFormLayout::failedStoringKeepsTheOtherFile()
{
    QFETCH(bool, unreadable);
    Desk desk;
    desk.choose(u"日付"_s);
    desk.type(1, u"150"_s);
    desk.write("# 別の人");
    const QString folder = desk.shop.path(u"layouts"_s);
    const auto rights = QFile::ReadOwner | QFile::ExeOwner;
    {
        const OrdinaryUser user({desk.shop.folder.path(), folder, desk.ownFile()});
        if (unreadable)
            QVERIFY(QFile::setPermissions(desk.ownFile(), {}));
        else
            QVERIFY(QFile::setPermissions(folder, rights));
        ui::prompts::expectInform({});
        desk.driver->press("cmdStore");
        QVERIFY(QFile::setPermissions(folder, rights | QFile::WriteOwner));
    }
    QCOMPARE(desk.files(), QStringList{layout});
    QFile other(desk.ownFile());
    QVERIFY(other.open(QIODevice::ReadOnly));
    QCOMPARE(other.readAll(), "# 別の人");
    QCOMPARE(desk.box(1).value(), 150.0);
    ui::prompts::expectAskHowToLeave(unsaved, Choice::Discard, Choice::Save);
    desk.driver->key(Qt::Key_Escape);
}

// Moved by the offsets of the printer dialog, over the grid: the ruler is laid on what is in use.
void TestFormLayout::trialComesOutAsInUse()
{
    Desk desk([](FreshShop &shop) { shop.settings.write(workspace::keys::offsetB, 2); });
    const double drawn = desk.printed(u"日付"_s).y();
    const QString fileName = desk.shop.path(u"trial.pdf"_s);
    QTimer::singleShot(0, desk.screen.get(), [&] {
        QWidget *preview = QApplication::activeModalWidget();
        QVERIFY(preview && preview->objectName() == u"frmPreview"_s);
        QVERIFY(preview->findChild<QCheckBox *>(u"chkGrid"_s)->isChecked());
        ui::file_dialogs::expectFile(fileName);
        preview->findChild<QPushButton *>(u"cmdPdf"_s)->click();
        preview->close();
    });
    desk.driver->press("cmdPreview");
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-bbox"_s, fileName, u"-"_s});
    reader.waitForFinished();
    static const QRegularExpression word(u"yMin=\"([0-9.]+)\"[^>]*>2026年12月31日"_s);
    const auto match = word.match(QString::fromUtf8(reader.readAll()));
    const double y = match.captured(1).toDouble() * 25.4 / 72;
    QVERIFY2(std::abs(y - drawn - 2.82) < 0.3, qPrintable(QString::number(y - drawn)));
}

void TestFormLayout::whatIsStillBeingTypedCounts_data()
{
    QTest::addColumn<Qt::Key>("key"); // with Alt, or Esc alone
    QTest::newRow("stored by its letter") << Qt::Key_S;
    QTest::newRow("left with Esc") << Qt::Key_Escape;
}

// The cursor has not left the box.
void TestFormLayout::whatIsStillBeingTypedCounts()
{
    QFETCH(Qt::Key, key);
    Desk desk;
    desk.choose(u"日付"_s);
    desk.box(1).setFocus();
    desk.box(1).selectAll();
    QTest::keyClicks(&desk.box(1), u"150"_s);
    if (key == Qt::Key_Escape)
        ui::prompts::expectAskHowToLeave(unsaved, Choice::Save, Choice::Save);
    desk.driver->key(key, key == Qt::Key_Escape ? Qt::NoModifier : Qt::AltModifier);
    QTRY_COMPARE(desk.printed(u"日付"_s).x(), 150.0);
}

void TestFormLayout::wheelMovesNothing()
{
    Desk desk;
    desk.choose(u"日付"_s);
    desk.driver->the("gridElements").setFocus();
    turnWheelOver(desk.box(1));
    turnWheelOver(desk.driver->list("cboForm"));
    QVERIFY(!desk.driver->the("cmdStore").isEnabled());
    QCOMPARE(desk.driver->list("cboForm").currentIndex(), 0);
}

QTEST_MAIN(TestFormLayout)

#include "tst_form_layout.moc"
