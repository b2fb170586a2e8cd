#include "slips/documents/DialogMitsumori.h"

#include "printing/font_names.h"
#include "printing/forms/form_files.h"
#include "printing/frmPreview.h"
#include "slips/documents/note_document.h"
#include "slips/issued/issued_documents.h"
#include "text/numbers.h"
#include "ui/file_dialogs.h"
#include "ui_DialogMitsumori.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QFontDatabase>

using namespace Qt::StringLiterals;

namespace slips
{

DialogMitsumori::DialogMitsumori(workspace::Workspace &workspace, EstimateData estimate, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogMitsumori>())
    , m_data(std::move(estimate))
{
    m_ui->setupUi(this);
    showData();
    showSettings();
    connect(m_ui->Check1, &QCheckBox::toggled, m_ui->DTPicker1, &QWidget::setEnabled);
    connect(m_ui->Check2, &QCheckBox::toggled, m_ui->DTPicker2, &QWidget::setEnabled);
    connect(m_ui->Command7, &QPushButton::clicked, this, &DialogMitsumori::chooseFont);
    connect(m_ui->Command2, &QPushButton::clicked, this, &DialogMitsumori::preview);
    connect(m_ui->Command3, &QPushButton::clicked, this, &DialogMitsumori::reject);
    setUp();
}

DialogMitsumori::~DialogMitsumori() = default;

void DialogMitsumori::showData()
{
    m_ui->txtKingaku->setText(text::formatAmount(m_data.total()));
    m_ui->lblTax->setText(taxWords(m_data.taxed));
    m_ui->txtDenNo->setText(m_data.slip.number);
    m_ui->txtNouhinsaki1->setText(m_data.slip.name1);
    m_ui->txtNouhinsaki2->setText(m_data.slip.name2);
    m_ui->txtMemo->setPlainText(m_data.terms.remarks);
}

// The days are kept, not the dates: the next estimate is as long valid as this one.
void DialogMitsumori::showSettings()
{
    const workspace::Settings &settings = workspace().settings;
    const QDate start = m_data.slip.date.isValid() ? m_data.slip.date : workspace().today();
    m_ui->DTPicker1->setDate(start.addDays(settings.integer(workspace::keys::estimateValidDays)));
    m_ui->DTPicker2->setDate(start.addDays(settings.integer(workspace::keys::estimateDeliveryDays)));
    m_ui->Check1->setChecked(settings.checked(workspace::keys::estimateValid));
    m_ui->Check2->setChecked(settings.checked(workspace::keys::estimateDelivery));
    m_ui->DTPicker1->setEnabled(m_ui->Check1->isChecked());
    m_ui->DTPicker2->setEnabled(m_ui->Check2->isChecked());
    m_ui->Text1->setText(settings.text(workspace::keys::estimatePayment));
    m_ui->Text2->setText(settings.text(workspace::keys::estimatePlace));
    m_ui->txtFontName->setText(settings.text(printing::fontKey(printing::Purpose::DeliveryNotesAndBills)));
}

void DialogMitsumori::storeSettings()
{
    workspace::Settings &settings = workspace().settings;
    const QDate start = m_data.slip.date.isValid() ? m_data.slip.date : workspace().today();
    settings.write(workspace::keys::estimateValidDays,
                   QString::number(start.daysTo(m_ui->DTPicker1->date())));
    settings.write(workspace::keys::estimateDeliveryDays,
                   QString::number(start.daysTo(m_ui->DTPicker2->date())));
    settings.write(workspace::keys::estimateValid, m_ui->Check1->isChecked());
    settings.write(workspace::keys::estimateDelivery, m_ui->Check2->isChecked());
    settings.write(workspace::keys::estimatePayment, m_ui->Text1->text());
    settings.write(workspace::keys::estimatePlace, m_ui->Text2->text());
    // Delivery notes and bills are printed in it, too.
    settings.write(printing::fontKey(printing::Purpose::DeliveryNotesAndBills), m_ui->txtFontName->text());
}

void DialogMitsumori::chooseFont()
{
    const QFont shown(printing::installedFace(m_ui->txtFontName->text(), QFontDatabase::families()));
    if (const auto chosen = ui::file_dialogs::chooseFont(this, shown, u"フォント"_s))
        m_ui->txtFontName->setText(printing::withoutVerticalMark(chosen->family()));
}

EstimateData DialogMitsumori::entered() const
{
    EstimateData estimate = m_data;
    estimate.slip.name1 = m_ui->txtNouhinsaki1->text();
    estimate.slip.name2 = m_ui->txtNouhinsaki2->text();
    if (m_ui->Check1->isChecked())
        estimate.terms.validUntil = m_ui->DTPicker1->date();
    if (m_ui->Check2->isChecked())
        estimate.terms.deliveryDate = m_ui->DTPicker2->date();
    estimate.terms.payment = m_ui->Text1->text();
    estimate.terms.place = m_ui->Text2->text();
    estimate.terms.remarks = m_ui->txtMemo->toPlainText();
    return estimate;
}

void DialogMitsumori::preview()
{
    storeSettings();
    printing::Document document;
    document.title = u"見積書 "_s + m_data.slip.number;
    document.purpose = printing::Purpose::DeliveryNotesAndBills;
    const printing::FormFile layout = printing::loadForm(workspace().applicationFolder(),
                                                         QString::fromUtf16(estimateLayout), estimateItems());
    QStringList remarks{roomRemark(m_data.rates), layout.complaint};
    remarks.removeAll(QString());
    document.remark = remarks.join(u'\n');
    EstimateData estimate = entered();
    estimate.companyName = addCompanyName(document, workspace(), estimate.companyName);
    document.sheets = estimateSheets(estimate, layout.form);
    document.keep = keeperOf(workspace(), describedDocument(QString::fromUtf16(estimateKind), book::estimate,
                                                            estimate.slip, estimate.total()));
    const bool issued = printing::showPreview(workspace(), this, std::move(document));
    m_issued = m_issued || issued;
}

} // namespace slips
