#pragma once

#include "db/recordset.h"
#include "shipping/history/history.h"
#include "shipping/slips/slip_printer.h"
#include "ui/record_panel.h"
#include "ui/screen.h"

#include <functional>
#include <memory>

namespace Ui
{
class frmKuroneko3;
}

namespace shipping
{

class LabelPlaceBox;

/// What the history leads to among the files of the carriers; what is not set is not offered.
struct CarrierOpeners
{
    std::function<void(QWidget *parent, const std::vector<qint64> &shipments)> exportRows = {};
    std::function<void(QWidget *parent)> importNumbers = {};
};

/// 発送伝票　履歴: finds shipments, prints their slips once more, keeps their carriers' numbers and follows
/// them. A slip that is printed here adds no row and changes none.
class frmKuroneko3 : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmKuroneko3(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmKuroneko3() override;

    void setCarrierOpeners(const CarrierOpeners &openers);

    /// Begins with the shipments of a customer or a slip, whom \a whose names, or of the whole history.
    void showOnly(const HistoryQuery &query, const QString &whose);
    /// Goes to the shipment \a id among those that are listed.
    void goTo(qint64 id);

protected:
    void becameActive() override;
    bool mayClose() override;

private:
    void connectControls();
    void showShipment();
    void showStates();
    void say(const QString &text);

    [[nodiscard]] base::Result<QStringList> doubtsOfNumber(const QString &number) const;
    base::Status storeNumber();
    bool mayLeave();
    void saveAndGoOn();
    void copyNumber();
    void track();

    [[nodiscard]] std::optional<Shipment> shown();
    void print();
    void printOne();
    void printMany(const std::vector<qint64> &keys);
    void showPreview();
    void printList();
    void exportList();
    void openCarrierExport();
    void openNumberImport();

    const std::unique_ptr<Ui::frmKuroneko3> m_ui;
    db::Recordset m_rows;
    ui::RecordPanel m_number;
    SlipPrinter m_printer;
    LabelPlaceBox *m_place = nullptr;
    CarrierOpeners m_openers;
    bool m_hasBegun = false;
    bool m_isOld = false; // the shown row was printed by an older program, which kept no codes and remarks
};

} // namespace shipping
