#pragma once

#include "base/result.h"

#include <QString>

#include <functional>

class QWidget;

namespace workspace
{
class Workspace;
}

// From a sale to its parcel. Parcels are a house above: what leads there is kept in the workspace when the
// program starts, and nothing of it is offered where it is not.
namespace slips
{

struct ParcelDesk
{
    /// Opens the entry of a parcel for the sale \a slip.
    std::function<void(QWidget *parent, qint64 slip)> begin = {};
    /// The parcels that went out for the sale \a slip, one in a line; empty where there are none.
    std::function<base::Result<QString>(qint64 slip)> words = {};
    /// Shows them; \a number is the slip's.
    std::function<void(QWidget *parent, qint64 slip, const QString &number)> show = {};
};

/// Whether parcels can be reached from here.
bool hasParcelDesk(const workspace::Workspace &workspace);

/// Asks whether the sale \a slip, whose note has just gone out, is to be sent, and opens the entry of its
/// parcel then. Asks nothing where the shop does not want to be asked, or a parcel went out already.
void offerParcel(workspace::Workspace &workspace, QWidget *parent, qint64 slip, const QString &number);

} // namespace slips
