#include "shipping/slips/frmKuroneko1.h"

#include "masters/own_company.h"
#include "shipping/slips/shipment_entry.h"
#include "ui_frmKuroneko1.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;
namespace keys = workspace::keys;

namespace shipping
{

namespace
{

const SlipEntryKind mailOrder{
    {keys::invCode, keys::invMemo},
    keys::kuroWindowState[0],
    &workspace::Panel::deliveryNoticeMailOrder,
    Sending::MailOrder,
    u"検索したお届け先は見つかりませんでした。\nお届け先を直接入力しますか。",
};

void takeText(QString &into, const QString &preset)
{
    if (!preset.isEmpty())
        into = preset;
}

} // namespace

frmKuroneko1::frmKuroneko1(workspace::Workspace &workspace, QWidget *parent)
    : SlipEntryScreen(workspace, parent, mailOrder)
    , m_ui(std::make_unique<Ui::frmKuroneko1>())
{
    m_ui->setupUi(this);
    setUpEntry(slipEntryControls(*m_ui));
    const auto company = masters::ownCompany(workspace.connection);
    if (tell(company.status()) && *company)
        panel().setSender(partyOf(**company), 0);
    panel().markUnchanged();
}

frmKuroneko1::~frmKuroneko1() = default;

void frmKuroneko1::beginFor(const Shipment &preset)
{
    auto begun = panel().shipment();
    if (!tell(begun.status()))
        return;
    begun->consignee = preset.consignee;
    begun->consigneeId = preset.consigneeId;
    begun->slipId = preset.slipId;
    begun->delivery = preset.delivery;
    begun->price = preset.price;
    begun->carriage = preset.carriage;
    takeText(begun->goods, preset.goods);
    begun->memo1 = preset.memo1; // those that are kept may be another customer's
    begun->memo2 = preset.memo2;
    takeText(begun->category, preset.category);
    takeText(begun->method, preset.method);
    takeText(begun->timeSlot, preset.timeSlot);
    takeText(begun->cooling, preset.cooling);
    begin(*begun);
    panel().focusSlip();
}

void frmKuroneko1::fillIn(const Party &customer, qint64 id) { panel().setConsignee(customer, id); }

QString frmKuroneko1::typedParty() const
{
    if (!panel().isConsigneeTyped())
        return {};
    const QString name = panel().consignee().name1;
    return name.isEmpty() ? u"お届け先"_s : name;
}

void frmKuroneko1::nextBegins() { clearSearch(); }

void frmKuroneko1::typeInstead() { panel().focusConsignee(); }

} // namespace shipping
