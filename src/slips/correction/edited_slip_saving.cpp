// What is asked before the edits of a slip are stored, left or printed.
#include "slips/correction/correction_remarks.h"
#include "slips/correction/edited_slip.h"
#include "slips/correction/slip_correction.h"
#include "ui/both_versions.h"
#include "ui/prompts.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

base::Error stays() { return {.text = {}, .cancelled = true}; }

QString doubtQuestion(const QString &verb)
{
    return u"金額または消費税が、明細と合っていません。計算し直して%1しますか。"_s.arg(verb);
}

} // namespace

struct EditedSlip::Question
{
    QString text;
    QString remark; // what does not fit; empty: a new line is all that is asked about
    Recalculation mending{};
    QString verb; // "更新する" on a button
    bool mayDrop = false;
};

// --- What putting it right means ---

Recalculation EditedSlip::mending(std::optional<qint64> line, bool anyTax) const
{
    Recalculation what{line, std::nullopt};
    const auto mended = recalculated(keyedLinesIn(lines), what);
    if (!mended)
        return what;
    const Lines then = withoutKeys(*mended);
    if (!(anyTax ? taxDoubt(then) : newTaxDoubt(then)).isEmpty())
        what.tax = taxTerms();
    return what;
}

Recalculation EditedSlip::mendingOfEdits() const
{
    return mending(lines.isDirty() ? lines.currentKey() : 0, false);
}

// Empty where nothing can be put right, or nothing would be another.
QString EditedSlip::mendedRemark(const Recalculation &what) const
{
    const std::vector<KeyedLine> now = keyedLinesIn(lines);
    const auto then = recalculated(now, what);
    return then && *then != now ? u"計算し直すと、%1になります。"_s.arg(totalRemark(withoutKeys(*then)))
                                : QString();
}

// Nothing is asked again of what the clerk has left so.
void EditedSlip::agree()
{
    acceptTax();
    m_agreed = everyDoubt();
}

// --- Asking ---

// Enter alone goes back: what is asked about may be a slip of the hand.
std::optional<EditedSlip::Way> EditedSlip::ask(const Question &question)
{
    const QString mended = question.remark.isEmpty() ? QString() : mendedRemark(question.mending);
    QStringList captions;
    std::vector<Way> ways;
    const auto offer = [&](Way way, const QString &caption) {
        ways.push_back(way);
        captions << caption;
    };
    if (!mended.isEmpty())
        offer(Way::Mend, u"計算し直して%1(&R)"_s.arg(question.verb));
    offer(Way::AsItIs, (question.remark.isEmpty() ? u"%1(&S)"_s : u"このまま%1(&S)"_s).arg(question.verb));
    if (question.mayDrop)
        offer(Way::Drop, u"変更をやめる(&D)"_s);
    QStringList remarks{question.remark, mended};
    remarks.removeAll(QString());
    const auto chosen = ui::prompts::askWhichWay(m_screen, question.text, captions, remarks.join(u'\n'));
    return chosen ? std::optional(ways[static_cast<std::size_t>(*chosen)]) : std::nullopt;
}

// What is asked of the edits; \a newLine where a new line is among them.
EditedSlip::Question EditedSlip::editsQuestion(const QString &newLine) const
{
    const bool isNew = lines.isNewRow();
    return {.text = isNew ? newLine : doubtQuestion(u"更新"_s),
            .remark = doubt(),
            .mending = mendingOfEdits(),
            .verb = isNew ? u"伝票に入れる"_s : u"更新"_s,
            .mayDrop = true};
}

// --- Saving ---

base::Status EditedSlip::saveWith(const std::function<base::Status()> &save)
{
    const base::Status done = ui::saveBesideOthers(m_screen, {&headers, &lines}, save);
    // A row is perhaps just being left; it is looked after when that is refused.
    if (!done && !done.error().cancelled)
        QMetaObject::invokeMethod(this, &EditedSlip::showAsStored, Qt::QueuedConnection);
    return done;
}

base::Status EditedSlip::store()
{
    return saveWith([this] { return saveCorrections(headers, lines, m_connection, m_kind); });
}

base::Status EditedSlip::storeMended(const Recalculation &what)
{
    const base::Status stored =
        saveWith([&] { return saveRecalculated(headers, lines, m_connection, m_kind, what); });
    return stored ? lines.requery() : stored;
}

base::Status EditedSlip::storeAfter(const Question &question, const std::function<base::Status()> &asItIs)
{
    const auto way = ask(question);
    if (!way)
        return stays();
    switch (*way) {
    case Way::Mend:
        return storeMended(question.mending);
    case Way::AsItIs:
        return asItIs();
    case Way::Drop:
        takeBack();
        break;
    }
    return {};
}

base::Status EditedSlip::update()
{
    if (doubt().isEmpty())
        return store();
    Question question = editsQuestion({});
    question.text = doubtQuestion(u"更新"_s);
    question.verb = u"更新"_s;
    question.mayDrop = false;
    return storeAfter(question, [this] {
        agree();
        return store();
    });
}

base::Status EditedSlip::storeKnowingly()
{
    if (!isDirty())
        return {};
    if (doubt().isEmpty() && !lines.isNewRow())
        return store();
    return storeAfter(editsQuestion(u"新しい明細と変更は、まだ伝票に入っていません。入れますか。"_s), [this] {
        agree();
        return store();
    });
}

base::Status EditedSlip::leave()
{
    if (const base::Status stored = storeKnowingly(); !stored)
        return stored;
    const QString remark = newTaxDoubt(linesIn(lines));
    if (remark.isEmpty())
        return {};
    return storeAfter({doubtQuestion(u"更新"_s), remark, mendingOfEdits(), u"更新"_s}, [this] {
        agree();
        return base::Status();
    });
}

base::Status EditedSlip::storeForPaper()
{
    if (const base::Status stored = storeKnowingly(); !stored)
        return stored;
    const QString remark = everyDoubt();
    if (remark.isEmpty() || remark == m_agreed)
        return {};
    return storeAfter({doubtQuestion(u"印刷"_s), remark, mending(std::nullopt, true), u"印刷"_s}, [this] {
        agree();
        return base::Status();
    });
}

// The header is not left: its edits stay edits, unless the tax is computed by them.
base::Status EditedSlip::leaveLine()
{
    const auto save = [this] { return saveWith([this] { return saveLine(headers, lines); }); };
    if (lineDoubt().isEmpty() && !lines.isNewRow())
        return save();
    Question question = editsQuestion(u"新しい明細はまだ伝票に入っていません。入れますか。"_s);
    question.remark = lineDoubt();
    const auto way = ask(question);
    if (!way)
        return stays();
    switch (*way) {
    case Way::Mend:
        return storeMended(question.mending);
    case Way::AsItIs:
        return save();
    case Way::Drop:
        lines.revert();
        break;
    }
    return {};
}

bool EditedSlip::mayClose()
{
    if (isDirty() && doubt().isEmpty() && !lines.isNewRow()) {
        switch (ui::prompts::askToSave(m_screen, u"伝票の変更が保存されていません。保存しますか。"_s)) {
        case ui::prompts::Choice::Save:
            return tell(store());
        case ui::prompts::Choice::Discard:
            takeBack();
            return true;
        case ui::prompts::Choice::Cancel:
            return false;
        }
    }
    return tell(leave());
}

} // namespace slips
