#include "shipping/slips/slip_printer.h"

#include "db/transaction.h"
#include "printing/DialogPrint.h"
#include "printing/frmPreview.h"
#include "printing/pdf.h"
#include "shipping/slips/label_places.h"
#include "shipping/slips/shipment_store.h"
#include "shipping/slips/shipping_form.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr qsizetype mostRemarks = 5; // of a long run

QStringList formsOf(const std::vector<Shipment> &shipments)
{
    QStringList forms;
    for (const Shipment &shipment : shipments) {
        if (!forms.contains(shipment.method))
            forms << shipment.method;
    }
    return forms;
}

std::vector<Shipment> ofForm(const std::vector<Shipment> &shipments, const QString &form)
{
    std::vector<Shipment> found;
    for (const Shipment &shipment : shipments) {
        if (shipment.method == form)
            found.push_back(shipment);
    }
    return found;
}

// Those of the shipments and of their layouts.
QStringList remarksOn(const workspace::Workspace &workspace, const std::vector<Shipment> &shipments)
{
    QStringList remarks;
    for (const QString &form : formsOf(shipments)) {
        Shipment none;
        none.method = form;
        if (const auto document = slipDocument(workspace, none))
            remarks << document->remark;
    }
    for (const Shipment &shipment : shipments) {
        for (const QString &remark : slipRemarks(shipment))
            remarks << shipment.consignee.name1 + u"："_s + remark;
    }
    remarks.removeAll(QString());
    if (const qsizetype others = remarks.size() - mostRemarks; others > 0)
        remarks = remarks.first(mostRemarks) + QStringList{u"ほかに %1 件あります。"_s.arg(others)};
    return remarks;
}

/// A document on its way to a queue. It is drawn before the file is locked for its row.
class Handing
{
public:
    Handing(workspace::Workspace &workspace, const printing::Document &document,
            const printing::JobSettings &settings)
        : m_system(printing::printSystem(workspace))
        , m_document(document)
        , m_settings(settings)
        , m_look{printing::fontFace(workspace.settings, document.purpose)}
    {}

    base::Status draw()
    {
        if (!m_system.takesPdf())
            return {};
        auto pdf = printing::pdfOf(m_document, printing::lookOn(m_settings, m_look));
        if (pdf)
            m_pdf = std::move(*pdf);
        return pdf.status();
    }

    base::Result<int> handOver()
    {
        return m_system.takesPdf() ? m_system.printPdf(m_pdf, m_document.title, m_settings)
                                   : m_system.print(m_document, m_look, m_settings, base::unwatched);
    }

private:
    printing::PrintSystem &m_system;
    const printing::Document &m_document;
    const printing::JobSettings &m_settings;
    const printing::Look m_look;
    QByteArray m_pdf;
};

} // namespace

SlipPrinter::SlipPrinter(workspace::Workspace &workspace, Sending sending)
    : m_workspace(workspace)
    , m_sending(sending)
{}

bool SlipPrinter::prepare(QWidget *parent, const std::vector<Shipment> &shipments, bool again)
{
    if (!mayPrint(parent, shipments))
        return false;
    for (const QString &form : formsOf(shipments)) {
        if (again || !settingsFor(form)) {
            if (!choose(parent, ofForm(shipments, form)))
                return false;
        }
    }
    return !shipments.empty();
}

bool SlipPrinter::mayPrint(QWidget *parent, const std::vector<Shipment> &shipments) const
{
    const QStringList remarks = remarksOn(m_workspace, shipments);
    return remarks.isEmpty() ||
           ui::prompts::askCautiously(parent, u"このまま印刷しますか。"_s, remarks.join(u'\n'));
}

bool SlipPrinter::choose(QWidget *parent, const std::vector<Shipment> &shipments)
{
    const auto document = slipDocument(m_workspace, shipments.front(), m_sending);
    const auto selected = printing::selectPrinter(printing::printSystem(m_workspace), m_workspace.settings,
                                                  printing::Purpose::ShippingSlips);
    if (!document || !selected || selected->installed.isEmpty()) {
        ui::prompts::inform(parent, !document ? document.error().text
                                    : !selected
                                        ? selected.error().text
                                        : u"プリンタが見つかりません。プリンタを設定してください。"_s);
        return false;
    }
    printing::DialogPrint dialog(m_workspace, *document, *selected, parent);
    dialog.keepTogether(u"%1　%2 件"_s.arg(shipments.front().method).arg(shipments.size()));
    dialog.exec();
    if (!dialog.choice())
        return false;
    take(shipments.front().method, dialog.choice()->settings);
    return true;
}

