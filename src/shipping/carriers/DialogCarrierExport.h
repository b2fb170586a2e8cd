#pragma once

#include "shipping/carriers/ExportModel.h"
#include "shipping/carriers/carrier_export.h"
#include "ui/screen.h"

#include <memory>
#include <optional>

namespace Ui
{
class DialogCarrierExport;
}

namespace shipping
{

/// 運送会社へ書き出し: shipments as a file that a carrier's program reads. What does not fit is listed with
/// its shipment and field and mended on the spot; a file is written only when nothing is left.
class DialogCarrierExport : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogCarrierExport(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogCarrierExport() override;

    /// Lists the shipments \a ids in place of those of a period, for the carrier of the first one.
    void listShipments(const std::vector<qint64> &ids);

protected:
    bool mayClose() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpGrids();
    void connectControls();
    void connectActions();

    // The shipments.
    [[nodiscard]] CarrierProgram program() const;
    [[nodiscard]] CarrierSettings settings() const;
    void programChosen();
    void list();
    bool show(const base::Result<std::vector<Shipment>> &shipments);
    void renew();
    void showState();

    // What does not fit.
    void showFindings();
    void findingChosen(int row);
    void showField();
    [[nodiscard]] QStringList enteredLines() const;
    [[nodiscard]] bool isMending() const;
    bool mayLeaveMending();
    void mend();
    [[nodiscard]] std::vector<Shipment> alsoToMend(const Shipment &shipment) const;

    // The file.
    void exportTicked();
    bool checkSettings();
    bool checkRows(const std::vector<CarrierParcel> &parcels);
    bool settleOldOnes(const std::vector<CarrierParcel> &parcels);
    bool settleRepeats(const std::vector<CarrierParcel> &parcels);
    [[nodiscard]] QString chooseFile();
    void write(const QString &fileName, const std::vector<CarrierParcel> &parcels);
    void openSettings();
    void importNumbers();

    const std::unique_ptr<Ui::DialogCarrierExport> m_ui;
    ExportModel m_model;
    std::vector<CarrierFinding> m_findings; // row by row of the lower grid
    std::optional<CarrierFinding> m_finding;
    MendableField m_field; // as it stood when it was shown
};

} // namespace shipping
