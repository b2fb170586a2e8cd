#pragma once

#include "printing/sheets.h"
#include "shipping/gifts/gift_lists.h"

#include <QPoint>

// The gift lists on paper.
namespace shipping
{

/// The papers that the lists are printed on, as they are stored and offered.
const QStringList &giftListPapers();

/// How a list is to be printed.
struct GiftListLook
{
    QString paper;             // one of giftListPapers(); another: the usual one
    bool hidesAmounts = false; // AppList1: without prices and carriage, for the customer's own copy
    bool pageEach = false;     // AppList4: each sender begins a page of his own
    QStringList leftOut;       // columns, by their headings
    QPoint offset;             // by which everything is moved right and down, twips
};

/// The pages of the list by sender.
printing::Sheets senderPages(const std::vector<Shipment> &shipments, const GiftListQuery &query,
                             const QString &date, const GiftListLook &look);

/// The pages of the list of shipments.
printing::Sheets shipmentPages(const std::vector<Shipment> &shipments, const GiftListQuery &query,
                               const QString &date, const GiftListLook &look);

} // namespace shipping
