#include "printing/purposes.h"

#include "workspace/settings_keys.h"

#include <array>

namespace printing
{

namespace
{

struct PurposeRow
{
    const workspace::SettingKey &printer;
    const workspace::SettingKey &font;
    const char16_t *caption;
};

// In the order of Purpose.
constexpr std::array<PurposeRow, purposeCount> purposes{{
    {workspace::keys::printerName, workspace::keys::printerFont, u"納品書・請求書・見積書"},
    {workspace::keys::kuroPrinterName, workspace::keys::kuroPrinterFont, u"送り状"},
    {workspace::keys::motoPrinterName, workspace::keys::motoFont, u"贈答品承り表"},
    {workspace::keys::meiboPrinterName, workspace::keys::meiboPrinterFont, u"名簿・帳票"},
    {workspace::keys::oderPrinterName, workspace::keys::oderPrinterFont, u"郵便振替用紙"},
    {workspace::keys::fuPrinterName, workspace::keys::fuPrinterFont, u"宛名（はがき・封筒）"},
    {workspace::keys::hagakiPrinterName, workspace::keys::hagakiPrinterFont, u"一括宛名印刷"},
    {workspace::keys::nippoPrinterName, workspace::keys::nippoPrinterFont, u"日報"},
}};

const PurposeRow &rowOf(Purpose purpose) { return purposes.at(static_cast<std::size_t>(purpose)); }

} // namespace

const workspace::SettingKey &printerKey(Purpose purpose) { return rowOf(purpose).printer; }

const workspace::SettingKey &fontKey(Purpose purpose) { return rowOf(purpose).font; }

const char16_t *purposeCaption(Purpose purpose) { return rowOf(purpose).caption; }

} // namespace printing
