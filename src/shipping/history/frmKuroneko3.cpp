#include "shipping/history/frmKuroneko3.h"

#include "printing/frmPreview.h"
#include "printing/list_sheet.h"
#include "shipping/history/history_list.h"
#include "shipping/history/kept_on_slips.h"
#include "shipping/history/tracking_links.h"
#include "shipping/slips/kept_window.h"
#include "shipping/slips/label_place_box.h"
#include "shipping/slips/shipment_store.h"
#include "shipping/slips/slip_run.h"
#include "shipping/slips/tracking_number.h"
#include "text/dates.h"
#include "ui/both_versions.h"
#include "ui/desktop.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui/table_export.h"
#include "ui_frmKuroneko3.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QShortcut>

#include <utility>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const QString numberColumn = u"送り状番号"_s;
const workspace::SettingKey &stateKey = workspace::keys::kuroWindowState[2];
const KeptKeys kept{workspace::keys::inv3Code, workspace::keys::inv3Memo};

} // namespace

frmKuroneko3::frmKuroneko3(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmKuroneko3>())
    , m_rows(workspace.connection)
    , m_number(m_rows, this)
    , m_printer(workspace)
{
    m_ui->setupUi(this);
    tell(m_ui->panel->bind(workspace));
    m_ui->panel->setReadOnly(ShipmentPanel::Typing::CodesAndRemarks);
    m_rows.setSaver([this] { return storeNumber(); });
    tell(m_ui->list->bind(workspace, m_rows, [this](const QString &reason) { tell(base::Error{reason}); }));
    m_number.bind(m_ui->txtNumber, numberColumn);
    m_place = new LabelPlaceBox(workspace, this);
    m_ui->list->putBesideList(m_place);
    connectControls();
    setCarrierOpeners({});
    restoreWindow(*this, workspace.settings, stateKey);
    setUp();
    showShipment();
}

frmKuroneko3::~frmKuroneko3() = default;

void frmKuroneko3::setCarrierOpeners(const CarrierOpeners &openers)
{
    m_openers = openers;
    m_ui->cmdCarrier->setVisible(bool(openers.exportRows));
    m_ui->cmdImport->setVisible(bool(openers.importNumbers));
}

void frmKuroneko3::connectControls()
{
    const auto press = [this](QPushButton *button, void (frmKuroneko3::*action)()) {
        connect(button, &QPushButton::clicked, this, action);
    };
    press(m_ui->cmdSaveNumber, &frmKuroneko3::saveAndGoOn);
    press(m_ui->cmdCopyNumber, &frmKuroneko3::copyNumber);
    press(m_ui->cmdTrack, &frmKuroneko3::track);
    press(m_ui->cmdImport, &frmKuroneko3::openNumberImport);
    press(m_ui->cmdCarrier, &frmKuroneko3::openCarrierExport);
    press(m_ui->Command2, &frmKuroneko3::print);
    press(m_ui->cmdPreview, &frmKuroneko3::showPreview);
    press(m_ui->cmdList, &frmKuroneko3::printList);
    press(m_ui->cmdExport, &frmKuroneko3::exportList);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmKuroneko3::reject);
    connect(m_ui->list, &HistoryListPanel::searchWanted, this, [this] {
        if (mayLeave())
            m_ui->list->search();
    });
    connect(m_ui->list, &HistoryListPanel::allWanted, this, [this] {
        if (mayLeave())
            m_ui->list->showAll();
    });
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), this), &QShortcut::activated, this,
            &frmKuroneko3::copyNumber);
    connect(&m_rows, &db::Recordset::currentRowChanged, this, &frmKuroneko3::showShipment);
}

void frmKuroneko3::becameActive()
{
    if (!std::exchange(m_hasBegun, true))
        m_ui->list->showAll();
}

void frmKuroneko3::showOnly(const HistoryQuery &query, const QString &whose)
{
    m_hasBegun = true;
    m_ui->list->showOnly(query, whose);
}

void frmKuroneko3::goTo(qint64 id) { tell(m_rows.moveToKey(id)); }

void frmKuroneko3::say(const QString &text) { m_ui->lblMessage->setText(text); }

// --- The shipment that is shown ---

void frmKuroneko3::showShipment()
{
    m_number.show();
    showStates();
    m_ui->panel->clear();
    m_place->setForm({});
    m_isOld = false;
    if (m_rows.currentRow() < 0)
        return;
    const auto shipment = readShipment(workspace().connection, m_rows.currentKey());
    if (!shipment) {
        say(shipment.error().text);
        return;
    }
    m_ui->panel->setShipment(*shipment);
    m_place->setForm(shipment->method);
    m_isOld = showKeptOnOldSlip(*m_ui->panel, *shipment, kept);
    say(m_isOld ? u"この発送の行にはコードと備考がないため、前に使ったものを表示しています。"_s : QString());
}

