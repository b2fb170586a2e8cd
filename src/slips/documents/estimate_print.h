#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace workspace
{
class Workspace;
}

namespace slips
{

/// An estimate to be printed, with what its screen adds to the stored slip.
struct EstimateRequest
{
    qint64 slipId = 0;
    bool closed = true;              // no tax line is to come any more
    std::optional<bool> inclusive{}; // "消費税（内税）" is ticked; empty: nobody was asked, as in a reprint
    QString memo{};                  // 備考
    QString remark1{};
    QString remark2{};
};

/// Shows the dialog from which the estimate is previewed, printed or saved as PDF. Tells its failures itself.
/// \return whether there is a paper now
bool printEstimate(workspace::Workspace &workspace, QWidget *parent, const EstimateRequest &request);

} // namespace slips
