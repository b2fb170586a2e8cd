#pragma once

#include "book/returned_goods.h"
#include "ui/screen.h"
#include "ui/slip_grid_model.h"

#include <memory>

namespace Ui
{
class DialogOriginal;
}

namespace slips
{

/// 元の伝票: asks of which slip goods come back. Accepted when the clerk has said it.
class DialogOriginal : public ui::Screen
{
    Q_OBJECT

public:
    DialogOriginal(workspace::Workspace &workspace, std::vector<book::OriginalSlip> slips,
                   const QString &product, QWidget *parent = nullptr);
    ~DialogOriginal() override;

    /// The key of the slip; 0: of none that is known.
    [[nodiscard]] qint64 original() const { return m_original; }

private:
    void showSlips(const QString &product);
    void take();

    std::unique_ptr<Ui::DialogOriginal> m_ui;
    std::vector<book::OriginalSlip> m_slips;
    ui::SlipGridModel m_rows;
    qint64 m_original = 0;
};

} // namespace slips
