// Whom the main window knows of the open file: the person in charge, the own company, the other party.
#include "app/main_window/command_panel.h"
#include "app/main_window/frmAMain.h"
#include "app/main_window/shop_facts.h"
#include "masters/name_lists.h"
#include "masters/own_company.h"
#include "registers/last_counterparts.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_frmAMain.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace app
{

// After a change of file nobody is chosen: the next slip is not to go to somebody's account unseen. Who it
// was can be taken again by Enter, which finds the cursor there and not on a button.
void frmAMain::offerFormerEmployee()
{
    QComboBox *box = m_ui->dbcShain;
    const bool isOffered =
        box->currentIndex() < 0 && !m_formerEmployee.isEmpty() && box->findText(m_formerEmployee) >= 0;
    box->setPlaceholderText(isOffered ? u"Enter で %1"_s.arg(m_formerEmployee) : QString());
    if (isOffered)
        box->setFocus();
}

bool frmAMain::takeFormerEmployee()
{
    QComboBox *box = m_ui->dbcShain;
    const int former = m_formerEmployee.isEmpty() ? -1 : box->findText(m_formerEmployee);
    if (focusWidget() != box || box->currentIndex() >= 0 || former < 0)
        return false;
    box->setCurrentIndex(former);
    m_workspace.settings.write(workspace::keys::employee, m_ui->txtShainID->text());
    return true;
}

void frmAMain::reloadEmployees(qint64 chosen)
{
    if (!m_session.isOpen())
        return;
    const auto employees = masters::employees(m_workspace.connection);
    if (!tell(employees.status()))
        return;
    QComboBox *box = m_ui->dbcShain;
    {
        const QSignalBlocker quiet(box);
        box->clear();
        for (const masters::Entry &employee : *employees)
            box->addItem(employee.name, employee.id);
        box->setCurrentIndex(box->findData(chosen));
    }
    employeeSelected();
}

// Where there is no choice. Not when somebody else is gone from the list: slips would go to another account
// unseen.
void frmAMain::chooseOnlyEmployee()
{
    if (m_ui->dbcShain->count() == 1 && m_ui->dbcShain->currentIndex() < 0)
        m_ui->dbcShain->setCurrentIndex(0);
}

void frmAMain::employeeSelected()
{
    workspace::Panel &panel = m_workspace.panel;
    panel.employeeId = m_ui->dbcShain->currentData().toLongLong();
    panel.employeeName = m_ui->dbcShain->currentText();
    m_ui->txtShainID->setText(panel.employeeId > 0 ? QString::number(panel.employeeId) : QString());
}

void frmAMain::reloadCompany()
{
    const auto company = masters::ownCompany(m_workspace.connection);
    if (!tell(company.status()))
        return;
    showCompany(company->value_or(masters::OwnCompany()));
    showFile();
}

void frmAMain::showCompany(const masters::OwnCompany &names)
{
    m_workspace.panel.companyName1 = names.name1;
    m_workspace.panel.companyName2 = names.name2;
    m_ui->txtName1->setText(names.name1);
    m_ui->txtName2->setText(names.name2);
}

// Whom the screens dealt with last, for the ledger program.
void frmAMain::showCounterparts()
{
    const registers::LastCounterparts last = registers::lastCounterparts(m_workspace);
    const auto shown = [](qint64 id) { return id > 0 ? QString::number(id) : QString(); };
    m_ui->txtNouhinID->setText(shown(last.customer));
    m_ui->txtShiireID->setText(shown(last.supplier));
    showSupplier();
}

void frmAMain::showSupplier()
{
    bool isNumber = false;
    const qint64 id = m_ui->txtShiireID->text().toLongLong(&isNumber);
    if (!isNumber)
        return;
    const auto names = supplierNames(m_workspace.connection, id);
    if (!tell(names.status()))
        return;
    m_ui->Text3->setText(names->name1);
    m_ui->Text5->setText(names->name2);
}

bool frmAMain::employeeChosen()
{
    if (!m_ui->dbcShain->currentText().isEmpty())
        return true;
    ui::prompts::inform(this, u"担当者が選択されていません。"_s);
    const auto employees = masters::employees(m_workspace.connection);
    if (!employees)
        return tell(employees.error());
    if (employees->empty()) {
        m_commands->showPageOf(Action::Employees);
        open(Action::Employees);
        if (m_ui->dbcShain->currentIndex() >= 0) // the only one, who was registered now
            return true;
    }
    m_ui->dbcShain->setFocus();
    return false;
}

bool frmAMain::ownCompanyRegistered()
{
    const auto company = masters::ownCompany(m_workspace.connection);
    if (!company)
        return tell(company.error());
    if (!*company) {
        ui::prompts::inform(this, ui::messages::noOwnCompany());
        open(Action::OwnCompany);
    }
    return true;
}

} // namespace app
