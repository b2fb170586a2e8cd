#include "app/main_window/panel_controls.h"

#include "db/connection.h"
#include "slips/tax_rates_of.h"
#include "text/numbers.h"
#include "ui/prompts.h"
#include "ui/up_down.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

// In the order of Controls::checks.
const struct CheckControl
{
    const workspace::SettingKey &key;
    bool workspace::Panel::*value;
} checks[] = {
    {workspace::keys::check[0], &workspace::Panel::automaticNumbers},
    {workspace::keys::check[1], &workspace::Panel::transferFormAfterDelivery},
    {workspace::keys::check[2], &workspace::Panel::omitCompanyName},
    {workspace::keys::check[3], &workspace::Panel::extendedCompanyName},
    {workspace::keys::check[4], &workspace::Panel::transferFormAfterBill},
    {workspace::keys::check[5], &workspace::Panel::deliveryNoticeMailOrder},
    {workspace::keys::check[6], &workspace::Panel::deliveryNotice},
    {workspace::keys::check[7], &workspace::Panel::customerOption},
};

const struct ComboControl
{
    QComboBox *PanelControls::Controls::*box;
    const workspace::SettingKey &key;
    QString workspace::Panel::*value;
    QStringList items;
} combos[] = {
    {&PanelControls::Controls::deliveryPaper,
     workspace::keys::deliveryPaper,
     &workspace::Panel::deliveryPaper,
     {u"HISAGO 1149"_s, u"HISAGO BP0201"_s, u"A4 無地"_s}},
    {&PanelControls::Controls::billPaper,
     workspace::keys::billPaper,
     &workspace::Panel::billPaper,
     {u"HISAGO 1148"_s, u"A4 無地"_s}},
    // The shipping-slip forms by their names.
    {&PanelControls::Controls::carrier,
     workspace::keys::carrier,
     &workspace::Panel::carrier,
     {u"宅急便"_s, u"宅急便　コレクト"_s, u"佐川急便"_s, u"ゆうパック"_s, u"宛名ラベル"_s,
      u"オリジナル荷札１"_s, u"オリジナル荷札２"_s, u"オリジナル荷札３"_s, u"オリジナル伝票"_s}},
};

const QString spacingNames[] = {u"グリッドの間隔　小"_s, u"グリッドの間隔　中"_s, u"グリッドの間隔　大"_s};

constexpr double highestTaxRate = 100; // percent

bool isTaxRate(std::optional<double> rate) { return rate && *rate >= 0 && *rate <= highestTaxRate; }

} // namespace

PanelControls::PanelControls(QWidget &window, workspace::Workspace &workspace, const Controls &controls)
    : QObject(&window)
    , m_window(window)
    , m_workspace(workspace)
    , m_controls(controls)
{
    bindChecks();
    bindCombos();
    bindTaxRate();
    bindSizes();
    QLineEdit *infix = m_controls.numberInfix;
    connect(infix, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_workspace.panel.numberInfix = text; });
    connect(infix, &QLineEdit::editingFinished, this, &PanelControls::save);
}

void PanelControls::bindChecks()
{
    for (std::size_t i = 0; i < std::size(checks); ++i) {
        connect(m_controls.checks[i], &QCheckBox::toggled, this,
                [this, value = checks[i].value](bool on) { m_workspace.panel.*value = on; });
        connect(m_controls.checks[i], &QCheckBox::clicked, this, &PanelControls::save);
    }
}

void PanelControls::bindCombos()
{
    for (const ComboControl &combo : combos) {
        QComboBox *box = m_controls.*combo.box;
        box->addItems(combo.items);
        connect(box, &QComboBox::currentTextChanged, this,
                [this, value = combo.value](const QString &text) { m_workspace.panel.*value = text; });
        connect(box, &QComboBox::activated, this, &PanelControls::save);
    }
    connect(m_controls.carrier, &QComboBox::currentTextChanged, this, &PanelControls::carrierChanged);
}

void PanelControls::bindTaxRate()
{
    connect(m_controls.taxRate, &QLineEdit::textEdited, this, &PanelControls::taxRateEdited);
    connect(m_controls.taxRate, &QLineEdit::editingFinished, this, &PanelControls::taxRateLeft);
    connect(m_controls.taxRateSteps, &ui::UpDown::stepped, this, &PanelControls::stepTaxRate);
    connect(m_controls.taxTable, &QCheckBox::clicked, this, &PanelControls::followTaxTable);
}

void PanelControls::bindSizes()
{
    connect(m_controls.nextTextSize, &QPushButton::clicked, this, [this] {
        int &size = m_workspace.panel.textSize;
        size = size == 10 ? 11 : 10;
        showSizes();
    });
    connect(m_controls.nextSpacing, &QPushButton::clicked, this, [this] {
        workspace::GridSpacing &spacing = m_workspace.panel.gridSpacing;
        spacing = static_cast<workspace::GridSpacing>((static_cast<int>(spacing) + 1) % 3);
        showSizes();
    });
}

