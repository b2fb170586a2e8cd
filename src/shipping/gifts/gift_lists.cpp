#include "shipping/gifts/gift_lists.h"

#include "registers/duplicates/person_folding.h"
#include "shipping/gifts/earlier_gifts.h"
#include "text/dates.h"
#include "text/japanese_order.h"

#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;
using base::Format;

namespace shipping
{

namespace
{

QString nameOf(const Party &party) { return QStringList{party.name1, party.name2}.join(u' ').trimmed(); }

QString foldedName(const Party &party) { return registers::foldedPerson(party.name1 + party.name2); }

QVariant amount(const std::optional<double> &yen) { return yen ? QVariant(*yen) : QVariant(); }

QVariant day(const QDate &date) { return date.isValid() ? QVariant(text::stored(date)) : QVariant(); }

base::Column amountColumn(const QString &heading)
{
    base::Column column{heading, Format::Amount, 9, 16};
    column.summed = true;
    return column;
}

base::Column wide(const QString &heading, int characters, double millimetres)
{
    base::Column column{heading, Format::Text, characters, millimetres};
    column.stretches = true;
    return column;
}

std::vector<base::Column> withoutAmounts(std::vector<base::Column> columns, bool hides)
{
    if (hides)
        std::erase_if(columns, [](const base::Column &column) { return column.format == Format::Amount; });
    return columns;
}

QString memosOf(const Shipment &shipment)
{
    return QStringList{shipment.memo1, shipment.memo2}.join(u'　').trimmed();
}

std::vector<base::Column> senderColumns(bool hidesAmounts)
{
    return withoutAmounts({wide(u"お届け先"_s, 24, 44),
                           {u"受付日"_s, Format::Date, 10, 18},
                           wide(u"品名"_s, 22, 36),
                           {u"個数"_s, Format::Number, 4, 9},
                           amountColumn(u"価格"_s),
                           amountColumn(u"送料"_s),
                           {u"配達予定日"_s, Format::Date, 10, 18},
                           {u"のし・名入れ"_s, Format::Text, 14, 24},
                           {u"送り状番号"_s, Format::Text, 14, 26},
                           wide(u"住所"_s, 34, 56),
                           {u"電話"_s, Format::Text, 13, 24}},
                          hidesAmounts);
}

QVariantList senderRow(const Shipment &shipment, bool hidesAmounts)
{
    QVariantList values{nameOf(shipment.consignee), day(shipment.accepted), shipment.goods, shipment.parcels};
    if (!hidesAmounts)
        values << amount(shipment.price) << amount(shipment.carriage);
    return values << day(shipment.delivery) << memosOf(shipment) << shipment.trackingNumber
                  << shipment.consignee.address1 + shipment.consignee.address2 << shipment.consignee.tel;
}

std::vector<base::Column> shipmentColumnsOf(bool hidesAmounts)
{
    return withoutAmounts({{u"受付日"_s, Format::Date, 10, 18},
                           {u"区分"_s, Format::Text, 10, 18},
                           wide(u"ご依頼主"_s, 22, 40),
                           wide(u"お届け先"_s, 22, 40),
                           wide(u"品名"_s, 18, 34),
                           {u"個数"_s, Format::Number, 4, 9},
                           amountColumn(u"価格"_s),
                           amountColumn(u"送料"_s),
                           {u"配達予定日"_s, Format::Date, 10, 18},
                           {u"発送方法"_s, Format::Text, 16, 26},
                           {u"送り状番号"_s, Format::Text, 14, 26}},
                          hidesAmounts);
}

QVariantList shipmentRow(const Shipment &shipment, bool hidesAmounts)
{
    QVariantList values{day(shipment.accepted),     shipment.category, nameOf(shipment.sender),
                        nameOf(shipment.consignee), shipment.goods,    shipment.parcels};
    if (!hidesAmounts)
        values << amount(shipment.price) << amount(shipment.carriage);
    return values << day(shipment.delivery) << shipment.method << shipment.trackingNumber;
}

QStringList headingsOf(const std::vector<base::Column> &columns)
{
    QStringList headings;
    for (const base::Column &column : columns)
        headings << column.heading;
    return headings;
}

// For the boxes below the list.
void addSums(base::Report &report, qsizetype count)
{
    report.sums.push_back({u"件数"_s, double(count)});
    for (std::size_t column = 0; column < report.columns.size(); ++column) {
        if (report.columns[column].summed)
            report.sums.push_back({report.columns[column].heading, base::columnSum(report, column)});
    }
}

base::Report emptyReport(const QString &title, const GiftListQuery &query, std::vector<base::Column> columns)
{
    base::Report report;
    report.title = title;
    report.remark = queryInWords(query);
    report.documentName =
        title + query.from.toString(u" yyyy-MM-dd"_s) + query.to.toString(u"～yyyy-MM-dd"_s);
    report.columns = std::move(columns);
    return report;
}

// Which key a sender goes by: the register's, where one of that name is in it; where several are, those that
// the history has without a key are one more.
class SenderKeys
{
public:
    explicit SenderKeys(const std::vector<Shipment> &shipments)
    {
        for (const Shipment &shipment : shipments) {
            if (shipment.senderId > 0)
                m_registered[firstName(shipment)].insert(shipment.senderId);
        }
    }

