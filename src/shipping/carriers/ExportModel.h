#pragma once

#include "shipping/carriers/carrier_file.h"

#include <QAbstractTableModel>

namespace shipping
{

/// Shipments that may go into a carrier's file, each with a tick. Those that were written to one before are
/// not ticked by themselves, nor those of which there is a doubt.
class ExportModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column {
        Ticked,
        Key,
        Accepted,
        Delivery,
        Consignee,
        Goods,
        Form,
        Collected,
        TimeSlot,
        Cooling,
        Parcels,
        Exported,
        State,
        ColumnCount
    };

    using QAbstractTableModel::QAbstractTableModel;

    /// Lists \a parcels for \a program. What the clerk ticked or not, and what is collected, stays with
    /// shipments that were listed before.
    void set(std::vector<CarrierParcel> parcels, CarrierProgram program, const CarrierSettings &settings);
    void clear();

    void toggle(int row);
    void tickAll(bool ticked);
    void toggleCollected(int row);

    [[nodiscard]] const CarrierParcel &at(int row) const { return m_rows[std::size_t(row)].parcel; }
    /// The row of the shipment \a id; -1 where it is not listed.
    [[nodiscard]] int rowOf(qint64 id) const;
    [[nodiscard]] std::vector<CarrierParcel> ticked() const;
    /// What is wrong with the ticked ones, in their order.
    [[nodiscard]] std::vector<CarrierFinding> findings() const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void choiceChanged();

private:
    struct Row
    {
        CarrierParcel parcel;
        bool ticked = false;
        std::vector<CarrierFinding> findings{};
    };

    /// Whether \a parcel is ticked before the clerk has said anything.
    [[nodiscard]] static bool isPreset(CarrierProgram program, const CarrierParcel &parcel);
    void check(Row &row) const;
    void changed(int row);
    [[nodiscard]] QVariant value(const Row &row, int column) const;
    [[nodiscard]] QString stateOf(const Row &row) const;

    std::vector<Row> m_rows;
    CarrierProgram m_program = CarrierProgram::B2Cloud;
    CarrierSettings m_settings;
};

} // namespace shipping
