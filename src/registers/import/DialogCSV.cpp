#include "registers/import/DialogCSV.h"

#include "ui/prompts.h"
#include "ui_DialogCSV.h"

#include <QComboBox>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr std::size_t sampleRows = 3;
constexpr int sampleLength = 24; // characters

QString shortened(const QString &cell)
{
    const QString line = cell.left(sampleLength + 1).simplified();
    return line.size() > sampleLength ? line.left(sampleLength) + u'…' : line;
}

} // namespace

DialogCSV::DialogCSV(workspace::Workspace &workspace, const ImportTable &table,
                     const ImportAssignment &assignment, const std::vector<masters::Entry> &categories,
                     QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogCSV>())
    , m_table(table)
{
    m_ui->setupUi(this);
    m_ui->checkHeadings->setChecked(assignment.hasHeadings);
    addColumns(assignment);
    fillCategories(categories, assignment.defaultCategory);
    m_ui->comboMatch->addItems({u"更新しない"_s, u"納品先IDが同じなら更新"_s, u"コードが同じなら更新"_s});
    m_ui->comboMatch->setCurrentIndex(static_cast<int>(assignment.match));
    m_ui->checkNumberCodes->setChecked(assignment.numbersCodes);
    connect(m_ui->checkHeadings, &QCheckBox::toggled, this, &DialogCSV::showSamples);
    connect(m_ui->cmdMatch, &QPushButton::clicked, this, &DialogCSV::assignByHeadings);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &DialogCSV::confirm);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &DialogCSV::reject);
    setUp();
    if (!m_fields.isEmpty())
        m_fields.first()->setFocus();
}

DialogCSV::~DialogCSV() = default;

// One line a column: its heading, its samples, and the drop-down.
void DialogCSV::addColumns(const ImportAssignment &assignment)
{
    QWidget *before = m_ui->cmdMatch;
    for (int column = 0; column < m_table.columns; ++column) {
        auto *heading = new QLabel(m_ui->columns);
        heading->setObjectName(u"labelColumn%1"_s.arg(column + 1));
        auto *samples = new QLabel(m_ui->columns);
        samples->setObjectName(u"labelSample%1"_s.arg(column + 1));
        auto *fields = new QComboBox(m_ui->columns);
        fields->setObjectName(u"comboField%1"_s.arg(column + 1));
        fields->addItem(u"（取り込まない）"_s);
        for (const ImportField &field : importFields())
            fields->addItem(field.column);
        fields->setCurrentIndex(assignment.fields.value(column, -1) + 1);
        fields->setMaxVisibleItems(fields->count());
        fields->installEventFilter(this);
        heading->setTextFormat(Qt::PlainText);
        samples->setTextFormat(Qt::PlainText);
        m_ui->layoutColumns->addWidget(heading, column + 1, 0);
        m_ui->layoutColumns->addWidget(samples, column + 1, 1);
        m_ui->layoutColumns->addWidget(fields, column + 1, 2);
        setTabOrder(before, fields);
        before = fields;
        m_headings << heading;
        m_samples << samples;
        m_fields << fields;
    }
    setTabOrder(before, m_ui->comboMatch);
    m_ui->layoutColumns->setRowStretch(static_cast<int>(m_table.columns) + 1, 1);
    showSamples();
}

bool DialogCSV::eventFilter(QObject *watched, QEvent *event)
{
    // The wheel moves the list of columns; it must not change the one that happens to be under the mouse.
    if (event->type() == QEvent::Wheel) {
        event->ignore();
        return true;
    }
    if (event->type() == QEvent::FocusIn)
        m_ui->areaColumns->ensureWidgetVisible(qobject_cast<QWidget *>(watched));
    return ui::Screen::eventFilter(watched, event);
}

void DialogCSV::showSamples()
{
    const bool hasHeadings = m_ui->checkHeadings->isChecked();
    const std::size_t first = hasHeadings ? 1 : 0;
    for (int column = 0; column < m_fields.size(); ++column) {
        QString heading = u"%1 列目"_s.arg(column + 1);
        if (hasHeadings)
            heading += u"　"_s + shortened(m_table.firstRow().value(column));
        QStringList samples;
        for (std::size_t row = first; row < std::min(first + sampleRows, m_table.rows.size()); ++row)
            samples << shortened(m_table.rows[row].cells.value(column));
        samples.removeAll(QString());
        m_headings.at(column)->setText(heading);
        m_samples.at(column)->setText(samples.join(u" ／ "_s));
        m_fields.at(column)->setAccessibleName(heading);
    }
}

void DialogCSV::fillCategories(const std::vector<masters::Entry> &categories, qint64 chosen)
{
    m_ui->comboCategory->addItem(u"（なし）"_s, qint64(0));
    for (const masters::Entry &category : categories)
        m_ui->comboCategory->addItem(category.name, category.id);
    // With a single category there is nothing to choose.
    const int place = chosen > 0 ? m_ui->comboCategory->findData(chosen) : categories.size() == 1 ? 1 : 0;
    m_ui->comboCategory->setCurrentIndex(std::max(0, place));
}

void DialogCSV::assignByHeadings()
{
    const ImportAssignment found = assignmentByHeadings(m_table.firstRow(), m_table.columns);
    if (!found.hasHeadings) {
        ui::prompts::inform(this, u"先頭の行に、項目名として読み取れる見出しがありません。"_s);
        return;
    }
    m_ui->checkHeadings->setChecked(true);
    for (int column = 0; column < m_fields.size(); ++column)
        m_fields.at(column)->setCurrentIndex(found.fields.at(column) + 1);
}

ImportAssignment DialogCSV::assignment() const
{
    ImportAssignment assignment{.hasHeadings = m_ui->checkHeadings->isChecked(),
                                .defaultCategory = m_ui->comboCategory->currentData().toLongLong(),
                                .match = static_cast<ImportMatch>(m_ui->comboMatch->currentIndex()),
                                .numbersCodes = m_ui->checkNumberCodes->isChecked()};
    for (const QComboBox *field : m_fields)
        assignment.fields << field->currentIndex() - 1;
    return assignment;
}

QString DialogCSV::lack()
{
    const ImportAssignment now = assignment();
    for (int column = 0; column < m_fields.size(); ++column) {
        const int field = now.fields.at(column);
        if (field < 0 || now.columnOf(field) == column)
            continue;
        m_fields.at(column)->setFocus();
        return u"「%1」が %2 列目と %3 列目の両方に指定されています。"_s.arg(
            importFields().at(field).column, QString::number(now.columnOf(field) + 1),
            QString::number(column + 1));
    }
    const int matched = now.matchField();
    if (matched >= 0 && now.columnOf(matched) < 0) {
        m_fields.first()->setFocus();
        return u"「%1」が同じ納品先を更新するには、「%1」にする列を指定してください。"_s.arg(
            importFields().at(matched).column);
    }
    if (now.namesCustomers())
        return {};
    m_fields.first()->setFocus();
    return u"「納品先名1」にする列を指定してください。"_s;
}

void DialogCSV::confirm()
{
    const QString missing = lack();
    if (missing.isEmpty())
        accept();
    else
        ui::prompts::inform(this, missing);
}

} // namespace registers
