#include "printing/DialogFormLayout.h"

#include "printing/forms/form_reader.h"
#include "printing/forms/form_sheets.h"
#include "printing/forms/layout_text.h"
#include "printing/forms/specimen.h"
#include "printing/frmPreview.h"
#include "printing/print_frame.h"
#include "printing/sheet_view.h"
#include "ui/prompts.h"
#include "ui_DialogFormLayout.h"
#include "workspace/workspace.h"

#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int mostMeasures = 10; // of one element
constexpr double greatest = 1000;

std::vector<base::Column> elementColumns()
{
    using enum base::Format;
    return {{u"種類"_s, Text, 10},
            {u"内容"_s, Text, 24, 12, true},
            {u"左から"_s, Quantity, 8},
            {u"上から"_s, Quantity, 8}};
}

// "file.toml:19: 「x」には…" as the hand at the box called 左から knows it.
QString inWordsOfTheBox(QString fault, const QString &key, const QString &caption)
{
    static const QRegularExpression place(u"^[^\\n]*?:\\d+: "_s);
    fault.remove(place);
    return fault.replace(u"「%1」"_s.arg(key.section(u'.', -1)), u"「%1」"_s.arg(caption));
}

QVariant valueOf(const LayoutElement &element, QStringView key)
{
    const auto found = std::ranges::find(element.measures, key, &LayoutMeasure::key);
    return found == element.measures.end() ? QVariant() : QVariant(found->value);
}

} // namespace

DialogFormLayout::DialogFormLayout(workspace::Workspace &workspace, std::vector<AdjustableForm> forms,
                                   const QString &first, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogFormLayout>())
    , m_forms(std::move(forms))
    , m_view(new SheetView(m_document, {fontFace(workspace.settings, Purpose::DeliveryNotesAndBills), true},
                           this))
{
    m_ui->setupUi(this);
    m_view->setObjectName(u"viewSheet"_s);
    m_view->setAccessibleName(u"用紙"_s);
    m_ui->viewPlace->addWidget(m_view);
    m_ui->gridElements->showColumns(elementColumns());
    for (int i = 1; i <= mostMeasures; ++i) {
        MeasureBox measure{findChild<QLabel *>(u"lblMeasure%1"_s.arg(i)),
                           findChild<QDoubleSpinBox *>(u"spnMeasure%1"_s.arg(i))};
        measure.box->setRange(0, greatest);
        m_boxes.push_back(measure);
    }
    for (const AdjustableForm &each : m_forms)
        m_ui->cboForm->addItem(each.caption);
    connectControls();
    setUp();
    const auto begin = std::ranges::find(m_forms, first, &AdjustableForm::fileName);
    m_ui->cboForm->setCurrentIndex(begin == m_forms.end() ? 0 : int(begin - m_forms.begin()));
    m_formIndex = m_ui->cboForm->currentIndex();
    load();
}

DialogFormLayout::~DialogFormLayout() = default;

void DialogFormLayout::connectControls()
{
    connect(m_ui->cboForm, &QComboBox::activated, this, &DialogFormLayout::formChosen);
    connect(m_ui->gridElements->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        if (m_filling)
            return;
        showSheet();
        showMeasures();
        showStates(m_file.complaint); // what was told was of the element before
    });
    for (std::size_t i = 0; i < m_boxes.size(); ++i) {
        connect(m_boxes[i].box, &QDoubleSpinBox::valueChanged, this, [this, i] { measureChanged(i); });
        connect(m_boxes[i].box->findChild<QLineEdit *>(), &QLineEdit::textEdited, this,
                [this] { m_ui->cmdStore->setEnabled(true); });
    }
    connect(m_view, &SheetView::pointedAt, this, [this](const QPointF &point) {
        if (const int found = elementAt(m_elements, point); found >= 0)
            m_ui->gridElements->setCurrentIndex(m_ui->gridElements->model()->index(found, 0));
    });
    connect(m_ui->chkGrid, &QCheckBox::toggled, m_view, &SheetView::setCalibrationGrid);
    connect(m_ui->cmdZoomIn, &QPushButton::clicked, m_view, &SheetView::zoomIn);
    connect(m_ui->cmdZoomOut, &QPushButton::clicked, m_view, &SheetView::zoomOut);
    connect(m_ui->cmdPreview, &QPushButton::clicked, this, &DialogFormLayout::printTrial);
    connect(m_ui->cmdUndo, &QPushButton::clicked, this, &DialogFormLayout::undo);
    connect(m_ui->cmdStore, &QPushButton::clicked, this, &DialogFormLayout::store);
    connect(m_ui->cmdBuiltIn, &QPushButton::clicked, this, &DialogFormLayout::takeBuiltIn);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogFormLayout::reject);
}

