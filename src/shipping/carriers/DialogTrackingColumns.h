#pragma once

#include "shipping/carriers/tracking_columns.h"
#include "ui/screen.h"

#include <memory>

class QComboBox;

namespace Ui
{
class DialogTrackingColumns;
}

namespace shipping
{

/// Asks which columns of a carrier's answer are management number and tracking number, over the first rows
/// of it.
class DialogTrackingColumns : public ui::Screen
{
    Q_OBJECT

public:
    /// Begins with \a columns, as far as they are known.
    DialogTrackingColumns(workspace::Workspace &workspace, const registers::ImportTable &table,
                          const TrackingColumns &columns, QWidget *parent = nullptr);
    ~DialogTrackingColumns() override;

    /// What the clerk chose, once the dialog was accepted.
    [[nodiscard]] TrackingColumns columns() const;

private:
    void fillColumns();
    void showSamples();
    void confirm();

    const std::unique_ptr<Ui::DialogTrackingColumns> m_ui;
    const registers::ImportTable &m_table;
    std::array<QComboBox *, trackingFieldCount> m_fields{};
};

} // namespace shipping
