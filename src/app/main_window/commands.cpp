#include "app/main_window/commands.h"

namespace app
{

namespace
{

constexpr Guards none = {};
constexpr Guards needsEmployee = {.employee = true};
constexpr Guards needsEmployeeHere = {.employeeOfOwnScreen = true};
constexpr Guards needsOwnCompany = {.ownCompany = true};
constexpr Guards needsBoth = {.employee = true, .ownCompany = true};
constexpr Guards needsSlips(const book::SlipKind &kind) { return {.slips = kind}; }

using Commands = std::vector<Command>;

void append(Commands &all, Commands more)
{
    for (Command &command : more)
        all.push_back(std::move(command));
}

// Rows of a table: a line each, or as few as it takes.
// clang-format off

Commands fileCommands()
{
    return {
        {Action::None, u"mnuFileOpen", u"ファイル(&F)"},
        {Action::NewFile, u"mnuNew", u"新規作成(&N)", u"mnuFileOpen", none, {}, {}, "Ctrl+N"},
        {Action::OpenFile, u"mnuOpen", u"開く(&O)", u"mnuFileOpen", none, {}, {}, "Ctrl+O"},
        {Action::SaveFileAs, u"mnuSave", u"名前を付けて保存(&S)", u"mnuFileOpen"},
        {Action::PrinterChoice, u"mnuPrinter", u"プリンタの設定(&P)", u"mnuFileOpen"},
        {Action::PrinterProperties, u"munPrinter", u"プリンタのプロパティ(&R)", u"mnuFileOpen"},
        {Action::PrintJobs, u"mnuPrintJobs", u"印刷の状況(&J)", u"mnuFileOpen"},
        {Action::OpenBackup, u"mnuBackupOpen", u"バックアップファイルを開く(&B)", u"mnuFileOpen"},
        {Action::Backups, u"mnuBackups", u"バックアップの一覧(&L)", u"mnuFileOpen", none,
         {{u"cmdBackups", u"バックアップの一覧", Page::Settings, u"データベース"}}},
        {Action::BackupNow, u"mnuBackupNow", u"今すぐバックアップ(&K)", u"mnuFileOpen", none,
         {{u"cmdBackupNow", u"今すぐバックアップ", Page::Settings, u"データベース"}}},
        {Action::Quit, u"mnuDenQuit", u"終了(&X)", u"mnuFileOpen", none, {}, {}, "Ctrl+Q"},

        {Action::None, u"mnuPic", u"表示(&V)"},
        {Action::LoadPicture, u"mnuPicLoad", u"画像の差替え(&P)", u"mnuPic"},
        {Action::ResetPicture, u"mnuPSave", u"画像を元に戻す(&U)", u"mnuPic"},
        {Action::CalendarColour, u"mnuMonthvColor", u"カレンダーの色(&C)", u"mnuPic"},
        {Action::ShowCalendar, u"mnuMonthv", u"カレンダー(&C)", u"mnuPic"},

        {Action::None, u"mnuOption", u"オプション(&O)"},
        {Action::PostalCodes, u"mnuZip", u"郵便番号検索", u"mnuOption", none, {}, {{u"Label21", u"郵便番号検索"}}},
        {Action::BulkMail, u"mnuMail", u"納品先メール一括送信(&M)", u"mnuOption"},
        {Action::CashBook, u"mnuCashFlows", u"現金出納帳(&F)", u"mnuOption"},
        {Action::Ledger, u"mnuLeg", u"管理業務(&L)", u"mnuOption"},
    };
}

Commands shippingCommands()
{
    return {
        {Action::None, u"mnuDenPrint", u"伝票発行(&W)"},
        {Action::None, u"mnuInvoice", u"発送伝票(&K)", u"mnuDenPrint"},
        {Action::MailOrderSlip, u"mnuTuhan", u"発送伝票　通信販売(&I)", u"mnuInvoice", needsOwnCompany,
         {{u"Command54", u"発送伝票　通販", Page::Shipping, u"発送伝票", u"お届先を検索して、送り状を印刷します。"}}},
        {Action::GiftSlip, u"mnuGift", u"発送伝票　ギフト(&G)", u"mnuInvoice", none,
         {{u"Command55", u"発送伝票　ギフト", Page::Shipping, u"発送伝票", u"ご依頼主を検索して、送り状を印刷します。"}}},
        {Action::ShippingHistory, u"mnuRireki", u"発送伝票　履歴(&C)", u"mnuInvoice", none,
         {{u"Command56", u"発送伝票　履歴", Page::Shipping, u"発送伝票", u"発送した履歴を検索して、送り状を印刷します。"}},
         {{u"Label15", u"発送伝票　履歴"}}},
        {Action::MailOrder, u"", u"", u"", needsBoth,
         {{u"Command2", u"通信販売", Page::MailOrder, u"通信販売"}},
         {{u"Label14", u"通信販売業務"}}},
        {Action::ShippingCorrection, u"mnuTeisei", u"発送伝票　訂正(A)", u"mnuInvoice", none,
         {{u"Command59", u"発送伝票　訂正（再発行）", Page::Shipping, u"発送伝票", u"発送した履歴の訂正、削除、および送り状の再発行をします。"},
          {u"Command66", u"発送伝票　訂正（再発行）", Page::MailOrder, u"通信販売", u"発送した履歴の訂正、削除、および送り状の再発行をします。"}}},
        {Action::Addresses, u"mnuAdena", u"宛名印刷(&L)", u"mnuInvoice", none,
         {{u"Command64", u"宛名印刷", Page::Shipping, u"宛名"}}},
        {Action::AddressTransferForm, u"", u"", u"", none,
         {{u"Command68", u"郵便振替用紙", Page::MailOrder, u"通信販売"}}},

        {Action::None, u"mnuGiftMenu", u"ご贈答品承り票(&G)", u"mnuInvoice"},
        {Action::ShippedGifts, u"mnuApp1", u"発送済みリスト(&R)", u"mnuGiftMenu", none,
         {{u"Command46", u"贈答品承り票 （発送済みリスト）", Page::Shipping, u"贈答品承り票"}}},
        {Action::BulkShipping, u"mnuApp3", u"一括伝票発行(&I)", u"mnuGiftMenu", none,
         {{u"Command57", u"一括発送伝票発行", Page::Shipping, u"発送伝票"}}},
        {Action::GiftsBySender, u"mnuApp2", u"ご依頼主リスト(&S)", u"mnuGiftMenu", none,
         {{u"Command47", u"贈答品承り票 （ご依頼主リスト）", Page::Shipping, u"贈答品承り票"}}},
        {Action::DeleteHistory, u"", u"", u"", none,
         {{u"Command26", u"発送伝票　履歴の削除", Page::Shipping, u"発送伝票"}}},
    };
}

Commands salesCommands()
{
    return {
        {Action::None, u"mnuOut", u"売上伝票(&I)", u"mnuDenPrint"},
        {Action::Sales, u"mnuDenOut", u"納品書(&I)", u"mnuOut", needsBoth,
         {{u"Command45", u"納品書", Page::Sales, u"伝票発行"}},
         {{u"Label10", u"納品書発行"}}},
        {Action::Bill, u"mnuBill", u"請求書(&B)", u"mnuOut", needsEmployee,
         {{u"Command27", u"請求書", Page::Sales, u"伝票発行"}}},
        {Action::Receipt, u"mnuReceipt", u"入金伝票(R)", u"mnuOut", needsEmployee,
         {{u"Command1", u"入金伝票", Page::Sales, u"伝票発行"}}},
        {Action::SalesCorrection, u"mnuDenOutAmd", u"納品書　訂正(&A)", u"mnuOut", needsSlips(book::sale),
         {{u"Command9", u"納品伝票訂正（再発行）", Page::Sales, u"伝票の訂正"}}},
        {Action::ReceiptCorrection, u"mnuReceiptAmd", u"入金伝票　訂正(&D)", u"mnuOut", needsSlips(book::receipt),
         {{u"Command50", u"入金伝票訂正", Page::Sales, u"伝票の訂正"}}},
        {Action::ReceiptImport, u"", u"", u"", needsEmployee,
         {{u"Command18", u"一括入金処理", Page::Sales, u"伝票発行", u"現金出納帳から入金処理"}}},

        {Action::None, u"mnuShiire", u"仕入伝票(R)", u"mnuDenPrint"},
        {Action::Purchase, u"mnuDenIn", u"仕入伝票(&I)", u"mnuShiire", needsEmployee,
         {{u"Command39", u"仕入伝票", Page::Purchases, u"伝票入力"}}},
        {Action::Payment, u"mnuPayment", u"支払伝票(&P)", u"mnuShiire", needsEmployee,
         {{u"Command41", u"支払伝票", Page::Purchases, u"伝票入力"}}},
        {Action::PurchaseCorrection, u"mnuDenInAmd", u"仕入伝票　訂正(&A)", u"mnuShiire", needsSlips(book::purchase),
         {{u"Command12", u"仕入伝票訂正", Page::Purchases, u"伝票の訂正"}}},
        {Action::PaymentCorrection, u"mnuPaymentAmd", u"支払伝票　訂正(&D)", u"mnuShiire", needsSlips(book::payment),
         {{u"Command51", u"支払伝票訂正", Page::Purchases, u"伝票の訂正"}}},
        {Action::PurchaseTax, u"mnuTax", u"消費税入力(&T)", u"mnuShiire", needsEmployee,
         {{u"Command40", u"仕入伝票(消費税)", Page::Purchases, u"伝票入力"}}},
        {Action::PurchaseList, u"", u"", u"", needsEmployee,
         {{u"Command17", u"月別仕入一覧", Page::Purchases, u"日報・元帳"}}},

        {Action::None, u"mnuMitsu", u"見積書(&O)", u"mnuDenPrint"},
        {Action::Estimate, u"mnuMitumori", u"見積書作成(&O)", u"mnuMitsu", needsEmployee,
         {{u"Command48", u"見積書", Page::Sales, u"伝票発行"}}},
        {Action::EstimateCorrection, u"mnuMitsumoriAmd", u"見積書　訂正(&A)", u"mnuMitsu", needsSlips(book::estimate),
         {{u"Command49", u"見積書　訂正", Page::Sales, u"伝票の訂正"}}},
    };
}

Commands customerCommands()
{
    return {
        {Action::None, u"mnuCustom", u"顧客管理(&K)"},
        {Action::Customers, u"mnuCustomInput", u"納品先情報の追加・訂正・削除(&O)", u"mnuCustom", none,
         {{u"Command3", u"納品先登録", Page::Customers, u"納品先", u"顧客情報の追加・訂正・削除"}}},
        {Action::CustomerRoster, u"mnuCustomOut", u"名簿作成(&P)", u"mnuCustom", none,
         {{u"Command44", u"名簿作成", Page::Customers, u"名簿・宛名", u"納品先名簿（顧客名簿）を印刷します。"}}},
        {Action::DeleteCustomers, u"mnuCustomDel", u"納品先情報の一括削除(&D)", u"mnuCustom", none,
         {{u"Command14", u"納品先データ削除", Page::Customers, u"納品先"}}},
        {Action::SupplementaryRoster, u"mnuCustomSub", u"補助名簿作成(&S)", u"mnuCustom", none,
         {{u"Command16", u"補助名簿作成", Page::Customers, u"名簿・宛名", u"現在のファイルのデータより新しいファイルを作成します"}}},
        {Action::DuplicateCustomers, u"mnuCustomSame", u"重複する納品先の確認・統合(&T)", u"mnuCustom", none,
         {{u"cmdDuplicates", u"重複する納品先", Page::Customers, u"納品先", u"二重に登録されているらしい納品先を一覧にして、一つにまとめます"}}},
        {Action::Addresses, u"", u"", u"", none,
         {{u"Command6", u"宛名印刷", Page::Customers, u"名簿・宛名", u"はがき・封筒の宛名印刷＆郵便振替用紙を印刷します。"}}},
        {Action::BulkAddresses, u"", u"", u"", none, {{u"Command61", u"一括宛名印刷", Page::Customers, u"名簿・宛名"}}},
        {Action::BulkMail, u"", u"", u"", none,
         {{u"Command23", u"納品先メール一括送信", Page::Customers, u"名簿・宛名"}}},
    };
}

Commands reportCommands()
{
    return {
        {Action::None, u"mnuReport", u"帳票(&M)"},
        {Action::ReceivableLedger, u"mnuOutMoto", u"売掛金元帳(&O)", u"mnuReport"},
        {Action::ReceivableBalances, u"mnuReportZandaka", u"売掛金残高照会(&C)", u"mnuReport"},
        {Action::PayableLedger, u"mnuInMoto", u"買掛金元帳(&I)", u"mnuReport"},
        {Action::PayableBalances, u"mnuReportInZandaka", u"買掛金残高照会(R)", u"mnuReport"},
        {Action::SalesReport, u"mnuReportDayOut", u"納品日報(&O)", u"mnuReport", none,
         {{u"Command11", u"納品日報", Page::Sales, u"日報・元帳"}}},
        {Action::ReceiptReport, u"mnuReportDayRev", u"入金日報(&R)", u"mnuReport", none,
         {{u"Command13", u"入金日報", Page::Sales, u"日報・元帳"}}},
        {Action::PurchaseReport, u"mnuReportDayIn", u"仕入日報(&I)", u"mnuReport", none,
         {{u"Command10", u"仕入日報", Page::Purchases, u"日報・元帳"}}},
        {Action::PaymentReport, u"mnuReportDayPay", u"支払日報(&P)", u"mnuReport", none,
         {{u"Command30", u"支払日報", Page::Purchases, u"日報・元帳"}}},
        {Action::IssuedDocuments, u"mnuIssued", u"発行控え(&K)", u"mnuReport", none,
         {{u"cmdIssued", u"発行控え", Page::Sales, u"日報・元帳", u"発行した納品書・見積書・請求書の控えを検索します"}}},
        {Action::BillList, u"", u"", u"", needsEmployee, {{u"Command4", u"月別請求一覧", Page::Sales, u"日報・元帳"}}},
        {Action::ReceivableLedger, u"", u"", u"", none,
         {{u"Command5", u"売掛金元帳", Page::Sales, u"日報・元帳"}}},
        {Action::Ledgers, u"", u"", u"", none, {}, {{u"Label20", u"売掛金・買掛金元帳"}}},
        {Action::PayableLedger, u"", u"", u"", none,
         {{u"Command8", u"買掛金元帳", Page::Purchases, u"日報・元帳"}}},

        {Action::None, u"mnuTool", u"期末(&U)"},
        {Action::Ledger, u"mnuToolCreate", u"期首データベース作成(&N)", u"mnuTool"},
        {Action::None, u"mnuKimatsu", u"繰越伝票", u"mnuTool"},
        {Action::ReceivableCarried, u"mnuUrikakeKurikoshi", u"売掛金　繰越伝票(&O)", u"mnuKimatsu", needsEmployeeHere},
        {Action::ReceivableCorrection, u"mnuUrikakeAMD", u"売掛金　繰越伝票訂正(S)", u"mnuKimatsu", needsSlips(book::receivableCarried)},
        {Action::ReceivableCarriedReport, u"mnuUrikakeReport", u"売掛金　繰越日報(&D)", u"mnuKimatsu", none,
         {{u"cmdReceivableCarried", u"売掛金繰越日報", Page::Sales, u"日報・元帳", u"売掛金の繰越伝票を、日ごとに一覧にします"}}},
        {Action::PayableCarried, u"mnuKaikakeKurikoshi", u"買掛金　繰越伝票(&I)", u"mnuKimatsu", needsEmployeeHere},
        {Action::PayableCorrection, u"mnuKaikakeAMD", u"買掛金　繰越伝票訂正(&B)", u"mnuKimatsu", needsSlips(book::payableCarried)},
        {Action::PayableCarriedReport, u"mnuKaikakeReport", u"買掛金　繰越日報(&R)", u"mnuKimatsu", none,
         {{u"cmdPayableCarried", u"買掛金繰越日報", Page::Purchases, u"日報・元帳", u"買掛金の繰越伝票を、日ごとに一覧にします"}}},
        {Action::Stocktake, u"mnuPreTana", u"棚卸伝票入力(&T)", u"mnuTool", needsEmployeeHere},
        {Action::StocktakeCorrection, u"mnuTanaAmd", u"棚卸伝票訂正(&D)", u"mnuTool", needsSlips(book::stocktake)},
        {Action::StocktakeReport, u"mnuReportTana", u"棚卸日報(&R)", u"mnuTool", none,
         {{u"cmdStocktakes", u"棚卸日報", Page::Purchases, u"日報・元帳", u"棚卸伝票を、日ごとに一覧にします"}}},
        {Action::StocktakeLedger, u"mnuTanaMoto", u"棚卸補助元帳(&M)", u"mnuTool"},
    };
}

Commands registerCommands()
{
    return {
        {Action::None, u"mnuPre", u"初期設定(&A)"},
        {Action::Customers, u"mnuPreNouhin", u"納品先登録(&O)", u"mnuPre", none,
         {{u"Command29", u"納品先登録", Page::Registers, u"取引先"}},
         {{u"Label16", u"納品先情報"}}},
        {Action::CustomerCategories, u"mnuPreKubun", u"納品先区分登録(&K)", u"mnuPre", none,
         {{u"Command32", u"納品先区分登録", Page::Registers, u"取引先"}}},
        {Action::SalesProducts, u"mnuPreOutShohin", u"納品商品登録(&S)", u"mnuPre", none,
         {{u"Command65", u"納品商品登録", Page::Registers, u"商品"}}},
        {Action::ShippingCategories, u"mnuInvKubun", u"発送区分登録(&R)", u"mnuPre", none,
         {{u"Command42", u"発送区分登録", Page::Registers, u"取引先"}}},
        {Action::Suppliers, u"mnuPreSiire", u"仕入先登録(&I)", u"mnuPre", none,
         {{u"Command28", u"仕入先登録", Page::Registers, u"取引先"}}},
        {Action::PurchaseProducts, u"mnuPreShohin", u"仕入商品登録(&B)", u"mnuPre", none,
         {{u"Command33", u"仕入商品登録", Page::Registers, u"商品"}}},
        {Action::Specifications, u"mnuKikaku", u"商品規格登録(&L)", u"mnuPre", none,
         {{u"Command34", u"商品規格登録", Page::Registers, u"商品"}}},
        {Action::Units, u"mnuTani", u"商品単位(&T)", u"mnuPre", none,
         {{u"Command24", u"商品単位登録", Page::Registers, u"商品"}}},
        {Action::OwnCompany, u"mnuMyCo", u"自社情報登録(&D)", u"mnuPre", none,
         {{u"Command62", u"自社情報登録", Page::Settings, u"自社と社員"}}},
        {Action::ExtendedName, u"mnuMyCo2", u"拡張表示の社名登録(&W)", u"mnuPre", none,
         {{u"Command43", u"拡張表示の社名登録", Page::Settings, u"自社と社員"}}},
        {Action::Employees, u"mnuPreShain", u"社員登録(&P)", u"mnuPre", none,
         {{u"Command35", u"社　員（担当者）登録", Page::Settings, u"自社と社員", u"伝票発行をする担当者名を登録します"}}},
        {Action::TaxRates, u"mnuTaxRates", u"消費税率表(&X)", u"mnuPre", none,
         {{u"cmdTaxRates", u"消費税率表", Page::Settings, u"自社と社員", u"標準税率と軽減税率を、期間ごとに登録します"}}},
        {Action::FormLayouts, u"mnuForms", u"用紙の調整(&Y)", u"mnuPre"},
        {Action::RepairFile, u"", u"", u"", none,
         {{u"Command22", u"データベースの修復/最適化", Page::Settings, u"データベース"}}},
        {Action::RebuildFile, u"", u"", u"", none, {{u"Command7", u"データベースの再作成", Page::Settings, u"データベース"}}},
        {Action::EmptyTable, u"", u"", u"", none, {{u"Command58", u"削除", Page::Settings, u"テーブルのデータ削除"}}},
    };
}

Commands helpCommands()
{
    return {
        {Action::None, u"mnuHelp", u"ヘルプ(&H)"},
        {Action::HelpFile, u"mnuHelpReadme", u"目次と検索(&H)", u"mnuHelp"},
        {Action::Support, u"mnuHelpSport", u"オンラインサポート(&S)", u"mnuHelp"},
        {Action::Update, u"mnuUpdate", u"アップデート(&U)", u"mnuHelp"},
        {Action::About, u"mnuAbout", u"バージョン情報(&A)", u"mnuHelp"},
        {Action::PrinterChoice, u"", u"", u"", none, {}, {{u"LblPrinterName", u""}}},
        {Action::SlipPrinter, u"", u"", u"", none, {}, {{u"Label19", u""}, {u"Picture3", u"プリンタの設定"}}},
        {Action::SlipFont, u"", u"", u"", none, {}, {{u"Picture4", u"フォント（書体）の設定"}}},
        {Action::ShowCalendar, u"", u"", u"", none, {}, {{u"Picture1", u""}}},
    };
}
// clang-format on

} // namespace

std::optional<Companion> companionOf(Action action)
{
    switch (action) {
    case Action::Ledger:
    case Action::ReceivableCarried:
    case Action::PayableCarried:
    case Action::Stocktake:
    case Action::Ledgers:
    case Action::ReceivableLedger:
    case Action::ReceivableBalances:
    case Action::PayableLedger:
    case Action::PayableBalances:
    case Action::StocktakeReport:
    case Action::StocktakeLedger:
        return Companion::Ledger;
    case Action::CashBook:
        return Companion::CashBook;
    case Action::BulkMail:
        return Companion::BulkMail;
    case Action::PostalCodes:
        return Companion::PostalCodes;
    default:
        return std::nullopt;
    }
}

bool needsDatabase(Action action)
{
    switch (action) {
    case Action::None:
    case Action::NewFile:
    case Action::OpenFile:
    case Action::OpenBackup:
    case Action::Backups:
    case Action::RepairFile:
    case Action::RebuildFile:
    case Action::Quit:
    case Action::LoadPicture:
    case Action::ResetPicture:
    case Action::CalendarColour:
    case Action::ShowCalendar:
    case Action::About:
    case Action::PrinterChoice:
    case Action::PrinterProperties:
    case Action::SlipPrinter:
    case Action::SlipFont:
    case Action::PrintJobs:
    case Action::ExtendedName:
    case Action::FormLayouts:
    case Action::PostalCodes:
    case Action::HelpFile:
    case Action::Support:
    case Action::Update:
        return false;
    default:
        return true;
    }
}

bool needsFile(Action action) { return action == Action::RepairFile || action == Action::RebuildFile; }

const std::vector<Command> &commands()
{
    static const Commands all = [] {
        Commands built = fileCommands();
        append(built, shippingCommands());
        append(built, salesCommands());
        append(built, customerCommands());
        append(built, reportCommands());
        append(built, registerCommands());
        append(built, helpCommands());
        return built;
    }();
    return all;
}

} // namespace app
