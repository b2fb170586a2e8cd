#include "shipping/history/frmKuroneko4.h"

#include "masters/name_lists.h"
#include "shipping/history/kept_on_slips.h"
#include "shipping/history/shipment_merge.h"
#include "shipping/slips/kept_window.h"
#include "shipping/slips/label_place_box.h"
#include "shipping/slips/shipment_store.h"
#include "ui/prompts.h"
#include "ui/width_check.h"
#include "ui_frmKuroneko4.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const workspace::SettingKey &stateKey = workspace::keys::kuroWindowState[3];
const KeptKeys kept{workspace::keys::inv4Code, workspace::keys::inv4Memo};

constexpr qsizetype mostSentences = 12; // more make the box too high for the screen

base::Status stay() { return base::Error{.text = {}, .cancelled = true}; }

} // namespace

frmKuroneko4::frmKuroneko4(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmKuroneko4>())
    , m_rows(workspace.connection)
    , m_printer(workspace)
{
    m_ui->setupUi(this);
    tell(m_ui->panel->bind(workspace));
    m_rows.setLeaving([this] { return leave(); });
    tell(m_ui->list->bind(workspace, m_rows, [this](const QString &reason) { tell(base::Error{reason}); }));
    m_place = new LabelPlaceBox(workspace, this);
    m_place->setForm({});
    m_ui->list->putBesideList(m_place);
    connectControls();
    restoreWindow(*this, workspace.settings, stateKey);
    setUp();
    showRow();
}

frmKuroneko4::~frmKuroneko4() = default;

void frmKuroneko4::connectControls()
{
    connect(m_ui->Command3, &QPushButton::clicked, this, &frmKuroneko4::save);
    connect(m_ui->cmdUndo, &QPushButton::clicked, this, &frmKuroneko4::takeBack);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &frmKuroneko4::remove);
    connect(m_ui->Command2, &QPushButton::clicked, this, &frmKuroneko4::print);
    connect(m_ui->cmdPreview, &QPushButton::clicked, this, &frmKuroneko4::showPreview);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmKuroneko4::reject);
    connect(m_ui->list, &HistoryListPanel::searchWanted, this, [this] {
        if (mayLeave())
            m_ui->list->search();
    });
    connect(m_ui->list, &HistoryListPanel::allWanted, this, [this] {
        if (mayLeave())
            m_ui->list->showAll();
    });
    connect(m_ui->panel, &ShipmentPanel::formChanged, m_place, &LabelPlaceBox::setForm);
    connect(&m_rows, &db::Recordset::currentRowChanged, this, &frmKuroneko4::showRow);
}

void frmKuroneko4::becameActive()
{
    if (!std::exchange(m_hasBegun, true))
        m_ui->list->showAll();
}

void frmKuroneko4::showOnly(const HistoryQuery &query, const QString &whose)
{
    m_hasBegun = true;
    m_ui->list->showOnly(query, whose);
}

void frmKuroneko4::say(const QString &text) { m_ui->lblMessage->setText(text); }

// --- The shipment that is shown ---

void frmKuroneko4::showRow()
{
    m_stored.reset();
    m_isOld = false;
    m_ui->panel->clear();
    say({});
    if (m_rows.currentRow() >= 0) {
        const auto stored = readShipment(workspace().connection, m_rows.currentKey());
        if (stored)
            showStored(*stored);
        else
            say(stored.error().text);
    }
    showStates();
}

void frmKuroneko4::showStored(const Shipment &stored)
{
    m_stored = stored;
    m_ui->panel->setShipment(stored);
    m_isOld = showKeptOnOldSlip(*m_ui->panel, stored, kept);
}

void frmKuroneko4::showStates()
{
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_ui->panel, m_ui->Command3, m_ui->cmdUndo, m_ui->cmdDelete, m_ui->Command2, m_ui->cmdPreview})
        control->setEnabled(m_stored.has_value());
}

std::optional<Shipment> frmKuroneko4::typed()
{
    m_ui->panel->settle();
    if (!ui::WidthCheck::allFit(this))
        return std::nullopt;
    const auto typed = m_ui->panel->shipment();
    if (tell(typed.status()))
        return *typed;
    m_ui->panel->focusFault();
    return std::nullopt;
}

// --- Storing ---

// A category that a slip of the finger made would hide the shipment from every search for it.
bool frmKuroneko4::mayBear(const Shipment &shipment)
{
    if (shipment.category.isEmpty() || shipment.category == m_stored->category)
        return true;
    const auto known = masters::shippingCategoryNames(workspace().connection);
    if (!tell(known.status()))
        return false;
    if (known->contains(shipment.category) ||
        ui::prompts::askCautiously(this, u"発送区分「%1」は登録されていません。このまま保存しますか。"_s.arg(
                                             shipment.category.left(40))))
        return true;
    m_ui->panel->focusCategory();
    return false;
}

