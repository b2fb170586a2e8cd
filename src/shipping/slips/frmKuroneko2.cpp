#include "shipping/slips/frmKuroneko2.h"

#include "shipping/slips/sent_consignees.h"
#include "ui/prompts.h"
#include "ui_frmKuroneko2.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QKeyEvent>

using namespace Qt::StringLiterals;
namespace keys = workspace::keys;

namespace shipping
{

namespace
{

const SlipEntryKind gift{
    {keys::inv2Code, keys::inv2Memo},
    keys::kuroWindowState[1],
    &workspace::Panel::deliveryNotice,
    Sending::Other,
    u"検索したご依頼主は見つかりませんでした。\nご依頼主を直接入力しますか。",
};

QString nameOr(const Party &party, const QString &other)
{
    return party.name1.isEmpty() ? other : party.name1;
}

} // namespace

frmKuroneko2::frmKuroneko2(workspace::Workspace &workspace, QWidget *parent)
    : SlipEntryScreen(workspace, parent, gift)
    , m_ui(std::make_unique<Ui::frmKuroneko2>())
{
    m_ui->setupUi(this);
    m_ui->panel->showGiftWords();
    m_ui->gridSent->showColumns(sentReport({}).columns);
    connect(m_ui->gridSent, &QTableView::clicked, this, &frmKuroneko2::sendAgain);
    setUpEntry(slipEntryControls(*m_ui));
}

frmKuroneko2::~frmKuroneko2() = default;

void frmKuroneko2::fillIn(const Party &customer, qint64 id)
{
    panel().setSender(customer, id);
    listSent();
}

QString frmKuroneko2::typedParty() const
{
    return panel().isSenderTyped() ? nameOr(panel().sender(), u"ご依頼主"_s) : QString();
}

// Of a sender whom no register has nobody can tell what is his.
void frmKuroneko2::listSent()
{
    m_sent.clear();
    if (const qint64 id = panel().senderId(); id > 0) {
        auto sent = sentConsignees(workspace().connection, id, panel().sender());
        if (tell(sent.status()))
            m_sent = std::move(*sent);
    }
    m_ui->gridSent->setReport(sentReport(m_sent));
}

void frmKuroneko2::sendAgain()
{
    const QVariant place = m_ui->gridSent->currentLink();
    if (place.isNull())
        return;
    const Shipment &earlier = m_sent.at(place.toULongLong());
    const bool isTyped = panel().isConsigneeTyped();
    if (isTyped && !ui::prompts::askCautiously(
                       this, u"入力した「%1」を、「%2」に置き換えますか。"_s.arg(
                                 nameOr(panel().consignee(), u"お届け先"_s), earlier.consignee.name1)))
        return;
    const bool wasChanged = panel().isChanged();
    panel().fillFrom(earlier);
    if (!wasChanged || isTyped) // what was only fetched is nothing to be asked about
        panel().markUnchanged();
    panel().focusSlip();
}

void frmKuroneko2::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && m_ui->gridSent->hasFocus() && !m_ui->gridSent->currentLink().isNull())
        sendAgain();
    else
        SlipEntryScreen::keyPressEvent(event);
}

void frmKuroneko2::goOn()
{
    if (panel().consignee() != Party())
        panel().focusSlip();
    else if (m_sent.empty())
        panel().focusConsignee();
    else
        m_ui->gridSent->setFocus();
}

void frmKuroneko2::nextBegins()
{
    listSent();
    if (panel().sender() == Party())
        clearSearch();
    else
        goOn();
}

void frmKuroneko2::typeInstead() { panel().focusSender(); }

} // namespace shipping
