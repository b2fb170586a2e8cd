#pragma once

#include "db/recordset.h"
#include "ui/screen.h"

#include <memory>
#include <optional>

namespace Ui
{
class frmNouhin;
}

namespace registers
{

/// The customer register: a list of customers that a search narrows, and the boxes of the current one.
class frmNouhin : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmNouhin(app::Workspace &workspace, QWidget *parent = nullptr);
    ~frmNouhin() override;

    /// Shows the customer \a id alone. To be called before the screen is shown.
    void openCustomer(qint64 id);

    /// Starts a new customer as soon as the screen is shown.
    void startNew() { m_startsNew = true; }

    /// 納品先ID of the customer saved last on this screen; nothing when none was saved.
    [[nodiscard]] std::optional<qint64> savedCustomer() const { return m_savedCustomer; }

protected:
    bool mayClose() override;
    void showEvent(QShowEvent *event) override;

private:
    enum class Mode { Browsing, Entry };

    /// A refused or failed saving, as it is told.
    struct Failure
    {
        QString text;
        QString title;
        QString column; // the box that the cursor goes to; empty: it stays
    };

    void connectButtons();
    void bindList();
    void open();

    void search();
    void nextSearch();
    void showAll();
    void add();
    void saveAndBrowse();
    void cancelEntry();
    void removeCustomer();

    /// Reads the categories anew. Without any, \a sentence is told. \return whether there are any
    bool categoriesReady(const QString &sentence);
    std::optional<Failure> trySave();
    bool save();
    /// Saves what was typed before the list changes. \return false when the row cannot be left
    bool leaveRow();
    bool leaveEntry();
    bool leaveBrowsing();
    void tellFailure();

    void setMode(Mode mode);
    void showStates();

    std::unique_ptr<Ui::frmNouhin> m_ui;
    db::Recordset m_customers;
    Mode m_mode = Mode::Browsing;
    bool m_startsNew = false;
    bool m_opened = false;
    std::optional<qint64> m_savedCustomer;
    std::optional<Failure> m_failure; // of the last saving
};

} // namespace registers