void frmKuroneko3::showStates()
{
    const bool any = m_rows.currentRow() >= 0;
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_ui->txtNumber, m_ui->cmdSaveNumber, m_ui->cmdCopyNumber, m_ui->cmdTrack, m_ui->cmdCarrier,
             m_ui->Command2, m_ui->cmdPreview, m_ui->cmdList, m_ui->cmdExport, m_ui->panel})
        control->setEnabled(any);
}

// --- Its carrier's number ---

base::Result<QStringList> frmKuroneko3::doubtsOfNumber(const QString &number) const
{
    QStringList doubts;
    const auto before = readShipment(workspace().connection, m_rows.currentKey());
    if (before && !before->trackingNumber.isEmpty() && before->trackingNumber != number)
        doubts << u"この発送には、送り状番号「%1」が入っています。"_s.arg(before->trackingNumber.left(40));
    if (number.isEmpty())
        return doubts;
    if (const QString doubt = trackingDoubt(number); !doubt.isEmpty())
        doubts << doubt;
    const auto other = otherOfNumber(workspace().connection, number, m_rows.currentKey());
    if (!other)
        return other.error();
    if (*other > 0)
        doubts << u"この番号は、ほかの発送（ID %1）に使われています。"_s.arg(*other);
    return doubts;
}

// The same slip read twice, or the reader one row further on than the eye, must not go by unseen.
base::Status frmKuroneko3::storeNumber()
{
    if (!m_rows.isDirty())
        return {};
    const QString number = storedTracking(m_rows.text(numberColumn));
    m_rows.setValue(numberColumn, number);
    const auto doubts = doubtsOfNumber(number);
    if (!doubts)
        return doubts.error();
    if (!doubts->isEmpty()) {
        const auto choice = ui::prompts::askHowToLeave(
            this, u"送り状番号「%1」を保存しますか。"_s.arg(number.left(40)),
            {u"保存する(&S)"_s, u"元の番号に戻す(&D)"_s, true}, doubts->join(u'\n'));
        if (choice == ui::prompts::Choice::Cancel)
            return base::Error{.text = {}, .cancelled = true};
        if (choice == ui::prompts::Choice::Discard) {
            m_rows.revert();
            m_number.show();
            return {};
        }
    }
    return ui::saveBesideOthers(this, {&m_rows}, [this] { return m_rows.update(); });
}

bool frmKuroneko3::mayLeave()
{
    const bool isStored = tell(storeNumber());
    if (!isStored)
        m_ui->txtNumber->setFocus();
    return isStored;
}

void frmKuroneko3::saveAndGoOn()
{
    const int row = m_rows.currentRow();
    if (!mayLeave())
        return;
    m_rows.reach(row + 1);
    if (row + 1 < m_rows.count())
        tell(m_rows.moveTo(row + 1));
    else
        showShipment();
    say(row + 1 < m_rows.count() ? QString() : u"保存しました。一覧の最後の発送です。"_s);
    m_ui->txtNumber->setFocus();
    m_ui->txtNumber->selectAll();
}

void frmKuroneko3::copyNumber()
{
    const QString number = storedTracking(m_rows.text(numberColumn));
    if (number.isEmpty()) {
        say(u"送り状番号が入力されていません。"_s);
        return;
    }
    QGuiApplication::clipboard()->setText(number);
    say(u"送り状番号 %1 をコピーしました。"_s.arg(number.left(40)));
}

void frmKuroneko3::track()
{
    const QString number = m_rows.text(numberColumn);
    if (storedTracking(number).isEmpty()) {
        ui::prompts::inform(this, u"送り状番号が入力されていません。"_s);
        m_ui->txtNumber->setFocus();
        return;
    }
    auto carrier = carrierOf(m_rows.text(u"発送方法"_s));
    if (!carrier) {
        QStringList names;
        for (const Carrier each : carriers)
            names << nameOf(each);
        const auto way = ui::prompts::askWhichWay(this, u"どの運送会社の荷物ですか。"_s, names);
        if (!way)
            return;
        carrier = carriers[*way];
    }
    const auto page = trackingPage(*carrier, number);
    if (!page)
        ui::prompts::inform(this, u"「%1」は運送会社の番号として読み取れません。"_s.arg(number.left(40)));
    else if (!ui::desktop::open(*page))
        ui::prompts::inform(this, u"ホームページを開くプログラムが見つかりません。\n"_s + page->toString());
}

