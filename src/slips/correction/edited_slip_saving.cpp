// What is asked before the edits of a slip are stored, left or printed.
#include "book/stored_values.h"
#include "slips/correction/edited_slip.h"
#include "slips/correction/slip_correction.h"
#include "slips/correction/slip_doubts.h"
#include "ui/both_versions.h"
#include "ui/prompts.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

// Nobody changes a slip so often; a row that is never as it was read would be tried for ever.
constexpr int mostRounds = 10;

base::Error stays() { return {.text = {}, .cancelled = true}; }

// Before the answer could be stored, another program has changed what was asked about.
base::Error otherFigures()
{
    return {.text = u"伝票がほかのプログラムで変更されたため、保存できませんでした。"
                    "表示を確認してから、もう一度実行してください。"_s,
            .changed = true};
}

QString doubtQuestion(const QString &verb)
{
    return u"金額または消費税が、明細と合っていません。計算し直して%1しますか。"_s.arg(verb);
}

} // namespace

struct EditedSlip::Question
{
    QString text;
    QString remark; // what does not fit; empty: a new line is all that is asked about
    QString mended; // what putting it right makes of the slip; empty: nothing can be put right
    Recalculation mending{};
    QString verb; // "更新する" on a button
    bool mayDrop = false;

    // Whether the clerk would see the same.
    bool operator==(const Question &other) const
    {
        return text == other.text && remark == other.remark && mended == other.mended;
    }
};

/// What may be asked about the slip, and what the answers do.
struct EditedSlip::Storing
{
    std::function<std::optional<Question>(const Figures &)> question; // nothing: it is stored without one
    std::function<base::Status(const Step &check)> asItIs;
    bool ofLineAlone = false; // of the header only what the tax is computed by
    std::function<void()> drop{};
};

// --- What disagrees, and what putting it right means ---

// As it will be: what the record sets show, and of all that is not edited what the file holds.
base::Result<Figures> EditedSlip::stored() const
{
    const auto all = linesInFile(m_connection, lines, id());
    const auto taxClass = book::taxClassOf(m_connection, m_counterparts.party, counterpartKey().value_or(0));
    if (!all || !taxClass)
        return all ? taxClass.error() : all.error();
    return figures(*all, *taxClass);
}

// A slip that was found as it is, is left as it is without a word.
QString EditedSlip::newTaxDoubt(const Figures &figures) const
{
    const QString doubt = taxDoubt(figures);
    return doubt == m_acceptedTax ? QString() : doubt;
}

// Of what is edited.
QString EditedSlip::doubt(const Figures &figures) const
{
    return joined({lines.isDirty() ? lineDoubt() : QString(), newTaxDoubt(figures)});
}

Recalculation EditedSlip::mending(const Figures &figures, std::optional<qint64> line, bool anyTax) const
{
    Recalculation what{line, std::nullopt};
    const auto mended = recalculated(figures.lines, what);
    if (!mended)
        return what;
    const Figures then{*mended, figures.terms};
    if (!(anyTax ? taxDoubt(then) : newTaxDoubt(then)).isEmpty())
        what.tax = figures.terms;
    return what;
}

Recalculation EditedSlip::mendingOfEdits(const Figures &figures) const
{
    return mending(figures, lines.isDirty() ? lines.currentKey() : 0, false);
}

// Nothing is asked again of what the clerk has left so.
void EditedSlip::agreeTo(const Figures &figures)
{
    m_acceptedTax = taxDoubt(figures);
    m_agreed = everyDoubt(figures);
}

// --- Asking ---

// Enter alone goes back: what is asked about may be a slip of the hand.
std::optional<EditedSlip::Way> EditedSlip::ask(const Question &question)
{
    QStringList captions;
    std::vector<Way> ways;
    const auto offer = [&](Way way, const QString &caption) {
        ways.push_back(way);
        captions << caption;
    };
    if (!question.mended.isEmpty())
        offer(Way::Mend, u"計算し直して%1(&R)"_s.arg(question.verb));
    offer(Way::AsItIs, (question.remark.isEmpty() ? u"%1(&S)"_s : u"このまま%1(&S)"_s).arg(question.verb));
    if (question.mayDrop)
        offer(Way::Drop, u"変更をやめる(&D)"_s);
    const auto chosen = ui::prompts::askWhichWay(m_screen, question.text, captions,
                                                 joined({question.remark, question.mended}));
    return chosen ? std::optional(ways[static_cast<std::size_t>(*chosen)]) : std::nullopt;
}

// What is asked of the edits, which \a remark doubts; \a newLine where a new line is among them.
std::optional<EditedSlip::Question> EditedSlip::editsQuestion(const Figures &figures, const QString &remark,
                                                              const QString &newLine) const
{
    const bool isNew = lines.isNewRow();
    if (remark.isEmpty() && !isNew)
        return std::nullopt;
    const Recalculation mending = mendingOfEdits(figures);
    return Question{.text = isNew ? newLine : doubtQuestion(u"更新"_s),
                    .remark = remark,
                    .mended = remark.isEmpty() ? QString() : mendedRemark(figures, mending),
                    .mending = mending,
                    .verb = isNew ? u"伝票に入れる"_s : u"更新"_s,
                    .mayDrop = true};
}

// What is asked of the slip as it is stored.
std::optional<EditedSlip::Question> EditedSlip::slipQuestion(const Figures &figures, const QString &remark,
                                                             const Recalculation &mending,
                                                             const QString &verb) const
{
    if (remark.isEmpty())
        return std::nullopt;
    return Question{.text = doubtQuestion(verb),
                    .remark = remark,
                    .mended = mendedRemark(figures, mending),
                    .mending = mending,
                    .verb = verb};
}