    [[nodiscard]] QString of(const Shipment &shipment) const
    {
        const QString name = firstName(shipment);
        const QSet<qint64> keys = m_registered.value(name);
        const qint64 key = shipment.senderId == 0 && keys.size() == 1 ? *keys.begin() : shipment.senderId;
        return key > 0 ? QString::number(key) : u'\n' + name;
    }

private:
    static QString firstName(const Shipment &shipment)
    {
        return registers::foldedPerson(shipment.sender.name1);
    }

    QHash<QString, QSet<qint64>> m_registered; // by name
};

} // namespace

base::Result<std::vector<Shipment>> listedShipments(db::Connection &connection, const GiftListQuery &query)
{
    if (query.to < query.from)
        return base::Error{u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s};
    auto shipments = shipmentsBetween(connection, query.category, query.from, query.to);
    const QString wanted = registers::foldedPerson(query.sender);
    if (shipments && !wanted.isEmpty())
        std::erase_if(*shipments, [&wanted](const Shipment &shipment) {
            return !foldedName(shipment.sender).contains(wanted);
        });
    return shipments;
}

std::vector<SenderGifts> bySender(const std::vector<Shipment> &shipments)
{
    const SenderKeys keys(shipments);
    QHash<QString, std::size_t> places;
    std::vector<SenderGifts> senders;
    for (const Shipment &shipment : shipments) {
        const QString key = keys.of(shipment);
        if (!places.contains(key)) {
            places.insert(key, senders.size());
            senders.push_back({nameOf(shipment.sender), {}});
        }
        senders[places.value(key)].shipments.push_back(shipment);
    }
    std::ranges::stable_sort(senders, [](const SenderGifts &one, const SenderGifts &other) {
        return text::comesBefore(one.name, other.name);
    });
    return senders;
}

base::Report senderList(const std::vector<Shipment> &shipments, const GiftListQuery &query, bool hidesAmounts)
{
    base::Report report = emptyReport(u"ご依頼主リスト"_s, query, senderColumns(hidesAmounts));
    for (const SenderGifts &sender : bySender(shipments)) {
        base::beginGroup(report, sender.name.isEmpty() ? u"（ご依頼主なし）"_s : sender.name);
        report.rows.back().link = sender.shipments.front().id;
        for (const Shipment &shipment : sender.shipments)
            report.rows.push_back({senderRow(shipment, hidesAmounts), shipment.id});
        base::endGroup(report, u"小計　%1 件"_s.arg(sender.shipments.size()));
    }
    base::addTotals(report, u"合計　%1 件"_s.arg(shipments.size()));
    addSums(report, qsizetype(shipments.size()));
    return report;
}

base::Report shipmentList(const std::vector<Shipment> &shipments, const GiftListQuery &query,
                          bool hidesAmounts)
{
    base::Report report = emptyReport(u"発送済みリスト"_s, query, shipmentColumnsOf(hidesAmounts));
    for (const Shipment &shipment : shipments)
        report.rows.push_back({shipmentRow(shipment, hidesAmounts), shipment.id});
    base::addTotals(report, u"合計　%1 件"_s.arg(shipments.size()));
    addSums(report, qsizetype(shipments.size()));
    return report;
}

QStringList senderListColumns() { return headingsOf(senderColumns(false)); }

QStringList shipmentListColumns() { return headingsOf(shipmentColumnsOf(false)); }

void leaveColumnsOut(base::Report &report, const QStringList &leftOut)
{
    const auto named =
        std::ranges::find_if(report.columns, &base::Column::stretches) - report.columns.begin();
    for (auto column = std::ptrdiff_t(report.columns.size()) - 1; column >= 0; --column) {
        if (column == named || !leftOut.contains(report.columns[std::size_t(column)].heading))
            continue;
        report.columns.erase(report.columns.begin() + column);
        for (base::ReportRow &row : report.rows)
            row.values.removeAt(column);
        if (!report.totals.isEmpty())
            report.totals.removeAt(column);
    }
}

QString queryInWords(const GiftListQuery &query)
{
    QString words = text::formatDate(query.from) + u" 〜 "_s + text::formatDate(query.to);
    if (!query.category.isEmpty())
        words += u"　"_s + query.category;
    if (!query.sender.trimmed().isEmpty())
        words += u"　ご依頼主「%1」"_s.arg(query.sender.trimmed());
    return words;
}

} // namespace shipping
