#include "shipping/slips/slip_entry_screen.h"

#include "book/counterpart_search.h"
#include "registers/frmNouhin.h"
#include "registers/last_counterparts.h"
#include "shipping/slips/kept_window.h"
#include "shipping/slips/label_place_box.h"
#include "shipping/slips/shipment_entry.h"
#include "shipping/slips/shipment_store.h"
#include "shipping/slips/slip_document.h"
#include "ui/grid.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/width_check.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>

#include <utility>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const QList<ui::GridColumn> foundColumns = {
    {u"納品先ID"_s, 7, u"ID"_s},       {u"納品先名1"_s, 26, u"名前１"_s},
    {u"納品先名2"_s, 16, u"名前２"_s}, {u"郵便番号"_s, 10},
    {u"住所1"_s, 36, u"住所１"_s},     {u"住所2"_s, 24, u"住所２"_s},
    {u"TEL1"_s, 15, u"電話番号"_s},    {u"納品先ID"_s, 7, u"ID"_s},
};

QString nameOf(const Party &party) { return (party.name1 + u' ' + party.name2).trimmed(); }

} // namespace

SlipEntryScreen::SlipEntryScreen(workspace::Workspace &workspace, QWidget *parent, const SlipEntryKind &kind)
    : Screen(workspace, parent)
    , m_kind(kind)
    , m_found(workspace.connection)
    , m_printer(workspace, kind.sending)
{}

void SlipEntryScreen::setUpEntry(const SlipEntryControls &controls)
{
    m_controls = controls;
    m_controls.found->setColumns(foundColumns);
    tell(book::openCounterpart(m_found, book::customerSearch, 0));
    m_controls.found->bind(m_found, [this](const QString &refusal) { ui::prompts::inform(this, refusal); });
    tell(panel().bind(workspace()));
    panel().tellNotice(workspace().panel.*m_kind.notice);
    panel().readKept(m_kind.kept);
    connect(&m_found, &db::Recordset::currentRowChanged, this, &SlipEntryScreen::showFound);
    connect(m_controls.found, &QTableView::clicked, this, [this] {
        if (m_isUnchosen)
            showFound();
    });
    showPlaces();
    const std::pair<QPushButton *, void (SlipEntryScreen::*)()> actions[] = {
        {m_controls.search, &SlipEntryScreen::search},
        {m_controls.registerConsignee, &SlipEntryScreen::registerConsignee},
        {m_controls.preview, &SlipEntryScreen::showPreview},
        {m_controls.clear, &SlipEntryScreen::giveUp},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_controls.print, &QPushButton::clicked, this, &SlipEntryScreen::print);
    restoreWindow(*this, workspace().settings, m_kind.windowState);
    setUp();
    m_controls.key->setFocus();
}

void SlipEntryScreen::showPlaces()
{
    m_place = new LabelPlaceBox(workspace(), this);
    m_controls.head->addWidget(m_place);
    m_place->setForm(panel().form());
    connect(&panel(), &ShipmentPanel::formChanged, m_place, &LabelPlaceBox::setForm);
}

void SlipEntryScreen::setPrinterSettings(std::function<void(QWidget *)> open)
{
    panel().setPrinterSettings([this, open = std::move(open)](QWidget *over) {
        open(over);
        m_printerMayBeOther = true;
    });
}

void SlipEntryScreen::becameActive() { panel().followToday(); }

void SlipEntryScreen::say(const QString &text) { m_controls.message->setText(text); }

void SlipEntryScreen::begin(const Shipment &shipment)
{
    m_keepsRemarks = false;
    panel().setShipment(shipment);
}

// --- The search ---

void SlipEntryScreen::search()
{
    panel().followToday();
    if (m_controls.key->text().trimmed().isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_controls.key->setFocus();
        return;
    }
    if (!mayWriteOver(u"検索した納品先"_s))
        return;
    say({});
    const QScopedValueRollback asked(m_isSearching, true);
    if (!tell(book::searchCounterparts(m_found, book::customerSearch, m_controls.key->text())))
        return;
    if (m_found.count() == 1) { // needs no choosing
        take(partyOf(m_found), m_found.currentKey());
        goOn();
    } else if (!m_found.isEmpty()) {
        letChoose();
    } else if (ui::prompts::ask(this, QString::fromUtf16(m_kind.nothingFound))) {
        typeInstead();
    } else {
        m_controls.key->setFocus();
        m_controls.key->selectAll();
    }
}

