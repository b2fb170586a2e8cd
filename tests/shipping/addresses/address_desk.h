#pragma once

#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/tired_printers.h"

#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

/// A shop whose customers get letters, and printers that remember them.
struct AddressDesk
{
    AddressDesk()
    {
        printing::keepPrintSystem(shop.workspace, printers);
        shop.run(QStringLiteral("INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先'), (7, '一般')"));
        shop.run(QStringLiteral("INSERT INTO 自社情報 (会社ID, 会社名1, 郵便番号, 住所1) VALUES "
                                "(1, '信州りんご園', '380-0921', '長野市栗田2')"));
    }

    void addCustomer(int id, const QString &name, const QString &zip, const QString &address,
                     const QString &contact = {}, int category = 7)
    {
        shop.run(QStringLiteral(
                     "INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, 郵便番号, 住所1, 担当者名, "
                     "区分ID, 更新日) VALUES (?, ?, ?, ?, ?, ?, ?, '2026-03-01')"),
                 {id, name, name, zip, address, contact, category});
    }

    /// Presses \a button in the window that comes next, which must be \a name; further ones follow.
    static void answer(QList<std::pair<QString, QString>> windows)
    {
        QTimer::singleShot(0, qApp, [windows] {
            QWidget *window = QApplication::activeModalWidget();
            QVERIFY(window);
            QCOMPARE(window->objectName(), windows.front().first);
            if (windows.size() > 1)
                answer(windows.mid(1));
            QTest::mouseClick(window->findChild<QPushButton *>(windows.front().second), Qt::LeftButton);
        });
    }

    /// "2|2026-04-01|はがき" for each mark.
    QStringList marks()
    {
        return shop.rows(QStringLiteral("SELECT 納品先ID, 印刷日, 用紙 FROM 宛名印刷 ORDER BY 印刷ID"));
    }

    FreshShop shop;
    std::shared_ptr<TiredPrinters> printers = std::make_shared<TiredPrinters>();
};