void SlipPrinter::take(const QString &form, const printing::JobSettings &settings)
{
    m_choices[form] = {settings, m_workspace.panel.slipPaperDeclared,
                       m_workspace.settings.text(printing::printerKey(printing::Purpose::ShippingSlips))};
}

const printing::JobSettings *SlipPrinter::settingsFor(const QString &form) const
{
    const auto found = m_choices.constFind(form);
    if (found == m_choices.constEnd() ||
        found->printer != m_workspace.settings.text(printing::printerKey(printing::Purpose::ShippingSlips)))
        return nullptr;
    const bool holds = !isCarriersForm(form) || found->isDeclared == m_workspace.panel.slipPaperDeclared;
    return holds ? &found->settings : nullptr;
}

void SlipPrinter::preview(QWidget *parent, const Shipment &shipment)
{
    auto document = slipDocument(m_workspace, shipment, m_sending);
    if (!document) {
        ui::prompts::inform(parent, document.error().text);
        return;
    }
    printing::frmPreview shown(m_workspace, std::move(*document), parent);
    shown.onlyShow();
    shown.exec();
}

base::Result<Shipment> SlipPrinter::issue(const Shipment &shipment, Record record)
{
    auto issued = issueTogether({shipment}, record);
    return issued ? base::Result<Shipment>(std::move(issued->front())) : issued.error();
}

std::size_t SlipPrinter::countTogether(const std::vector<Shipment> &shipments, std::size_t first) const
{
    const QString &form = shipments.at(first).method;
    const auto sheet = sheetOfForm(form, m_workspace.settings);
    if (!sheet)
        return 1;
    const int room = sheet->places() - nextPlace(m_workspace.settings, form) + 1;
    std::size_t last = first;
    while (last < shipments.size() && last - first < static_cast<std::size_t>(room) &&
           shipments[last].method == form)
        ++last;
    return last - first;
}

base::Result<std::vector<Shipment>> SlipPrinter::recordAll(const std::vector<Shipment> &shipments,
                                                           Record record)
{
    if (record == Record::None)
        return shipments;
    std::vector<Shipment> recorded;
    for (Shipment shipment : shipments) {
        shipment.printed = m_workspace.today();
        if (record == Record::Add) {
            const auto id = addShipment(m_workspace.connection, shipment);
            if (!id)
                return id.error();
            shipment.id = *id;
        } else if (const base::Status changed = changeShipment(m_workspace.connection, shipment); !changed) {
            return changed.error();
        }
        auto row = readShipment(m_workspace.connection, shipment.id);
        if (!row)
            return row.error();
        recorded.push_back(std::move(*row));
    }
    return recorded;
}

// The queue has the job, but its row was not kept.
base::Error SlipPrinter::takenBack(const base::Error &error, int job, const printing::JobSettings &settings)
{
    printing::PrintJob taken;
    taken.number = job;
    taken.queue = settings.queue;
    if (printing::printSystem(m_workspace).cancel(taken))
        return base::Error{error.text + u"\n履歴に残せないため、印刷を取り消しました。"_s};
    return base::Error{error.text + u"\n履歴に残っていませんが、印刷は取り消せませんでした。出てきた送り状は"
                                    "使わずに、もう一度印刷してください。"_s};
}

base::Result<std::vector<Shipment>> SlipPrinter::issueTogether(const std::vector<Shipment> &shipments,
                                                               Record record)
{
    const int place = shipments.empty() ? 0 : nextPlace(m_workspace.settings, shipments.front().method);
    const auto document = slipsDocument(m_workspace, shipments, m_sending, place);
    if (!document)
        return document.error();
    const QString &form = shipments.front().method;
    const printing::JobSettings *settings = settingsFor(form);
    if (!settings)
        return base::Error{u"プリンタが選ばれていないため、印刷しませんでした。もう一度印刷してください。"_s};
    Handing handing(m_workspace, *document, *settings);
    if (const base::Status drawn = handing.draw(); !drawn)
        return drawn.error();
    std::optional<int> job;
    auto issued = db::atomically(m_workspace.connection, [&]() -> base::Result<std::vector<Shipment>> {
        auto recorded = recordAll(shipments, record);
        if (!recorded)
            return recorded;
        const auto taken = handing.handOver();
        if (!taken)
            return taken.error();
        job = *taken;
        return recorded;
    });
    if (!issued && job)
        return takenBack(issued.error(), *job, *settings);
    if (issued)
        setNextPlace(m_workspace.settings, form, place + static_cast<int>(shipments.size()));
    return issued;
}

} // namespace shipping
