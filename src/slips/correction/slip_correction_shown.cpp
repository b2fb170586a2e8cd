// What a correction screen shows of its slip.
#include "book/counterpart_name.h"
#include "book/tax.h"
#include "slips/correction/correction_remarks.h"
#include "slips/correction/slip_correction.h"
#include "slips/correction/slip_correction_screen.h"
#include "slips/issued/issued_search.h"
#include "slips/parcel_desk.h"
#include "ui_CorrectionForm.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

void SlipCorrectionScreen::showSlip()
{
    const bool any = m_slip.headers.currentRow() >= 0;
    const std::initializer_list<QWidget *> needed{
        m_ui->Frame2,        m_ui->Command3, m_ui->cmdMasterCancel, m_ui->cmdLineAdd,
        m_ui->cmdLineDelete, m_ui->Check2,   m_ui->Command2,        m_ui->cmdParcel};
    for (QWidget *control : needed)
        control->setEnabled(any);
    // The same slip was only saved or read anew: its lines, and the place among them, stay.
    const auto opened = m_slip.openLines();
    tell(opened.status());
    showCount();
    showHeader();
    showParcels();
    if (!opened || *opened)
        m_slip.acceptTax();
}

// A slip has its number among the others once all are known.
void SlipCorrectionScreen::showCount()
{
    const int count = m_slip.headers.count();
    if (m_slip.headers.currentRow() < 0)
        m_ui->lblCount->setText(u"伝票はありません。"_s);
    else if (m_slip.headers.isComplete())
        m_ui->lblCount->setText(u"%1 / %2 枚"_s.arg(m_slip.headers.currentRow() + 1).arg(count));
    else
        m_ui->lblCount->setText(u"%1 枚以上"_s.arg(count));
}

void SlipCorrectionScreen::showHeader()
{
    m_ui->txtDenNo->setText(m_slip.headers.text(u"伝票番号"_s));
    m_ui->txtDate->setText(headerCell(u"日付"_s).data().toString());
    const int employee = m_ui->dbcShain->findData(m_slip.headers.value(u"社員ID"_s).toLongLong());
    m_ui->dbcShain->setPlaceholderText(employee < 0 ? headerCell(u"社員ID"_s).data().toString() : QString());
    m_ui->dbcShain->setCurrentIndex(employee);
    m_ui->Text4->setText(m_slip.headers.text(u"相手先ID"_s));
    // Without a counterpart the box above is as empty as without a slip, and nobody is read.
    showCounterpart();
}

void SlipCorrectionScreen::showCounterpart()
{
    const QString party = QString::fromUtf16(m_description.party);
    m_ui->Text2->setText(m_slip.counterpart.isEmpty() ? QString()
                                                      : QString::number(m_slip.counterpart.currentKey()));
    const auto show = [this](QLineEdit *box, const QString &column) {
        box->setText(m_slip.counterpart.text(column));
        box->setCursorPosition(0);
    };
    show(m_ui->txtNouhinsaki1, party + u"名1"_s);
    show(m_ui->txtNouhinsaki2, party + u"名2"_s);
    show(m_ui->txtCode, u"コード"_s);
    show(m_ui->txtZip, u"郵便番号"_s);
    show(m_ui->txtAddress1, u"住所1"_s);
    show(m_ui->txtAddress2, u"住所2"_s);
    show(m_ui->txtTel, u"TEL1"_s);
    show(m_ui->txtTaxK, u"消費税区分"_s);
    m_ui->lblTaxClass->setText(
        m_slip.counterpart.isEmpty() ? QString() : nameOf(book::taxClassFrom(m_ui->txtTaxK->text())));
    if (m_slip.counterpart.isEmpty() && m_slip.headers.currentRow() >= 0)
        m_ui->txtNouhinsaki1->setText(book::unknownCounterpartName(m_slip.counterpartKey()));
    showRemarks();
}

// What a deletion takes away.
QString SlipCorrectionScreen::slipInWords() const
{
    const auto cell = [this](const QString &column) { return headerCell(column).data().toString().left(60); };
    const std::vector<book::SlipLine> lines = linesIn(m_slip.lines);
    const QString number = m_slip.headers.text(u"伝票番号"_s);
    const auto issued = countIssued(workspace().connection, number);
    const QString papers =
        issued && *issued > 0
            ? u"\nこの伝票は %1 回発行しています。その控えは「発行控え」に残ります。"_s.arg(*issued)
            : QString();
    return u"伝票 %1　%2\n%3「%4」\n明細 %5 行　%6"_s.arg(
               cell(u"伝票番号"_s), cell(u"日付"_s), QString::fromUtf16(m_description.party),
               m_slip.counterpart.isEmpty() ? m_ui->txtNouhinsaki1->text() : cell(u"相手先ID"_s),
               QString::number(lines.size()), totalRemark(lines)) +
           papers;
}

void SlipCorrectionScreen::showRemarks()
{
    m_ui->cmdClose->setEnabled(m_slip.canBeClosed());
    m_ui->cmdUndo->setEnabled(m_slip.canTakeBack());
    m_ui->lblMessage->setText(m_slip.remarks().join(u'\n'));
    m_ui->lblTotal->setText(m_slip.headers.currentRow() >= 0 ? totalRemark(linesIn(m_slip.lines))
                                                             : QString());
    m_ui->dgdSub->viewport()->update();
}

// --- Its paper, and the parcels of a sale ---

void SlipCorrectionScreen::showAndRemember()
{
    const auto state = paperNow();
    if (!tell(state.status()) || !reprint(m_slip.id()))
        return;
    m_printed = *state;
    if (hasParcels()) {
        offerParcel(workspace(), this, m_slip.id(), number());
        showParcels();
    }
}

bool SlipCorrectionScreen::hasParcels() const { return m_description.isSent && hasParcelDesk(workspace()); }

QString SlipCorrectionScreen::number() const { return m_slip.headers.text(u"伝票番号"_s); }

void SlipCorrectionScreen::showParcels()
{
    if (!hasParcels())
        return;
    const bool any = m_slip.headers.currentRow() >= 0;
    const auto words = any ? workspace().kept<ParcelDesk>()->words(m_slip.id()) : QString();
    const QStringList lines = words ? words->split(u'\n', Qt::SkipEmptyParts) : QStringList();
    m_ui->cmdParcels->setVisible(!lines.isEmpty());
    if (!lines.isEmpty())
        m_ui->cmdParcels->setText(lines.front() + (lines.size() > 1 ? u"　ほか"_s : QString()));
}

// The parcel goes by what the file says of the slip.
void SlipCorrectionScreen::beginParcel()
{
    if (m_slip.headers.currentRow() < 0 || !settled() || !tell(m_slip.storeKnowingly()))
        return;
    workspace().kept<ParcelDesk>()->begin(this, m_slip.id());
    showParcels();
}

void SlipCorrectionScreen::openParcels()
{
    workspace().kept<ParcelDesk>()->show(this, m_slip.id(), number());
    showParcels();
}

} // namespace slips
