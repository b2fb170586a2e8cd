// The first steps of a new shop, in the place of the picture.
#include "app/main_window/command_panel.h"
#include "app/main_window/first_steps.h"
#include "app/main_window/frmAMain.h"
#include "app/main_window/panel_controls.h"
#include "book/slip_counts.h"
#include "text/numbers.h"
#include "ui/prompts.h"
#include "ui/up_down.h"
#include "ui_frmAMain.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QCheckBox>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

const QString stepsLayout = u"frmAMain/firstSteps"_s;
const QString rateOffer = u"frmAMain/taxRateOffer"_s;
const QString dismissed = u"closed"_s;

// What does \a step; none for the tax rate, which has its box on the window.
std::optional<Action> actionOf(FirstStep step)
{
    switch (step) {
    case FirstStep::Company:
        return Action::OwnCompany;
    case FirstStep::Employees:
        return Action::Employees;
    case FirstStep::TaxRate:
        return std::nullopt;
    case FirstStep::Categories:
        return Action::CustomerCategories;
    case FirstStep::Customers:
        return Action::Customers;
    case FirstStep::DeliveryNote:
        return Action::Sales;
    }
    return std::nullopt;
}

} // namespace

void frmAMain::buildFirstSteps()
{
    m_steps = new FirstSteps(this);
    m_steps->setObjectName(u"fraFirstSteps"_s);
    m_steps->hide();
    m_ui->pictureLayout->insertWidget(0, m_steps, 1);
    QWidget *before = m_ui->dbcShain;
    const auto buttons = m_steps->buttons();
    for (QPushButton *button : buttons) {
        setTabOrder(before, button);
        before = button;
    }
    connect(m_steps, &FirstSteps::chosen, this, &frmAMain::takeStep);
    connect(m_steps, &FirstSteps::dismissed, this, [this] {
        m_workspace.settings.writeLayout(stepsLayout, dismissed);
        lookForFirstSteps();
    });
    connect(m_ui->txtTaxRate, &QLineEdit::editingFinished, this, &frmAMain::showFirstSteps);
    connect(m_ui->UpDown1, &ui::UpDown::stepped, this, &frmAMain::showFirstSteps);
    connect(m_ui->chkTaxTable, &QCheckBox::clicked, this, &frmAMain::showFirstSteps);
}

// A shop that has written a delivery note knows its way, whatever it never registered.
void frmAMain::lookForFirstSteps()
{
    m_isNewShop = false;
    if (m_session.isUsable() && m_workspace.settings.layout(stepsLayout) != dismissed) {
        const auto any = book::hasSlips(m_workspace.connection, book::sale);
        m_isNewShop = any && !*any;
    }
    showFirstSteps();
}

void frmAMain::showFirstSteps()
{
    bool shown = m_isNewShop && m_session.isUsable();
    if (shown) {
        // The rate that the program comes with is not in force any more.
        const double delivered = QString::fromUtf16(workspace::keys::taxRate.fallback).toDouble();
        const workspace::Panel &panel = m_workspace.panel;
        const auto done =
            firstStepsDone(m_workspace.connection, panel.followsTaxTable || panel.taxRate != delivered);
        shown = done && std::ranges::count(*done, false) > 0;
        if (done)
            m_steps->showDone(*done);
    }
    m_steps->setVisible(shown);
    m_ui->Picture1->setVisible(!shown);
}

// A clerk of today means the rates of the law; the box for one rate stays for who wants that.
void frmAMain::chooseTaxRate()
{
    const QString byTable = u"税率表に従う(&T)"_s;
    const auto way = ui::prompts::askWhichWay(
        this, u"消費税率を、税率表（標準・軽減、日付ごと）から自動で決めますか。"_s,
        {byTable, u"税率を入力する(&K)"_s},
        u"税率表は「初期設定」の「消費税率表」で確認できます。あとから変更もできます。"_s);
    if (!way)
        return;
    m_controls->followTaxTable(*way == 0);
    if (*way == 0)
        return;
    m_ui->txtTaxRate->setFocus();
    m_ui->txtTaxRate->selectAll();
}

// Asked once: who goes on with the rate that the program came with has been told.
bool frmAMain::taxRateSettled()
{
    const workspace::Panel &panel = m_workspace.panel;
    if (panel.followsTaxTable || m_workspace.settings.layout(rateOffer) == dismissed)
        return true;
    const auto offered = rateToOffer(m_workspace.connection, panel.taxRate, m_workspace.today());
    if (!tell(offered.status()))
        return false;
    if (!*offered)
        return true;
    const QString byHand = text::formatPlain(panel.taxRate);
    const auto way = ui::prompts::askWhichWay(
        this,
        u"メイン画面の消費税率は %1％ ですが、税率表では、今日の標準の税率は %2％ です。\n"
        "税率表に従って納品書を作りますか。"_s.arg(byHand, text::formatPlain(**offered)),
        {u"税率表に従う(&T)"_s, u"%1％のまま続ける(&K)"_s.arg(byHand)});
    if (!way)
        return false;
    m_controls->followTaxTable(*way == 0);
    m_workspace.settings.writeLayout(rateOffer, dismissed);
    showFirstSteps();
    return true;
}

void frmAMain::takeStep(FirstStep step)
{
    const auto action = actionOf(step);
    if (!action) {
        chooseTaxRate();
        showFirstSteps();
        return;
    }
    const auto command = std::ranges::find(commands(), *action, &Command::action);
    if (command != commands().end())
        run(*command);
    // A refusal may have put the cursor where it can be cured.
    if (!m_steps->isHidden() && m_steps->isAncestorOf(focusWidget()))
        m_steps->focusNext();
}

} // namespace app
