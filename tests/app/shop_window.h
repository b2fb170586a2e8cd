#pragma once

#include "app/main_window/frmAMain.h"
#include "db/create.h"
#include "support/fresh_shop.h"

#include <QAction>
#include <QDir>
#include <QPushButton>

#include <memory>

/// A shop with some rows, opened in the real main window.
struct Stage
{
    Stage()
    {
        fill(shop);
        shop.connection.close();
        if (!db::createDatabase(shop.path(QStringLiteral("Kanbalore.cdb"))))
            qFatal("no initial file");
        file = shop.path(QStringLiteral("shop.cdb"));
    }

    static void fill(FreshShop &shop)
    {
        shop.run(QStringLiteral("INSERT INTO 社員 (社員ID, 社員名) VALUES (1, '山田')"));
        shop.run(QStringLiteral("INSERT INTO 発送区分 (発送区分ID, 発送区分名) VALUES (1, '常温')"));
        shop.run(QStringLiteral("BEGIN"));
        for (int i = 1; i <= 300; ++i) {
            shop.run(QStringLiteral("INSERT INTO 納品先 (納品先ID, 納品先名1, 区分ID) VALUES (?, ?, 1)"),
                     {i, QStringLiteral("顧客%1").arg(i)});
            shop.run(QStringLiteral("INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (?, ?)"),
                     {i, QStringLiteral("O%1").arg(i)});
            shop.run(QStringLiteral("INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (?, 'りんご', 100)"),
                     {i});
        }
        shop.run(QStringLiteral("COMMIT"));
    }

    void load()
    {
        window = std::make_unique<app::frmAMain>(shop.workspace, app::screenOpeners());
        window->load(file.isEmpty() ? QString() : QLatin1Char('"') + file + QLatin1Char('"'));
        window->show();
    }
    void click(const char *name)
    {
        auto *button = find<QPushButton>(name);
        if (!button->isEnabled())
            qFatal("%s is disabled", name);
        button->click();
    }
    void choose(const char *name) { find<QAction>(name)->trigger(); }
    template <class Widget>
    Widget *find(const char *name)
    {
        auto *found = window->findChild<Widget *>(QLatin1StringView(name));
        if (!found)
            qFatal("no %s", name);
        return found;
    }
    QStringList files(const QString &pattern) const
    {
        return QDir(shop.folder.path()).entryList({pattern}, QDir::Files, QDir::Name);
    }
    int customers() { return shop.value(QStringLiteral("SELECT count(*) FROM 納品先")).toInt(); }

    FreshShop shop;
    QString file;
    std::unique_ptr<app::frmAMain> window;
};
