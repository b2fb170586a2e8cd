#pragma once

#include "registers/glance/CustomerGlancePanel.h"
#include "registers/register_screen.h"

#include <memory>

namespace Ui
{
class frmNouhin;
}

namespace registers
{

/// The customer register: a list of customers that a search narrows, and the boxes of the current one.
class frmNouhin : public RegisterScreen
{
    Q_OBJECT

public:
    explicit frmNouhin(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmNouhin() override;

    /// Shows the customer \a id alone. To be called before the screen is shown.
    void openCustomer(qint64 id);

    /// Starts a new customer of whom \a values are known, by column, as soon as the screen is shown.
    void startNewWith(const QVariantMap &values);

    /// What its customers lead to. To be called before the screen is shown.
    void setOpeners(const CustomerOpeners &openers);

    /// 納品先ID of the customer saved last on this screen; nothing when none was saved.
    [[nodiscard]] std::optional<qint64> savedCustomer() const { return savedKey(); }

protected:
    base::Status openRows() override;
    void add() override;
    [[nodiscard]] std::vector<State> states() const override;
    void settleBoxes() override;
    void forgetBoxes() override;
    [[nodiscard]] std::optional<Failure> refusal() const override;
    base::Status store() override;
    [[nodiscard]] bool canTakeBack() const override;
    void takeBack() override;
    void showRow() override;
    void focusColumn(const QString &column) override;
    void entryEnded() override;
    bool mayClose() override;

private:
    void setUpList();
    void connectButtons();

    void search();
    void showFound();
    void nextSearch();
    void showAll();
    void openEvery();
    void exportAll();
    void removeShown();
    void mergeDuplicates();
    void connectGlance();
    void leadTo(void (CustomerGlancePanel::*way)(QWidget *));

    void importFile();
    void pasteTable();
    void endImport();
    void showImport(bool shown);

    /// Reads the categories anew. Without any, \a sentence is told. \return whether there are any
    bool categoriesReady(const QString &sentence);

    std::unique_ptr<Ui::frmNouhin> m_ui;
    QVariantMap m_known;   // of the customer to begin with
    bool m_isPart = false; // not all customers are listed
};

} // namespace registers