// --- Its slip once more ---

std::optional<Shipment> frmKuroneko3::shown()
{
    m_ui->panel->settle();
    const auto typed = m_ui->panel->shipment();
    if (tell(typed.status()))
        return *typed;
    m_ui->panel->focusFault();
    return std::nullopt;
}

void frmKuroneko3::print()
{
    say({});
    if (!mayLeave() || m_rows.currentRow() < 0)
        return;
    const std::vector<qint64> keys = m_ui->list->selectedKeys();
    if (keys.size() > 1)
        printMany(keys);
    else
        printOne();
}

void frmKuroneko3::printOne()
{
    const auto shipment = shown();
    if (!shipment || !tell(checkPrintable(workspace().connection, *shipment)) ||
        !m_printer.prepare(this, {*shipment}))
        return;
    if (!tell(m_printer.issue(*shipment, Record::None).status()))
        return;
    m_place->reload();
    if (m_isOld)
        m_ui->panel->writeKept(kept);
    say(u"送り状を印刷しました：%1"_s.arg(inWords(*shipment)));
}

// All or none can be printed as they stand: a slip that is left out would be missed.
void frmKuroneko3::printMany(const std::vector<qint64> &keys)
{
    const auto shipments = readShipments(workspace().connection, keys);
    if (!tell(shipments.status()))
        return;
    for (const Shipment &each : *shipments) {
        if (const base::Status printable = checkPrintable(workspace().connection, each); !printable) {
            ui::prompts::inform(this, printable.error().text, QString::fromUtf16(ui::prompts::information),
                                ui::prompts::Icon::Information,
                                inWords(each) + u"\n何も印刷していません。"_s);
            return;
        }
    }
    if (!ui::prompts::ask(this,
                          u"選択した %1 件の送り状を印刷します。よろしいですか。"_s.arg(shipments->size())) ||
        !m_printer.prepare(this, *shipments))
        return;
    SlipRunOutcome outcome;
    ui::watched(this, u"送り状を印刷しています。"_s, [&](const base::Progress &progress) {
        outcome = issueAll(m_printer, *shipments, Record::None, progress);
    });
    m_place->reload();
    const QString done =
        u"%1 件のうち %2 件を印刷しました。"_s.arg(shipments->size()).arg(outcome.issued.size());
    if (outcome.failure)
        ui::prompts::inform(this, outcome.failure->text, QString::fromUtf16(ui::prompts::information),
                            ui::prompts::Icon::Exclamation, done);
    say(done);
}

void frmKuroneko3::showPreview()
{
    if (const auto shipment = shown())
        m_printer.preview(this, *shipment);
}

// --- The list ---

void frmKuroneko3::printList()
{
    const auto keys = mayLeave() ? m_ui->list->chosenKeys() : base::Error{};
    if (!tell(keys.status()))
        return;
    const auto report =
        ui::runWithProgress(this, u"一覧を作成しています。"_s, [&](const base::Progress &progress) {
            return historyReport(workspace().connection, *keys, m_ui->list->inWords(), progress);
        });
    if (!report) {
        if (!report.error().cancelled)
            tell(report.status());
        return;
    }
    printing::Document document;
    document.title = report->documentName;
    document.purpose = printing::Purpose::Rosters;
    document.sheets =
        printing::listSheets(*report, text::formatDate(workspace().today()), printing::paperFor(*report));
    printing::showPreview(workspace(), this, std::move(document));
}

void frmKuroneko3::exportList()
{
    const auto keys = mayLeave() ? m_ui->list->chosenKeys() : base::Error{};
    if (!tell(keys.status()))
        return;
    ui::exportTable(this, {[&keys](const QString &name) { return checkHistoryExport(keys->size(), name); },
                           [&](const QString &name, const base::Progress &progress) {
                               return exportHistory(workspace().connection, *keys, name, progress);
                           },
                           u"発送履歴"_s});
}

void frmKuroneko3::openCarrierExport()
{
    const auto keys = mayLeave() ? m_ui->list->chosenKeys() : base::Error{};
    if (!tell(keys.status()))
        return;
    m_openers.exportRows(this, *keys);
    m_ui->list->searchAgain();
}

void frmKuroneko3::openNumberImport()
{
    if (!mayLeave())
        return;
    m_openers.importNumbers(this);
    m_ui->list->searchAgain();
}

bool frmKuroneko3::mayClose()
{
    if (!mayLeave())
        return false;
    keepWindow(*this, workspace().settings, stateKey);
    return true;
}

} // namespace shipping
