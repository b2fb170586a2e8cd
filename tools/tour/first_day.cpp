#include "first_day.h"

#include "roster.h"
#include "shop_data.h"

#include "app/files/backups.h"
#include "app/main_window/frmAMain.h"
#include "app/main_window/frmSplash.h"
#include "db/connection.h"
#include "registers/postal/postal_index.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

QString str(const char16_t *text) { return QString::fromUtf16(text); }

template <class List>
QStringList strings(const List &texts)
{
    QStringList all;
    for (const char16_t *text : texts)
        all << str(text);
    return all;
}

} // namespace

FirstDay::FirstDay(Walker &walker, workspace::Workspace &workspace, app::frmAMain &window, const QDir &folder)
    : m_walker(walker)
    , m_workspace(workspace)
    , m_window(window)
    , m_folder(folder)
{}

void FirstDay::run()
{
    makeFile();
    registerCompany();
    registerEmployees();
    registerMasters();
    designCompanyName();
    setUpPanel();
    registerCustomers();
    registerSuppliers();
    lookPostalCodesUp();
    printRoster(m_walker, m_window, m_folder);
    enterSlips();
    chooseCustomers();
    tidyCustomers();
    lookAfterFile();
    correctSlips();
    lookAround();
    checkBooks();
}

// The program starts on the initial file, says so, and asks for the name of a new one.
void FirstDay::makeFile()
{
    const QString file = m_folder.absoluteFilePath(u"shop.cdb"_s);
    m_walker.check(QTest::qWaitFor([&] { return m_workspace.connection.fileName() == file; }),
                   u"the new file is not the current one"_s);
    m_walker.picture(m_window, u"main-first-start"_s);
}

void FirstDay::registerCompany()
{
    m_walker.visit(
        u"own company"_s, [this] { m_walker.on(m_window).press(u"Command62"_s); },
        [this](QDialog &screen) {
            m_walker.on(screen).enter(u"txtName1"_s, str(company1));
            m_walker.on(screen).enter(u"txtName2"_s, str(company2));
            m_walker.on(screen).enter(u"txtZip"_s, u"380-0821"_s);
            m_walker.on(screen).enter(u"txtAddress1"_s, u"長野県長野市上千歳町１１３７番地２３"_s);
            m_walker.on(screen).enter(u"txtAddress2"_s, u"長野１１３７ビル１階"_s);
            m_walker.on(screen).enter(u"txtTel1"_s, u"026-224-1137"_s);
            m_walker.on(screen).enter(u"txtTel2"_s, u"0120-113-723"_s);
            m_walker.on(screen).enter(u"txtFax"_s, u"026-224-1138"_s);
            m_walker.on(screen).enter(u"txtBank1"_s, u"八十二銀行　本店営業部　普通　1234567"_s);
            m_walker.on(screen).enter(u"txtBank2"_s, u"ゆうちょ銀行　00520-1-234567"_s);
            m_walker.on(screen).enter(u"txtMemo"_s, u"登録番号　T1234567890123"_s);
            m_walker.picture(screen, u"own-company"_s);
            m_walker.on(screen).press(u"cmdUpdate"_s);
        });
    m_walker.check(value(u"SELECT 会社名1 FROM 自社情報"_s) == str(company1),
                   u"the own company is not stored"_s);
}

void FirstDay::fillMaster(const QString &button, const QString &caption, const QStringList &names)
{
    m_walker.visit(
        caption, [this, &button] { m_walker.on(m_window).press(button); },
        [this, &caption, &names](QDialog &screen) {
            m_walker.check(screen.windowTitle() == caption, u"the caption is "_s + screen.windowTitle());
            const QString box = screen.findChild<QLineEdit *>(u"txtShohin"_s) ? u"txtShohin"_s : u"txtName"_s;
            // An empty table starts its first row by itself.
            for (int i = 0; i < names.size(); ++i) {
                if (i > 0)
                    m_walker.on(screen).press(u"cmdAdd"_s);
                m_walker.on(screen).enter(box, names.at(i));
                m_walker.on(screen).press(u"cmdUpdate"_s);
            }
            m_walker.picture(screen, screen.objectName());
        });
}

