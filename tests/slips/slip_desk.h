#pragma once

#include "support/fresh_shop.h"
#include "support/screen_driver.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

#include <memory>

/// A shop with two suppliers and three customers, one of each tax class, and \a Screen open in it.
template <class Screen>
class SlipDesk
{
public:
    SlipDesk()
    {
        using namespace Qt::StringLiterals;
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (1, '木村', '')"_s);
        for (int taxClass = 0; taxClass < 3; ++taxClass) {
            const QString key = u"aite%1"_s.arg(taxClass);
            shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, 更新日, 消費税区分) "
                     "VALUES (?, ?, ?, '2020-01-01', ?)"_s,
                     {taxClass + 1, key, key, taxClass});
            shop.run(
                u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1, 仕入先名キー, 消費税区分) VALUES (?, ?, ?, ?)"_s,
                {10 - taxClass, key, key, taxClass});
        }
        shop.workspace.panel.employeeId = 1;
        shop.workspace.panel.taxRate = 5;
    }

    Screen &screen()
    {
        if (!m_screen) {
            m_screen = std::make_unique<Screen>(shop.workspace);
            m_driver = std::make_unique<ScreenDriver>(m_screen.get());
            m_driver->show();
        }
        return *m_screen;
    }
    /// Opens the screen anew, which reads the masters then.
    void reopen()
    {
        m_driver.reset();
        m_screen.reset();
        screen();
    }
    ScreenDriver &driver()
    {
        screen();
        return *m_driver;
    }

    // What the driver does, for short.
    template <class T = QWidget>
    T &the(const char *name)
    {
        return driver().template the<T>(name);
    }
    QLineEdit &box(const char *name) { return driver().box(name); }
    QString text(const char *name) { return box(name).text(); }
    void press(const char *name) { driver().press(name); }
    bool hasFocus(const char *name) { return the(name).hasFocus(); }

    /// Chooses the counterpart of \a taxClass and saves the header.
    void open(int taxClass)
    {
        driver().box("txtKey1").setText(QStringLiteral("aite%1").arg(taxClass));
        driver().press("Command1");
        driver().press("cmdMasterUpdate");
    }

    void goods(const QString &quantity, const QString &price,
               const QString &product = QStringLiteral("りんご"))
    {
        driver().list("dbcShohin").setEditText(product);
        driver().box("txtCnt").setText(quantity);
        driver().box("txtTanka").setText(price);
        driver().press("cmdSubAdd");
    }

    void money(int item, int means, const QString &amount)
    {
        driver().list("cmbShohin").setCurrentIndex(item);
        driver().list("cmbKikaku").setCurrentIndex(means);
        driver().box("txtKingaku").setText(amount);
        driver().press("cmdSubAdd");
    }

    QStringList lines()
    {
        return shop.rows(
            QStringLiteral("SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ ORDER BY rowid"));
    }
    QStringList headers()
    {
        return shop.rows(QStringLiteral("SELECT 伝票番号, 日付, 相手先ID FROM 入出庫マスター ORDER BY ID"));
    }

    FreshShop shop;

private:
    std::unique_ptr<Screen> m_screen;
    std::unique_ptr<ScreenDriver> m_driver;
};
