#include "shipping_slips.h"

#include "walker.h"

#include "printing/pdf.h"
#include "shipping/slips/slip_document.h"

#include <QDate>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

shipping::Shipment parcel(const QString &form)
{
    shipping::Shipment shipment;
    shipment.method = form;
    shipment.accepted = QDate(2026, 4, 1);
    shipment.delivery = QDate(2026, 4, 3);
    shipment.sender = {u"有限会社信州りんご園"_s,        u""_s, u"3800821"_s,
                       u"長野県長野市上千歳町1137-23"_s, u""_s, u"026-224-1137"_s};
    shipment.consignee = {u"株式会社東京百貨店"_s,           u"食品仕入部"_s,    u"１５０－０００１"_s,
                          u"東京都渋谷区神宮前１－２－３"_s, u"神宮前ビル 4F"_s, u"03-1234-5678"_s};
    shipment.goods = u"りんご（ふじ）10kg"_s;
    shipment.price = 3980;
    shipment.carriage = 850;
    shipment.category = u"お歳暮"_s;
    shipment.memo1 = u"御歳暮"_s;
    shipment.memo2 = u"信州りんご園"_s;
    shipment.customerCode = u"0262241137"_s;
    shipment.officeCode = u"038-021"_s;
    shipment.trackingNumber = u"1234-5678-9012"_s;
    shipment.timeSlot = u"午前中"_s;
    return shipment;
}

} // namespace

void lookAtSlips(Walker &walker, workspace::Workspace &workspace, const QDir &folder)
{
    int number = 0;
    for (const QString &form : shipping::shippingForms()) {
        const QString name = u"slip-%1"_s.arg(++number);
        const QString fileName = folder.filePath(name + u".pdf"_s);
        const auto document = shipping::slipDocument(workspace, parcel(form));
        walker.check(document && printing::writePdf(workspace, *document, fileName), form);
        walker.check(document && document->remark.isEmpty(), form + u" has a remark"_s);
        walker.pages(fileName, name);
    }
}

} // namespace tour
