#include "shipping/gifts/gift_order.h"

#include "base/exact_sum.h"
#include "registers/duplicates/person_folding.h"

namespace shipping
{

namespace
{

QVariant amount(const std::optional<double> &value) { return value ? QVariant(*value) : QVariant(); }

std::optional<double> amountFrom(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toDouble());
}

QVariant text(const QString &value) { return value.isEmpty() ? QVariant() : QVariant(value); }

} // namespace

QVariant termOf(const GiftTerms &terms, GiftTerm term)
{
    switch (term) {
    case GiftTerm::Goods:
        return text(terms.goods);
    case GiftTerm::Price:
        return amount(terms.price);
    case GiftTerm::Carriage:
        return amount(terms.carriage);
    case GiftTerm::Delivery:
        return terms.delivery.isValid() ? QVariant(terms.delivery) : QVariant();
    case GiftTerm::TimeSlot:
        return text(terms.timeSlot);
    case GiftTerm::Cooling:
        return text(terms.cooling);
    case GiftTerm::Memo1:
        return text(terms.memo1);
    case GiftTerm::Memo2:
        return text(terms.memo2);
    }
    return {};
}

void setTerm(GiftTerms &terms, GiftTerm term, const QVariant &value)
{
    switch (term) {
    case GiftTerm::Goods:
        terms.goods = value.toString();
        break;
    case GiftTerm::Price:
        terms.price = amountFrom(value);
        break;
    case GiftTerm::Carriage:
        terms.carriage = amountFrom(value);
        break;
    case GiftTerm::Delivery:
        terms.delivery = value.toDate();
        break;
    case GiftTerm::TimeSlot:
        terms.timeSlot = value.toString();
        break;
    case GiftTerm::Cooling:
        terms.cooling = value.toString();
        break;
    case GiftTerm::Memo1:
        terms.memo1 = value.toString();
        break;
    case GiftTerm::Memo2:
        terms.memo2 = value.toString();
        break;
    }
}

void GiftRow::setOwn(GiftTerm term, const QVariant &value)
{
    setTerm(own, term, value);
    hasOwn.set(std::size_t(term));
}

void GiftRow::dropOwn(GiftTerm term)
{
    setTerm(own, term, {});
    hasOwn.reset(std::size_t(term));
}

GiftTerms termsOf(const GiftOrder &order, const GiftRow &row)
{
    GiftTerms terms = order.common;
    for (std::size_t i = 0; i < giftTermCount; ++i) {
        const auto term = static_cast<GiftTerm>(i);
        if (row.has(term))
            setTerm(terms, term, termOf(row.own, term));
    }
    return terms;
}

Shipment shipmentOf(const GiftOrder &order, const GiftRow &row)
{
    const GiftTerms terms = termsOf(order, row);
    Shipment shipment;
    shipment.accepted = order.accepted;
    shipment.delivery = terms.delivery;
    shipment.sender = order.sender;
    shipment.senderId = order.senderId;
    shipment.consignee = row.consignee;
    shipment.consigneeId = row.consigneeId;
    shipment.goods = terms.goods;
    shipment.price = terms.price;
    shipment.carriage = terms.carriage;
    shipment.category = order.category;
    shipment.method = order.method;
    shipment.memo1 = terms.memo1;
    shipment.memo2 = terms.memo2;
    shipment.customerCode = order.customerCode;
    shipment.officeCode = order.officeCode;
    shipment.timeSlot = terms.timeSlot;
    shipment.cooling = terms.cooling;
    return shipment;
}

GiftRow rowLike(const Shipment &shipment)
{
    GiftRow row;
    row.consignee = shipment.consignee;
    row.consigneeId = shipment.consigneeId;
    const GiftTerms sent{shipment.goods,    shipment.price,   shipment.carriage, {},
                         shipment.timeSlot, shipment.cooling, shipment.memo1,    shipment.memo2};
    for (std::size_t i = 0; i < giftTermCount; ++i) {
        const auto term = static_cast<GiftTerm>(i);
        if (const QVariant value = termOf(sent, term); !value.isNull())
            row.setOwn(term, value);
    }
    row.pricedGoods = shipment.goods;
    return row;
}

QString consigneeKey(const Party &consignee)
{
    return registers::foldedPerson(consignee.name1 + consignee.name2) + u'\n' +
           registers::foldedAddress(consignee.address1 + consignee.address2);
}

std::vector<std::size_t> tickedRows(const GiftOrder &order)
{
    std::vector<std::size_t> ticked;
    for (std::size_t row = 0; row < order.rows.size(); ++row) {
        if (order.rows[row].ticked)
            ticked.push_back(row);
    }
    return ticked;
}

GiftSums sumsOf(const GiftOrder &order)
{
    GiftSums sums;
    base::ExactSum price;
    base::ExactSum carriage;
    for (const std::size_t row : tickedRows(order)) {
        const GiftTerms terms = termsOf(order, order.rows[row]);
        price.add(terms.price.value_or(0));
        carriage.add(terms.carriage.value_or(0));
        ++sums.count;
    }
    sums.price = price.value();
    sums.carriage = carriage.value();
    return sums;
}

} // namespace shipping
