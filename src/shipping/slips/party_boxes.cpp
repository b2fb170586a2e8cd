#include "shipping/slips/party_boxes.h"

#include "registers/customer.h"
#include "registers/postal/postal_boxes.h"
#include "shipping/slips/shipment_entry.h"
#include "text/postal_code.h"
#include "ui/width_check.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

enum Box { Name1, Name2, Zip, Address1, Address2, Tel };

} // namespace

void bringIntoForm(QLineEdit *box, QString (*formed)(const QString &))
{
    QObject::connect(box, &QLineEdit::editingFinished, box, [box, formed] {
        const QString text = formed(box->text());
        const bool isModified = box->isModified();
        if (isModified && text != box->text())
            box->setText(text);
        box->setModified(isModified);
    });
}

PartyBoxes::PartyBoxes(const Controls &controls, QObject *parent)
    : QObject(parent)
    , m_controls(controls)
{
    for (const Box box : {Name1, Name2, Address1, Address2})
        ui::WidthCheck::guardTyping(m_controls.boxes[box], ui::nameWidth);
    bringIntoForm(m_controls.boxes[Tel], registers::normalisedPhone);
    bringIntoForm(m_controls.boxes[Zip],
                  [](const QString &typed) { return text::shownPostalCode(typed.trimmed()); });
    connect(m_controls.boxes[Name1], &QLineEdit::textChanged, this, &PartyBoxes::showLink);
}

void PartyBoxes::connectPostalCodes(workspace::Workspace &workspace)
{
    m_postal = new registers::PostalBoxes(workspace, {.zip = m_controls.boxes[Zip],
                                                      .address = m_controls.boxes[Address1],
                                                      .address2 = m_controls.boxes[Address2],
                                                      .remark = m_controls.remark});
    m_postal->fillOnLeavingAddress();
    connect(m_controls.lookUp, &QAbstractButton::clicked, m_postal, &registers::PostalBoxes::lookUp);
}

void PartyBoxes::settle() { m_postal->settle(); }

void PartyBoxes::fill(const Party &party, qint64 id)
{
    m_filled = party;
    m_id = id;
    const QString *texts[] = {&party.name1,    &party.name2,    &party.zip,
                              &party.address1, &party.address2, &party.tel};
    for (std::size_t i = 0; i < std::size(texts); ++i) {
        m_controls.boxes[i]->setText(*texts[i]);
        m_controls.boxes[i]->setCursorPosition(0);
    }
    m_postal->forget();
    m_filled = this->party();
    showLink();
}

Party PartyBoxes::party() const
{
    const auto text = [this](Box box) { return m_controls.boxes[box]->text().trimmed(); };
    return {text(Name1),    text(Name2),    text::shownPostalCode(text(Zip)),
            text(Address1), text(Address2), text(Tel)};
}

qint64 PartyBoxes::id() const { return isStillNamed(m_filled, party()) ? m_id : 0; }

bool PartyBoxes::isTyped() const { return party() != Party() && party() != m_filled; }

void PartyBoxes::showLink()
{
    const qint64 known = id();
    m_controls.link->setText(known > 0  ? u"納品先 ID %1"_s.arg(known)
                             : m_id > 0 ? u"「%1」とは別の人として扱います"_s.arg(m_filled.name1)
                                        : QString());
}

} // namespace shipping
