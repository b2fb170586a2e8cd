#pragma once

#include "reports/purchases/purchase_list.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class frmInList;
}

namespace reports
{

/// The monthly list of purchases: what was bought from each supplier in a period, paid to it and is still
/// owed. It opens with the current month.
class frmInList : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmInList(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmInList() override;

protected:
    void becameActive() override;

private:
    void connectControls();
    [[nodiscard]] book::Period period() const;

    void recompute();
    base::Status read();
    void show(PurchaseList list);
    void showRows();
    void showState();
    void showTotals();
    void showChosen();

    const std::unique_ptr<Ui::frmInList> m_ui;
    PurchaseList m_list;
    book::Period m_shown; // what m_list is of
    bool m_hasRead = false;
};

} // namespace reports
