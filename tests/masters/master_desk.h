#pragma once

#include "masters/MasterGridEditor.h"
#include "masters/frmMyco.h"
#include "support/fresh_shop.h"
#include "ui/grid.h"

#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;
using masters::Master;

/// A master and where its names stand.
struct Case
{
    Master master;
    QString screen;
    QString table;
    QString key;
    QString nameBox;
    QString name; // column
};

inline const QList<Case> cases = {
    {Master::Units, u"frmTani"_s, u"単位"_s, u"単位ID"_s, u"txtName"_s, u"単位"_s},
    {Master::Specifications, u"frmKikaku"_s, u"規格"_s, u"規格ID"_s, u"txtName"_s, u"規格"_s},
    {Master::Employees, u"frmShain"_s, u"社員"_s, u"社員ID"_s, u"txtName"_s, u"社員名"_s},
    {Master::CustomerCategories, u"frmKubun"_s, u"登録区分"_s, u"区分ID"_s, u"txtName"_s, u"区分名"_s},
    {Master::ShippingCategories, u"frmInvKubun"_s, u"発送区分"_s, u"発送区分ID"_s, u"txtName"_s,
     u"発送区分名"_s},
    {Master::PurchaseProducts, u"frmInShohin"_s, u"仕入商品"_s, u"商品ID"_s, u"txtShohin"_s, u"商品名"_s},
    {Master::SalesProducts, u"frmOutShohin"_s, u"納品商品"_s, u"商品ID"_s, u"txtShohin"_s, u"商品名"_s},
    {Master::OwnCompany, u"frmMyco"_s, u"自社情報"_s, u"会社ID"_s, u"txtName1"_s, u"会社名1"_s},
};

/// One editor on a shop of its own.
struct MasterDesk
{
    explicit MasterDesk(const Case &data)
        : c(data)
    {}

    /// Stores rows with \a keys and the names "n1", "n2", …
    void store(const QList<int> &keys)
    {
        for (const int key : keys)
            shop.run(u"INSERT INTO %1 (%2, %3) VALUES (?, ?)"_s.arg(c.table, c.key, c.name),
                     {key, u"n%1"_s.arg(key)});
    }

    bool open()
    {
        if (c.master == Master::OwnCompany)
            screen = std::make_unique<masters::frmMyco>(shop.workspace);
        else
            screen = std::make_unique<masters::MasterGridEditor>(shop.workspace, c.master);
        screen->show();
        screen->activateWindow();
        return QTest::qWaitForWindowActive(screen.get());
    }

    QPushButton *button(const QString &name) { return screen->findChild<QPushButton *>(name); }
    QLineEdit *box(const QString &name) { return screen->findChild<QLineEdit *>(name); }
    QLineEdit *nameBox() { return box(c.nameBox); }
    ui::Grid *grid() { return screen->findChild<ui::Grid *>(u"DataGrid1"_s); }

    /// Begins editing where the row is only shown at first.
    void edit()
    {
        if (c.master == Master::OwnCompany)
            click(u"cmdEdit"_s);
    }

    void click(const QString &name) { QTest::mouseClick(button(name), Qt::LeftButton); }

    /// "1=n1 2=" as the file holds it.
    QString stored()
    {
        return shop
            .rows(u"SELECT %1 || '=' || coalesce(%2, '') FROM %3 ORDER BY %1"_s.arg(c.key, c.name, c.table))
            .join(u' ');
    }

    /// The buttons that can be pressed.
    QString enabled()
    {
        QStringList names;
        for (const QString &name : {u"cmdAdd"_s, u"cmdUpdate"_s, u"cmdCancel"_s, u"cmdDelete"_s}) {
            if (button(name)->isEnabled())
                names << name.mid(3);
        }
        return names.join(u' ');
    }

    /// From now on the file takes no writes, or again.
    void setReadOnly(bool on) { shop.run(on ? u"PRAGMA query_only = ON"_s : u"PRAGMA query_only = OFF"_s); }

    Case c;
    FreshShop shop;
    std::unique_ptr<ui::Screen> screen;
};

inline void addCases()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < cases.size(); ++i)
        QTest::newRow(qPrintable(cases.at(i).screen)) << i;
}

/// Those of the masters that are edited in a list.
inline void addGridCases()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i + 1 < cases.size(); ++i)
        QTest::newRow(qPrintable(cases.at(i).screen)) << i;
}

inline const QString readOnlyText =
    u"データベースが読み取り専用のため、保存できませんでした。ファイルの属性とフォルダの権限を確認してください。"_s;

inline const QString newRowQuestion = u"入力中の行が登録されていません。登録しますか。"_s;
inline const QString editQuestion = u"変更が保存されていません。保存しますか。"_s;
