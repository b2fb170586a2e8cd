#include "shipping/gifts/frmKuroneko5.h"

#include "masters/name_lists.h"
#include "registers/duplicates/person_folding.h"
#include "registers/postal/postal_boxes.h"
#include "shipping/gifts/gift_draft.h"
#include "shipping/slips/kept_window.h"
#include "shipping/slips/label_place_box.h"
#include "slips/entry/picker.h"
#include "text/numbers.h"
#include "text/postal_code.h"
#include "ui/cell_delegate.h"
#include "ui/prompts.h"
#include "ui_frmKuroneko5.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QShortcut>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ui::prompts::Choice;
namespace keys = workspace::keys;

namespace shipping
{

namespace
{

constexpr int yearsOffered = 5;

void select(QComboBox &box, const QString &text)
{
    box.setCurrentIndex(box.findText(text));
    if (box.isEditable())
        box.setEditText(text);
}

} // namespace

frmKuroneko5::frmKuroneko5(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmKuroneko5>())
    , m_printer(workspace)
{
    m_ui->setupUi(this);
    setUpBoxes();
    setUpGrid();
    readSettings();
    connectBoxes();
    connectGrid();
    connectActions();
    restoreWindow(*this, workspace.settings, keys::kuroWindowState[4]);
    setUp();
    takeHead();
    openDraft();
    m_ui->cmbSender->setFocus();
}

// Boxes that lose the focus now would go on to lines that are gone.
frmKuroneko5::~frmKuroneko5()
{
    const QScopedValueRollback quiet(m_fills, true);
    hide();
}

void frmKuroneko5::setUpBoxes()
{
    m_ui->cmbTimeSlot->addItem(u"指定なし"_s, QString());
    for (const QString &slot : timeSlots().mid(1))
        m_ui->cmbTimeSlot->addItem(slot, slot);
    m_ui->cmbCooling->addItem(u"なし"_s, QString());
    for (const QString &kind : coolings().mid(1))
        m_ui->cmbCooling->addItem(kind, kind);
    m_ui->Combo5->addItems(shippingForms());
    select(*m_ui->Combo5, shippingForms().contains(workspace().panel.carrier) ? workspace().panel.carrier
                                                                              : shippingForms().front());
    m_places = new LabelPlaceBox(workspace(), this);
    m_ui->layoutForms->addWidget(m_places);
    m_places->setForm(m_ui->Combo5->currentText());
    m_ui->txtDate1->setDate(workspace().today());
    m_ui->txtDate1->markAllBut(workspace().today());
    for (QComboBox *box : {m_ui->cmbSender, m_ui->cmbConsignee}) {
        box->setCompleter(nullptr);
        box->setInsertPolicy(QComboBox::NoInsert);
        box->lineEdit()->setPlaceholderText(u"納品先名キーの一部"_s);
    }
    m_postal = new registers::PostalBoxes(workspace(), {.zip = m_ui->txtZip,
                                                        .address = m_ui->txtAddress1,
                                                        .address2 = m_ui->txtAddress2,
                                                        .remark = m_ui->cmdZipSearch});
    m_postal->fillOnLeavingAddress();
    offerNames();
    offerYears();
}

void frmKuroneko5::offerNames()
{
    const auto categories = masters::shippingCategoryNames(workspace().connection);
    m_ui->dbcKubun->addItems(categories ? *categories : QStringList());
    m_ui->dbcKubun->setCurrentIndex(m_ui->dbcKubun->count() == 1 ? 0 : -1);
    if (const auto products = masters::salesProducts(workspace().connection)) {
        for (const masters::Product &product : *products)
            m_ui->dbcShohin->addItem(product.name);
    }
    m_ui->dbcShohin->setCurrentIndex(-1);
    for (QComboBox *box : {m_ui->dbcKubun, m_ui->dbcShohin})
        new slips::Picker(box);
    if (!categories)
        say(categories.error().text);
}

void frmKuroneko5::offerYears()
{
    const int year = workspace().today().year();
    for (int years = 1; years <= yearsOffered; ++years)
        m_ui->cmbYear->addItem(years == 1 ? u"去年（%1年）"_s.arg(year - 1)
                                          : u"%1年前（%2年）"_s.arg(years).arg(year - years),
                               years);
    presetSeason();
}

void frmKuroneko5::setUpGrid()
{
    m_ui->DataGrid1->setModel(&m_rows);
    for (int column = 0; column < giftColumnCount; ++column)
        m_ui->DataGrid1->setColumnWidth(column, (lookOf(static_cast<GiftColumn>(column)).characters + 2) *
                                                    fontMetrics().horizontalAdvance(u'0'));
    m_ui->DataGrid1->letChooseColumns(int(GiftColumn::Name2));
    m_cells = new ui::CellDelegate(m_ui->DataGrid1);
    m_ui->DataGrid1->installEventFilter(this); // in front of the cells': the blank bar ticks
    m_ui->DataGrid1->setCurrentIndex(m_rows.index(0, int(GiftColumn::Name1)));
}

void frmKuroneko5::connectBoxes()
{
    for (const TermBox &box : termBoxes()) {
        if (box.line)
            connect(box.line, &QLineEdit::editingFinished, this, &frmKuroneko5::takeHead);
        else
            connect(box.choice, &QComboBox::currentTextChanged, this, &frmKuroneko5::takeHead);
    }
    for (QLineEdit *box : {m_ui->txtName1, m_ui->txtName2, m_ui->txtZip, m_ui->txtAddress1, m_ui->txtAddress2,
                           m_ui->txtTel1, m_ui->txtCode1, m_ui->txtCode2})
        connect(box, &QLineEdit::textChanged, this, &frmKuroneko5::takeHead);
    // Where nothing is left of the sender before, the sheet is the next one's without a word.
    connect(m_ui->txtName1, &QLineEdit::editingFinished, this, [this] {
        if (!m_fills && std::ranges::all_of(m_rows.order().rows, &GiftRow::issued))
            takeOver(m_rows.order().sender, m_rows.order().senderId);
    });
    connect(m_ui->txtDate1, &QDateEdit::dateChanged, this, &frmKuroneko5::takeHead);
    for (QComboBox *box : {m_ui->dbcKubun, m_ui->Combo5})
        connect(box, &QComboBox::currentTextChanged, this, &frmKuroneko5::takeHead);
    connect(m_ui->Combo5, &QComboBox::currentTextChanged, m_places, &LabelPlaceBox::setForm);
    connect(m_ui->cmbYear, &QComboBox::currentIndexChanged, this, &frmKuroneko5::presetSeason);
}

void frmKuroneko5::connectGrid()
{
    connect(&m_rows, &GiftOrderModel::changed, this, &frmKuroneko5::showState);
    // The cell that is open closes first.
    connect(
        &m_rows, &GiftOrderModel::refused, this, [this](const QString &why) { tell(base::Error{why}); },
        Qt::QueuedConnection);
    connect(&m_rows, &GiftOrderModel::entered, this, &frmKuroneko5::completeAddress);
    const auto key = [this](const QKeySequence &keys, void (frmKuroneko5::*action)()) {
        connect(new QShortcut(keys, m_ui->DataGrid1, nullptr, nullptr, Qt::WidgetShortcut),
                &QShortcut::activated, this, action);
    };
    key(QKeySequence::Paste, &frmKuroneko5::paste);
    key(QKeySequence::Delete, &frmKuroneko5::removeRows);
    key(QKeySequence::Undo, &frmKuroneko5::takeBack);
    m_drafts.setSingleShot(true);
    m_drafts.setInterval(2s);
    connect(&m_drafts, &QTimer::timeout, this, &frmKuroneko5::keepDraft);
    connect(&m_rows, &GiftOrderModel::changed, &m_drafts, qOverload<>(&QTimer::start));
}

void frmKuroneko5::connectActions()
{
    const std::pair<QPushButton *, void (frmKuroneko5::*)()> actions[] = {
        {m_ui->Command5, &frmKuroneko5::searchSender},
        {m_ui->cmdAddConsignee, &frmKuroneko5::addConsignee},
        {m_ui->cmdLastYear, &frmKuroneko5::loadLastYear},
        {m_ui->cmdDelete, &frmKuroneko5::removeRows},
        {m_ui->cmdUndo, &frmKuroneko5::takeBack},
        {m_ui->cmdCommon, &frmKuroneko5::followCommon},
        {m_ui->cmdSheet, &frmKuroneko5::showSheet},
        {m_ui->cmdPreview, &frmKuroneko5::preview},
        {m_ui->Command2, &frmKuroneko5::issue},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmKuroneko5::reject);
    connect(m_ui->cmdTickAll, &QPushButton::clicked, &m_rows, [this] { m_rows.tickAll(true); });
    connect(m_ui->cmdTickNone, &QPushButton::clicked, &m_rows, [this] { m_rows.tickAll(false); });
}

// The blank bar ticks the lines whichever of their fields the cursor is in.
bool frmKuroneko5::eventFilter(QObject *watched, QEvent *event)
{
    const bool isBlankBar = watched == m_ui->DataGrid1 && event->type() == QEvent::KeyPress &&
                            static_cast<QKeyEvent *>(event)->key() == Qt::Key_Space;
    if (isBlankBar) {
        for (const int row : selectedRows())
            m_rows.toggle(row);
    }
    return isBlankBar || Screen::eventFilter(watched, event);
}

// --- What is the same for all ---

std::vector<frmKuroneko5::TermBox> frmKuroneko5::termBoxes() const
{
    return {{GiftColumn::Delivery, m_ui->txtDate2, nullptr},
            {GiftColumn::TimeSlot, nullptr, m_ui->cmbTimeSlot},
            {GiftColumn::Cooling, nullptr, m_ui->cmbCooling},
            {GiftColumn::Goods, m_ui->dbcShohin->lineEdit(), nullptr},
            {GiftColumn::Price, m_ui->Text1, nullptr},
            {GiftColumn::Carriage, m_ui->Text2, nullptr},
            {GiftColumn::Memo1, m_ui->txtMemo1, nullptr},
            {GiftColumn::Memo2, m_ui->txtMemo2, nullptr}};
}

QString frmKuroneko5::typedIn(const TermBox &box) const
{
    return box.line ? box.line->text() : box.choice->currentData().toString();
}

Party frmKuroneko5::sender() const
{
    return {m_ui->txtName1->text().trimmed(),
            m_ui->txtName2->text().trimmed(),
            text::shownPostalCode(m_ui->txtZip->text().trimmed()),
            m_ui->txtAddress1->text().trimmed(),
            m_ui->txtAddress2->text().trimmed(),
            m_ui->txtTel1->text().trimmed()};
}

// Whose name was typed over is another person; a department more or less is not.
qint64 frmKuroneko5::senderId() const
{
    return registers::foldedPerson(m_ui->txtName1->text()) == registers::foldedPerson(m_found.name1)
               ? m_foundId
               : 0;
}

frmKuroneko5::Head frmKuroneko5::readHead() const
{
    Head head;
    GiftOrder &order = head.order;
    order.sender = sender();
    order.senderId = senderId();
    order.accepted = m_ui->txtDate1->date();
    order.category = m_ui->dbcKubun->currentText().trimmed();
    order.method = m_ui->Combo5->currentText();
    order.customerCode = m_ui->txtCode1->text().trimmed();
    order.officeCode = m_ui->txtCode2->text().trimmed();
    for (const TermBox &box : termBoxes()) {
        const base::Status taken = enterCommon(order.common, box.column, typedIn(box), order.accepted);
        if (taken || head.box)
            continue;
        head.status = taken;
        head.box = box.line ? static_cast<QWidget *>(box.line) : box.choice;
    }
    return head;
}

// What cannot be meant yet is said below, and told when slips are to be printed.
void frmKuroneko5::takeHead()
{
    if (m_fills)
        return;
    const QScopedValueRollback filling(m_fills, true);
    const Head head = readHead();
    m_rows.setHead(head.order);
    for (const TermBox &box : termBoxes()) {
        const QString shown = shownCommon(head.order.common, *termIn(box.column));
        if (box.line && box.line != head.box && !box.line->hasFocus() && !shown.isEmpty() &&
            shown != box.line->text())
            box.line->setText(shown);
    }
    m_ui->lblSender->setText(head.order.senderId > 0 ? u"ID %1"_s.arg(head.order.senderId) : QString());
    say(head.status ? QString() : head.status.error().text);
}

void frmKuroneko5::showSender(const Party &party, qint64 id)
{
    m_found = party;
    m_foundId = id;
    const QScopedValueRollback filling(m_fills, true);
    const std::pair<QLineEdit *, QString> texts[] = {
        {m_ui->txtName1, party.name1},       {m_ui->txtName2, party.name2},       {m_ui->txtZip, party.zip},
        {m_ui->txtAddress1, party.address1}, {m_ui->txtAddress2, party.address2}, {m_ui->txtTel1, party.tel}};
    for (const auto &[box, text] : texts) {
        box->setText(text);
        box->setCursorPosition(0);
    }
    m_postal->forget();
}

void frmKuroneko5::showHead(const GiftOrder &order)
{
    showSender(order.sender, order.senderId);
    const QScopedValueRollback filling(m_fills, true);
    m_ui->txtDate1->setDate(order.accepted.isValid() ? order.accepted : workspace().today());
    select(*m_ui->dbcKubun, order.category);
    if (shippingForms().contains(order.method))
        select(*m_ui->Combo5, order.method);
    m_ui->txtCode1->setText(order.customerCode);
    m_ui->txtCode2->setText(order.officeCode);
    for (const TermBox &box : termBoxes()) {
        const QString shown = shownCommon(order.common, *termIn(box.column));
        if (box.line)
            box.line->setText(shown);
        else
            box.choice->setCurrentIndex(std::max(0, box.choice->findData(shown)));
    }
    m_places->setForm(m_ui->Combo5->currentText());
}

void frmKuroneko5::readSettings()
{
    const workspace::Settings &settings = workspace().settings;
    m_ui->txtCode1->setText(settings.text(keys::inv2Code[0]));
    m_ui->txtCode2->setText(settings.text(keys::inv2Code[1]));
    m_ui->txtMemo1->setText(settings.text(keys::inv2Memo[0]));
    m_ui->txtMemo2->setText(settings.text(keys::inv2Memo[1]));
}

void frmKuroneko5::writeSettings()
{
    workspace::Settings &settings = workspace().settings;
    settings.write(keys::inv2Code[0], m_ui->txtCode1->text());
    settings.write(keys::inv2Code[1], m_ui->txtCode2->text());
    settings.write(keys::inv2Memo[0], m_ui->txtMemo1->text());
    settings.write(keys::inv2Memo[1], m_ui->txtMemo2->text());
    keepWindow(*this, settings, keys::kuroWindowState[4]);
}

void frmKuroneko5::showState()
{
    const GiftSums sums = sumsOf(m_rows.order());
    const auto issued = std::ranges::count_if(m_rows.order().rows, &GiftRow::issued);
    m_ui->lblCount->setText(u"%1 件のうち %2 件　価格 %3 円　送料 %4 円"_s.arg(m_rows.order().rows.size())
                                .arg(sums.count)
                                .arg(text::formatAmount(sums.price), text::formatAmount(sums.carriage)) +
                            (issued > 0 ? u"　発行済 %1 件"_s.arg(issued) : QString()));
    m_ui->cmdUndo->setEnabled(m_rows.canTakeBack());
    const bool any = !m_rows.order().rows.empty();
    for (QPushButton *button : {m_ui->cmdTickAll, m_ui->cmdTickNone, m_ui->cmdDelete, m_ui->cmdCommon,
                                m_ui->cmdSheet, m_ui->cmdPreview})
        button->setEnabled(any);
    m_ui->Command2->setEnabled(sums.count > 0);
}

void frmKuroneko5::say(const QString &words) { m_ui->lblMessage->setText(words); }

// --- The draft ---

bool frmKuroneko5::hasWork() const
{
    const GiftOrder &order = m_rows.order();
    const bool isLeft = std::ranges::any_of(order.rows, [](const GiftRow &row) { return !row.issued; });
    return isLeft || (order.rows.empty() && !order.sender.name1.isEmpty());
}

void frmKuroneko5::openDraft()
{
    auto draft = readDraft(draftFile(workspace().applicationFolder()), workspace().today());
    if (!draft) {
        say(draft.error().text);
        return;
    }
    if (!*draft)
        return;
    const std::size_t lines = (*draft)->rows.size();
    showHead(**draft);
    m_owner = (*draft)->sender;
    m_ownerId = (*draft)->senderId;
    m_rows.setOrder(std::move(**draft));
    takeHead();
    say(u"前回の下書き（お届け先 %1 件）を開きました。"_s.arg(lines));
}

void frmKuroneko5::keepDraft()
{
    m_drafts.stop();
    const QString file = draftFile(workspace().applicationFolder());
    const base::Status kept = hasWork() ? saveDraft(file, m_rows.order()) : dropDraft(file);
    if (!kept)
        say(kept.error().text);
}

// What is left of the sheet is kept, dropped, or gone on with.
bool frmKuroneko5::mayClose()
{
    if (!m_cells->settle())
        return false;
    takeHead();
    Choice choice = Choice::Save;
    if (hasWork()) {
        const auto left =
            std::ranges::count_if(m_rows.order().rows, [](const GiftRow &row) { return !row.issued; });
        choice =
            ui::prompts::askHowToLeave(this,
                                       left > 0 ? u"まだ発行していないお届け先が %1 件あります。"_s.arg(left)
                                                : u"入力中のご依頼主があります。"_s,
                                       {u"下書きに残して閉じる"_s, u"捨てて閉じる"_s});
    }
    if (choice == Choice::Cancel)
        return false;
    const QString file = draftFile(workspace().applicationFolder());
    const bool isKept = choice == Choice::Save && hasWork();
    if (!tell(isKept ? saveDraft(file, m_rows.order()) : dropDraft(file)))
        return false;
    m_drafts.disconnect(this);
    writeSettings();
    return true;
}

} // namespace shipping
