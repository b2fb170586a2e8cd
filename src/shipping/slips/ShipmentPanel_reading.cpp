// What is typed into the panel, as a shipment.
#include "shipping/slips/ShipmentPanel.h"
#include "shipping/slips/shipment_entry.h"
#include "shipping/slips/tracking_number.h"
#include "ui_ShipmentPanel.h"

using namespace Qt::StringLiterals;

namespace shipping
{

base::Result<Shipment> ShipmentPanel::shipment() const
{
    const Reading reading = read();
    return reading.status ? base::Result<Shipment>(reading.shipment) : reading.status.error();
}

void ShipmentPanel::focusFault()
{
    if (QWidget *box = read().box)
        box->setFocus();
}

ShipmentPanel::Reading ShipmentPanel::read() const
{
    Reading reading{m_base, {}, nullptr};
    Shipment &typed = reading.shipment;
    typed.consignee = consignee();
    typed.consigneeId = consigneeId();
    typed.sender = sender();
    typed.senderId = senderId();
    typed.goods = m_ui->txtHinmei->text().trimmed();
    typed.category = category();
    if (m_ui->Combo5->currentIndex() >= 0) // one that another program stored stays
        typed.method = m_ui->Combo5->currentText();
    typed.memo1 = m_ui->txtMemo1->text().trimmed();
    typed.memo2 = m_ui->txtMemo2->text().trimmed();
    typed.customerCode = m_ui->txtCode1->text().trimmed();
    typed.officeCode = m_ui->txtCode2->text().trimmed();
    typed.trackingNumber = storedTracking(m_ui->txtKDenNo->text());
    typed.timeSlot = m_ui->cmbTimeSlot->currentData().toString();
    typed.cooling = m_ui->cmbCooling->currentData().toString();
    typed.parcels = m_ui->spnParcels->value();
    readYen(reading);
    readDays(reading);
    return reading;
}

void ShipmentPanel::readDays(Reading &reading) const
{
    const struct
    {
        const DayLine *box;
        const char16_t *name;
        QDate Shipment::*day;
    } days[] = {{m_ui->txtDate2, u"配達予定日", &Shipment::delivery},
                {m_ui->txtDate1, u"受付日", &Shipment::accepted}};
    for (const auto &[box, name, day] : days) {
        const auto typed = box->day();
        if (typed) {
            reading.shipment.*day = *typed;
            continue;
        }
        reading.box = const_cast<DayLine *>(box);
        reading.status = base::Error{
            u"%1「%2」は日付として読み取れません。\n2026/4/1、4/1、R8.4.1 のように入力してください。"_s.arg(
                QString::fromUtf16(name), box->text())};
    }
    if (reading.status && !reading.shipment.accepted.isValid() && !m_isReadOnly) {
        reading.box = m_ui->txtDate1;
        reading.status = base::Error{u"受付日が入力されていません。"_s};
    }
}

void ShipmentPanel::readYen(Reading &reading) const
{
    const struct
    {
        QLineEdit *box;
        const char16_t *name;
        std::optional<double> Shipment::*yen;
    } amounts[] = {{m_ui->Text2, u"送料", &Shipment::carriage}, {m_ui->Text1, u"価格", &Shipment::price}};
    for (const auto &[box, name, yen] : amounts) {
        const auto typed = typedYen(box->text(), QString::fromUtf16(name));
        if (typed) {
            reading.shipment.*yen = *typed;
        } else {
            reading.box = box;
            reading.status = typed.error();
        }
    }
}

} // namespace shipping