// Of several nobody is taken, lest a slip goes to the first of them unseen; nor to the one before.
void SlipEntryScreen::letChoose()
{
    take({}, 0);
    m_isUnchosen = true;
    const QString count = QString::number(m_found.count()) + (m_found.isComplete() ? u" 件"_s : u" 件以上"_s);
    say(count + u"見つかりました。一覧から選んで Enter を押してください。"_s);
    m_controls.found->setFocus();
}

void SlipEntryScreen::showFound()
{
    if (m_isSearching || m_found.currentRow() < 0)
        return;
    m_isUnchosen = false;
    if (mayWriteOver(nameOf(partyOf(m_found))))
        take(partyOf(m_found), m_found.currentKey());
}

void SlipEntryScreen::goOn() { panel().focusSlip(); }

void SlipEntryScreen::take(const Party &customer, qint64 id)
{
    m_isUnchosen = false;
    const bool wasChanged = panel().isChanged();
    if (id > 0)
        registers::rememberCounterpart(workspace(), book::Party::Customer, id);
    fillIn(customer, id);
    if (!wasChanged) // what was only looked up is nothing to be asked about
        panel().markUnchanged();
}

bool SlipEntryScreen::mayWriteOver(const QString &by)
{
    const QString typed = typedParty();
    if (typed.isEmpty() ||
        ui::prompts::askCautiously(this, u"入力した「%1」を、「%2」に置き換えますか。"_s.arg(typed, by)))
        return true;
    focusNextPrevChild(true); // out of the list, in which the next row would be asked about too
    return false;
}

void SlipEntryScreen::clearSearch()
{
    m_isUnchosen = false;
    tell(book::openCounterpart(m_found, book::customerSearch, 0));
    m_controls.key->clear();
    m_controls.key->setFocus();
}

// Enter takes the customer at whom the list stands.
void SlipEntryScreen::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || focusWidget() != m_controls.found || m_found.currentRow() < 0) {
        Screen::keyPressEvent(event);
        return;
    }
    if (m_isUnchosen) {
        showFound();
        say({});
    }
    goOn();
}

// --- A new customer ---

void SlipEntryScreen::registerConsignee()
{
    panel().settle();
    const Party consignee = panel().consignee();
    if (const qint64 known = panel().consigneeId(); known > 0) {
        ui::prompts::inform(this, u"このお届け先は、すでに登録されています（納品先 ID %1）。"_s.arg(known));
        return;
    }
    if (consignee.name1.isEmpty()) {
        ui::prompts::inform(this, u"お届け先の名前が入力されていません。"_s);
        panel().focusConsignee();
        return;
    }
    if (!ui::WidthCheck::allFit(this))
        return;
    registers::frmNouhin editor(workspace(), this);
    editor.startNewWith({{u"納品先名1"_s, consignee.name1},
                         {u"納品先名2"_s, consignee.name2},
                         {u"郵便番号"_s, consignee.zip},
                         {u"住所1"_s, consignee.address1},
                         {u"住所2"_s, consignee.address2},
                         {u"TEL1"_s, consignee.tel}});
    editor.exec();
    if (const auto saved = editor.savedCustomer())
        takeRegistered(*saved);
}

// As the register holds him now.
void SlipEntryScreen::takeRegistered(qint64 customer)
{
    db::Recordset registered(workspace().connection);
    if (!tell(book::openCounterpart(registered, book::customerSearch, customer)) || registered.isEmpty())
        return;
    panel().setConsignee(partyOf(registered), customer);
    say(u"お届け先を登録しました（納品先 ID %1）。"_s.arg(customer));
    panel().focusSlip();
}

// --- Printing ---

// The two that keep any slip from being printed come first.
bool SlipEntryScreen::isPrintable()
{
    Shipment typed;
    typed.category = panel().category();
    typed.consignee = panel().consignee();
    const base::Status printable = checkPrintable(workspace().connection, typed);
    if (printable)
        return true;
    const bool lacksZip = typed.consignee.zip.isEmpty();
    const QString remark =
        panel().categoryCount() == 0
            ? u"発送区分が一つも登録されていません。「新規登録」「発送区分登録」で登録してください。"_s
            : QString();
    ui::prompts::inform(this, printable.error().text, QString::fromUtf16(ui::prompts::information),
                        ui::prompts::Icon::Information, remark);
    if (lacksZip && remark.isEmpty() && printable.error().text.startsWith(u"郵便番号"_s))
        panel().focusConsigneeZip();
    else
        panel().focusCategory();
    return false;
}