void FirstDay::registerEmployees() { fillMaster(u"Command35"_s, u"社員登録"_s, strings(employees)); }

void FirstDay::registerMasters()
{
    fillMaster(u"Command32"_s, u"納品先区分登録"_s, strings(categories));
    fillMaster(u"Command65"_s, u"納品　商品登録"_s, strings(products));
    fillMaster(u"Command34"_s, u"商品規格登録"_s, strings(specifications));
    fillMaster(u"Command24"_s, u"商品単位登録"_s, strings(units));
    fillMaster(u"Command33"_s, u"仕入商品登録"_s, {u"りんご　原料用"_s, u"化粧箱"_s});
    fillMaster(u"Command42"_s, u"発送区分区分登録"_s, {u"お中元"_s, u"お歳暮"_s});
}

void FirstDay::designCompanyName()
{
    const QString fileName = m_folder.filePath(u"company.rtf"_s);
    m_walker.visit(
        u"extended company name"_s, [this] { m_walker.on(m_window).press(u"Command43"_s); },
        [this, &fileName](QDialog &screen) {
            auto &text = m_walker.on(screen).the<QTextEdit>(u"RichTextBox1"_s);
            text.setFocus();
            QInputMethodEvent typed;
            typed.setCommitString(u"有限会社　かんばん堂"_s);
            QCoreApplication::sendEvent(&text, &typed);
            text.selectAll();
            m_walker.on(screen).enter(u"Text7"_s, u"18"_s);
            m_walker.picture(screen, u"extended-company-name"_s);
            ui::file_dialogs::expectFile(fileName);
            m_walker.on(screen).press(u"Command2"_s);
        });
    m_walker.check(QFile::exists(fileName), u"the extended company name is not saved"_s);
}

void FirstDay::setUpPanel()
{
    m_walker.on(m_window).enter(u"txtTaxRate"_s, u"１０"_s);
    m_walker.on(m_window).choose(u"Combo2"_s, u"A4 無地"_s);
    m_walker.on(m_window).choose(u"dbcShain"_s, str(employees[0]));
    m_walker.check(m_workspace.panel.taxRate == 10, u"the tax rate is not 10"_s);
    m_walker.checkText(m_window, u"txtTaxRate"_s, u"10"_s);
    m_walker.check(m_workspace.panel.employeeId == 1, u"nobody is in charge"_s);
}

void FirstDay::registerCustomers()
{
    m_walker.visit(
        u"customers"_s, [this] { m_walker.on(m_window).press(u"Command3"_s); },
        [this](QDialog &screen) {
            for (const Customer &customer : customers) {
                m_walker.on(screen).press(u"cmdAdd"_s);
                m_walker.on(screen).enter(u"txtName", str(customer.name), str(customer.kana));
                m_walker.on(screen).enter(u"txtName2"_s, str(customer.name2));
                typePostalCode(screen, str(customer.zip));
                m_walker.on(screen).enter(u"txtAddress"_s, str(customer.address1));
                m_walker.on(screen).enter(u"txtAddress2"_s, str(customer.address2));
                m_walker.on(screen).enter(u"txtTel"_s, str(customer.telephone));
                m_walker.on(screen).choose(u"dbcKubun"_s, str(customer.category));
                auto &day = m_walker.on(screen).the<QComboBox>(u"cmdBill"_s);
                auto &taxClass = m_walker.on(screen).the<QComboBox>(u"Combo1"_s);
                m_walker.on(screen).choose(u"cmdBill"_s, day.itemText(customer.closingDay));
                m_walker.on(screen).choose(u"Combo1"_s, taxClass.itemText(customer.taxClass));
                m_walker.on(screen).press(u"cmdUpdate"_s);
            }
            m_walker.on(screen).press(u"Command6"_s);
            m_walker.picture(screen, u"customers"_s);
            m_walker.on(screen).the<QLineEdit>(u"txtKey1"_s).setText(u"ﾔﾏﾀﾞ"_s);
            m_walker.on(screen).press(u"cmdFind"_s);
            m_walker.checkText(screen, u"txtName4"_s, u"山田太郎  03-1234-5678 ﾔﾏﾀﾞﾀﾛｳ"_s);
            m_walker.picture(screen, u"customer-found"_s);
            lookAtImport(screen);
        });
    m_walker.check(value(u"SELECT count(*) FROM 納品先"_s) == "20"_L1, u"there are not 20 customers"_s);
}

