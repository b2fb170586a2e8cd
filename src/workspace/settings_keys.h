#pragma once

// Every setting the program keeps: section, key, value when nothing is stored, meaning. A key is spelt here
// and nowhere else. Numbers are stored in decimal text, check boxes as 0 or 1, positions in twips.
namespace workspace
{

struct SettingKey
{
    const char *section;
    const char *name;
    const char16_t *fallback;
};

namespace keys
{

// --- Main window ---
/// Current database file; empty: the initial file in the application folder.
inline constexpr SettingKey mdbFileName{"Settings", "MDBFileName", u""};
/// Position of the main window, twips.
inline constexpr SettingKey mainLeft{"Settings", "MainLeft", u"0"};
inline constexpr SettingKey mainTop{"Settings", "MainTop", u"0"};
/// Position at which the other screens place themselves, twips.
inline constexpr SettingKey frmLeft{"Settings", "frmLeft", u""};
inline constexpr SettingKey frmTop{"Settings", "frmTop", u""};
/// Text size of entry screens, points: 10 or 11.
inline constexpr SettingKey fontSize{"Settings", "txtFontSize", u"10"};
/// Consumption-tax rate, percent.
inline constexpr SettingKey taxRate{"Settings", "TaxRate", u"5"};
/// Whether the rate follows the table of the database instead.
inline constexpr SettingKey taxTable{"Settings", "TaxTable", u"0"};
/// Whether the qualified invoice of customers whose prices include the tax is the bill, and not the note.
inline constexpr SettingKey includedOnBill{"Settings", "IncludedOnBill", u"0"};
/// What the shop says below the statement of each bill.
inline constexpr SettingKey billMessage{"Settings", "BillMessage", u""};
/// The check boxes of the settings panel; the first is automatic slip numbering.
inline constexpr SettingKey check[8] = {
    {"Settings", "Check1", u"1"}, {"Settings", "Check2", u"1"}, {"Settings", "Check3", u"0"},
    {"Settings", "Check4", u"0"}, {"Settings", "Check5", u"0"}, {"Settings", "Check6", u"0"},
    {"Settings", "Check7", u"0"}, {"Settings", "Check8", u"0"},
};
/// Line spacing of lists, as its own caption.
inline constexpr SettingKey gridSize{"Settings", "txtGridSize", u"グリッドの間隔　小"};
/// Text between the kind letter and the key in automatic slip numbers.
inline constexpr SettingKey denNo{"Settings", "txtDenNo", u""};
/// Whether the calendar shows, and its colour as red + 256 green + 65536 blue.
inline constexpr SettingKey monthView{"Settings", "MonthView", u"0"};
inline constexpr SettingKey monthViewColor{"Settings", "MonthViewColor", u"16763044"};
/// Picture of the main window; empty: the built-in one.
inline constexpr SettingKey pictureFile{"Settings", "PictureFile", u""};
/// Paper of the delivery note and of the bill; parcel carrier.
inline constexpr SettingKey deliveryPaper{"Settings", "frmMainCMD2", u"HISAGO 1149"};
inline constexpr SettingKey billPaper{"Settings", "frmMainCMD7", u"HISAGO 1148"};
inline constexpr SettingKey carrier{"Settings", "frmMainCMD5", u"佐川急便"};
/// Employee chosen when the main window was closed.
inline constexpr SettingKey employee{"Settings", "dbcShainB", u""};

// --- Printers and fonts, a pair for each purpose ---
/// Delivery notes, bills, estimates.
inline constexpr SettingKey printerName{"Printer", "PrinterName", u""};
inline constexpr SettingKey printerFont{"Printer", "PrinterFont", u"ＭＳ 明朝"};
/// Shipping slips.
inline constexpr SettingKey kuroPrinterName{"Printer", "KuroPrinterName", u""};
inline constexpr SettingKey kuroPrinterFont{"Printer", "KuroPrinterFont", u"ＭＳ 明朝"};
/// Postcards and envelopes.
inline constexpr SettingKey fuPrinterName{"Printer", "FuPrinterName", u""};
inline constexpr SettingKey fuPrinterFont{"Printer", "FuPrinterFont", u"ＭＳ 明朝"};
/// Bulk address printing.
inline constexpr SettingKey hagakiPrinterName{"Printer", "HagakiPrinterName", u""};
inline constexpr SettingKey hagakiPrinterFont{"Printer", "HagakiPrinterFont", u"ＭＳ 明朝"};
/// Rosters.
inline constexpr SettingKey meiboPrinterName{"Printer", "MeiboPrinterName", u""};
inline constexpr SettingKey meiboPrinterFont{"Printer", "MeiboPrinterFont", u"ＭＳ 明朝"};
/// Daily reports.
inline constexpr SettingKey nippoPrinterName{"Printer", "NippoPrinterName", u""};
inline constexpr SettingKey nippoPrinterFont{"Printer", "NippoPrinterFont", u"ＭＳ 明朝"};
/// Gift lists.
inline constexpr SettingKey motoPrinterName{"Printer", "MotoPrinterName", u""};
inline constexpr SettingKey motoFont{"Printer", "MotoFont", u"ＭＳ 明朝"};
/// Postal transfer forms.
inline constexpr SettingKey oderPrinterName{"Printer", "OderPrinterName", u""};
inline constexpr SettingKey oderPrinterFont{"Printer", "OderPrinterFont", u"ＭＳ 明朝"};

// --- Print positions ---
/// Steps of 1.41 mm down: bill, delivery note, receipt of goods.
inline constexpr SettingKey offsetA{"Printer", "OffsetA", u"0"};
inline constexpr SettingKey offsetB{"Printer", "OffsetB", u"0"};
inline constexpr SettingKey offsetC{"Printer", "OffsetC", u"0"};
/// Totals of the receipt of goods higher: 0 or 1.
inline constexpr SettingKey offsetD{"Printer", "OffsetD", u"0"};
/// Addressee block to the right, half-width characters.
inline constexpr SettingKey offsetF{"Printer", "OffsetF", u"0"};
/// Steps of 1.75 mm to the right: delivery note, receipt of goods, bill.
inline constexpr SettingKey offsetL{"Printer", "OffsetL", u"0"};
/// Shipping slips, whole millimetres; and whether the paper size is set before printing.
inline constexpr SettingKey kuOffsetX{"Printer", "kuOffsetX", u""};
inline constexpr SettingKey kuOffsetY{"Printer", "kuOffsetY", u""};
inline constexpr SettingKey kuUserSize{"Printer", "kuUserSize", u"0"};
/// Postcards and envelopes.
inline constexpr SettingKey letterOffsetX{"Printer", "letterOffsetX", u""};
inline constexpr SettingKey letterOffsetY{"Printer", "letterOffsetY", u""};
/// Gift list by sender.
inline constexpr SettingKey stOffsetAppX{"Printer", "stOffsetAppX", u""};
inline constexpr SettingKey stOffsetAppY{"Printer", "stOffsetAppY", u""};
/// Postal transfer form: offsets, orientation across or along.
inline constexpr SettingKey oderOffsetX{"Printer", "OderOffsetX", u""};
inline constexpr SettingKey oderOffsetY{"Printer", "OderOffsetY", u""};
inline constexpr SettingKey oderOption1{"Printer", "OderOption1", u""};
inline constexpr SettingKey oderOption2{"Printer", "OderOption2", u""};

// --- Texts and options of single screens ---
/// Fixed texts of the postal transfer form.
inline constexpr SettingKey oderText[4] = {
    {"Settings", "OderText1", u""},
    {"Settings", "OderText2", u""},
    {"Settings", "OderText3", u""},
    {"Settings", "OderText4", u""},
};
/// Options of postcard printing.
inline constexpr SettingKey hagakiAop[5] = {
    {"Settings", "HagakiAop1", u""}, {"Settings", "HagakiAop2", u""}, {"Settings", "HagakiAop3", u""},
    {"Settings", "HagakiAop4", u""}, {"Settings", "HagakiAop5", u""},
};
/// Roster title and column headings.
inline constexpr SettingKey meiboTitle{"Settings", "MeiboTitle", u"顧客名簿"};
inline constexpr SettingKey meiboTitle2{"Settings", "MeiboTitle2", u"TEL"};
inline constexpr SettingKey meiboTitle3{"Settings", "MeiboTitle3", u"TEL"};
inline constexpr SettingKey meiboTitle4{"Settings", "MeiboTitle4", u"FAX"};
/// Which columns of a bank's file are what of a payment, for the next file of the same form.
inline constexpr SettingKey paymentColumns{"Settings", "PaymentColumns", u""};
/// Columns of the roster, a 0 or 1 for each (empty: the usual ones), and whether it goes by the readings.
inline constexpr SettingKey meiboColumns{"Settings", "MeiboColumns", u""};
inline constexpr SettingKey meiboByReading{"Settings", "MeiboByReading", u"1"};
/// Estimate print dialog: whether it is valid until a day and delivered by one, and how many days after its
/// own date those are; terms of trade, place of delivery.
inline constexpr SettingKey estimateValid{"Settings", "EstimateValid", u"1"};
inline constexpr SettingKey estimateValidDays{"Settings", "EstimateValidDays", u"30"};
inline constexpr SettingKey estimateDelivery{"Settings", "EstimateDelivery", u"1"};
inline constexpr SettingKey estimateDeliveryDays{"Settings", "EstimateDeliveryDays", u"14"};
inline constexpr SettingKey estimatePayment{"Settings", "EstimatePayment", u""};
inline constexpr SettingKey estimatePlace{"Settings", "EstimatePlace", u""};
/// Daily reports: printed upright or lying.
inline constexpr SettingKey checkCOption1{"Settings", "CheckCOption1", u""};
inline constexpr SettingKey checkCOption2{"Settings", "CheckCOption2", u""};
/// Gift-list print dialog and paper of the gift lists.
inline constexpr SettingKey appList1{"Settings", "AppList1", u""};
inline constexpr SettingKey appList4{"Settings", "AppList4", u""};
inline constexpr SettingKey appList2Combo1{"Settings", "DialogAppList2Combo1", u"A4無地"};
/// Sender codes and memo lines: mail-order slip, gift and bulk slips, history, correction.
inline constexpr SettingKey invCode[2] = {{"Settings", "InvCode1", u""}, {"Settings", "InvCode2", u""}};
inline constexpr SettingKey invMemo[2] = {{"Settings", "InvMemo1", u""}, {"Settings", "InvMemo2", u""}};
inline constexpr SettingKey inv2Code[2] = {{"Settings", "Inv2Code1", u""}, {"Settings", "Inv2Code2", u""}};
inline constexpr SettingKey inv2Memo[2] = {{"Settings", "Inv2Memo1", u""}, {"Settings", "Inv2Memo2", u""}};
inline constexpr SettingKey inv3Code[2] = {{"Settings", "inv3Code1", u""}, {"Settings", "inv3Code2", u""}};
inline constexpr SettingKey inv3Memo[2] = {{"Settings", "inv3Memo1", u""}, {"Settings", "inv3Memo2", u""}};
inline constexpr SettingKey inv4Code[2] = {{"Settings", "inv4Code1", u""}, {"Settings", "inv4Code2", u""}};
inline constexpr SettingKey inv4Memo[2] = {{"Settings", "inv4Memo1", u""}, {"Settings", "inv4Memo2", u""}};
/// Window states: the eight shipping screens; the customer register and the supplementary roster.
inline constexpr SettingKey kuroWindowState[8] = {
    {"Settings", "Kuro1WindowState", u""}, {"Settings", "Kuro2WindowState", u""},
    {"Settings", "Kuro3WindowState", u""}, {"Settings", "Kuro4WindowState", u""},
    {"Settings", "Kuro5WindowState", u""}, {"Settings", "Kuro6WindowState", u""},
    {"Settings", "Kuro7WindowState", u""}, {"Settings", "Kuro8WindowState", u""},
};
inline constexpr SettingKey nouhinWindowState{"Settings", "NouhinWindowState", u""};
/// Marks of customers that look like one and are two.
inline constexpr SettingKey distinctCustomers{"Settings", "DistinctCustomers", u""};
/// Address printing screen.
inline constexpr SettingKey frmInvCheck1{"Settings", "frmInvCheck1", u""};
/// What is addressed, by the name of its paper; how addresses are written, a "name=value" for each choice.
inline constexpr SettingKey addressPaper{"Settings", "AddressPaper", u""};
inline constexpr SettingKey addressOptions{"Settings", "AddressOptions", u""};
/// The sheet of labels that is in use, and the place on it that is free next, counted from 1.
inline constexpr SettingKey labelSheet{"Settings", "LabelSheet", u""};
inline constexpr SettingKey labelPlace{"Settings", "LabelPlace", u"1"};
/// Whether the parcel's slip is offered after a delivery note went out.
inline constexpr SettingKey offersShipping{"Settings", "OffersShipping", u"1"};
/// What the carriers' own programs want set once, a "name=value" for each; where their answers have what.
inline constexpr SettingKey b2Settings{"Settings", "B2Settings", u""};
inline constexpr SettingKey hidenSettings{"Settings", "HidenSettings", u""};
inline constexpr SettingKey yupriSettings{"Settings", "YupriSettings", u""};
inline constexpr SettingKey trackingColumns{"Settings", "TrackingColumns", u""};
/// Columns that the gift lists show, a 0 or 1 for each (empty: the usual ones).
inline constexpr SettingKey giftColumns{"Settings", "GiftColumns", u""};
/// Mail-order processing: options (there is no second one) and mail subject.
inline constexpr SettingKey invCheck[8] = {
    {"Settings", "invCheck1", u""}, {"Settings", "invCheck3", u""}, {"Settings", "invCheck4", u""},
    {"Settings", "invCheck5", u""}, {"Settings", "invCheck6", u""}, {"Settings", "invCheck7", u""},
    {"Settings", "invCheck8", u""}, {"Settings", "invCheck9", u""},
};
inline constexpr SettingKey invSubject{"Settings", "invSubject", u""};
/// File that holds the extended company-name block.
inline constexpr SettingKey richTextFileName{"Settings", "RichTextFileName", u""};

// --- Mail ---
inline constexpr SettingKey mailServer{"Settings", "szServer", u""};
inline constexpr SettingKey mailPort{"Settings", "szPort", u""};
inline constexpr SettingKey mailFrom{"Settings", "szFrom", u""};
inline constexpr SettingKey mailFromName{"Settings", "szFromName", u""};
inline constexpr SettingKey mailUser{"Settings", "User", u""};
inline constexpr SettingKey mailUserPass{"Settings", "UserPass", u""};
inline constexpr SettingKey mailCheck1{"Settings", "Check1V", u""};
inline constexpr SettingKey mailCheck2{"Settings", "Check2V", u""};
inline constexpr SettingKey mailBodyHeader{"Settings", "BodyHeader", u""};
inline constexpr SettingKey mailSignature{"Settings", "Signature", u""};
inline constexpr SettingKey mailInvNumber{"Settings", "InvNumber", u""};
inline constexpr SettingKey mailSubject{"Settings", "Subject", u""};

} // namespace keys

/// Our own section: column widths and sizes of screens, by screen and control.
inline constexpr const char *layoutSection = "Layout";

} // namespace workspace
