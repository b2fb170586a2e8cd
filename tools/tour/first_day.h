#pragma once

#include "walker.h"

#include "workspace/workspace.h"

namespace app
{
class frmAMain;
}

namespace tour
{

/// The shop's first day: a new file, the own company, employees, masters, customers, ten sales slips and
/// their notes, worked on the real screens.
class FirstDay
{
public:
    FirstDay(Walker &walker, workspace::Workspace &workspace, app::frmAMain &window, const QDir &folder);

    void run();

private:
    void makeFile();
    void registerCompany();
    void registerEmployees();
    void registerMasters();
    void designCompanyName();
    void setUpPanel();
    void registerCustomers();
    void lookAtImport(QDialog &screen);
    void registerSuppliers();
    void lookPostalCodesUp();
    void enterSlips();
    void enterLines(QDialog &screen, const struct Slip &slip);
    void choosePaper(QDialog &screen, int number);
    void printNote(QDialog &screen, int number);
    void collectByTransfer(QDialog &slip);
    void chooseCustomers();
    void tidyCustomers();
    void lookAfterFile();
    void correctSlips();
    void lookAround();
    void checkBooks();

    /// Adds rows to a master editor through its name box.
    void enterRegistration(QDialog &screen, const QString &registration);
    void typePostalCode(QDialog &screen, const QString &zip);
    void fillMaster(const QString &button, const QString &caption, const QStringList &names);
    [[nodiscard]] QString value(const QString &sql);

    Walker &m_walker;
    workspace::Workspace &m_workspace;
    app::frmAMain &m_window;
    QDir m_folder;
};

} // namespace tour
