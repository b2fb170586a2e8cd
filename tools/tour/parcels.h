#pragma once

class QWidget;

namespace workspace
{
class Workspace;
}

namespace tour
{

class Walker;

/// Sends a parcel of the shop's own and two gifts of a customer, on the slips of the carrier.
void sendParcels(Walker &walker, workspace::Workspace &workspace, QWidget &window);

} // namespace tour
