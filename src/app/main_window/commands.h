#pragma once

#include "app/main_window/companions.h"
#include "book/slip_kind.h"

#include <QString>

#include <optional>
#include <vector>

// The one table of everything that the main window can be told to do.
namespace app
{

/// What a command does. Several commands can do the same.
enum class Action {
    None, // a submenu
    // the database file
    NewFile,
    OpenFile,
    SaveFileAs,
    OpenBackup,
    Backups,
    BackupNow,
    RepairFile,
    RebuildFile,
    EmptyTable,
    Quit,
    // the main window itself
    LoadPicture,
    ResetPicture,
    CalendarColour,
    ShowCalendar,
    About,
    // printing
    PrinterChoice,
    PrinterProperties,
    SlipPrinter,
    SlipFont,
    PrintJobs,
    // slips
    Sales,
    SalesCorrection,
    Bill,
    BillList,
    Receipt,
    ReceiptCorrection,
    ReceiptImport,
    Purchase,
    PurchaseCorrection,
    PurchaseTax,
    PurchaseList,
    Payment,
    PaymentCorrection,
    Estimate,
    EstimateCorrection,
    ReceivableCorrection,
    PayableCorrection,
    StocktakeCorrection,
    ReceivableCarried,
    PayableCarried,
    Stocktake,
    // ledgers
    Ledgers, // one of the two, to be chosen
    ReceivableLedger,
    ReceivableBalances,
    PayableLedger,
    PayableBalances,
    StocktakeReport,
    StocktakeLedger,
    // reports
    SalesReport,
    ReceiptReport,
    PurchaseReport,
    PaymentReport,
    ReceivableCarriedReport,
    PayableCarriedReport,
    IssuedDocuments,
    // shipping and addresses
    MailOrderSlip,
    GiftSlip,
    ShippingHistory,
    ShippingCorrection,
    BulkShipping,
    DeleteHistory,
    ShippedGifts,
    GiftsBySender,
    Addresses,
    AddressTransferForm, // the same screen, for its postal transfer form
    BulkAddresses,
    MailOrder,
    // registers
    Customers,
    CustomerRoster,
    DeleteCustomers,
    DuplicateCustomers,
    SupplementaryRoster,
    Suppliers,
    CustomerCategories,
    SalesProducts,
    ShippingCategories,
    PurchaseProducts,
    Specifications,
    Units,
    OwnCompany,
    ExtendedName,
    Employees,
    TaxRates,
    FormLayouts,
    // other programs
    Ledger,
    CashBook,
    BulkMail,
    PostalCodes,
    // help
    HelpFile,
    Support,
    Update,
};

/// The companion program that does \a action where it is installed; without it a screen of our own does, if
/// there is one.
std::optional<Companion> companionOf(Action action);

/// Pages of the tab panel, in their order.
enum class Page { Sales, Purchases, Shipping, MailOrder, Customers, Registers, Settings };
inline constexpr const char16_t *pageCaptions[] = {
    u"売上・請求", u"仕入", u"発送・贈答", u"通信販売", u"顧客", u"新規登録", u"環境設定",
};

/// The groups of the pages, in the order in which they stand there.
inline constexpr const char16_t *groupOrder[] = {
    u"伝票発行",   u"伝票入力",   u"発送伝票",   u"通信販売",     u"納品先",
    u"取引先",     u"自社と社員", u"伝票の訂正", u"贈答品承り票", u"日報・元帳",
    u"名簿・宛名", u"宛名",       u"商品",       u"データベース", u"テーブルのデータ削除",
};

/// A button of the tab panel.
struct ButtonPlace
{
    const char16_t *name;
    const char16_t *caption;
    Page page;
    const char16_t *group;
    const char16_t *tip = u"";
};

/// A label that is clicked as a shortcut.
struct Shortcut
{
    const char16_t *name;
    const char16_t *caption;
};

struct Guards
{
    bool employee = false;                    // a person in charge is chosen
    bool ownCompany = false;                  // the own company is registered
    std::optional<book::SlipKind> slips = {}; // there are slips of this kind
    // A person in charge is chosen, where our own screen opens: a companion program asks for itself.
    bool employeeOfOwnScreen = false;
};

struct Command
{
    Action action;
    const char16_t *menu = u""; // object name; empty: no menu item
    const char16_t *caption = u"";
    const char16_t *parent = u""; // object name of the submenu; empty: the menu bar
    Guards guards = {};
    std::vector<ButtonPlace> buttons = {};
    std::vector<Shortcut> shortcuts = {};
    const char *keys = ""; // of the menu item
};

/// All commands; menu items in the order in which they stand in their menus.
const std::vector<Command> &commands();

/// Whether \a action works on the open database.
bool needsDatabase(Action action);

/// Whether \a action works on the current file as a whole, even when it cannot be opened.
bool needsFile(Action action);

} // namespace app
