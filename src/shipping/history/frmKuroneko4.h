#pragma once

#include "db/recordset.h"
#include "shipping/history/history.h"
#include "shipping/slips/slip_printer.h"
#include "ui/screen.h"

#include <functional>
#include <memory>

namespace Ui
{
class frmKuroneko4;
}

namespace shipping
{

class LabelPlaceBox;

/// 発送伝票　訂正（再発行）: corrects shipments of the history, deletes them, and prints their slips anew,
/// which corrects the row along with the paper.
class frmKuroneko4 : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmKuroneko4(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmKuroneko4() override;

    /// Begins with the shipments of \a query, whom \a whose names, in place of the whole history.
    void showOnly(const HistoryQuery &query, const QString &whose);

protected:
    void becameActive() override;
    bool mayClose() override;

private:
    /// What stores a shipment. \return it as its row stands then
    using Storing = std::function<base::Result<Shipment>(const Shipment &)>;

    void connectControls();
    void showRow();
    void showStored(const Shipment &stored);
    void showStates();
    void say(const QString &text);

    [[nodiscard]] std::optional<Shipment> typed();
    bool mayBear(const Shipment &shipment);
    bool store(Shipment shipment, const Storing &storing);
    [[nodiscard]] std::optional<Shipment> settleBesideOthers(const Shipment &mine);
    bool save();
    base::Status leave();
    bool mayLeave();
    void takeBack();
    void remove();
    void print();
    void showPreview();

    const std::unique_ptr<Ui::frmKuroneko4> m_ui;
    db::Recordset m_rows;
    SlipPrinter m_printer;
    LabelPlaceBox *m_place = nullptr;
    std::optional<Shipment> m_stored; // the shown row as it was read
    bool m_isOld = false;             // printed by an older program, which kept no codes and remarks
    bool m_hasBegun = false;
};

} // namespace shipping
