#include "slips/entry/counterpart_box.h"

#include "text/width.h"
#include "ui/messages.h"

#include <QComboBox>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

constexpr int mostOffered = 200;

void offer(QComboBox &box, const db::Recordset &found)
{
    box.clear();
    for (int row = 0; row < std::min(found.count(), mostOffered); ++row) {
        const QStringList names{found.index(row, 1).data().toString(), found.index(row, 2).data().toString()};
        QString name = names.join(u' ').trimmed();
        if (box.findText(name) >= 0) // what is chosen is known by its text
            name += u"（ID %1）"_s.arg(found.keyAt(row));
        box.addItem(name, found.keyAt(row));
    }
    box.setCurrentIndex(-1); // the Down key brings the first one
}

// Slips of a deleted counterpart are found by the key that lists tell, and slips of none by what they say.
std::optional<book::CounterpartKey> unknownCounterpartIn(const QString &typed)
{
    static const QRegularExpression withKey(u"^(?:\\(削除済み\\) *)?(?:ID *)?([0-9]+)$"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const QString text = text::toHalfWidthAscii(typed).trimmed();
    if (text == book::unknownCounterpartName({}))
        return book::CounterpartKey();
    bool fits = false;
    const qint64 key = withKey.match(text).captured(1).toLongLong(&fits);
    if (!fits)
        return std::nullopt;
    return book::CounterpartKey(key);
}

} // namespace

base::Result<CounterpartChoice> counterpartIn(QComboBox &box, db::Connection &connection,
                                              const book::CounterpartSearch &search, const QString &several)
{
    const QString typed = box.currentText();
    if (typed.trimmed().isEmpty())
        return CounterpartChoice{{}, ui::messages::searchEmpty()};
    if (const int chosen = box.findText(typed); chosen >= 0)
        return CounterpartChoice{box.itemData(chosen).toLongLong(), {}};
    db::Recordset found(connection);
    if (const base::Status searched = book::searchCounterparts(found, search, typed); !searched)
        return searched.error();
    if (found.count() == 1)
        return CounterpartChoice{found.currentKey(), {}};
    if (const auto unknown = unknownCounterpartIn(typed); unknown && found.isEmpty())
        return CounterpartChoice{*unknown, {}};
    offer(box, found);
    box.setEditText(typed);
    return CounterpartChoice{{}, found.isEmpty() ? ui::messages::nothingFound() : several};
}

} // namespace slips
