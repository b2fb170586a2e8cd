#pragma once

#include "shipping/history/history_deletion.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class frmKuroneko8;
}

namespace shipping
{

/// 発送伝票　履歴の削除: deletes the shipments of a category, or all, once a copy of the file is kept.
class frmKuroneko8 : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmKuroneko8(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmKuroneko8() override;

protected:
    bool mayClose() override;

private:
    void offerParts();
    void showExtent();
    [[nodiscard]] HistoryPart part() const;
    [[nodiscard]] QString extentInWords() const;
    void remove();

    const std::unique_ptr<Ui::frmKuroneko8> m_ui;
    HistoryExtent m_extent; // of the part that is chosen, as it is shown
};

} // namespace shipping
