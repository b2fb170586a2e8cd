#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

// What the house asks of C++ sources. Each check returns its findings as "path:line: what is wrong".
namespace house
{

/// A source file taken apart.
struct Source
{
    struct Include
    {
        int line;
        QString name;
        bool quoted; // "…" as against <…>
    };
    struct Literal
    {
        int line;
        QString text;
        qsizetype end; // in the code, behind the last quote
    };

    QString path; // relative to src/
    QString code; // comments and the insides of literals are blanks; lines stay where they were
    QList<Include> includes;
    QList<Literal> literals; // those that only blanks part are one, as the language has it
};

Source takeApart(const QString &path, const QString &text);

/// Includes point downward or stay within their house.
QStringList checkFloors(const Source &source);

/// Rooms of a house that use each other both ways ("slips/entry" and "slips/correction"): a room is a folder
/// of a house; what lies in the house's own folder is its hall, open to all of them.
QStringList checkRooms(const QList<Source> &sources);

/// Message boxes and the toolkit's choosers appear in ui/ only, so that tests can answer them.
QStringList checkSeams(const Source &source);

/// Only the workspace knows what time it is.
QStringList checkClock(const Source &source);

/// No loop goes over a part of what a call returns that is reached by a further call: the loop keeps only the
/// last one's value, and reads from what is gone.
QStringList checkLoops(const Source &source);

/// Logic includes no header in \a widgetHeaders.
QStringList checkNoWidgets(const Source &source, const QSet<QString> &widgetHeaders);

/// A screen holds no SQL.
QStringList checkNoSql(const Source &source);

/// SQL outside db/ is what more than one engine understands, and an INSERT names its columns.
QStringList checkEngines(const Source &source);

/// An ORDER BY of the statements outside db/ ends in a key, so that rows of equal values keep their places.
QStringList checkOrders(const Source &source);

/// What a slip is stands in SQL in book/ alone: its kind by its letter, a line of tax by its name, a valid
/// day.
QStringList checkSlipSql(const Source &source);

/// Issued documents are only added to; the counterpart alone follows when two are merged.
QStringList checkKept(const Source &source);

/// The files of the targets that \a function ("kanbalore_logic") makes in the text of a CMakeLists.txt: the
/// names in SOURCES with their rooms, without suffix.
QStringList filesOfTargets(const QString &cmakeText, const QString &function);

} // namespace house