// A table from a spreadsheet program, with a new customer, one who is there already, a row without a name and
// one of an unknown category.
void FirstDay::lookAtImport(QDialog &screen)
{
    QGuiApplication::clipboard()->setText(
        u"氏名\tフリガナ\t〒\t住所\t電話番号\t区分\t備考\n"
        "株式会社みどり園\tミドリエン\t1050011\t東京都港区芝公園４丁目２番８号\t０３－５５５５－０１２３\t一"
        "般のお客様\t\n"
        "山田　太郎\tヤマダタロウ\t\t\t03-1234-5678\t一般のお客様\tカタログ希望\n"
        "\t\t5300001\t大阪府大阪市北区梅田１丁目\t06-5555-0199\t一般のお客様\t\n"
        "小川商店\tオガワショウテン\t9800014\t宮城県仙台市青葉区本町３丁目\t022-555-0144\t特別\t\n"_s);
    m_walker.on(screen).press(u"Command2"_s);
    m_walker.picture(screen, u"customer-import"_s);
    m_walker.visit(
        u"import settings"_s, [&] { m_walker.on(screen).press(u"Command4"_s); },
        [this](QDialog &settings) { m_walker.picture(settings, u"customer-import-settings"_s); });
    m_walker.on(screen).press(u"cmdBack"_s);
}

void FirstDay::registerSuppliers()
{
    m_walker.visit(
        u"suppliers"_s, [this] { m_walker.on(m_window).press(u"Command28"_s); },
        [this](QDialog &screen) {
            for (const Supplier &supplier : suppliers) {
                m_walker.on(screen).press(u"cmdAdd"_s);
                m_walker.on(screen).enter(u"txtCode"_s, str(supplier.code));
                m_walker.on(screen).enter(u"txtName1"_s, str(supplier.name));
                m_walker.on(screen).enter(u"txtTantou1"_s, str(supplier.contact));
                typePostalCode(screen, str(supplier.zip));
                m_walker.on(screen).enter(u"txtAddress1"_s, str(supplier.address1));
                m_walker.on(screen).enter(u"txtTel1"_s, str(supplier.telephone));
                m_walker.on(screen).enter(u"txtPay1"_s, str(supplier.payment));
                m_walker.on(screen).enter(u"txtPay2"_s, str(supplier.bank));
                auto &taxClass = m_walker.on(screen).the<QComboBox>(u"Combo1"_s);
                m_walker.on(screen).choose(u"Combo1"_s, taxClass.itemText(supplier.taxClass));
                enterRegistration(screen, str(supplier.registration));
                m_walker.on(screen).press(u"cmdUpdate"_s);
            }
            m_walker.checkText(screen, u"txtName4"_s, u"戸隠そば製粉所 S03 026-254-0103"_s);
            m_walker.picture(screen, u"suppliers"_s);
        });
    m_walker.check(value(u"SELECT count(*) FROM 仕入先"_s) == "3"_L1, u"there are not 3 suppliers"_s);
}

void FirstDay::enterRegistration(QDialog &screen, const QString &registration)
{
    if (registration.startsWith(u'T'))
        m_walker.on(screen).enter(u"txtRegistration"_s, registration);
    else if (!registration.isEmpty())
        m_walker.on(screen).choose(u"Combo2"_s, registration);
}

// A code of several towns lists them to choose from.
void FirstDay::typePostalCode(QDialog &screen, const QString &zip)
{
    m_walker.on(screen).enter(u"txtZip"_s, zip);
    QTest::qWait(1); // the list comes with the next turn of the event loop
    if (QWidget *list = QApplication::activePopupWidget()) {
        m_walker.picture(*list, u"postal-code-areas"_s);
        QTest::keyClick(list, Qt::Key_Return);
    }
}

