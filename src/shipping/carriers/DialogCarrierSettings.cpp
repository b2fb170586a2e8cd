#include "shipping/carriers/DialogCarrierSettings.h"

#include "text/width.h"
#include "ui/prompts.h"
#include "ui_DialogCarrierSettings.h"
#include "workspace/workspace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const CarrierSetting &settingNamed(CarrierProgram program, const QString &name)
{
    const auto &all = settingsOf(program);
    return *std::find_if(all.begin(), all.end(),
                         [&](const CarrierSetting &setting) { return setting.name == name; });
}

} // namespace

DialogCarrierSettings::DialogCarrierSettings(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogCarrierSettings>())
{
    using enum CarrierProgram;
    m_ui->setupUi(this);
    m_controls = {
        {B2Cloud, u"customer"_s, m_ui->txtB2Customer},   {B2Cloud, u"class"_s, m_ui->txtB2Class},
        {B2Cloud, u"freight"_s, m_ui->txtB2Freight},     {B2Cloud, u"payment"_s, m_ui->cboB2Payment},
        {B2Cloud, u"honorific"_s, m_ui->txtB2Honorific}, {B2Cloud, u"handling1"_s, m_ui->txtB2Handling1},
        {B2Cloud, u"handling2"_s, m_ui->txtB2Handling2}, {B2Cloud, u"heading"_s, m_ui->chkB2Heading},
        {B2Cloud, prefixSetting, m_ui->txtB2Prefix},     {Hiden3, u"customer"_s, m_ui->txtHidenCustomer},
        {Hiden3, u"payment"_s, m_ui->cboHidenPayment},   {Hiden3, u"packaging"_s, m_ui->txtHidenPackaging},
        {Hiden3, u"seal"_s, m_ui->txtHidenSeal},         {Hiden3, prefixSetting, m_ui->txtHidenPrefix},
        {Yupri, u"kind"_s, m_ui->txtYupriKind},          {Yupri, u"product"_s, m_ui->txtYupriProduct},
        {Yupri, u"size"_s, m_ui->txtYupriSize},          {Yupri, u"heading"_s, m_ui->chkYupriHeading},
        {Yupri, prefixSetting, m_ui->txtYupriPrefix}};
    for (const Control &control : m_controls)
        fill(control, CarrierSettings::read(workspace.settings, control.program));
    connect(m_ui->cmdOK, &QPushButton::clicked, this, [this] {
        if (store())
            accept();
    });
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &DialogCarrierSettings::reject);
    setUp();
}

DialogCarrierSettings::~DialogCarrierSettings() = default;

void DialogCarrierSettings::openPage(CarrierProgram program)
{
    m_program = program;
    m_ui->tabPrograms->setCurrentIndex(int(program));
}

void DialogCarrierSettings::fill(const Control &control, const CarrierSettings &values)
{
    const QString value = values.value(control.name);
    if (auto *line = qobject_cast<QLineEdit *>(control.box))
        line->setText(value);
    if (auto *tick = qobject_cast<QCheckBox *>(control.box))
        tick->setChecked(value == u"1");
    if (auto *list = qobject_cast<QComboBox *>(control.box)) {
        for (const QString &choice : settingNamed(control.program, control.name).choices)
            list->addItem(choice, choice.section(u' ', 0, 0));
        list->setCurrentIndex(list->findData(value));
    }
}

// Codes are half-width, whatever the input method left.
QString DialogCarrierSettings::valueIn(const Control &control)
{
    if (const auto *tick = qobject_cast<QCheckBox *>(control.box))
        return tick->isChecked() ? u"1"_s : u"0"_s;
    if (const auto *list = qobject_cast<QComboBox *>(control.box))
        return list->currentData().toString();
    const QString typed = qobject_cast<QLineEdit *>(control.box)->text().trimmed();
    if (settingNamed(control.program, control.name).kind == CarrierSetting::Kind::Text)
        return typed;
    return text::withPlainHyphens(text::toHalfWidthAscii(typed));
}

CarrierSettings DialogCarrierSettings::entered(CarrierProgram program) const
{
    CarrierSettings values;
    for (const Control &control : m_controls) {
        if (control.program == program)
            values.set(control.name, valueIn(control));
    }
    return values;
}

bool DialogCarrierSettings::isChanged() const
{
    return std::any_of(carrierPrograms.begin(), carrierPrograms.end(), [this](CarrierProgram program) {
        return entered(program) != CarrierSettings::read(workspace().settings, program);
    });
}

// A shop need not have every carrier: a page of another one that still is as it came is let be.
bool DialogCarrierSettings::isUsed(CarrierProgram program) const
{
    return program == m_program || entered(program) != CarrierSettings::read(workspace().settings, program);
}

bool DialogCarrierSettings::check(CarrierProgram program)
{
    for (const Control &control : m_controls) {
        if (control.program != program)
            continue;
        const QString fault = faultOf(settingNamed(program, control.name), valueIn(control));
        if (fault.isEmpty())
            continue;
        m_ui->tabPrograms->setCurrentIndex(int(program));
        ui::prompts::inform(this, fault);
        control.box->setFocus();
        return false;
    }
    return true;
}

bool DialogCarrierSettings::store()
{
    for (const CarrierProgram program : carrierPrograms) {
        if (isUsed(program) && !check(program))
            return false;
    }
    for (const CarrierProgram program : carrierPrograms) {
        if (isUsed(program))
            entered(program).write(workspace().settings, program);
    }
    return true;
}

bool DialogCarrierSettings::mayClose()
{
    if (!isChanged())
        return true;
    switch (ui::prompts::askHowToLeave(this, u"設定が変更されています。"_s,
                                       {u"保存する(&S)"_s, u"保存せずに閉じる(&D)"_s})) {
    case ui::prompts::Choice::Save:
        return store();
    case ui::prompts::Choice::Discard:
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

} // namespace shipping
