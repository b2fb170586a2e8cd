#include "registers/CustomerPanel.h"

#include "db/recordset.h"
#include "registers/counterpart.h"
#include "registers/customer.h"
#include "registers/postal/postal_boxes.h"
#include "text/width.h"
#include "ui/desktop.h"
#include "ui/drop_down.h"
#include "ui/leave_watch.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/width_check.h"
#include "ui_CustomerPanel.h"

#include <QEvent>

#include <utility>

using namespace Qt::StringLiterals;

namespace registers
{

CustomerPanel::CustomerPanel(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CustomerPanel>())
{
    m_ui->setupUi(this);
    // Stands for its boxes in the screen's tab order.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->txtCode);
    fillDropDowns();
    m_ui->txtMail->installEventFilter(this);
    for (QLineEdit *box : std::initializer_list<QLineEdit *>{m_ui->txtName, m_ui->txtName2, m_ui->txtAddress,
                                                             m_ui->txtAddress2})
        ui::WidthCheck::guard(box, ui::nameWidth);
    ui::WidthCheck::guard(m_ui->txtMemo, ui::noteWidth);
}

CustomerPanel::~CustomerPanel() = default;

void CustomerPanel::bind(db::Connection &connection, db::Recordset &customers)
{
    m_connection = &connection;
    m_customers = &customers;
    m_boxes = std::make_unique<ui::RecordPanel>(customers, nullptr);
    const std::pair<QLineEdit *, QString> boxes[] = {
        {m_ui->txtID, u"納品先ID"_s},       {m_ui->txtCode, u"コード"_s},
        {m_ui->txtName, u"納品先名1"_s},    {m_ui->txtName2, u"納品先名2"_s},
        {m_ui->txtFurigana, u"フリガナ"_s}, {m_ui->txtName4, u"納品先名キー"_s},
        {m_ui->txtZip, u"郵便番号"_s},      {m_ui->txtAddress, u"住所1"_s},
        {m_ui->txtAddress2, u"住所2"_s},    {m_ui->txtTel, u"TEL1"_s},
        {m_ui->txtFax, u"FAX"_s},           {m_ui->txtKeitai, u"TEL2"_s},
        {m_ui->txtMail, u"メール"_s},       {m_ui->txtMemo, u"メモ"_s},
        {m_ui->txtTantou, u"担当者名"_s},   {m_ui->Text2, u"締め日"_s},
        {m_ui->Text1, u"消費税区分"_s},
    };
    for (const auto &[box, column] : boxes)
        m_boxes->bind(box, column);
    m_boxes->bindDay(m_ui->txtDate1, u"登録日"_s);
    m_boxes->bindDay(m_ui->txtDate2, u"更新日"_s);
    m_boxes->bindDay(m_ui->txtBarth, u"誕生日"_s);
    m_boxes->bind(m_ui->Check1, u"元帳出力"_s);

    ui::bindDropDown(m_ui->cmdBill, m_ui->Text2, m_ui->lblNoDay);
    ui::bindDropDown(m_ui->Combo1, m_ui->Text1, m_ui->lblNoTax);
    connect(&customers, &db::Recordset::currentRowChanged, this, &CustomerPanel::showCategory);
    connect(m_ui->dbcKubun, &QComboBox::activated, this, &CustomerPanel::chooseCategory);
    connect(&customers, &db::Recordset::currentRowChanged, this, &CustomerPanel::showHonorific);
    connect(m_ui->cmbHonorific, &QComboBox::activated, this, &CustomerPanel::chooseHonorific);
    connectReading();
    connectForms();
}

void CustomerPanel::fillDropDowns()
{
    m_ui->cmdBill->addItems(closingDayNames());
    m_ui->cmdBill->setCurrentIndex(-1);
    m_ui->Combo1->addItems(taxClassNames());
    for (const QString &honorific : honorifics())
        m_ui->cmbHonorific->addItem(honorific);
}

void CustomerPanel::connectReading()
{
    QLineEdit *reading = m_ui->txtFurigana;
    const auto normalise = [this, reading] {
        if (m_customers->isEdited(u"フリガナ"_s))
            reading->setText(text::normalisedReading(reading->text()));
    };
    connect(m_ui->txtName, &ui::ReadingLineEdit::readingConfirmed, reading,
            [reading](const QString &kana) { reading->setText(reading->text() + kana); });
    connect(m_ui->txtName, &QLineEdit::textEdited, reading, [reading](const QString &name) {
        if (name.isEmpty())
            reading->clear();
    });
    connect(m_ui->txtName, &QLineEdit::editingFinished, this, normalise);
    connect(reading, &QLineEdit::editingFinished, this, normalise);
}

// Only what was typed is brought into form: passing through a box with the cursor is no edit.
void CustomerPanel::connectForms()
{
    const auto form = [this](QLineEdit *box, const QString &column, QString (*stored)(const QString &)) {
        connect(box, &QLineEdit::editingFinished, this, [this, box, column, stored] {
            if (m_customers->isEdited(column))
                box->setText(stored(box->text()));
        });
    };
    form(m_ui->txtTel, u"TEL1"_s, normalisedPhone);
    form(m_ui->txtFax, u"FAX"_s, normalisedPhone);
    form(m_ui->txtKeitai, u"TEL2"_s, normalisedPhone);
    form(m_ui->txtMail, u"メール"_s, normalisedMail);
    m_codeWatch = new ui::LeaveWatch(m_ui->txtCode);
    connect(m_codeWatch, &ui::LeaveWatch::left, this, &CustomerPanel::warnOfSharedCode);
}

void CustomerPanel::connectPostalCodes(workspace::Workspace &workspace)
{
    m_postal = new PostalBoxes(workspace, {.zip = m_ui->txtZip,
                                           .address = m_ui->txtAddress,
                                           .address2 = m_ui->txtAddress2,
                                           .remark = m_ui->cmdZipSearch});
    m_postal->fillOnLeavingAddress();
    connect(m_ui->Command3, &QPushButton::clicked, m_postal, &PostalBoxes::lookUp);
}

base::Status CustomerPanel::loadCategories()
{
    auto found = masters::customerCategories(*m_connection);
    if (!found)
        return found.error();
    m_categories = std::move(*found);
    m_ui->dbcKubun->clear();
    for (const masters::Entry &category : m_categories)
        m_ui->dbcKubun->addItem(category.name, category.id);
    showCategory();
    return {};
}

void CustomerPanel::settle()
{
    m_codeWatch->settle();
    m_postal->settle();
}

void CustomerPanel::forget()
{
    m_codeWatch->forget();
    m_postal->forget();
}

void CustomerPanel::showRow()
{
    m_boxes->show();
    showCategory();
    showHonorific();
}

void CustomerPanel::showCategory()
{
    const qint64 key = m_customers->currentKey();
    if (std::exchange(m_shown, key) != key)
        m_categoryBefore.reset();
    const QVariant category = m_customers->value(u"区分ID"_s);
    m_ui->dbcKubun->setCurrentIndex(category.isNull() ? -1 : m_ui->dbcKubun->findData(category.toLongLong()));
}

// One that another program wrote is shown as it stands.
void CustomerPanel::showHonorific()
{
    const QString chosen = m_customers->text(u"敬称"_s);
    m_ui->cmbHonorific->setPlaceholderText(chosen.isEmpty() ? u"様（標準）"_s : chosen);
    m_ui->cmbHonorific->setCurrentIndex(chosen.isEmpty() ? -1 : m_ui->cmbHonorific->findText(chosen));
}

void CustomerPanel::chooseHonorific(int index)
{
    m_customers->setValue(u"敬称"_s, m_ui->cmbHonorific->itemText(index));
}

void CustomerPanel::chooseCategory(int index)
{
    const qint64 category = m_ui->dbcKubun->itemData(index).toLongLong();
    const std::optional<QVariant> wayBack = m_categoryBefore;
    if (!m_categoryBefore)
        m_categoryBefore = m_customers->value(u"区分ID"_s);
    const base::Status saved = saveCategory(*m_connection, *m_customers, category);
    if (!saved) {
        m_categoryBefore = wayBack;
        showCategory();
        ui::prompts::inform(window(), saved.error().text);
    }
}

bool CustomerPanel::canTakeBack() const
{
    const bool otherCategory = m_categoryBefore && !m_categoryBefore->isNull() &&
                               m_customers->value(u"区分ID"_s) != *m_categoryBefore;
    return m_customers->isDirty() || otherCategory;
}

void CustomerPanel::takeBack()
{
    const bool otherDay = m_customers->isEdited(u"締め日"_s);
    m_customers->revert();
    // An empty closing day leaves its list as it is, which is now the day that was taken back.
    if (otherDay && m_ui->Text2->text().isEmpty())
        m_ui->cmdBill->setCurrentIndex(-1);
    const bool otherCategory = canTakeBack();
    const std::optional<QVariant> before = std::exchange(m_categoryBefore, std::nullopt);
    if (!otherCategory)
        return;
    const base::Status saved = saveCategory(*m_connection, *m_customers, before->toLongLong());
    showCategory();
    if (!saved) {
        // What another program made of it is no way back.
        if (!saved.error().changed)
            m_categoryBefore = before;
        ui::prompts::inform(window(), saved.error().text);
    }
}

void CustomerPanel::warnOfSharedCode()
{
    const auto shared = codeIsShared(*m_connection, *m_customers);
    if (shared && *shared)
        ui::prompts::inform(window(), ui::messages::sharedCode());
}

void CustomerPanel::beginEntry()
{
    m_ui->cmdBill->setCurrentIndex(-1);
    m_ui->txtName->setFocus();
}

void CustomerPanel::focusColumn(const QString &column)
{
    if (column == u"納品先名1"_s)
        m_ui->txtName->setFocus();
    else if (column == u"区分ID"_s)
        m_ui->dbcKubun->setFocus();
    else if (column == u"郵便番号"_s)
        m_ui->txtZip->setFocus();
    else if (column == u"誕生日"_s)
        m_ui->txtBarth->setFocus();
}

bool CustomerPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->txtMail && event->type() == QEvent::MouseButtonDblClick) {
        if (const auto link = mailLink(m_ui->txtMail->text()))
            return ui::desktop::open(*link);
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace registers
