#include "slips/correction/slip_correction_screen.h"

#include "book/counterpart_name.h"
#include "book/numbering.h"
#include "book/tax.h"
#include "masters/name_lists.h"
#include "registers/last_counterparts.h"
#include "slips/correction/cell_paste.h"
#include "slips/correction/correction_cells.h"
#include "slips/correction/correction_grids.h"
#include "slips/correction/correction_remarks.h"
#include "slips/correction/slip_correction.h"
#include "slips/entry/counterpart_box.h"
#include "slips/parcel_desk.h"
#include "ui/cell_delegate.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_CorrectionForm.h"
#include "workspace/workspace.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace slips
{

SlipCorrectionScreen::SlipCorrectionScreen(workspace::Workspace &workspace, QWidget *parent,
                                           const CorrectionDescription &description)
    : Screen(workspace, parent)
    , m_description(description)
    , m_ui(std::make_unique<Ui::CorrectionForm>())
    , m_slip(workspace.connection, description.kind, description.search, this)
{
    m_ui->setupUi(this);
    setCaptions();
    fillEmployees();
    setUpGrids();
    connectControls();
    setUp();
    showAll();
    m_ui->DataGrid1->setFocus();
}

SlipCorrectionScreen::~SlipCorrectionScreen()
{
    // Boxes that lose the focus now would edit record sets that are gone.
    m_ui->txtDenNo->disconnect(this);
    m_ui->txtDate->disconnect(this);
}

void SlipCorrectionScreen::setCaptions()
{
    setObjectName(QString::fromUtf16(m_description.screen));
    setWindowTitle(QString::fromUtf16(m_description.title));
    const QString party = QString::fromUtf16(m_description.party);
    const QString hint = u"検索する%1名の文字列を入力してください。"_s.arg(party);
    m_ui->lblKey->setText(party + u"名キー(&K)"_s);
    m_ui->dbcNouhin->setCompleter(nullptr);
    m_ui->dbcNouhin->setToolTip(hint);
    m_ui->dbcNouhin->lineEdit()->setPlaceholderText(hint);
    m_ui->lblName1->setText(party + u"名1"_s);
    m_ui->lblName2->setText(party + u"名2"_s);
    m_ui->Text2->setAccessibleName(party + u"ID"_s);
    m_ui->Text2->hide();
    m_ui->Text4->hide();
    const std::initializer_list<QWidget *> address{m_ui->lblZip,      m_ui->txtZip,      m_ui->lblTel,
                                                   m_ui->txtTel,      m_ui->lblAddress1, m_ui->txtAddress1,
                                                   m_ui->lblAddress2, m_ui->txtAddress2};
    for (QWidget *part : address)
        part->setVisible(m_description.showsAddress);
    m_ui->Check2->setVisible(m_description.hasDesignatedForm);
    m_ui->Command2->setVisible(m_description.reprints);
    m_ui->cmdParcel->setVisible(hasParcels());
    m_ui->cmdParcels->hide();
}

void SlipCorrectionScreen::setUpGrids()
{
    const book::SlipKind kind = m_description.kind;
    const auto refused = [this](const QString &reason) { tell(base::Error{reason}); };
    m_slip.headers.setLeaving([this] { return leaveSlip(); });
    makeHeadersEditable(m_slip.headers, workspace().connection, kind);
    m_headerCells = new ui::CellDelegate(m_ui->DataGrid1);
    showHeadersIn(*m_ui->DataGrid1, m_slip.headers, workspace().connection, kind, employeeNames(), refused);
    const bool tellsTax = workspace().panel.followsTaxTable && isTaxed(kind);
    if (tellsTax)
        makeTaxedLinesEditable(m_slip.lines, [this](book::GoodsTax goods) { return rateOf(goods); });
    else
        makeLinesEditable(m_slip.lines);
    m_lineCells = new ui::CellDelegate(m_ui->dgdSub);
    showLinesIn(*m_ui->dgdSub, m_slip.lines, kind, tellsTax, refused);
}

// Everyday goods are taxed as the slip says, whatever the table has meanwhile.
std::optional<double> SlipCorrectionScreen::rateOf(book::GoodsTax goods) const
{
    const double own = m_slip.headers.value(u"消費税率"_s).toDouble();
    const auto rates = book::TaxRates::read(workspace().connection);
    if (goods == book::GoodsTax::Standard || !rates)
        return own;
    const QDate date = QDate::fromString(m_slip.headers.value(u"日付"_s).toString(), u"yyyy-MM-dd"_s);
    if (book::isReduced(goods) && !rates->has(date, goods))
        return std::nullopt;
    return rates->on(date, goods);
}

void SlipCorrectionScreen::connectControls()
{
    const auto press = [this](QPushButton *button, void (SlipCorrectionScreen::*action)()) {
        connect(button, &QPushButton::clicked, this, action);
    };
    press(m_ui->Command1, &SlipCorrectionScreen::search);
    press(m_ui->cmdAll, &SlipCorrectionScreen::showAll);
    press(m_ui->Command3, &SlipCorrectionScreen::update);
    connect(m_ui->cmdUndo, &QPushButton::clicked, this, &SlipCorrectionScreen::takeBack);
    press(m_ui->cmdMasterCancel, &SlipCorrectionScreen::deleteSlip);
    press(m_ui->cmdLineAdd, &SlipCorrectionScreen::addLine);
    press(m_ui->cmdLineDelete, &SlipCorrectionScreen::deleteLine);
    press(m_ui->cmdClose, &SlipCorrectionScreen::closeOpenSlip);
    press(m_ui->Command2, &SlipCorrectionScreen::print);
    press(m_ui->cmdParcel, &SlipCorrectionScreen::beginParcel);
    press(m_ui->cmdParcels, &SlipCorrectionScreen::openParcels);
    connect(m_ui->dbcShain, &QComboBox::activated, this, [this](int index) {
        m_slip.headers.setValue(u"社員ID"_s, m_ui->dbcShain->itemData(index).toLongLong());
    });
    const auto box = [this](QLineEdit *edit, const QString &column) {
        connect(edit, &QLineEdit::editingFinished, this, [this, edit, column] { editHeader(column, edit); });
    };
    box(m_ui->txtDenNo, u"伝票番号"_s);
    box(m_ui->txtDate, u"日付"_s);
    // Only with the cursor in the grid itself: in an open cell the key deletes a character.
    connect(new QShortcut(QKeySequence::Delete, m_ui->dgdSub, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &SlipCorrectionScreen::deleteLine);
    connect(new QShortcut(Qt::Key_Insert, m_ui->dgdSub, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &SlipCorrectionScreen::addLine);

    pasteByKey(m_ui->DataGrid1, m_slip.headers);
    pasteByKey(m_ui->dgdSub, m_slip.lines);

    connect(&m_slip.headers, &db::Recordset::currentRowChanged, this, &SlipCorrectionScreen::showSlip);
    connect(&m_slip.headers, &db::Recordset::extended, this, &SlipCorrectionScreen::showCount);
    connect(&m_slip.headers, &db::Recordset::edited, this, &SlipCorrectionScreen::showHeader);
    connect(&m_slip.headers, &db::Recordset::refused, this, &SlipCorrectionScreen::tellLater);
    connect(&m_slip.lines, &db::Recordset::currentRowChanged, this, &SlipCorrectionScreen::showRemarks);
    connect(&m_slip.lines, &db::Recordset::edited, this, &SlipCorrectionScreen::showRemarks);
    connect(&m_slip.lines, &db::Recordset::refused, this, &SlipCorrectionScreen::tellLater);
    // Changing the shown slip's counterpart brings up who that is.
    connect(m_ui->Text4, &QLineEdit::textChanged, this, [this] { tell(m_slip.openCounterpart()); });
    connect(&m_slip.counterpart, &db::Recordset::currentRowChanged, this,
            &SlipCorrectionScreen::showCounterpart);
}

// In an open cell the key is that cell's.
void SlipCorrectionScreen::pasteByKey(ui::Grid *grid, db::Recordset &rows)
{
    connect(new QShortcut(QKeySequence::Paste, grid, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this,
            [this, grid, &rows] { tell(pasteCells(*grid, rows, QGuiApplication::clipboard()->text())); });
}

void SlipCorrectionScreen::fillEmployees()
{
    const auto employees = masters::employees(workspace().connection);
    if (!employees) {
        tell(employees.error());
        return;
    }
    for (const masters::Entry &entry : *employees)
        m_ui->dbcShain->addItem(entry.name, entry.id);
}

QHash<qint64, QString> SlipCorrectionScreen::employeeNames() const
{
    QHash<qint64, QString> names;
    for (int item = 0; item < m_ui->dbcShain->count(); ++item)
        names.insert(m_ui->dbcShain->itemData(item).toLongLong(), m_ui->dbcShain->itemText(item));
    return names;
}

// --- Which slips ---

void SlipCorrectionScreen::showAll()
{
    if (!mayLeave())
        return;
    const qint64 shown = m_slip.forgetLines();
    if (!tell(openSlips(m_slip.headers, m_description.kind))) {
        (void)m_slip.forgetLines(shown);
        return;
    }
    m_ui->dbcNouhin->clear();
    m_ui->DataGrid1->setFocus();
}

void SlipCorrectionScreen::search()
{
    const auto found = counterpartIn(*m_ui->dbcNouhin, workspace().connection, m_description.search,
                                     QString::fromUtf16(m_description.several));
    if (!found) {
        tell(found.error());
    } else if (!found->refusal.isEmpty()) {
        m_ui->dbcNouhin->setFocus();
        ui::prompts::inform(this, found->refusal);
    } else {
        narrowTo(found->counterpart);
    }
}

void SlipCorrectionScreen::narrowTo(book::CounterpartKey counterpart)
{
    if (!mayLeave())
        return;
    const qint64 shown = m_slip.forgetLines();
    const auto any = openSlipsOf(m_slip.headers, m_description.kind, counterpart);
    if (!any || !*any)
        (void)m_slip.forgetLines(shown);
    if (!any) {
        tell(any.error());
        return;
    }
    if (!*any) {
        ui::prompts::inform(this, u"現在、該当する伝票はありません。"_s);
        m_ui->dbcNouhin->setFocus();
        return;
    }
    registers::rememberCounterpart(workspace(), m_description.search.party, counterpart.value_or(0));
    (void)m_slip.headers.moveLast();
    m_ui->DataGrid1->setFocus();
}

bool SlipCorrectionScreen::openSlip(qint64 id)
{
    if (!tell(m_slip.headers.moveToKey(id)))
        return false;
    if (m_slip.headers.currentKey() == id) {
        m_ui->dgdSub->setFocus();
        return true;
    }
    ui::prompts::inform(this, u"この伝票は削除されているか、ここで訂正する種類の伝票ではありません。"_s);
    return false;
}

// --- What a reprint asks of the slip ---

bool SlipCorrectionScreen::designatedForm() const { return m_ui->Check2->isChecked(); }

bool SlipCorrectionScreen::pricesIncludeTax() const
{
    return includesTax(m_slip.headers, m_slip.taxClass()) &&
           std::ranges::none_of(linesIn(m_slip.lines), &book::SlipLine::isTax);
}

std::optional<bool> SlipCorrectionScreen::knownInclusive() const { return inclusiveIn(m_slip.headers); }

// What was remarked on the slip when it was entered; older slips and those of other programs have it in 備考.
QString SlipCorrectionScreen::memo() const
{
    const QString remark = m_slip.headers.text(u"摘要"_s);
    return remark.isEmpty() ? m_slip.headers.text(u"備考"_s) : remark;
}

// --- Corrections ---

// \return whether what was typed is taken
bool SlipCorrectionScreen::editHeader(const QString &column, QLineEdit *box)
{
    const QModelIndex cell = headerCell(column);
    // Untouched, it stays as it is, whether it would be taken today or not.
    if (!cell.isValid() || box->text() == cell.data().toString() ||
        m_ui->DataGrid1->model()->setData(cell, box->text(), Qt::EditRole))
        return true;
    box->setText(cell.data().toString());
    // The correction goes on here, unless another slip's row was what the box was left for.
    const auto goBack = [this, box, slip = m_slip.headers.currentKey()] {
        if (m_slip.headers.currentKey() != slip)
            return;
        box->setFocus();
        box->selectAll();
    };
    QMetaObject::invokeMethod(box, goBack, Qt::QueuedConnection);
    return false;
}

QModelIndex SlipCorrectionScreen::headerCell(const QString &column) const
{
    const int row = m_slip.headers.currentRow();
    return row < 0 ? QModelIndex() : m_ui->DataGrid1->model()->index(row, m_slip.headers.columnOf(column));
}

// A box put up while a cell is being left would take the focus from under it.
void SlipCorrectionScreen::tellLater(const QString &refusal)
{
    QMetaObject::invokeMethod(
        this,
        [this, refusal] {
            const QString remark =
                refusal == book::wrongNumber() ? book::letterRemark(m_description.kind.letter) : QString();
            ui::prompts::inform(this, refusal, QString::fromUtf16(ui::prompts::information),
                                ui::prompts::Icon::Information, remark);
        },
        Qt::QueuedConnection);
}

// A mnemonic, Esc and the window's own button come before a cell or a box is left.
bool SlipCorrectionScreen::settled()
{
    return m_headerCells->settle() && m_lineCells->settle() && editHeader(u"伝票番号"_s, m_ui->txtDenNo) &&
           editHeader(u"日付"_s, m_ui->txtDate);
}

base::Status SlipCorrectionScreen::leaveSlip()
{
    const base::Status left = m_slip.leave();
    if (left)
        offerReprint();
    return left;
}

bool SlipCorrectionScreen::mayLeave() { return settled() && tell(leaveSlip()); }

void SlipCorrectionScreen::update()
{
    const qint64 id = m_slip.id();
    if (!settled() || !tell(m_slip.update()))
        return;
    if (m_slip.id() != id) {
        ui::prompts::inform(this, u"表示中の伝票はほかのプログラムで削除されています。"_s);
        return;
    }
    // There may have been nothing to save, and the slip may be gone all the same.
    if (tell(m_slip.headers.checkAsRead()))
        m_ui->lblMessage->setText(
            u"伝票 %1 を更新しました。"_s.arg(m_slip.headers.text(u"伝票番号"_s).left(30)) + u'\n' +
            m_ui->lblMessage->text());
    else
        m_slip.showAsStored();
}

void SlipCorrectionScreen::takeBack()
{
    // What stands in an open cell goes with the rest.
    m_headerCells->giveUp();
    m_lineCells->giveUp();
    m_slip.takeBack();
}

void SlipCorrectionScreen::deleteSlip()
{
    if (!ui::prompts::askCautiously(this, ui::messages::deleteQuestion(), slipInWords()))
        return;
    if (tell(deleteCurrentSlip(m_slip.headers, workspace().connection)))
        m_ui->DataGrid1->setFocus();
    else
        m_slip.showAsStored();
}

// Only what was typed into it goes into the slip.
void SlipCorrectionScreen::addLine()
{
    if (m_slip.headers.currentRow() >= 0 && settled())
        tell(m_slip.addLine());
    m_ui->dgdSub->setFocus();
}

void SlipCorrectionScreen::deleteLine()
{
    const bool isEmpty = m_slip.lines.isNewRow() && !m_slip.lines.isDirty();
    if (m_slip.lines.currentRow() < 0 ||
        (!isEmpty &&
         !ui::prompts::askCautiously(this, u"この明細を削除します。よろしいですか。"_s,
                                     lineInWords(lineIn(m_slip.lines, m_slip.lines.currentRow())))))
        return;
    if (!tell(deleteCurrentLine(m_slip.headers, m_slip.lines)))
        m_slip.showAsStored();
    m_ui->dgdSub->setFocus();
}

void SlipCorrectionScreen::closeOpenSlip()
{
    if (m_slip.canBeClosed() && settled())
        tell(m_slip.close());
}

void SlipCorrectionScreen::print()
{
    const qint64 id = m_slip.id();
    if (m_slip.headers.currentRow() < 0 || !settled() || !tell(m_slip.storeForPaper()))
        return;
    if (m_slip.id() == id && !taxIsSettled())
        return;
    // The paper says what the file says, and so does the screen that goes by it: a slip that is gone from
    // there has left it to its neighbour.
    m_slip.showAsStored();
    if (m_slip.id() == id)
        showAndRemember();
    else
        ui::prompts::inform(this, u"表示中の伝票はほかのプログラムで削除されたため、印刷しませんでした。"_s);
}

// A slip that a killed program left open would be printed without the tax that is due on it.
bool SlipCorrectionScreen::taxIsSettled()
{
    if (!m_slip.isLeftOpen() || !m_slip.canBeClosed() || m_slip.taxDue() == 0.0)
        return true;
    switch (ui::prompts::askHowToLeave(this, u"消費税が計上されていません。計上してから印刷しますか。"_s,
                                       {u"計上して印刷(&S)"_s, u"このまま印刷(&D)"_s, true},
                                       m_slip.remarks().join(u'\n'))) {
    case ui::prompts::Choice::Save:
        return tell(m_slip.close());
    case ui::prompts::Choice::Discard:
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

base::Result<PaperState> SlipCorrectionScreen::paperNow()
{
    return paperState(workspace().connection, m_slip.id(), {pricesIncludeTax(), std::nullopt}, memo());
}

// Another correction may have followed the paper.
void SlipCorrectionScreen::offerReprint()
{
    if (!m_printed || m_printed->slip.id != m_slip.id())
        return;
    const auto now = paperNow();
    if (tell(now.status()) && *now != *m_printed &&
        ui::prompts::ask(this, u"伝票 %1 は、印刷した後で変わりました。もう一度印刷しますか。"_s.arg(
                                   m_slip.headers.text(u"伝票番号"_s).left(30))))
        showAndRemember();
    m_printed.reset();
}

bool SlipCorrectionScreen::mayClose()
{
    if (!settled() || !m_slip.mayClose())
        return false;
    offerReprint();
    return true;
}

} // namespace slips
