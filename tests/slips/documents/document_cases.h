#pragma once

#include "slips/documents/delivery_note.h"
#include "slips/documents/estimate.h"

#include <map>

// Delivery notes and estimates of all kinds, as the recorded sheets beside this file have them.
namespace document_cases
{

using DeliveryNotes = std::map<QString, slips::DeliveryNoteData>;
using Estimates = std::map<QString, slips::EstimateData>;

DeliveryNotes deliveryNotes();
Estimates estimates();

} // namespace document_cases
