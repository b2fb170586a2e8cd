#pragma once

#include "db/transaction.h"
#include "shipped.h"
#include "support/fake_printers.h"
#include "support/screen_driver.h"
#include "ui/grid.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

/// A shop with four parcels, the last of them first in the lists, and a screen of the history over them.
template <class Screen>
struct HistoryDesk : FreshShop
{
    HistoryDesk()
    {
        using namespace Qt::StringLiterals;
        printing::keepPrintSystem(workspace, printers);
        run(u"INSERT INTO 発送区分 (発送区分ID, 発送区分名) VALUES (1, 'お歳暮'), (2, '通販')"_s);
        if (!db::atomically(connection, [this] { return addParcels(); }))
            qFatal("no history");
        qApp->processEvents();
    }

    base::Status addParcels()
    {
        using namespace Qt::StringLiterals;
        const QStringList senders{u"山田商店"_s, u"㈱ヤマダ"_s, u"佐藤"_s, u"山田商店"_s};
        const QStringList consignees{u"髙橋花子"_s, u"鈴木"_s, u"田中_一郎"_s, u"伊藤"_s};
        for (int i = 0; i < 4; ++i) {
            shipping::Shipment each = parcel(senders.at(i), consignees.at(i), QDate(2026, 3, 1 + i));
            each.category = i % 2 == 0 ? u"お歳暮"_s : u"通販"_s;
            each.goods = u"荷物%1"_s.arg(i + 1);
            each.printed = each.accepted;
            ship(*this, each);
        }
        return {};
    }

    void open()
    {
        screen = std::make_unique<Screen>(workspace);
        hand = std::make_unique<ScreenDriver>(screen.get());
        hand->show();
        QCOMPARE(listed(), QStringLiteral("4 3 2 1"));
    }

    ui::Grid &list() { return hand->the<ui::Grid>("DataGrid1"); }
    /// The keys of the rows.
    QString listed()
    {
        QStringList keys;
        for (int row = 0; row < list().model()->rowCount(); ++row)
            keys << list().model()->index(row, 0).data().toString();
        return keys.join(u' ');
    }
    void goTo(int row) { list().setCurrentIndex(list().model()->index(row, 0)); }
    QString message() { return hand->the<QLabel>("lblMessage").text(); }
    QString text(const char *box) { return hand->box(box).text(); }
    /// The whole history, without the marks of what was changed when.
    QStringList history()
    {
        return rows(
            QStringLiteral("SELECT 発送ID, 届先名1, 品名, 備考1, 送り状番号, 印刷日 FROM 発送マスター "
                           "ORDER BY 発送ID"));
    }

    /// Presses the button of the print dialog when that comes.
    void press(const char *button)
    {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (dialog && dialog->objectName() == QStringLiteral("DialogPrint"))
                dialog->findChild<QPushButton *>(QStringLiteral("cmdPrint"))->click();
        });
        timer.start(5);
        hand->press(button);
    }

    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    std::unique_ptr<Screen> screen;
    std::unique_ptr<ScreenDriver> hand;
};
