#include "ui/both_versions.h"

#include "db/recordset.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "ui/prompts.h"

using namespace Qt::StringLiterals;

namespace ui
{

namespace
{

constexpr int mostColumns = 12; // more make the box too high for the screen
constexpr int mostCharacters = 40;

QString shown(const QString &column, const QVariant &value, const ValueWords &words)
{
    const bool isNumber = value.typeId() == QMetaType::Double;
    QString quoted = words ? words(column, value) : QString();
    if (quoted.isEmpty())
        quoted = isNumber ? text::formatPlain(value.toDouble()) : text::shownDay(value.toString());
    if (quoted.size() > mostCharacters)
        quoted = quoted.left(mostCharacters) + u'…';
    return u"「%1」"_s.arg(quoted);
}

QString sentenceOn(const db::Recordset::Difference &difference, const ValueWords &words)
{
    const QString mine = shown(difference.column, difference.mine, words);
    const QString theirs = shown(difference.column, difference.theirs, words);
    return (difference.isEdited ? u"%1：自分の入力は%2、ほかの変更は%3"_s
                                : u"%1：%2がほかで%3に変更（どちらを選んでも残ります）"_s)
        .arg(difference.column, mine, theirs);
}

// Search keys are made of the other columns.
bool isShown(const db::Recordset::Difference &difference) { return !difference.column.endsWith(u"名キー"); }

base::Result<QString> question(const QList<db::Recordset *> &rows, const ValueWords &words)
{
    QStringList sentences;
    for (const db::Recordset *one : rows) {
        if (one->currentRow() < 0)
            continue;
        const auto differences = one->differences();
        if (!differences)
            return differences.error();
        for (const auto &difference : *differences) {
            if (isShown(difference))
                sentences << sentenceOn(difference, words);
        }
    }
    if (sentences.isEmpty())
        sentences << u"表示されている項目は、どちらも同じです。"_s;
    if (sentences.size() > mostColumns)
        sentences = sentences.first(mostColumns) << u"ほか %1 項目"_s.arg(sentences.size() - mostColumns);
    return u"表示中のデータは、編集している間にほかのプログラムで変更されました。どちらを残しますか。\n\n"_s +
           sentences.join(u'\n');
}

} // namespace

base::Status saveBesideOthers(QWidget *parent, const QList<db::Recordset *> &rows,
                              const std::function<base::Status()> &save, const ValueWords &words)
{
    for (;;) {
        const base::Status saved = save();
        if (saved || !saved.error().changed)
            return saved;
        const auto text = question(rows, words);
        if (!text)
            return text.error();
        const prompts::Version version = prompts::askWhichVersion(parent, *text);
        if (version == prompts::Version::Undecided)
            return base::Error{.text = {}, .cancelled = true};
        // What was typed stays over the row that is read anew, or goes with the row as it was read.
        for (db::Recordset *one : rows) {
            if (version == prompts::Version::Theirs)
                one->revert();
            one->refresh();
        }
        if (version == prompts::Version::Theirs)
            return {};
    }
}

} // namespace ui
