#pragma once

#include "shipping/carriers/TrackingModel.h"
#include "ui/screen.h"

#include <memory>
#include <optional>

namespace Ui
{
class DialogTrackingImport;
}

namespace shipping
{

/// 送り状番号の取込: the tracking numbers of a carrier's answer, shown beside the shipments they belong to.
/// The clerk confirms, and they are written at once; a number that stands there goes only by a word of his.
class DialogTrackingImport : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogTrackingImport(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogTrackingImport() override;

protected:
    bool mayClose() override;

private:
    void connectControls();
    void chooseFile();
    void readFile(const QString &fileName);
    bool assignColumns();
    void askColumns();
    bool show(const TrackingColumns &columns);
    [[nodiscard]] QStringList prefixes() const;
    bool mayLeaveChoices();

    void toggle();
    void showState();
    bool write();

    const std::unique_ptr<Ui::DialogTrackingImport> m_ui;
    TrackingModel m_model;
    std::optional<registers::ImportTable> m_table;
    TrackingColumns m_columns;
    bool m_isEdited = false; // the clerk decided something that is not written yet
};

} // namespace shipping
