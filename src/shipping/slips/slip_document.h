#pragma once

#include "base/result.h"
#include "printing/DialogFormLayout.h"
#include "printing/renderer.h"
#include "shipping/slips/shipment.h"

#include <vector>

namespace workspace
{
class Workspace;
} // namespace workspace

namespace shipping
{

/// Why a parcel is sent: the panel keeps a box of its own for each, whether its sender is told of the
/// delivery.
enum class Sending { MailOrder, Other };

/// \a shipment ready for the renderer, on the layout of its method, with the font, the offsets and the paper
/// of shipping slips. Labels and tags stand in the \a place of their sheet; 0: the one that is free next. The
/// remark tells what to look at. Fails for a form that is none, and a place that there is none of.
base::Result<printing::Document> slipDocument(const workspace::Workspace &workspace, const Shipment &shipment,
                                              Sending sending = Sending::Other, int place = 0);

/// \a shipments, all of the form of the first, that share one sheet of it from the \a place on. Fails as
/// slipDocument(), and where they do not fit onto one.
base::Result<printing::Document> slipsDocument(const workspace::Workspace &workspace,
                                               const std::vector<Shipment> &shipments, Sending sending,
                                               int place);

/// What is wished of the carrier for \a shipment, of 時間帯, クール and 個数, and is not on the layout of its
/// form: somebody has to write it by hand.
QStringList wishesNotPrinted(const workspace::Workspace &workspace, const Shipment &shipment);

/// The forms of slips, for 「用紙の調整」, moved and laid as in use.
std::vector<printing::AdjustableForm> adjustableSlips(const workspace::Workspace &workspace);

} // namespace shipping
