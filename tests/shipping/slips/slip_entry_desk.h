#pragma once

#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

/// A screen of shipping slips in a shop with an own company, three customers, two categories of parcels and a
/// printer whose dialog the clerk accepts.
template <class Screen>
class SlipEntryDesk : public FreshShop
{
public:
    SlipEntryDesk()
    {
        using namespace Qt::StringLiterals;
        printing::keepPrintSystem(workspace, printers);
        workspace.panel.carrier = u"佐川急便"_s;
        run(u"INSERT INTO 自社情報 (会社ID, 会社名1, 会社名2, 郵便番号, 住所1, TEL1) VALUES "
            "(1, '有限会社かんばん堂', '', '380-0821', '長野県長野市上千歳町1', '026-224-0010')"_s);
        run(u"INSERT INTO 発送区分 (発送区分ID, 発送区分名) VALUES (1, '通販'), (2, 'お中元')"_s);
        run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '一般')"_s);
        run(u"INSERT INTO 納品商品 (商品ID, 商品名) VALUES (1, 'りんご　サンふじ')"_s);
        run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1, "
            u"納品先名キー, "
            "更新日, 区分ID) VALUES "
            "(1, '山田　太郎', '', '154-0017', '東京都世田谷区世田谷1-2-3', '', '03-1234-5678', "
            "'山田太郎  03-1234-5678 ﾔﾏﾀﾞﾀﾛｳ', '2026-03-01', 1), "
            "(2, '山田商店', '仕入部', '5300001', '大阪市北区梅田2-4-9', '12階', '06-6345-0001', "
            "'山田商店仕入部  06-6345-0001 ﾔﾏﾀﾞｼﾖｳﾃﾝ', '2026-02-01', 1), "
            "(3, '佐々木　花子', '', '', '仙台市青葉区一番町3-7-1', '', '022-221-0002', "
            "'佐々木花子  022-221-0002 ｻｻｷﾊﾅｺ', '2026-01-01', 1)"_s);
        m_press.callOnTimeout([this] { acceptPrinter(); });
        m_press.start(5);
    }

    Screen &screen()
    {
        if (!m_screen) {
            m_screen = std::make_unique<Screen>(workspace);
            m_driver = std::make_unique<ScreenDriver>(m_screen.get());
            m_driver->show();
        }
        return *m_screen;
    }
    ScreenDriver &hand()
    {
        screen();
        return *m_driver;
    }
    void close()
    {
        m_screen->reject();
        m_driver.reset();
        m_screen.reset();
    }

    void type(const char *box, const QString &text)
    {
        hand().box(box).setFocus();
        hand().box(box).clear();
        hand().type(box, text);
        hand().leave(box);
        QTest::qWait(0);
    }
    QString text(const char *box) { return hand().box(box).text(); }
    void search(const QString &key)
    {
        hand().box("txtKey1").setFocus();
        hand().type("txtKey1", key);
        hand().key(Qt::Key_Return);
    }
    /// Alt and the letter of the print button.
    void print()
    {
        screen().activateWindow(); // without a desktop it is not, after a dialog
        QVERIFY(QTest::qWaitForWindowActive(&screen()));
        hand().key(Qt::Key_P, Qt::AltModifier);
        QTest::qWait(150); // the button shows that it is pressed, and is then
    }
    /// "ID|consignee|goods|number of the customer" of each row of the history.
    QStringList history(const QString &columns = QStringLiteral("発送ID, 届先名1, 品名, 納品先ID"))
    {
        return rows(QStringLiteral("SELECT %1 FROM 発送マスター ORDER BY 発送ID").arg(columns));
    }
    [[nodiscard]] std::size_t jobs() const { return printers->given.size(); }

    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    int printerAsked = 0;
    bool isAccepted = true;

private:
    void acceptPrinter()
    {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog || dialog->objectName() != QStringLiteral("DialogPrint"))
            return;
        ++printerAsked;
        if (isAccepted)
            dialog->findChild<QAbstractButton *>(QStringLiteral("cmdPrint"))->click();
        dialog->close();
    }

    std::unique_ptr<Screen> m_screen;
    std::unique_ptr<ScreenDriver> m_driver;
    QTimer m_press;
};
