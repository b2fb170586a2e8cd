#pragma once

#include "printing/queue/print_system.h"

#include <QSizeF>
#include <QString>

// What queues say, in the clerk's words.
namespace printing
{

/// A bin by the name that the system gives it ("manual", "tray-1"); one that is not known as it stands.
QString binInWords(const QString &bin);

/// "A4" or "幅 241.3 × 長さ 114.3 mm", as it is fed.
QString paperInWords(const QSizeF &paper);

/// Says that the printer \a queue does not take \a paper, before any of it is wasted; empty where it does.
QString paperObstacle(const QueueAbilities &abilities, const QString &queue, const QSizeF &paper);

QString stateInWords(JobState state);

/// "プリンタが止まっています（用紙切れ）", also of one that is not stopped but cannot go on; empty where all
/// is well with it.
QString troubleInWords(const QueueState &state);

} // namespace printing
