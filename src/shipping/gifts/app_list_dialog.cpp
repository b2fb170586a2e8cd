#include "shipping/gifts/app_list_dialog.h"

#include "printing/font_names.h"
#include "printing/frmPreview.h"
#include "printing/offset_box.h"
#include "printing/queue/print_system.h"
#include "text/dates.h"
#include "ui/file_dialogs.h"
#include "ui_AppListForm.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QCheckBox>
#include <QFontDatabase>

using namespace Qt::StringLiterals;
namespace keys = workspace::keys;

namespace shipping
{

namespace
{

constexpr printing::Purpose purpose = printing::Purpose::GiftSheets;
constexpr int columnsInRow = 4;

// Which of both lists' columns are printed is kept in one text, those of the list by sender first.
qsizetype firstKept(bool isBySender) { return isBySender ? 0 : senderListColumns().size(); }

qsizetype keptSize() { return senderListColumns().size() + shipmentListColumns().size(); }

} // namespace

AppListDialog::AppListDialog(workspace::Workspace &workspace, const AppListDescription &description,
                             std::vector<Shipment> shipments, const GiftListQuery &query, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::AppListForm>())
    , m_description(description)
    , m_shipments(std::move(shipments))
    , m_query(query)
{
    m_ui->setupUi(this);
    setObjectName(QString::fromUtf16(description.screen));
    setWindowTitle(QString::fromUtf16(description.title));
    m_ui->Check4->setVisible(description.isBySender);
    m_ui->frameOffset->setVisible(description.isBySender);
    m_right = new printing::OffsetBox(printing::giftRight, *m_ui->Text1, *m_ui->UpDown1);
    m_down = new printing::OffsetBox(printing::giftDown, *m_ui->Text3, *m_ui->UpDown2);
    m_ui->Combo1->addItems(giftListPapers());
    addColumns();
    fillPrinters();
    showSettings();
    m_ui->lblCount->setText(u"%1 件を印刷します。"_s.arg(m_shipments.size()));
    connect(m_ui->Command7, &QPushButton::clicked, this, &AppListDialog::chooseFont);
    connect(m_ui->Command49, &QPushButton::clicked, this, &AppListDialog::preview);
    connect(m_ui->Command3, &QPushButton::clicked, this, &AppListDialog::reject);
    setUp();
    m_ui->Command49->setFocus();
}

AppListDialog::~AppListDialog() = default;

void AppListDialog::addColumns()
{
    QWidget *before = m_ui->Check4;
    const QStringList names = m_description.isBySender ? senderListColumns() : shipmentListColumns();
    for (int place = 0; place < names.size(); ++place) {
        auto *box = new QCheckBox(names.at(place), m_ui->frameColumns);
        box->setObjectName(u"chkColumn%1"_s.arg(place + 1));
        m_ui->layoutColumns->addWidget(box, place / columnsInRow, place % columnsInRow);
        setTabOrder(before, box);
        before = box;
        m_columns.push_back(box);
    }
}

void AppListDialog::showColumns(const QString &stored)
{
    const qsizetype first = firstKept(m_description.isBySender);
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        m_columns[i]->setChecked(stored.size() != keptSize() || stored.at(first + qsizetype(i)) != u'0');
}

QString AppListDialog::storedColumns() const
{
    QString stored = workspace().settings.text(keys::giftColumns);
    if (stored.size() != keptSize())
        stored = QString(keptSize(), u'1');
    const qsizetype first = firstKept(m_description.isBySender);
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        stored[first + qsizetype(i)] = m_columns[i]->isChecked() ? u'1' : u'0';
    return stored;
}

void AppListDialog::fillPrinters()
{
    m_ui->Combo2->addItem(u"通常使うプリンタ"_s, QString());
    const auto queues = printing::printSystem(workspace()).queues();
    m_ui->LblPrinterName->setText(queues ? QString() : queues.error().text);
    m_ui->LblPrinterName->setVisible(!queues);
    m_ui->LblPrinterName->setMinimumHeight(2 * fontMetrics().lineSpacing()); // a wrapped text claims one
    for (const QString &name : queues ? queues->names : QStringList())
        m_ui->Combo2->addItem(name, name);
}

void AppListDialog::showSettings()
{
    const workspace::Settings &settings = workspace().settings;
    const QString printer = settings.text(printing::printerKey(purpose));
    m_ui->Combo2->setCurrentIndex(m_ui->Combo2->findData(printer));
    m_ui->Combo2->setPlaceholderText(printer);
    m_ui->txtFontName->setText(printing::withoutVerticalMark(settings.text(printing::fontKey(purpose))));
    m_ui->Combo1->setCurrentIndex(std::max(0, m_ui->Combo1->findText(settings.text(keys::appList2Combo1))));
    showColumns(settings.text(keys::giftColumns));
    m_ui->Check1->setChecked(settings.checked(keys::appList1));
    m_ui->Check4->setChecked(settings.checked(keys::appList4));
    m_right->setSteps(printing::offsetFrom(settings.text(keys::stOffsetAppX), printing::giftRight));
    m_down->setSteps(printing::offsetFrom(settings.text(keys::stOffsetAppY), printing::giftDown));
}

bool AppListDialog::storeSettings()
{
    if (m_description.isBySender && (!m_right->confirm(this) || !m_down->confirm(this)))
        return false;
    workspace::Settings &settings = workspace().settings;
    settings.write(printing::fontKey(purpose), m_ui->txtFontName->text());
    // A printer that is switched off is missing from the list, and stays the chosen one.
    if (m_ui->Combo2->currentIndex() >= 0)
        settings.write(printing::printerKey(purpose), m_ui->Combo2->currentData().toString());
    settings.write(keys::appList2Combo1, m_ui->Combo1->currentText());
    settings.write(keys::giftColumns, storedColumns());
    settings.write(keys::appList1, m_ui->Check1->isChecked());
    if (m_description.isBySender) {
        settings.write(keys::appList4, m_ui->Check4->isChecked());
        settings.write(keys::stOffsetAppX, m_right->steps());
        settings.write(keys::stOffsetAppY, m_down->steps());
    }
    tell(printing::flushed(settings)); // the list can be printed all the same
    return true;
}

bool AppListDialog::mayClose() { return storeSettings(); }

void AppListDialog::chooseFont()
{
    const QFont shown(printing::installedFace(m_ui->txtFontName->text(), QFontDatabase::families()));
    if (const auto chosen = ui::file_dialogs::chooseFont(this, shown, u"フォント"_s))
        m_ui->txtFontName->setText(printing::withoutVerticalMark(chosen->family()));
}

GiftListLook AppListDialog::look() const
{
    GiftListLook look;
    look.paper = m_ui->Combo1->currentText();
    look.hidesAmounts = m_ui->Check1->isChecked();
    for (const QCheckBox *box : m_columns) {
        if (!box->isChecked())
            look.leftOut << box->text();
    }
    if (m_description.isBySender) {
        look.pageEach = m_ui->Check4->isChecked();
        look.offset = printing::giftListOffsetTwips(workspace().settings);
    }
    return look;
}

void AppListDialog::preview()
{
    if (!storeSettings())
        return;
    printing::Document document;
    document.title = QString::fromUtf16(m_description.title);
    document.purpose = purpose;
    const QString date = text::formatDate(workspace().today()) + u" 現在"_s;
    document.sheets = m_description.isBySender ? senderPages(m_shipments, m_query, date, look())
                                               : shipmentPages(m_shipments, m_query, date, look());
    printing::showPreview(workspace(), this, std::move(document));
}

} // namespace shipping
