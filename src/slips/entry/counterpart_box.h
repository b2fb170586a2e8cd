#pragma once

#include "book/counterpart_name.h"
#include "book/counterpart_search.h"

class QComboBox;

namespace slips
{

/// The one counterpart that a drop-down leads to.
struct CounterpartChoice
{
    book::CounterpartKey counterpart;
    QString refusal; // where none or more than one is meant: what is to be told
};

/// Whom \a box means: the one chosen from its list, or else the one whose search key holds the text typed
/// into it. When several do, they become its list, to choose from; \a several tells that. Where nobody has
/// the text in the key, it may name one whom no register has, as lists do: "(削除済み) ID 7", "ID 7", "7" or
/// "(相手先なし)".
base::Result<CounterpartChoice> counterpartIn(QComboBox &box, db::Connection &connection,
                                              const book::CounterpartSearch &search, const QString &several);

} // namespace slips