void PanelControls::load()
{
    const workspace::Settings &settings = m_workspace.settings;
    workspace::Panel &panel = m_workspace.panel;
    for (std::size_t i = 0; i < std::size(checks); ++i) {
        panel.*checks[i].value = settings.checked(checks[i].key);
        m_controls.checks[i]->setChecked(panel.*checks[i].value);
    }
    for (const ComboControl &combo : combos) {
        QComboBox *box = m_controls.*combo.box;
        const int stored = box->findText(settings.text(combo.key));
        box->setCurrentIndex(stored >= 0 ? stored : box->findText(QString::fromUtf16(combo.key.fallback)));
        panel.*combo.value = box->currentText();
    }
    panel.slipPaperDeclared = settings.checked(workspace::keys::kuUserSize);
    carrierChanged();
    m_controls.numberInfix->setText(settings.text(workspace::keys::denNo));
    const double rate = settings.number(workspace::keys::taxRate);
    panel.taxRate = isTaxRate(rate) ? rate : 0;
    panel.followsTaxTable = settings.checked(workspace::keys::taxTable);
    showTaxRate();
    panel.textSize = settings.integer(workspace::keys::fontSize) == 11 ? 11 : 10;
    const auto *spacing =
        std::find(std::begin(spacingNames), std::end(spacingNames), settings.text(workspace::keys::gridSize));
    panel.gridSpacing = spacing == std::end(spacingNames)
                            ? workspace::GridSpacing::Small
                            : static_cast<workspace::GridSpacing>(spacing - std::begin(spacingNames));
    showSizes();
}

void PanelControls::save() const
{
    workspace::Settings &settings = m_workspace.settings;
    const workspace::Panel &panel = m_workspace.panel;
    for (const CheckControl &check : checks)
        settings.write(check.key, panel.*check.value);
    for (const ComboControl &combo : combos)
        settings.write(combo.key, panel.*combo.value);
    settings.write(workspace::keys::denNo, panel.numberInfix);
    settings.write(workspace::keys::taxRate, panel.taxRate);
    settings.write(workspace::keys::taxTable, panel.followsTaxTable);
    settings.write(workspace::keys::fontSize, panel.textSize);
    settings.write(workspace::keys::gridSize, spacingNames[static_cast<int>(panel.gridSpacing)]);
}

void PanelControls::carrierChanged()
{
    m_controls.checks[6]->setEnabled(m_controls.carrier->currentText() == u"ゆうパック"_s);
}

void PanelControls::taxRateEdited()
{
    if (const auto rate = text::parseNumber(m_controls.taxRate->text()); isTaxRate(rate))
        m_workspace.panel.taxRate = *rate;
}

void PanelControls::taxRateLeft()
{
    if (m_telling || m_workspace.panel.followsTaxTable)
        return;
    if (!isTaxRate(text::parseNumber(m_controls.taxRate->text()))) {
        m_telling = true;
        ui::prompts::inform(&m_window, u"消費税率は０から１００までの数字で入力してください。"_s,
                            QString::fromUtf16(ui::prompts::errorCheck));
        m_telling = false;
        m_workspace.panel.taxRate = m_agreedTaxRate;
    }
    showTaxRate();
    save();
}

void PanelControls::stepTaxRate(int direction)
{
    const double rate = m_workspace.panel.taxRate + direction;
    if (!isTaxRate(rate))
        return;
    m_workspace.panel.taxRate = rate;
    showTaxRate();
    save();
}

void PanelControls::followTaxTable(bool follows)
{
    m_workspace.panel.followsTaxTable = follows;
    showTaxRate();
    save();
}

// The rate that was kept by hand waits behind the table's.
void PanelControls::showTaxRate()
{
    const bool follows = m_workspace.panel.followsTaxTable;
    m_agreedTaxRate = m_workspace.panel.taxRate;
    m_controls.taxTable->setChecked(follows);
    m_controls.taxRate->setReadOnly(follows);
    m_controls.taxRateSteps->setEnabled(!follows);
    if (!follows) {
        m_controls.taxRate->setText(text::formatPlain(m_agreedTaxRate));
        return;
    }
    const bool isOpen = m_workspace.connection.isOpen();
    const auto today = isOpen ? slips::slipRateOf(m_workspace, m_workspace.today()) : 0.0;
    m_controls.taxRate->setText(isOpen && today ? text::formatPlain(*today) : QString());
}

void PanelControls::showSizes()
{
    m_controls.textSize->setText(QString::number(m_workspace.panel.textSize));
    m_controls.spacing->setText(spacingNames[static_cast<int>(m_workspace.panel.gridSpacing)]);
}

} // namespace app
