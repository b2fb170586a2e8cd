#include "registers/duplicates/person_folding.h"
#include "registers/postal/postal_lookup.h"
#include "shipping/gifts/earlier_gifts.h"
#include "shipping/gifts/frmKuroneko5.h"
#include "shipping/gifts/gift_checks.h"
#include "slips/entry/counterpart_box.h"
#include "text/numbers.h"
#include "ui/cell_delegate.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_frmKuroneko5.h"
#include "workspace/workspace.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

// The lines of the sheet: where they come from, and what is done with them.
namespace shipping
{

namespace
{

registers::PostalData postalData(const workspace::Workspace &workspace)
{
    return {workspace.applicationFolder(), workspace.kept<registers::PostalIndex>()};
}

QString commonBeginning(const QStringList &texts)
{
    QString beginning = texts.value(0);
    for (const QString &text : texts) {
        while (!text.startsWith(beginning))
            beginning.chop(1);
    }
    return beginning;
}

} // namespace

std::optional<qint64> frmKuroneko5::chosenIn(QComboBox &box)
{
    const QString several = u"複数の納品先が選択されています。"_s;
    const auto found = slips::counterpartIn(box, workspace().connection, book::customerSearch, several);
    if (found && found->refusal.isEmpty())
        return found->counterpart.value_or(0);
    box.setFocus();
    tell(found ? base::Error{found->refusal} : found.error());
    if (found && found->refusal == several)
        say(u"該当する納品先 %1 件を検索欄の一覧に入れました。↓キーで選び、Enter を押してください。"_s.arg(
            box.count()));
    return std::nullopt;
}

void frmKuroneko5::searchSender()
{
    const auto id = chosenIn(*m_ui->cmbSender);
    if (!id)
        return;
    const auto party = registeredParty(workspace().connection, *id);
    say({});
    if (!tell(party.status()) || !m_cells->settle() || !takeOver(*party, *id))
        return;
    QString words = m_ui->lblMessage->text();
    showSender(*party, *id);
    takeHead();
    if (const QString name = m_rows.order().common.memo2; !name.isEmpty())
        words += u"共通の名入れは「%1」です。"_s.arg(name);
    if (m_ui->lblMessage->text().isEmpty()) // nothing is wrong with the boxes
        say(words);
    m_ui->txtDate2->setFocus();
}

bool frmKuroneko5::takeOver(const Party &sender, qint64 id)
{
    const bool isOne = m_ownerId > 0 && id > 0
                           ? m_ownerId == id
                           : registers::foldedPerson(m_owner.name1) == registers::foldedPerson(sender.name1);
    if (sender.name1.isEmpty())
        return true; // he is still to be entered
    if (!isOne && !m_owner.name1.isEmpty() && !settleLinesOf(m_owner, sender))
        return false;
    m_owner = sender;
    m_ownerId = id;
    return true;
}

// Lines whose slips are out stay with the one who sent them: in the history.
bool frmKuroneko5::settleLinesOf(const Party &other, const Party &sender)
{
    GiftOrder order = m_rows.order();
    std::erase_if(order.rows, &GiftRow::issued);
    if (!order.rows.empty()) {
        const auto way = ui::prompts::askWhichWay(
            this,
            u"表には、%1 様のお届け先が %2 件残っています。ご依頼主を %3 様に替えると、どうしますか。"_s
                .arg(other.name1)
                .arg(order.rows.size())
                .arg(sender.name1),
            {u"表から除く"_s, u"残して使う"_s},
            u"残すと、品名・価格・のし・名入れも各行のまま、%1 様の名前で発行します。"_s.arg(sender.name1));
        if (!way)
            return false;
        if (*way == 0)
            order.rows.clear();
    }
    const std::size_t gone = m_rows.order().rows.size() - order.rows.size();
    if (gone > 0) {
        m_rows.setOrder(std::move(order));
        say(u"%1 様のお届け先 %2 行を表から除きました。"_s.arg(other.name1).arg(gone));
    }
    return true;
}

// Whom the sheet has already is shown instead of added once more.
void frmKuroneko5::addConsignee()
{
    const auto id = chosenIn(*m_ui->cmbConsignee);
    if (!id || !m_cells->settle())
        return;
    const auto party = registeredParty(workspace().connection, *id);
    if (!tell(party.status()))
        return;
    const std::vector<GiftRow> &rows = m_rows.order().rows;
    const auto there = std::ranges::find_if(rows, [&](const GiftRow &row) {
        return row.consigneeId == *id || consigneeKey(row.consignee) == consigneeKey(*party);
    });
    int place = int(there - rows.begin());
    if (there == rows.end()) {
        GiftRow row;
        row.consignee = *party;
        row.consigneeId = *id;
        place = m_rows.append({row});
        say({});
    } else {
        say(u"%1 は %2 行目にあります。"_s.arg(party->name1).arg(place + 1));
    }
    m_ui->DataGrid1->setCurrentIndex(m_rows.index(place, int(GiftColumn::Name1)));
    m_ui->cmbConsignee->clear();
    m_ui->cmbConsignee->setFocus();
}

void frmKuroneko5::presetSeason()
{
    const Season season = seasonBefore(workspace().today(), m_ui->cmbYear->currentData().toInt());
    m_ui->DTPicker3->setDate(season.from);
    m_ui->DTPicker4->setDate(season.to);
}

void frmKuroneko5::loadLastYear()
{
    if (!m_cells->settle())
        return;
    takeHead();
    const GiftOrder &order = m_rows.order();
    if (order.sender.name1.isEmpty()) {
        ui::prompts::inform(this, u"ご依頼主を検索するか、名前を入力してください。"_s);
        m_ui->cmbSender->setFocus();
        return;
    }
    if (!takeOver(order.sender, order.senderId))
        return;
    const auto gifts =
        lastGiftsOf(workspace().connection, {order.senderId, order.sender, order.category,
                                             m_ui->DTPicker3->date(), m_ui->DTPicker4->date()});
    if (!tell(gifts.status()))
        return;
    QSet<QString> there;
    for (const GiftRow &row : order.rows)
        there.insert(consigneeKey(row.consignee));
    std::vector<GiftRow> rows;
    for (const Shipment &gift : *gifts) {
        if (!there.contains(consigneeKey(gift.consignee)))
            rows.push_back(rowLike(gift));
    }
    if (gifts->empty()) {
        ui::prompts::inform(this, ui::messages::nothingFound());
        m_ui->cmbYear->setFocus();
        return;
    }
    const int first = m_rows.append(rows);
    const std::size_t known = gifts->size() - rows.size();
    say(u"%1 件を読み込みました。"_s.arg(rows.size()) +
        (known > 0 ? u"すでにある %1 件は除きました。"_s.arg(known) : QString()) +
        (rows.empty() ? QString() : u"黒い値は前回のままです。「共通の内容に合わせる」で替わります。"_s));
    goTo(rows.empty() ? 0 : first, GiftColumn::Name1);
}

// A code with several towns gives what these have in common, to be typed on.
void frmKuroneko5::completeAddress(int row, GiftColumn column)
{
    const Party &consignee = m_rows.order().rows[std::size_t(row)].consignee;
    const registers::PostalData postal = postalData(workspace());
    if (column == GiftColumn::Zip && consignee.address1.isEmpty()) {
        const auto code = registers::completePostalCode(consignee.zip);
        const auto addresses =
            code ? registers::addressesOf(postal, *code) : base::Result<QStringList>(QStringList());
        if (!addresses || addresses->isEmpty())
            return;
        m_rows.setData(m_rows.index(row, int(GiftColumn::Address1)), commonBeginning(*addresses),
                       Qt::EditRole);
        if (addresses->size() > 1)
            say(u"この郵便番号には %1 の町域があります。住所の続きを入力してください。"_s.arg(
                addresses->size()));
    } else if (column == GiftColumn::Address1 && consignee.zip.isEmpty()) {
        const QString code = registers::postalCodeOf(postal, consignee.address1);
        if (code.isEmpty())
            return;
        m_rows.setData(m_rows.index(row, int(GiftColumn::Zip)), code, Qt::EditRole);
        if (registers::isOfWholeCity(postal, code))
            say(u"住所から町が分からなかったため、市区町村の代表の郵便番号 %1 を入れました。"_s.arg(code));
    }
}

void frmKuroneko5::paste()
{
    const QModelIndex cell = m_ui->DataGrid1->currentIndex();
    if (!cell.isValid() ||
        !tell(m_rows.paste(cell.row(), cell.column(), QGuiApplication::clipboard()->text())))
        return;
    m_ui->DataGrid1->setCurrentIndex(m_rows.index(cell.row(), cell.column()));
}

std::vector<int> frmKuroneko5::selectedRows() const
{
    std::vector<int> rows;
    const QModelIndexList selected = m_ui->DataGrid1->selectionModel()->selectedRows();
    for (const QModelIndex &index : selected)
        rows.push_back(index.row());
    if (rows.empty())
        rows.push_back(m_ui->DataGrid1->currentIndex().row());
    return rows;
}

void frmKuroneko5::removeRows()
{
    if (!m_cells->settle())
        return;
    const std::vector<int> rows = selectedRows();
    const std::size_t before = m_rows.order().rows.size();
    m_rows.remove(rows);
    const std::size_t removed = before - m_rows.order().rows.size();
    goTo(std::min(*std::ranges::min_element(rows), m_rows.rowCount() - 1), GiftColumn::Name1);
    if (removed > 0)
        say(u"%1 行を削除しました。「元に戻す」で戻せます。"_s.arg(removed));
}

void frmKuroneko5::takeBack()
{
    m_cells->giveUp();
    const QModelIndex cell = m_ui->DataGrid1->currentIndex();
    m_rows.takeBack();
    m_ui->DataGrid1->setCurrentIndex(
        m_rows.index(std::min(cell.row(), m_rows.rowCount() - 1), std::max(cell.column(), 0)));
    say({});
}

void frmKuroneko5::followCommon()
{
    if (!m_cells->settle())
        return;
    takeHead();
    m_rows.followCommon();
    const qsizetype doubts = priceDoubts(m_rows.order()).size();
    say(u"印の付いた行を共通の内容に合わせました。「元に戻す」で戻せます。"_s +
        (doubts > 0 ? u"価格が別の品名のままの行が %1 行あります。"_s.arg(doubts) : QString()));
}

void frmKuroneko5::goTo(int row, GiftColumn column)
{
    m_ui->DataGrid1->setFocus();
    m_ui->DataGrid1->setCurrentIndex(m_rows.index(row, int(column)));
    m_ui->DataGrid1->selectRow(row);
    m_ui->DataGrid1->setCurrentIndex(m_rows.index(row, int(column)));
}

} // namespace shipping
