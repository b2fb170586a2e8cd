#pragma once

#include "slips/entry/frmOut.h"
#include "slips/slip_desk.h"

#include <QInputMethodEvent>
#include <QtTest>

using namespace Qt::StringLiterals;

/// The sales screen, in a shop with four more customers, one of each tax class and one without, and with
/// something to sell.
class SalesDesk : public SlipDesk<slips::frmOut>
{
public:
    explicit SalesDesk(bool automaticNumbers = true, double taxRate = 5)
    {
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
        screen();
    }

    // Types as an input method does, full-width characters included, then Enter.
    void type(const QString &text)
    {
        QInputMethodEvent typed;
        typed.setCommitString(text);
        QApplication::sendEvent(screen().focusWidget(), &typed);
        QTest::qWait(20); // the list of matches becomes the active window
        QWidget *matches = QApplication::activePopupWidget();
        QTest::keyClick(matches ? matches : screen().focusWidget(), Qt::Key_Return);
        QTest::qWait(20);
    }

    void choose(int taxClass)
    {
        box("txtKey1").setText(u"kyaku%1"_s.arg(taxClass));
        press("Command1");
    }

    void open(int taxClass)
    {
        choose(taxClass);
        press("cmdMasterUpdate");
    }

    void line(const QString &quantity, const QString &price, const QString &product = u"ふじりんご"_s)
    {
        goods(quantity, price, product);
    }

    QStringList shortLines()
    {
        return shop.rows(u"SELECT ID, 商品名, 数量, 単価, 金額 FROM 入出庫サブ ORDER BY rowid"_s);
    }

    // Of the controls that the state of the slip switches, those that can be used.
    QString usable()
    {
        QStringList names;
        for (const char *name :
             {"Frame2", "Frame1", "cmdSubAdd", "cmdSubCancel", "cmdNext", "cmdMasterCancel", "Command3"}) {
            if (the(name).isEnabled())
                names << QLatin1StringView(name);
        }
        return names.join(u' ');
    }
};

// What can be used, state by state.
inline const QString headerOnly = u"Frame2"_s;
inline const QString saved = u"Frame1 cmdSubAdd cmdSubCancel"_s;
inline const QString withLines = u"Frame1 cmdSubAdd cmdSubCancel cmdNext cmdMasterCancel Command3"_s;
