// The first steps of a new shop, in the place of the picture.
#include "app/main_window/command_panel.h"
#include "app/main_window/first_steps.h"
#include "app/main_window/frmAMain.h"
#include "app/main_window/up_down.h"
#include "book/slip_counts.h"
#include "ui_frmAMain.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

const QString stepsLayout = u"frmAMain/firstSteps"_s;
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
    connect(m_ui->UpDown1, &UpDown::stepped, this, &frmAMain::showFirstSteps);
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
        const auto done = firstStepsDone(m_workspace.connection, m_workspace.panel.taxRate != delivered);
        shown = done && std::ranges::count(*done, false) > 0;
        if (done)
            m_steps->showDone(*done);
    }
    m_steps->setVisible(shown);
    m_ui->Picture1->setVisible(!shown);
}

void frmAMain::takeStep(FirstStep step)
{
    const auto action = actionOf(step);
    if (!action) {
        m_ui->txtTaxRate->setFocus();
        m_ui->txtTaxRate->selectAll();
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
