#include "masters/frmMyco.h"

#include "masters/registration_number.h"
#include "text/width.h"
#include "ui/prompts.h"
#include "ui/second_letter.h"
#include "ui/width_check.h"
#include "ui_frmMyco.h"

#include <QEvent>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

QString telephone(const QString &typed) { return text::toHalfWidth(text::withPlainHyphens(typed)); }

} // namespace

frmMyco::frmMyco(workspace::Workspace &workspace, QWidget *parent)
    : MasterEditor(workspace, definitionOf(Master::OwnCompany), parent)
{
    Ui::frmMyco form;
    form.setupUi(this);
    for (QLineEdit *box : {form.txtName1, form.txtName2, form.txtAddress1, form.txtAddress2})
        ui::WidthCheck::guard(box, ui::nameWidth);
    Controls controls = buttonsOf(form);
    controls.edit = form.cmdEdit;
    controls.fields = {{form.txtID, u"会社ID"_s},
                       {form.txtName1, u"会社名1"_s},
                       {form.txtName2, u"会社名2"_s},
                       {form.txtZip, u"郵便番号"_s},
                       {form.txtAddress1, u"住所1"_s},
                       {form.txtAddress2, u"住所2"_s},
                       {form.txtTel1, u"TEL1"_s},
                       {form.txtTel2, u"TEL2"_s},
                       {form.txtFax, u"FAX"_s},
                       {form.txtBank1, u"取引銀行1"_s},
                       {form.txtBank2, u"取引銀行2"_s},
                       {form.txtMemo, u"備考"_s},
                       {form.txtRegistration, u"登録番号"_s}};
    watchForms({{form.txtTel1, telephone},
                {form.txtTel2, telephone},
                {form.txtFax, telephone},
                {form.txtRegistration, registrationNumber}});
    m_registration = form.txtRegistration;
    connect(m_registration, &QLineEdit::textChanged, form.lblRegistrationRemark,
            [remark = form.lblRegistrationRemark](const QString &text) {
                remark->setText(registrationRemark(text));
            });
    ui::pressAlsoBy(*form.cmdUpdate, Qt::Key_I);
    m_postal = {form.txtZip, form.txtAddress1, form.txtAddress2, form.cmdZip, form.cmdZipSearch};
    form.txtZip->installEventFilter(this);
    start(std::move(controls));
}

// A code is looked up only where it can be typed.
bool frmMyco::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_postal.zip && event->type() == QEvent::ReadOnlyChange)
        m_postal.lookUp->setEnabled(!m_postal.zip->isReadOnly());
    return MasterEditor::eventFilter(watched, event);
}

// Only what was typed is brought into form: passing through a box with the cursor is no edit.
void frmMyco::watchForms(const QList<FormedBox> &boxes)
{
    m_formed = boxes;
    for (const FormedBox &formed : boxes)
        connect(formed.box, &QLineEdit::editingFinished, this, [formed] { bringIntoForm(formed); });
}

void frmMyco::bringIntoForm(const FormedBox &formed)
{
    if (formed.box->isModified())
        formed.box->setText(formed.stored(formed.box->text()));
}

// A button pressed by its letter does not take the cursor out of the box.
bool frmMyco::mayStore()
{
    for (const FormedBox &formed : std::as_const(m_formed))
        bringIntoForm(formed);
    const QString number = m_registration->text();
    if (number.isEmpty() || isRegistrationNumber(number))
        return true;
    m_registration->setFocus();
    return ui::prompts::askCautiously(
        this, u"登録番号「%1」は「T」と数字13桁ではありません。このまま登録しますか。"_s.arg(number));
}

} // namespace masters
