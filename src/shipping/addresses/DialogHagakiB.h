#pragma once

#include "shipping/addresses/address_ticks.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class DialogHagakiB;
}

namespace shipping
{

struct AddressJob;
struct AddressRunOutcome;

/// 一括宛名印刷: the addresses of many customers, found in the register or taken out of a supplementary
/// roster, ticked and printed at once. Who was printed is marked as such.
class DialogHagakiB : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogHagakiB(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogHagakiB() override;

protected:
    bool mayClose() override;
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpGrid();
    void connectControls();
    void search();
    void openRoster();
    /// \return whether there is anybody in the list now
    bool list(base::Result<std::vector<AddressRow>> rows);
    void leaveOut();
    void showState();
    [[nodiscard]] std::optional<AddressJob> job();
    void preview();
    void print();
    void tellOutcome(const AddressRunOutcome &outcome, const AddressJob &job, const QStringList &told);

    std::unique_ptr<Ui::DialogHagakiB> m_ui;
    AddressTicks m_addresses;
};

} // namespace shipping