// \return what to store then; nothing when the clerk took the other version, or goes on typing
std::optional<Shipment> frmKuroneko4::settleBesideOthers(const Shipment &mine)
{
    const auto theirs = readShipment(workspace().connection, mine.id);
    if (!tell(theirs.status()))
        return std::nullopt;
    MergedShipment merged = mergeShipments(*m_stored, mine, *theirs);
    if (merged.sentences.isEmpty())
        merged.sentences << u"表示されている項目は、どちらも同じです。"_s;
    if (merged.sentences.size() > mostSentences)
        merged.sentences = merged.sentences.first(mostSentences)
                           << u"ほか %1 項目"_s.arg(merged.sentences.size() - mostSentences);
    const QString text =
        u"表示中のデータは、編集している間にほかのプログラムで変更されました。どちらを残しますか。\n\n"_s +
        merged.sentences.join(u'\n');
    const ui::prompts::Version version = ui::prompts::askWhichVersion(this, text);
    if (version == ui::prompts::Version::Theirs)
        showStored(*theirs);
    if (version != ui::prompts::Version::Mine)
        return std::nullopt;
    m_stored = *theirs;
    return merged.mine;
}

bool frmKuroneko4::store(Shipment shipment, const Storing &storing)
{
    for (;;) {
        const auto stored = storing(shipment);
        if (stored) {
            if (m_isOld)
                m_ui->panel->writeKept(kept);
            m_rows.refresh();
            showStored(*stored);
            return true;
        }
        if (!stored.error().changed) {
            tell(stored.status());
            return false;
        }
        const auto mine = settleBesideOthers(shipment);
        if (!mine)
            return false;
        shipment = *mine;
    }
}

bool frmKuroneko4::save()
{
    say({});
    const auto shipment = m_stored ? typed() : std::nullopt;
    if (!shipment || !mayBear(*shipment))
        return false;
    const bool isStored = store(*shipment, [this](const Shipment &each) -> base::Result<Shipment> {
        const base::Status changed = changeShipment(workspace().connection, each);
        return changed ? readShipment(workspace().connection, each.id) : changed.error();
    });
    if (isStored)
        say(u"更新しました：%1"_s.arg(inWords(*m_stored)));
    return isStored;
}

void frmKuroneko4::print()
{
    say({});
    const auto shipment = m_stored ? typed() : std::nullopt;
    if (!shipment || !tell(checkPrintable(workspace().connection, *shipment)) ||
        !m_printer.prepare(this, {*shipment}))
        return;
    const bool isOut =
        store(*shipment, [this](const Shipment &each) { return m_printer.issue(each, Record::Update); });
    m_place->reload();
    if (isOut)
        say(u"送り状を再発行しました：%1"_s.arg(inWords(*m_stored)));
}

void frmKuroneko4::showPreview()
{
    if (const auto shipment = m_stored ? typed() : std::nullopt)
        m_printer.preview(this, *shipment);
}

// --- Leaving ---

base::Status frmKuroneko4::leave()
{
    if (!m_stored || !m_ui->panel->isChanged())
        return {};
    switch (ui::prompts::askToSave(this, u"入力した訂正を保存しますか。\n%1"_s.arg(inWords(*m_stored)))) {
    case ui::prompts::Choice::Save:
        return save() ? base::Status() : stay();
    case ui::prompts::Choice::Discard:
        takeBack();
        return {};
    case ui::prompts::Choice::Cancel:
        break;
    }
    return stay();
}

bool frmKuroneko4::mayLeave() { return tell(leave()); }

void frmKuroneko4::takeBack()
{
    if (m_stored)
        showStored(*m_stored);
    say({});
}

void frmKuroneko4::remove()
{
    if (!m_stored)
        return;
    const QString number = m_stored->trackingNumber.isEmpty()
                               ? QString()
                               : u"\n送り状番号：%1"_s.arg(m_stored->trackingNumber.left(40));
    if (!ui::prompts::askCautiously(this, u"この発送を履歴から削除します。よろしいですか。"_s,
                                    inWords(*m_stored) + number))
        return;
    const Shipment gone = *m_stored;
    if (const base::Status unchanged = removeShipment(workspace().connection, gone); !tell(unchanged)) {
        m_rows.refresh();
        return;
    }
    m_ui->panel->markUnchanged(); // what was typed into it goes with it
    m_ui->list->searchAgain();
    say(u"削除しました：%1"_s.arg(inWords(gone)));
    m_ui->list->focusList();
}

bool frmKuroneko4::mayClose()
{
    if (!mayLeave())
        return false;
    keepWindow(*this, workspace().settings, stateKey);
    return true;
}

} // namespace shipping
