#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

// One parcel: what its slip says, and what its row in the shipping history (発送マスター) keeps.
namespace shipping
{

/// The one who sends (ご依頼主), or the one whom it goes to (お届け先).
struct Party
{
    QString name1;
    QString name2;
    QString zip;
    QString address1;
    QString address2;
    QString tel;

    friend bool operator==(const Party &, const Party &) = default;
};

struct Shipment
{
    qint64 id = 0;  // 発送ID; 0: it is not in the history
    QDate accepted; // 受付日
    QDate delivery; // 配達日, as planned; none: as soon as it comes
    Party sender;
    Party consignee;
    QString goods;                  // 品名
    std::optional<double> price;    // 価格, yen; of a parcel that is paid on delivery, what is collected
    std::optional<double> carriage; // 送料, yen
    QString category;               // 発送区分, by its name
    QString method;                 // 発送方法: the form of its slip, one of shippingForms()
    QString memo1;                  // 備考1; of a gift, what its のし says
    QString memo2;
    QString customerCode;   // 顧客コード, the shop's at the carrier
    QString officeCode;     // 発店コード, the carrier's office that takes it
    QString trackingNumber; // 送り状番号
    QString timeSlot;       // 時間帯, one of timeSlots()
    QString cooling;        // クール, one of coolings()
    int parcels = 1;        // 個数
    qint64 consigneeId = 0; // 納品先ID of the one whom it goes to; 0: not in the register
    qint64 senderId = 0; // 依頼主ID: 納品先ID of the one who sends, 0: the shop itself or nobody registered
    qint64 slipId = 0;             // 伝票ID of the sale it belongs to; 0: none
    QDate printed;                 // 印刷日, on which a queue took its slip; none: never
    QDate exported;                // 出力日, on which it was written to a carrier's file; none: never
    std::optional<qint64> version; // 版 of the row

    friend bool operator==(const Shipment &, const Shipment &) = default;
};

/// The forms that a slip can be printed on, as they are stored and offered.
const QStringList &shippingForms();

/// Whether the carrier collects the price on a slip of \a form.
bool isCollected(const QString &form);

/// "午前中", "14-16" and so on, after the empty one: no wish. Each carrier's file has codes of its own for
/// them.
const QStringList &timeSlots();

/// Empty (none), "冷蔵", "冷凍".
const QStringList &coolings();

/// \a text in one line: a line break that was pasted with it is a blank.
QString withBlanksForBreaks(QString text);

/// The key that the history is searched by: both name lines joined, the first 16 characters, trimmed.
QString nameKey(const Party &party);

} // namespace shipping
