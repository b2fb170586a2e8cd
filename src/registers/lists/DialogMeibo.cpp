#include "registers/lists/DialogMeibo.h"

#include "printing/font_names.h"
#include "printing/frmPreview.h"
#include "printing/list_sheet.h"
#include "printing/queue/print_system.h"
#include "text/dates.h"
#include "ui/file_dialogs.h"
#include "ui/progress.h"
#include "ui_DialogMeibo.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QCheckBox>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int columnsInRow = 5;

} // namespace

DialogMeibo::DialogMeibo(workspace::Workspace &workspace, std::vector<qint64> customers, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogMeibo>())
    , m_customers(std::move(customers))
{
    m_ui->setupUi(this);
    addColumns();
    m_ui->Combo2->addItem(u"通常使うプリンタ"_s, QString());
    if (const auto printers = printing::printSystem(workspace).queues()) {
        for (const QString &name : printers->names)
            m_ui->Combo2->addItem(name, name);
    }
    showSettings();
    connect(m_ui->Command7, &QPushButton::clicked, this, &DialogMeibo::chooseFont);
    connect(m_ui->Command49, &QPushButton::clicked, this, &DialogMeibo::preview);
    connect(m_ui->Command3, &QPushButton::clicked, this, &DialogMeibo::reject);
    setUp();
    showStates();
}

DialogMeibo::~DialogMeibo() = default;

void DialogMeibo::addColumns()
{
    QWidget *before = m_ui->Text4;
    const auto names = rosterColumnNames();
    for (std::size_t i = 0; i < names.size(); ++i) {
        auto *box = new QCheckBox(names[i], m_ui->frameColumns);
        box->setObjectName(u"chkColumn%1"_s.arg(i + 1));
        const int place = static_cast<int>(i);
        m_ui->layoutColumns->addWidget(box, place / columnsInRow, place % columnsInRow);
        setTabOrder(before, box);
        before = m_columns[i] = box;
        connect(box, &QCheckBox::toggled, this, &DialogMeibo::showStates);
    }
}

void DialogMeibo::showSettings()
{
    const workspace::Settings &settings = workspace().settings;
    m_ui->Text1->setText(settings.text(workspace::keys::meiboTitle));
    m_ui->Text2->setText(settings.text(workspace::keys::meiboTitle2));
    m_ui->Text3->setText(settings.text(workspace::keys::meiboTitle3));
    m_ui->Text4->setText(settings.text(workspace::keys::meiboTitle4));
    const auto shown = rosterColumnsFrom(settings.text(workspace::keys::meiboColumns));
    for (std::size_t i = 0; i < shown.size(); ++i)
        m_columns[i]->setChecked(shown[i]);
    const bool byReading = settings.checked(workspace::keys::meiboByReading);
    (byReading ? m_ui->Option1 : m_ui->Option2)->setChecked(true);
    const QString printer = settings.text(workspace::keys::meiboPrinterName);
    m_ui->Combo2->setCurrentIndex(m_ui->Combo2->findData(printer));
    m_ui->Combo2->setPlaceholderText(printer);
    m_ui->txtFontName->setText(settings.text(workspace::keys::meiboPrinterFont));
}

void DialogMeibo::storeSettings()
{
    workspace::Settings &settings = workspace().settings;
    const RosterOptions chosen = options();
    settings.write(workspace::keys::meiboTitle, chosen.title);
    settings.write(workspace::keys::meiboTitle2, chosen.phoneHeadings[0]);
    settings.write(workspace::keys::meiboTitle3, chosen.phoneHeadings[1]);
    settings.write(workspace::keys::meiboTitle4, chosen.phoneHeadings[2]);
    settings.write(workspace::keys::meiboColumns, storedRosterColumns(chosen.shown));
    settings.write(workspace::keys::meiboByReading, chosen.byReading);
    settings.write(workspace::keys::meiboPrinterFont, m_ui->txtFontName->text());
    // A printer that is switched off is missing from the list, and stays the chosen one.
    if (m_ui->Combo2->currentIndex() >= 0)
        settings.write(workspace::keys::meiboPrinterName, m_ui->Combo2->currentData().toString());
}

bool DialogMeibo::mayClose()
{
    storeSettings();
    return true;
}

RosterOptions DialogMeibo::options() const
{
    RosterOptions chosen{m_ui->Text1->text(),
                         {m_ui->Text2->text(), m_ui->Text3->text(), m_ui->Text4->text()},
                         {},
                         m_ui->Option1->isChecked()};
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        chosen.shown[i] = m_columns[i]->isChecked();
    return chosen;
}

void DialogMeibo::showStates()
{
    const bool any = std::any_of(m_columns.begin(), m_columns.end(),
                                 [](const QCheckBox *box) { return box && box->isChecked(); });
    m_ui->Command49->setEnabled(any);
    m_ui->lblCount->setText(u"%1 件を印刷します。"_s.arg(m_customers.size()));
}

void DialogMeibo::chooseFont()
{
    const auto chosen = ui::file_dialogs::chooseFont(
        this, QFont(printing::fontFace(workspace().settings, printing::Purpose::Rosters)), u"フォント"_s);
    if (chosen)
        m_ui->txtFontName->setText(printing::withoutVerticalMark(chosen->family()));
}

base::Result<printing::Document> DialogMeibo::document(const base::Progress &progress) const
{
    auto report = roster(workspace().connection, m_customers, options(), progress);
    if (!report)
        return report.error();
    printing::Document document;
    document.title = report->documentName;
    document.purpose = printing::Purpose::Rosters;
    const printing::ListPaper paper = printing::paperByWidths(*report);
    document.sheets =
        printing::listSheets(std::move(*report), text::formatDate(workspace().today()) + u" 現在"_s, paper);
    return document;
}

void DialogMeibo::preview()
{
    storeSettings();
    auto made = ui::runWithProgress(this, u"名簿を作成しています。"_s,
                                    [this](const base::Progress &progress) { return document(progress); });
    if (!made && made.error().cancelled)
        return;
    if (tell(made.status()))
        printing::showPreview(workspace(), this, std::move(*made));
}

} // namespace registers