std::optional<Shipment> SlipEntryScreen::checked()
{
    panel().settle();
    if (!isPrintable() || !ui::WidthCheck::allFit(this))
        return std::nullopt;
    const auto typed = panel().shipment();
    if (!tell(typed.status())) {
        panel().focusFault();
        return std::nullopt;
    }
    QStringList doubts = doubtsOf(*typed, workspace().today());
    const auto known = doubtsOf(*typed, workspace().connection);
    if (!tell(known.status()))
        return std::nullopt;
    doubts += *known + foreignRemarks(*typed);
    if (!doubts.isEmpty() &&
        !ui::prompts::askCautiously(this, doubts.join(u'\n') + u"\nこのまま印刷しますか。"_s))
        return std::nullopt;
    return *typed;
}

// What stands on a gift is its sender's; in other parcels the next consignee may know nothing of it.
QStringList SlipEntryScreen::foreignRemarks(const Shipment &slip) const
{
    if (m_kind.sending != Sending::MailOrder && nameKey(slip.sender) == m_lastSender)
        return {};
    QStringList doubts;
    const QStringList remarks = panel().remainingRemarks();
    for (const QString &remark : remarks) {
        if (!m_usualRemarks.contains(remark))
            doubts << u"%1 は、前の送り状のまま残っています。"_s.arg(remark);
    }
    return doubts;
}

// The remarks of a sale went out with it, the usual ones come back.
void SlipEntryScreen::beginNext()
{
    panel().beginNext();
    if (!std::exchange(m_keepsRemarks, true)) {
        panel().writeKeptCodes(m_kind.kept);
        panel().readKept(m_kind.kept);
    }
    nextBegins();
}

// A second press while the printer is asked for is the same one.
bool SlipEntryScreen::print()
{
    if (m_isPrinting)
        return false;
    const QScopedValueRollback guard(m_isPrinting, true);
    say({});
    const auto slip = checked();
    if (!slip || !m_printer.prepare(this, {*slip}, m_printerMayBeOther))
        return false;
    m_printerMayBeOther = false;
    const auto printed = m_printer.issue(*slip, Record::Add);
    if (!tell(printed.status()))
        return false;
    const QStringList byHand = wishesNotPrinted(workspace(), *printed);
    say(u"送り状を印刷し、履歴に記録しました（発送ID %1　%2）。"_s.arg(QString::number(printed->id),
                                                                       nameOf(printed->consignee)) +
        (byHand.isEmpty() ? QString() : u"%1は書き込んでください。"_s.arg(byHand.join(u'・'))));
    m_place->reload();
    m_usualRemarks += panel().remainingRemarks();
    m_lastSender = nameKey(printed->sender);
    beginNext();
    return true;
}

void SlipEntryScreen::showPreview()
{
    panel().settle();
    const auto typed = panel().shipment();
    if (tell(typed.status()))
        m_printer.preview(this, *typed);
    else
        panel().focusFault();
}

void SlipEntryScreen::giveUp()
{
    if (panel().isChanged(m_keepsRemarks) &&
        !ui::prompts::askCautiously(this,
                                    u"入力した送り状は、まだ印刷されていません。お届け先を消しますか。"_s))
        return;
    say({});
    beginNext();
}

// --- Closing ---

bool SlipEntryScreen::mayClose()
{
    if (panel().isChanged(m_keepsRemarks)) {
        switch (ui::prompts::askHowToLeave(this,
                                           u"入力した送り状は、まだ印刷されていません。画面を閉じますか。"_s,
                                           {u"印刷して閉じる(&P)"_s, u"印刷せずに閉じる(&D)"_s, true})) {
        case ui::prompts::Choice::Save:
            if (!print())
                return false;
            break;
        case ui::prompts::Choice::Discard:
            break;
        case ui::prompts::Choice::Cancel:
            return false;
        }
    }
    store();
    return true;
}

void SlipEntryScreen::store()
{
    if (m_keepsRemarks)
        panel().writeKept(m_kind.kept);
    else
        panel().writeKeptCodes(m_kind.kept);
    keepWindow(*this, workspace().settings, m_kind.windowState);
}

} // namespace shipping
