#pragma once

// What is printed for: each purpose keeps its own printer and font in the settings.
namespace workspace
{
struct SettingKey;
} // namespace workspace

namespace printing
{

enum class Purpose {
    DeliveryNotesAndBills, // and receipts of goods, estimates
    ShippingSlips,
    GiftSheets,
    Rosters,
    TransferForms,
    Addresses,
    AddressRange, // over a chosen range of the customers
    DailyReports,
};

inline constexpr int purposeCount = 8;

const workspace::SettingKey &printerKey(Purpose purpose);

/// Its fallback is the face that Japanese forms are set in, "ＭＳ 明朝".
const workspace::SettingKey &fontKey(Purpose purpose);

/// What the clerk calls the purpose.
const char16_t *purposeCaption(Purpose purpose);

} // namespace printing