const AdjustableForm &DialogFormLayout::form() const
{
    return m_forms.at(static_cast<std::size_t>(m_formIndex));
}

void DialogFormLayout::formChosen(int index)
{
    if (index == m_formIndex)
        return;
    if (!settle()) {
        m_ui->cboForm->setCurrentIndex(m_formIndex);
        return;
    }
    m_formIndex = index;
    load();
}

void DialogFormLayout::load()
{
    m_file = loadLayout(workspace().applicationFolder(), form().fileName, *form().items);
    m_before.clear();
    take(m_file.content);
    m_view->fitPage();
    {
        const QScopedValueRollback filling(m_filling, true);
        m_ui->gridElements->setCurrentIndex(m_ui->gridElements->model()->index(0, 0));
    }
    showMeasures();
    showStates(m_file.complaint);
}

bool DialogFormLayout::take(const QByteArray &content)
{
    const auto read = readForm(content, form().fileName, *form().items);
    if (!read) {
        showStates(read.error().text);
        return false;
    }
    m_content = content;
    m_form = *read;
    m_elements = layoutElements(readToml(content).root);
    m_document.title = u"位置合わせ "_s + m_form.name;
    showElements();
    showSheet();
    showStates();
    return true;
}

void DialogFormLayout::showElements()
{
    const QScopedValueRollback filling(m_filling, true);
    base::Report report{.columns = elementColumns()};
    int row = 0;
    for (const LayoutElement &element : m_elements)
        report.rows.push_back(
            {{element.kind, element.name, valueOf(element, u"x"), valueOf(element, u"y")}, row++});
    m_ui->gridElements->setReport(std::move(report));
}

const LayoutElement *DialogFormLayout::current() const
{
    const QVariant link = m_ui->gridElements->currentLink();
    return link.isValid() ? &m_elements.at(static_cast<std::size_t>(link.toInt())) : nullptr;
}

std::vector<Sheet> DialogFormLayout::specimenSheets(const QHash<QString, double> &shifts) const
{
    const QString sheet = current() ? current()->sheet : QString();
    const bool isOfSeveral = sheet == u"before_last" || sheet == u"further";
    const int rows = m_form.body ? m_form.body->first.count : 0;
    const QStringList &other = form().otherCase;
    const bool isOther = current() && std::ranges::any_of(other, [this](const QString &item) {
                             return current()->name.contains(item);
                         });
    FormValues values =
        specimenValues(*form().items, isOfSeveral ? 2 * rows : rows / 2, isOther ? QStringList() : other);
    values.shifts = shifts;
    return formSheets(m_form, values);
}

void DialogFormLayout::showSheet()
{
    m_document.sheets = specimenSheets({});
    m_view->turnTo(current() && current()->sheet == u"further" ? 2 : 1);
    m_view->showChange();
}

void DialogFormLayout::showMeasures()
{
    const QScopedValueRollback filling(m_filling, true);
    const LayoutElement *element = current();
    m_view->setMark(element ? element->area : QRectF());
    for (std::size_t i = 0; i < m_boxes.size(); ++i) {
        const bool isUsed = element && i < element->measures.size();
        m_boxes[i].label->setVisible(isUsed);
        m_boxes[i].box->setVisible(isUsed);
        if (!isUsed)
            continue;
        const LayoutMeasure &measure = element->measures[i];
        m_boxes[i].label->setText(measure.caption);
        m_boxes[i].box->setAccessibleName(measure.caption);
        m_boxes[i].box->setDecimals(measure.isCount ? 0 : measure.isSize ? 1 : 3);
        m_boxes[i].box->setSingleStep(measure.isCount ? 1 : 0.5);
        m_boxes[i].box->setSuffix(measure.isCount ? u" 行"_s : measure.isSize ? u" ポイント"_s : u" mm"_s);
        m_boxes[i].box->setValue(measure.value);
    }
}