void FirstDay::lookPostalCodesUp()
{
    // The data files are made of dictionaries that a machine may lack.
    const auto index = m_workspace.kept<registers::PostalIndex>();
    if (!index || index->groups().empty())
        return;
    m_walker.visit(
        u"postal codes"_s, [this] { m_walker.on(m_window).the<QAction>(u"mnuZip"_s).trigger(); },
        [this](QDialog &screen) {
            m_walker.on(screen).the<QLineEdit>(u"Text2"_s).setText(u"長野県長野市上千歳町"_s);
            m_walker.on(screen).press(u"Command4"_s);
            m_walker.checkText(screen, u"Text1"_s, u"380-0821"_s);
            m_walker.picture(screen, u"postal-codes"_s);
        });
}

void FirstDay::enterSlips()
{
    const QList<Slip> all = slips();
    m_walker.visit(
        u"sales slips"_s, [this] { m_walker.on(m_window).press(u"Command45"_s); },
        [this, &all](QDialog &screen) {
            m_walker.picture(screen, u"sales-slip-empty"_s);
            for (int i = 0; i < all.size(); ++i) {
                const Slip &slip = all.at(i);
                m_walker.on(screen).the<QLineEdit>(u"txtKey1"_s).setText(str(slip.customerKey));
                m_walker.on(screen).press(u"Command1"_s);
                if (i == 0)
                    m_walker.picture(screen, u"sales-slip-customer-found"_s);
                m_walker.on(screen).press(u"cmdMasterUpdate"_s);
                m_walker.checkText(screen, u"txtDenNo"_s, u"O%1"_s.arg(i + 1));
                enterLines(screen, slip);
                if (i == 0)
                    m_walker.picture(screen, u"sales-slip-lines"_s);
                choosePaper(screen, i);
                printNote(screen, i);
                m_walker.on(screen).the<QCheckBox>(u"Check3"_s).setChecked(i == 0);
                if (i == 0)
                    collectByTransfer(screen);
                else
                    m_walker.on(screen).press(u"cmdNext"_s);
            }
            // The first customer again: the earlier lines are listed.
            m_walker.on(screen).the<QLineEdit>(u"txtKey1"_s).setText(str(all.first().customerKey));
            m_walker.on(screen).press(u"Command1"_s);
            m_walker.on(screen).press(u"cmdMasterUpdate"_s);
            m_walker.picture(screen, u"sales-slip-earlier-lines"_s);
            // It is left there without lines.
            ui::prompts::expectAskToSave({}, ui::prompts::Choice::Discard);
        });
}

void FirstDay::enterLines(QDialog &screen, const Slip &slip)
{
    for (const Line &line : slip.lines) {
        m_walker.on(screen).choose(u"dbcShohin"_s, str(products[line.product]));
        if (line.specification >= 0)
            m_walker.on(screen).choose(u"dbcKikaku"_s, str(specifications[line.specification]));
        m_walker.on(screen).choose(u"dbcTani"_s, str(units[line.unit]));
        m_walker.on(screen).enter(u"txtCnt"_s, str(line.quantity));
        m_walker.on(screen).enter(u"txtTanka"_s, str(line.price));
        m_walker.on(screen).press(u"cmdSubAdd"_s);
    }
    m_walker.checkText(screen, u"txtTotal"_s, str(slip.total));
    m_walker.checkText(screen, u"Text2"_s, str(slip.tax));
}

// Each form has a slip that shows it; the rest are printed on plain paper.
void FirstDay::choosePaper(QDialog &screen, int number)
{
    const QString papers[] = {u"A4 無地"_s, u"HISAGO 1149"_s, u"HISAGO BP0201"_s};
    m_walker.on(m_window).the<QComboBox>(u"Combo2"_s).setCurrentText(papers[number < 3 ? number : 0]);
    const bool isDesignated = number == 3;
    m_walker.on(screen).the<QCheckBox>(u"Check2"_s).setChecked(isDesignated);
    m_walker.on(screen)
        .the<QLineEdit>(u"txtMemo"_s)
        .setText(isDesignated ? u"注文番号 K-2207 午前着"_s : QString());
}

