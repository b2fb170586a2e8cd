#pragma once

#include "slips/entry/frmOut.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"

#include <QApplication>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QtTest>

using namespace Qt::StringLiterals;

/// A shop with four customers, one of each tax class and one without, and the sales screen open.
struct SalesDesk
{
    explicit SalesDesk(bool automaticNumbers = true, double taxRate = 5)
    {
        shop.workspace.panel.employeeId = 1;
        shop.workspace.panel.automaticNumbers = automaticNumbers;
        shop.workspace.panel.taxRate = taxRate;
        shop.run(u"INSERT INTO 納品商品 (商品ID, 商品名) VALUES (1, 'ふじりんご'), (2, 'ラ・フランス')"_s);
        shop.run(u"INSERT INTO 規格 (規格ID, 規格) VALUES (1, '５ｋｇ')"_s);
        shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '箱')"_s);
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, 更新日, 消費税区分) VALUES "
                 "(5, '外税商店', '外税商店 kyaku0', '2020-01-03', 0), "
                 "(6, '請求商店', '請求商店 kyaku1', '2020-01-02', 1), "
                 "(7, '内税商店', '内税商店 kyaku2', '2020-01-01', 2), "
                 "(8, '空欄商店', '空欄商店 kyaku3', '2019-01-01', NULL)"_s);
        shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '一般')"_s);
        screen = std::make_unique<slips::frmOut>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
    }

    template <class T>
    T *get(const char *name)
    {
        return &driver->the<T>(name);
    }
    QLineEdit *box(const char *name) { return &driver->box(name); }
    QString text(const char *name) { return box(name)->text(); }
    bool hasFocus(const char *name) { return get<QWidget>(name)->hasFocus(); }
    void press(const char *name) { driver->press(name); }

    // Types as an input method does, full-width characters included, then Enter.
    void type(const QString &text)
    {
        QInputMethodEvent typed;
        typed.setCommitString(text);
        QApplication::sendEvent(screen->focusWidget(), &typed);
        QTest::qWait(20); // the list of matches becomes the active window
        QWidget *matches = QApplication::activePopupWidget();
        QTest::keyClick(matches ? matches : screen->focusWidget(), Qt::Key_Return);
        QTest::qWait(20);
    }

    void choose(int taxClass)
    {
        box("txtKey1")->setText(u"kyaku%1"_s.arg(taxClass));
        press("Command1");
    }

    void open(int taxClass)
    {
        choose(taxClass);
        press("cmdMasterUpdate");
    }

    void line(const QString &quantity, const QString &price, const QString &product = u"ふじりんご"_s)
    {
        get<QComboBox>("dbcShohin")->setEditText(product);
        box("txtCnt")->setText(quantity);
        box("txtTanka")->setText(price);
        press("cmdSubAdd");
    }

    QStringList lines()
    {
        return shop.rows(u"SELECT ID, 商品名, 数量, 単価, 金額 FROM 入出庫サブ ORDER BY rowid"_s);
    }
    int headers() { return shop.value(u"SELECT COUNT(*) FROM 入出庫マスター"_s).toInt(); }

    // Of the controls that the state of the slip switches, those that can be used.
    QString usable()
    {
        QStringList names;
        for (const char *name :
             {"Frame2", "Frame1", "cmdSubAdd", "cmdSubCancel", "cmdNext", "cmdMasterCancel", "Command3"}) {
            if (get<QWidget>(name)->isEnabled())
                names << QLatin1StringView(name);
        }
        return names.join(u' ');
    }

    FreshShop shop;
    std::unique_ptr<slips::frmOut> screen;
    std::unique_ptr<ScreenDriver> driver;
};

// What can be used, state by state.
inline const QString headerOnly = u"Frame2"_s;
inline const QString saved = u"Frame1 cmdSubAdd cmdSubCancel"_s;
inline const QString withLines = u"Frame1 cmdSubAdd cmdSubCancel cmdNext cmdMasterCancel Command3"_s;
