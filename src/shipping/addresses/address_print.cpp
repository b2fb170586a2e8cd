#include "shipping/addresses/address_print.h"

#include "printing/DialogPrint.h"
#include "printing/frmPreview.h"
#include "printing/print_frame.h"
#include "shipping/slips/label_places.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr std::size_t sheetsInJob = 20; // a stop waits for no more than these
constexpr qsizetype mostNamed = 5;

QString doubtsOf(const std::vector<Addressee> &addressees)
{
    QStringList doubts;
    for (const Addressee &addressee : addressees) {
        if (const QString doubt = addressDoubt(addressee); !doubt.isEmpty())
            doubts << addresseeInWords(addressee) + u"："_s + doubt;
    }
    const qsizetype others = doubts.size() - mostNamed;
    return doubts.mid(0, mostNamed).join(u'\n') + (others > 0 ? u"\nほか %1 件"_s.arg(others) : QString());
}

std::size_t placesOf(const AddressSetup &setup)
{
    return setup.paper.isLabels ? std::size_t(setup.labels.places()) : 1;
}

AddressRun runOf(const workspace::Workspace &workspace, const AddressSetup &setup)
{
    const std::size_t places = placesOf(setup);
    return {.paper = setup.paper.name,
            .today = workspace.today(),
            .jobSize = setup.paper.isLabels ? places : sheetsInJob,
            .places = places,
            .firstPlace = setup.paper.isLabels ? setup.firstPlace : 1};
}

} // namespace

base::Result<AddressSetup> addressSetup(workspace::Workspace &workspace, const AddressChoice &choice,
                                        const AddressStyle &style)
{
    const auto sender = masters::ownCompany(workspace.connection);
    if (!sender)
        return sender.error();
    AddressSetup setup{.paper = addressPaper(choice.paper),
                       .writing = choice.writing,
                       .style = style,
                       .sender = *sender,
                       .shifts = letterShifts(workspace.settings)};
    const auto labels = sheetOfForm(labelForm(), workspace.settings);
    if (labels && setup.paper.isLabels) {
        setup.labels = *labels;
        setup.firstPlace = nextPlace(workspace.settings, labelForm());
    }
    return setup;
}

base::Result<printing::Document> addressDocument(const workspace::Workspace &workspace, const AddressJob &job)
{
    const auto sheets = addressSheets(workspace.applicationFolder(), job.addressees, job.setup);
    if (!sheets)
        return sheets.error();
    printing::Document document;
    document.title = job.addressees.size() == 1 ? u"宛名 "_s + addresseeInWords(job.addressees.front())
                                                : u"宛名 %1 件"_s.arg(job.addressees.size());
    QStringList remarks{sheets->complaint, doubtsOf(job.addressees)};
    remarks.removeAll(QString());
    document.remark = remarks.join(u'\n');
    document.purpose = job.purpose;
    document.sheets = sheets->sheets;
    return document;
}

void previewAddresses(workspace::Workspace &workspace, QWidget *parent, const AddressJob &job)
{
    auto document = addressDocument(workspace, job);
    if (!document) {
        ui::prompts::inform(parent, document.error().text);
        return;
    }
    printing::frmPreview preview(workspace, std::move(*document), parent);
    preview.onlyShow();
    preview.exec();
}

std::optional<printing::JobSettings> askAddressPrinter(workspace::Workspace &workspace, QWidget *parent,
                                                       const AddressJob &job, const QString &printer)
{
    const auto document = addressDocument(workspace, job);
    const auto selected =
        printing::selectPrinter(printing::printSystem(workspace), workspace.settings, job.purpose, printer);
    if (!document || !selected) {
        ui::prompts::inform(parent, document ? selected.error().text : document.error().text);
        return std::nullopt;
    }
    if (selected->installed.isEmpty()) {
        ui::prompts::inform(parent, u"プリンタが見つかりません。「プレビュー」で PDF に保存できます。"_s);
        return std::nullopt;
    }
    printing::DialogPrint dialog(workspace, *document, *selected, parent);
    dialog.keepTogether(document->title);
    dialog.exec();
    if (!dialog.choice())
        return std::nullopt;
    return dialog.choice()->settings;
}

AddressRunOutcome runAddresses(workspace::Workspace &workspace, QWidget *parent, const AddressJob &job,
                               const printing::JobSettings &settings)
{
    printing::PrintSystem &system = printing::printSystem(workspace);
    const printing::Look look{printing::fontFace(workspace.settings, job.purpose)};
    const auto print = [&](const std::vector<Addressee> &part, int firstPlace) -> base::Result<int> {
        AddressJob ofPart{part, job.setup, job.purpose};
        ofPart.setup.firstPlace = firstPlace;
        const auto document = addressDocument(workspace, ofPart);
        if (!document)
            return document.error();
        return system.print(*document, look, settings, base::unwatched);
    };
    const auto withdraw = [&](int number) {
        printing::PrintJob taken;
        taken.number = number;
        taken.queue = settings.queue;
        // Where it has come out meanwhile, nothing can be done: the failure is told anyway.
        static_cast<void>(system.cancel(taken));
    };
    AddressRunOutcome outcome =
        ui::runWithProgress(parent, u"宛名を印刷しています。"_s, [&](const base::Progress &progress) {
            return printAddresses(workspace.connection, job.addressees, runOf(workspace, job.setup), print,
                                  withdraw, progress);
        });
    if (job.setup.paper.isLabels && outcome.printed > 0)
        setNextPlace(workspace.settings, labelForm(), outcome.nextPlace);
    return outcome;
}

} // namespace shipping