void DialogFormLayout::showStates(const QString &message)
{
    const bool isEdited = m_content != m_file.content;
    m_ui->cmdUndo->setEnabled(!m_before.empty());
    m_ui->cmdStore->setEnabled(isEdited);
    m_ui->cmdBuiltIn->setEnabled(m_file.isOwn || !m_file.complaint.isEmpty());
    m_ui->lblState->setText(isEdited ? u"変更があります。「保存」を押すと、この用紙の印刷に使われます。"_s
                            : m_file.isOwn ? u"調整済みの用紙です。"_s
                                           : u"組み込みの用紙です。"_s);
    m_ui->lblMessage->setText(message);
}

// A value that would leave the paper, or be none, is told and taken back.
void DialogFormLayout::measureChanged(std::size_t place)
{
    if (m_filling || !current())
        return;
    const LayoutMeasure &measure = current()->measures.at(place);
    const auto changed =
        withMeasure(m_content, current()->line, measure.line, measure.key, m_boxes[place].box->value());
    const QByteArray before = m_content;
    const QString caption = measure.caption;
    const QString key = measure.key;
    if (!changed) {
        showStates(changed.error().text);
    } else if (take(*changed)) {
        m_before.push_back(before);
        showStates();
    } else {
        showStates(inWordsOfTheBox(m_ui->lblMessage->text(), key, caption));
    }
    showMeasures();
}

void DialogFormLayout::takeTyped()
{
    for (const MeasureBox &measure : m_boxes)
        measure.box->interpretText();
}

void DialogFormLayout::undo()
{
    takeTyped();
    if (m_before.empty())
        return;
    const QByteArray before = m_before.back();
    m_before.pop_back();
    take(before);
    showMeasures();
}

bool DialogFormLayout::store()
{
    takeTyped();
    const QByteArray known = m_file.isOwn ? m_file.content : QByteArray();
    if (!tell(saveOwnLayout(workspace().applicationFolder(), form().fileName, m_content, known,
                            workspace().today())))
        return false;
    m_file = {m_content, true, {}};
    m_before.clear();
    showStates(u"保存しました。"_s);
    return true;
}

void DialogFormLayout::takeBuiltIn()
{
    if (!ui::prompts::askCautiously(this,
                                    u"この用紙の調整をやめて、組み込みの位置に戻します。よろしいですか。"_s,
                                    u"今までの調整は、別の名前のファイルとして残ります。"_s))
        return;
    const auto kept = dropOwnLayout(workspace().applicationFolder(), form().fileName, workspace().today());
    if (!tell(kept.status()))
        return;
    load();
    showStates(kept->isEmpty() ? QString() : u"調整したファイルは %1 に残っています。"_s.arg(*kept));
}

bool DialogFormLayout::settle()
{
    takeTyped();
    if (m_content == m_file.content)
        return true;
    switch (ui::prompts::askHowToLeave(this, u"用紙の調整が保存されていません。保存しますか。"_s,
                                       {u"保存する(&S)"_s, u"保存しない(&D)"_s})) {
    case ui::prompts::Choice::Save:
        return store();
    case ui::prompts::Choice::Discard:
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

bool DialogFormLayout::mayClose() { return settle(); }

// As it comes out in use, so that what the ruler tells of it is what is to be changed.
void DialogFormLayout::printTrial()
{
    takeTyped();
    Document trial = m_document;
    std::vector<Sheet> sheets = specimenSheets(form().shifts);
    if (form().lay)
        std::ranges::for_each(sheets, form().lay);
    trial.purpose = form().purpose;
    trial.onPrintersPaper = form().onPrintersPaper;
    trial.sheets = std::move(sheets);
    trial.calibrationGrid = true;
    showPreview(workspace(), this, std::move(trial));
}

} // namespace printing
