#pragma once

#include "slips/counterpart_search.h"

class QComboBox;

namespace slips
{

/// The one counterpart that a drop-down leads to.
struct CounterpartChoice
{
    qint64 counterpart = 0;
    QString refusal; // where none or more than one is meant: what is to be told
};

/// Whom \a box means: the one chosen from its list, or else the one whose search key holds the text typed
/// into it. When several do, they become its list, to choose from; \a several tells that.
db::Result<CounterpartChoice> counterpartIn(QComboBox &box, db::Connection &connection,
                                            const CounterpartSearch &search, const QString &several);

} // namespace slips