// --- Saving ---

// A row is perhaps just being left; it is looked after when that is refused.
base::Status EditedSlip::failed(const base::Status &status)
{
    if (!status.error().cancelled)
        QMetaObject::invokeMethod(this, &EditedSlip::showAsStored, Qt::QueuedConnection);
    return status;
}

// Whether the file has the slip as it was asked about.
base::Status EditedSlip::checkFigures(const Figures &asked) const
{
    if (const base::Status same = checkAsRead(headers, lines); !same)
        return same;
    const auto now = stored();
    if (!now)
        return now.error();
    return *now == asked ? base::Status() : otherFigures();
}

// Where another program has been at the rows that are edited, the clerk says whose stay.
base::Status EditedSlip::readAnew()
{
    if (!isDirty()) {
        showAsStored();
        return {};
    }
    const base::Status same =
        ui::saveBesideOthers(m_screen, {&headers, &lines}, [this] { return checkAsRead(headers, lines); });
    return same ? openCounterpart() : same;
}

base::Status EditedSlip::store(Way way, const Storing &storing, const Figures &asked,
                               const std::optional<Question> &question)
{
    const Step check = [&] { return checkFigures(asked); };
    base::Status done;
    switch (way) {
    case Way::Mend:
        if (storing.ofLineAlone && !question->mending.tax)
            return saveLineRecalculated(lines, check);
        done = saveRecalculated(headers, lines, m_connection, m_kind, question->mending, check);
        return done ? lines.requery() : done;
    case Way::AsItIs:
        done = storing.asItIs(check);
        if (done && question && !storing.ofLineAlone) // who has said so is not asked again
            agreeTo(asked);
        return done;
    case Way::Drop:
        storing.drop();
        break;
    }
    return {};
}

// The one way into the file for all that is edited: read, ask, store what was asked about, or begin anew.
base::Status EditedSlip::settle(const Storing &storing)
{
    const qint64 slip = id();
    std::optional<Question> asked;
    Way way = Way::AsItIs;
    for (int round = 0; round < mostRounds; ++round) {
        const bool wasDirty = isDirty();
        if (const base::Status read = readAnew(); !read)
            return failed(read);
        if (wasDirty && !isDirty()) { // the other program's version stays
            acceptTax();
            return {};
        }
        if (id() != slip) // it is gone
            return {};
        const auto now = stored();
        if (!now)
            return failed(now.error());
        const auto question = storing.question(*now);
        if (question && question != asked) {
            const auto chosen = ask(*question);
            if (!chosen)
                return stays();
            way = *chosen;
        }
        asked = question;
        const base::Status done = store(question ? way : Way::AsItIs, storing, *now, question);
        if (done || !done.error().changed)
            return done ? done : failed(done);
    }
    return failed(otherFigures());
}

base::Status EditedSlip::storeAll(const Step &check)
{
    return saveCorrections(headers, lines, m_connection, m_kind, check);
}

base::Status EditedSlip::update()
{
    if (!isDirty() && newTaxDoubt(shown()).isEmpty())
        return {};
    const auto question = [this](const Figures &figures) {
        auto asked = editsQuestion(figures, doubt(figures), {});
        if (!asked || asked->remark.isEmpty()) // pressing the key says that a new line is meant
            return std::optional<Question>();
        asked->text = doubtQuestion(u"更新"_s);
        asked->verb = u"更新"_s;
        asked->mayDrop = false;
        return asked;
    };
    return settle({.question = question, .asItIs = [this](const Step &check) { return storeAll(check); }});
}

base::Status EditedSlip::storeKnowingly()
{
    if (!isDirty())
        return {};
    const auto question = [this](const Figures &figures) {
        return editsQuestion(figures, doubt(figures),
                             u"新しい明細と変更は、まだ伝票に入っていません。入れますか。"_s);
    };
    return settle({.question = question,
                   .asItIs = [this](const Step &check) { return storeAll(check); },
                   .drop = [this] { takeBack(); }});
}

base::Status EditedSlip::leave()
{
    if (const base::Status stored = storeKnowingly(); !stored)
        return stored;
    if (newTaxDoubt(shown()).isEmpty())
        return {};
    return settle({.question =
                       [this](const Figures &figures) {
                           return slipQuestion(figures, newTaxDoubt(figures), mendingOfEdits(figures),
                                               u"更新"_s);
                       },
                   .asItIs = [](const Step &) { return base::Status(); }});
}

base::Status EditedSlip::storeForPaper()
{
    if (const base::Status stored = storeKnowingly(); !stored)
        return stored;
    return settle({.question =
                       [this](const Figures &figures) {
                           const QString doubt = everyDoubt(figures);
                           return slipQuestion(figures, doubt == m_agreed ? QString() : doubt,
                                               mending(figures, std::nullopt, true), u"印刷"_s);
                       },
                   .asItIs = [](const Step &) { return base::Status(); }});
}

// The header is not left: its edits stay edits, unless the tax is computed by them.
base::Status EditedSlip::leaveLine()
{
    const auto question = [this](const Figures &figures) {
        return editsQuestion(figures, lineDoubt(), u"新しい明細はまだ伝票に入っていません。入れますか。"_s);
    };
    return settle({.question = question,
                   .asItIs = [this](const Step &check) { return saveLine(lines, check); },
                   .ofLineAlone = true,
                   .drop = [this] { lines.revert(); }});
}

bool EditedSlip::mayClose()
{
    if (isDirty() && doubt(shown()).isEmpty() && !lines.isNewRow()) {
        switch (ui::prompts::askToSave(m_screen, u"伝票の変更が保存されていません。保存しますか。"_s)) {
        case ui::prompts::Choice::Save:
            break;
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