void FirstDay::printNote(QDialog &screen, int number)
{
    const QString fileName = m_folder.filePath(u"delivery-note-O%1.pdf"_s.arg(number + 1));
    m_walker.visit(
        u"note %1"_s.arg(number + 1), [this, &screen] { m_walker.on(screen).press(u"Command3"_s); },
        [this, number, &fileName](QDialog &preview) {
            if (number < 4 || number == 9)
                m_walker.picture(preview, u"delivery-note-preview"_s);
            ui::file_dialogs::expectFile(fileName);
            m_walker.on(preview).press(u"cmdPdf"_s);
        });
    m_walker.check(QFileInfo(fileName).size() > 1000, u"the note is not there as PDF"_s);
    if (number < 4 || number == 9)
        m_walker.pages(fileName, u"delivery-note-%1"_s.arg(number + 1));
}

// The first note's customer pays at the post office.
void FirstDay::collectByTransfer(QDialog &slip)
{
    const QString fileName = m_folder.filePath(u"transfer-form.pdf"_s);
    m_walker.visit(
        u"transfer form"_s, [&] { m_walker.on(slip).press(u"cmdNext"_s); },
        [&](QDialog &screen) {
            m_walker.picture(screen, u"transfer-form-first-time"_s);
            m_walker.on(screen).enter(u"Text1"_s, u"００９９０-4-313097"_s);
            m_walker.on(screen).enter(u"Text2"_s, u"有限会社信州りんご園"_s);
            m_walker.on(screen).enter(u"Text3"_s, u"いつもご利用いただき、ありがとうございます。"_s);
            m_walker.on(screen).enter(u"Text4"_s, u"お支払いは一週間以内にお願いいたします。"_s);
            m_walker.picture(screen, u"transfer-form"_s);
            m_walker.visit(
                u"transfer form preview"_s, [&] { m_walker.on(screen).press(u"Command2"_s); },
                [&](QDialog &preview) {
                    ui::file_dialogs::expectFile(fileName);
                    m_walker.on(preview).press(u"cmdPdf"_s);
                });
            m_walker.visit(
                u"transfer form calibration"_s, [&] { m_walker.on(screen).press(u"Command4"_s); },
                [&](QDialog &preview) { m_walker.picture(preview, u"transfer-form-calibration"_s); });
        });
    m_walker.pages(fileName, u"transfer-form"_s);
}

// Compaction, the list of backups, and the file built anew.
void FirstDay::lookAfterFile()
{
    m_walker.on(m_window).the<QTabWidget>(u"SSTab1"_s).setCurrentIndex(6);
    ui::prompts::expectInform(u"データベースを最適化しました。"_s);
    m_walker.on(m_window).press(u"Command22"_s);
    m_walker.picture(m_window, u"main-after-compaction"_s);
    // The compaction leaves nobody chosen.
    m_walker.on(m_window).the<QComboBox>(u"dbcShain"_s).setCurrentIndex(0);
    m_walker.check(
        bool(app::backUpDated(m_workspace.connection, m_workspace.applicationFolder(), m_workspace.today())),
        u"no backup was made"_s);
    m_walker.visit(
        u"backups"_s, [this] { m_walker.on(m_window).press(u"cmdBackups"_s); },
        [this](QDialog &screen) { m_walker.picture(screen, u"backups"_s); });
    const QString anew = m_folder.filePath(u"anew.cdb"_s);
    QFile::remove(anew);
    m_walker.visit(
        u"file built anew"_s, [this] { m_walker.on(m_window).press(u"Command7"_s); },
        [this, &anew](QDialog &screen) {
            ui::file_dialogs::expectFile(anew);
            ui::prompts::expectAsk(
                u"すべての行を新しいファイルに移しました。\n新しいファイルで作業を続けますか？"_s, false);
            m_walker.on(screen).press(u"Command1"_s);
            m_walker.picture(screen, u"file-built-anew"_s);
        });
}

