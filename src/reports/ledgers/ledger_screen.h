#pragma once

#include "book/counterpart_search.h"
#include "reports/ledgers/ledger_view.h"
#include "ui/screen.h"

#include <functional>
#include <memory>

class QLabel;
class QLineEdit;

namespace Ui
{
class LedgerForm;
}

namespace reports
{

/// Wherein the ledgers and lists differ.
struct LedgerDescription
{
    LedgerView view;
    const char16_t *screen; // object name
    const char16_t *title;
    const book::CounterpartSearch *search = nullptr; // whose ledger; none: it is about all
    std::vector<int> foundWidths{};                  // of the search result's columns, pixels; 0 hides one
    const char16_t *zeros = u"";            // caption of the box that leaves zeros out; empty: no box
    bool sorts = false;                     // by a click on a heading: the order of its rows says nothing
    bool hasStart = true;                   // a period; otherwise the state at the end of a day
    const char16_t *opens = u"";            // what Enter does with a row; empty: nothing
    std::optional<book::Party> charts = {}; // whose charts belong to it
};

LedgerDescription descriptionOf(LedgerView view);

/// Shows a ledger or a list, and leads from its rows to what they are made of. It reads the books anew
/// whenever something was opened from it.
class LedgerScreen : public ui::Screen
{
    Q_OBJECT

public:
    LedgerScreen(workspace::Workspace &workspace, QWidget *parent, const LedgerDescription &description);
    ~LedgerScreen() override;

    /// Shows the ledger of \a whose, who may have been deleted, from the first of the month before \a to's.
    void openLedger(const LedgerTarget &whose, const QDate &to);

    /// The same of \a goods; only for the view of goods.
    void openGoods(const book::Goods &goods, const QDate &to);

protected:
    void becameActive() override;

private:
    void fitForm();
    void fitSearch();
    void fitGoods();
    void fitPeriod();
    void fitGrid();
    void connectControls();

    void search();
    void chooseFound();
    void choose(const std::optional<LedgerTarget> &whose);
    void count();
    void refresh();
    void clear(const QString &message);
    void showRows();
    void showSums();
    void enableOpening();
    void markAsOutdated();

    void openRow();
    void openCharts();
    void openLedgerOf(const LedgerTarget &whose);
    void openLedgerOf(const GoodsTarget &whose);

    [[nodiscard]] LedgerQuery query() const;

    const std::unique_ptr<Ui::LedgerForm> m_ui;
    const LedgerDescription m_description;
    db::Recordset m_found;
    std::optional<LedgerTarget> m_whose;
    book::Goods m_goods;
    QDate m_shownTo; // the last day of what is shown
    std::vector<std::pair<QLabel *, QLineEdit *>> m_sums;
    bool m_hasRead = false;
};

template <LedgerView view>
class LedgerScreenOf : public LedgerScreen
{
public:
    explicit LedgerScreenOf(workspace::Workspace &workspace, QWidget *parent = nullptr)
        : LedgerScreen(workspace, parent, descriptionOf(view))
    {}
};

using frmOutMoto = LedgerScreenOf<LedgerView::Receivable>;
using frmInMoto = LedgerScreenOf<LedgerView::Payable>;
using frmOutZandaka = LedgerScreenOf<LedgerView::ReceivableBalances>;
using frmInZandaka = LedgerScreenOf<LedgerView::PayableBalances>;
using frmTanaMoto = LedgerScreenOf<LedgerView::Stock>;

} // namespace reports
