#include "slips/documents/transfer_form_print.h"

#include "book/counterpart_name.h"
#include "printing/forms/form_files.h"
#include "printing/forms/form_sheets.h"
#include "printing/print_frame.h"
#include "printing/print_offsets.h"
#include "slips/documents/DialogOderEX.h"
#include "text/numbers.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

constexpr printing::Purpose purpose = printing::Purpose::TransferForms;
constexpr qsizetype mostNamed = 5; // of those without a form

base::Result<TransferForm> formOf(const workspace::Workspace &workspace, const TransferRequest &request)
{
    if (const auto digits = transferDigits(request.amount); !digits)
        return digits.error();
    auto payer = transferPayer(workspace.connection, request.customer);
    if (!payer)
        return payer.error();
    return TransferForm{std::move(*payer), request.amount, transferTexts(workspace.settings)};
}

// "山田商店、佐藤花子　ほか 3 件": those of \a requests that no form is made for.
base::Result<QString> namesWithoutForm(db::Connection &connection,
                                       const std::vector<TransferRequest> &requests)
{
    QStringList names;
    qsizetype others = 0;
    for (const TransferRequest &each : requests) {
        if (transferDigits(each.amount))
            continue;
        if (names.size() == mostNamed) {
            ++others;
            continue;
        }
        const auto name = book::nameOfCounterpart(connection, book::Party::Customer, each.customer);
        if (!name)
            return name.error();
        names << *name;
    }
    return names.join(u'、') + (others > 0 ? u"　ほか %1 件"_s.arg(others) : QString());
}

// "12 枚　合計 345,678 円"
base::Result<QString> runInWords(db::Connection &connection, const std::vector<TransferRequest> &printable,
                                 const std::vector<TransferRequest> &requests)
{
    const double sum =
        std::accumulate(printable.begin(), printable.end(), 0.0,
                        [](double so, const TransferRequest &each) { return so + each.amount; });
    const QString words = u"%1 枚　合計 %2 円"_s.arg(printable.size()).arg(text::formatAmount(sum));
    if (printable.size() == requests.size())
        return words;
    const auto names = namesWithoutForm(connection, requests);
    if (!names)
        return names.error();
    return words +
           u"\n%1 件は、金額を払込取扱票に印刷できないため作りません。\n"_s.arg(requests.size() -
                                                                                printable.size()) +
           *names;
}

} // namespace

TransferTexts transferTexts(const workspace::Settings &settings)
{
    const auto &keys = workspace::keys::oderText;
    return {settings.text(keys[0]), settings.text(keys[1]), settings.text(keys[2]), settings.text(keys[3])};
}

QHash<QString, double> transferShifts(const workspace::Settings &settings)
{
    const QPoint offset = printing::transferFormOffset(settings);
    return {{u"OderOffsetX"_s, double(offset.x())}, {u"OderOffsetY"_s, double(offset.y())}};
}

base::Result<printing::Document> transferDocument(const workspace::Workspace &workspace,
                                                  const TransferForm &form)
{
    auto values = transferFormValues(form);
    if (!values)
        return values.error();
    values->shifts = transferShifts(workspace.settings);
    const printing::FormFile layout = printing::loadForm(
        workspace.applicationFolder(), QString::fromUtf16(transferFormLayout), transferFormItems());
    std::vector<printing::Sheet> sheets = printing::formSheets(layout.form, *values);
    for (printing::Sheet &sheet : sheets)
        printing::setTransferFormPaper(sheet, workspace.settings);
    printing::Document document;
    document.title = u"郵便振替用紙 "_s + form.payer.name1;
    document.remark = layout.complaint;
    document.purpose = purpose;
    document.sheets = std::move(sheets);
    return document;
}

bool printTransferForm(workspace::Workspace &workspace, QWidget *parent, const TransferRequest &request)
{
    const auto form = formOf(workspace, request);
    if (!form) {
        ui::prompts::inform(parent, form.error().text);
        return false;
    }
    DialogOderEX dialog(workspace, *form, parent);
    dialog.exec();
    return dialog.isIssued();
}

TransferRun::TransferRun(workspace::Workspace &workspace, printing::JobSettings settings)
    : m_workspace(&workspace)
    , m_settings(std::move(settings))
{}

base::Result<int> TransferRun::print(const TransferRequest &request, const base::Progress &progress) const
{
    const auto form = formOf(*m_workspace, request);
    if (!form)
        return form.error();
    const auto document = transferDocument(*m_workspace, *form);
    if (!document)
        return document.error();
    return printing::printSystem(*m_workspace)
        .print(*document, {printing::fontFace(m_workspace->settings, purpose)}, m_settings, progress);
}

std::optional<TransferRun> askTransferRun(workspace::Workspace &workspace, QWidget *parent,
                                          const std::vector<TransferRequest> &requests)
{
    std::vector<TransferRequest> printable = requests;
    std::erase_if(printable, [](const TransferRequest &each) { return !transferDigits(each.amount); });
    if (printable.empty()) {
        ui::prompts::inform(parent, u"郵便振替用紙に印刷できる金額がありません。"_s);
        return std::nullopt;
    }
    const auto words = runInWords(workspace.connection, printable, requests);
    if (!words) {
        ui::prompts::inform(parent, words.error().text);
        return std::nullopt;
    }
    DialogOderEX dialog(workspace, *words, parent);
    dialog.exec();
    if (!dialog.choice())
        return std::nullopt;
    return TransferRun(workspace, dialog.choice()->settings);
}

std::vector<base::Result<int>> printTransferForms(workspace::Workspace &workspace, QWidget *parent,
                                                  const std::vector<TransferRequest> &requests)
{
    std::vector<base::Result<int>> jobs;
    const auto run = askTransferRun(workspace, parent, requests);
    if (!run)
        return jobs;
    jobs.assign(requests.size(), base::cancelled());
    ui::watched(parent, u"郵便振替用紙を印刷しています。"_s, [&](const base::Progress &progress) {
        for (std::size_t i = 0; i < requests.size() && progress(qint64(i), qint64(requests.size())); ++i)
            jobs[i] = run->print(requests[i]);
    });
    return jobs;
}

} // namespace slips