// Every page of the main window's panel, as it looks with the day's data.
// Deletes nobody: the books are checked at the end of the day.
void FirstDay::chooseCustomers()
{
    const auto search = [this](QDialog &screen) {
        m_walker.on(screen).choose(u"Combo1"_s, u"納品先名"_s);
        m_walker.on(screen).enter(u"txtKey"_s, u"山"_s);
        m_walker.on(screen).press(u"Command2"_s);
    };
    m_walker.visit(
        u"bulk deletion"_s, [this] { m_walker.on(m_window).the<QAction>(u"mnuCustomDel"_s).trigger(); },
        [this, &search](QDialog &screen) {
            search(screen);
            m_walker.on(screen).choose(u"Combo1"_s, u"すべて選択"_s);
            m_walker.picture(screen, u"customers-to-delete"_s);
        });
    m_walker.visit(
        u"supplementary roster"_s,
        [this] { m_walker.on(m_window).the<QAction>(u"mnuCustomSub"_s).trigger(); },
        [this, &search](QDialog &screen) {
            search(screen);
            m_walker.picture(screen, u"supplementary-roster"_s);
        });
}

void FirstDay::lookAround()
{
    auto &tabs = m_walker.on(m_window).the<QTabWidget>(u"SSTab1"_s);
    for (int page = 0; page < tabs.count(); ++page) {
        tabs.setCurrentIndex(page);
        m_walker.picture(m_window, u"main-%1"_s.arg(page + 1));
    }
    tabs.setCurrentIndex(0);
    m_walker.visit(
        u"tax rates"_s, [this] { m_walker.on(m_window).the<QAction>(u"mnuTaxRates"_s).trigger(); },
        [this](QDialog &screen) { m_walker.picture(screen, u"tax-rates"_s); });
    m_walker.visit(
        u"form layout"_s, [this] { m_walker.on(m_window).the<QAction>(u"mnuForms"_s).trigger(); },
        [this](QDialog &screen) {
            auto &elements = m_walker.on(screen).the<QTableView>(u"gridElements"_s);
            elements.setCurrentIndex(elements.model()->index(8, 0));
            m_walker.picture(screen, u"form-layout"_s);
        });
    m_walker.visit(
        u"about"_s, [this] { m_walker.on(m_window).the<QAction>(u"mnuAbout"_s).trigger(); },
        [this](QDialog &screen) { m_walker.picture(screen, u"about"_s); });
    app::frmSplash splash;
    splash.show();
    m_walker.picture(splash, u"splash"_s);
    splash.close();
    m_walker.on(m_window).the<QAction>(u"mnuMonthv"_s).trigger();
    m_walker.picture(m_window, u"main-calendar"_s);
    m_walker.on(m_window).the<QAction>(u"mnuColoursDark"_s).trigger();
    m_walker.picture(m_window, u"main-dark"_s);
    m_walker.visit(
        u"customers in the dark"_s, [this] { m_walker.on(m_window).press(u"Command29"_s); },
        [this](QDialog &screen) {
            m_walker.on(screen).press(u"Command6"_s);
            QTest::qWait(500); // what stands beside a customer waits for the clerk
            m_walker.picture(screen, u"customers-dark"_s);
        });
    m_walker.on(m_window).the<QAction>(u"mnuColoursLight"_s).trigger();
}

// What the day left in the books, counted without the program's own statements.
void FirstDay::checkBooks()
{
    const struct
    {
        const char16_t *sql;
        const char16_t *expected;
    } facts[] = {
        {u"SELECT count(*) FROM 入出庫マスター WHERE substr(伝票番号, 1, 1) = 'O'", u"11"},
        {u"SELECT count(*) FROM 入出庫サブ WHERE 商品名 <> '消費税'", u"60"},
        {u"SELECT group_concat(CAST(金額 AS INTEGER), ' ') FROM 入出庫サブ WHERE 商品名 = '消費税' ORDER BY "
         u"明細ID",
         u"802 605 1592 498 11250"},
        {u"SELECT CAST(sum(金額) AS INTEGER) FROM 入出庫サブ WHERE 商品名 <> '消費税'", u"307391"},
        {u"SELECT count(DISTINCT 更新日) FROM 納品先", u"1"},
    };
    for (const auto &fact : facts) {
        const QString found = value(str(fact.sql));
        m_walker.check(found == str(fact.expected), str(fact.sql) + u" is "_s + found);
    }
}

QString FirstDay::value(const QString &sql)
{
    const auto rows = m_workspace.connection.select(sql);
    return rows && !rows->isEmpty() ? rows->rows.front().front().toString() : QString();
}

} // namespace tour
