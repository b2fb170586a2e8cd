#include "source_rules.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace house
{
namespace
{

struct Floor
{
    QStringView house;
    int height;
};
constexpr auto floors = std::to_array<Floor>({{u"base", 0},
                                              {u"text", 1},
                                              {u"db", 2},
                                              {u"workspace", 3},
                                              {u"ui", 4},
                                              {u"printing", 5},
                                              {u"tables", 5},
                                              {u"book", 5},
                                              {u"masters", 6},
                                              {u"registers", 7},
                                              {u"slips", 8},
                                              {u"reports", 9},
                                              {u"shipping", 9},
                                              {u"mail", 9},
                                              {u"app", 10}});

/// The floor of \a path ("slips/entry/frmOut.h"); none when its folder has no place in the house.
std::optional<Floor> floorOf(const QString &path)
{
    const QString house = path.section(u'/', 0, 0);
    const auto found =
        std::find_if(floors.begin(), floors.end(), [&](const Floor &floor) { return floor.house == house; });
    return found == floors.end() ? std::nullopt : std::optional(*found);
}

int lineAt(const QString &text, qsizetype position)
{
    return 1 + int(QStringView(text).left(position).count(u'\n'));
}

QString finding(const Source &source, int line, const QString &what)
{
    return u"%1:%2: %3"_s.arg(source.path).arg(line).arg(what);
}

/// One finding for each match of \a pattern in the code proper.
QStringList findInCode(const Source &source, const QRegularExpression &pattern, const QString &what)
{
    QStringList findings;
    for (auto matches = pattern.globalMatch(source.code); matches.hasNext();) {
        const auto match = matches.next();
        findings += finding(source, lineAt(source.code, match.capturedStart()), what.arg(match.captured()));
    }
    return findings;
}

void addLiteral(Source &source, int line, const QString &text, qsizetype begin, qsizetype end)
{
    static const QRegularExpression nothing(uR"(^\s*u?$)"_s);
    const qsizetype former = source.literals.isEmpty() ? -1 : source.literals.back().end;
    if (former >= 0 && source.code.sliced(former, begin - former).contains(nothing)) {
        source.literals.back().text += text;
        source.literals.back().end = end;
    } else {
        source.literals.append({line, text, end});
    }
}

} // namespace

Source takeApart(const QString &path, const QString &text)
{
    static const QRegularExpression token(
        uR"re(//[^\n]*|/\*.*?\*/|R"([^()\\\s]{0,16})\((?<raw>.*?)\)\1"|"(?<plain>(?:[^"\\\n]|\\.)*)")re"
        uR"re(|(?<![0-9A-Fa-f])'(?:[^'\\\n]|\\.)+')re"_s,
        QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression include(uR"(^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)[>"])"_s,
                                            QRegularExpression::MultilineOption);

    Source source{path, text, {}, {}};
    for (auto matches = include.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        source.includes.append(
            {lineAt(text, match.capturedStart(2)), match.captured(2), match.captured(1) == u"\""_s});
    }
    for (auto matches = token.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        for (const QString &group : {u"raw"_s, u"plain"_s}) {
            if (match.hasCaptured(group)) {
                addLiteral(source, lineAt(text, match.capturedStart()), match.captured(group),
                           match.capturedStart(), match.capturedEnd());
            }
        }
        for (qsizetype at = match.capturedStart(); at < match.capturedEnd(); ++at) {
            if (source.code[at] != u'\n') {
                source.code[at] = u' ';
            }
        }
    }
    return source;
}

QStringList checkFloors(const Source &source)
{
    const auto own = floorOf(source.path);
    if (!own) {
        return {finding(source, 1, u"the folder has no floor in the house"_s)};
    }
    QStringList findings;
    for (const Source::Include &include : source.includes) {
        // Without a folder it is generated (ui_frmOut.h, x.moc), or lies beside its user.
        if (!include.quoted || !include.name.contains(u'/')) {
            continue;
        }
        const auto other = floorOf(include.name);
        if (!other) {
            findings += finding(source, include.line, u"%1 has no floor in the house"_s.arg(include.name));
        } else if (other->house != own->house && other->height >= own->height) {
            findings += finding(source, include.line,
                                u"%1 does not lie below %2"_s.arg(include.name, own->house.toString()));
        }
    }
    return findings;
}

QStringList checkRooms(const QList<Source> &sources)
{
    const auto roomOf = [](const QString &path) { return path.section(u'/', 0, -2); };
    QSet<std::pair<QString, QString>> uses;
    for (const Source &source : sources) {
        for (const Source::Include &include : source.includes) {
            const QString from = roomOf(source.path);
            const QString to = roomOf(include.name);
            const bool sameHouse = from.section(u'/', 0, 0) == to.section(u'/', 0, 0);
            if (include.quoted && sameHouse && from != to && from.contains(u'/') && to.contains(u'/')) {
                uses.insert({from, to});
            }
        }
    }
    QStringList findings;
    for (const auto &[from, to] : std::as_const(uses)) {
        if (from < to && uses.contains({to, from})) {
            findings += u"%1:1: %1 and %2 use each other"_s.arg(from, to);
        }
    }
    return findings;
}

QStringList checkSeams(const Source &source)
{
    static const QRegularExpression chooser(
        uR"(\bQ(MessageBox|ErrorMessage|FileDialog|ColorDialog|FontDialog|InputDialog)\b)"_s);
    if (source.path.startsWith(u"ui/"_s)) {
        return {};
    }
    return findInCode(source, chooser, u"%1 belongs to ui/prompts and ui/file_dialogs"_s);
}

QStringList checkClock(const Source &source)
{
    static const QRegularExpression clock(
        uR"(\bcurrent(Date|Time|DateTime|DateTimeUtc|(M?Secs)SinceEpoch)\b|\bsystem_clock\b)"_s);
    if (source.path == u"workspace/workspace.cpp"_s) {
        return {};
    }
    return findInCode(source, clock, u"%1: the workspace's clock tells the time"_s);
}

QStringList checkLoops(const Source &source)
{
    static const QRegularExpression pattern(
        uR"(for \([^;(){}]* :\s+[\w:.>-]*\w\([^;{}]*\)(?:\.(?:front|back|at)\([^()]*\)|\[[^\]]*\])[^;{}]*\))"_s);
    return findInCode(source, pattern, u"a loop over a part of what a call returns: %1"_s);
}

QStringList checkNoWidgets(const Source &source, const QSet<QString> &widgetHeaders)
{
    QStringList findings;
    for (const Source::Include &include : source.includes) {
        if (widgetHeaders.contains(include.name.section(u'/', -1)) || include.name.startsWith(u"ui/"_s)) {
            findings += finding(source, include.line, u"logic sees no %1"_s.arg(include.name));
        }
    }
    return findings;
}

QStringList checkNoSql(const Source &source)
{
    static const QRegularExpression statement(uR"(\b(SELECT|INSERT|UPDATE|DELETE)\s)"_s);
    QStringList findings;
    for (const Source::Literal &literal : source.literals) {
        if (literal.text.contains(statement)) {
            findings += finding(source, literal.line, u"SQL in a screen"_s);
        }
    }
    return findings;
}

QStringList checkEngines(const Source &source)
{
    if (source.path.startsWith(u"db/"_s))
        return {};
    static const QRegularExpression ofOneEngine(
        uR"(\browid\b|\bIS (NOT )?\?|\b(date|datetime|strftime)\(|\bNOT INDEXED\b|\bINSERT OR\b|)"
        uR"(\bINSERT INTO \S+ +(VALUES|SELECT)\b|\bLIKE \?(?! ESCAPE))"_s);
    QStringList findings;
    for (const Source::Literal &literal : source.literals) {
        if (literal.text.contains(ofOneEngine))
            findings += finding(source, literal.line, u"SQL of one engine outside db"_s);
    }
    return findings;
}

QStringList checkOrders(const Source &source)
{
    if (source.path.startsWith(u"db/"_s))
        return {};
    // Up to the end of the list: a limit, the end of a derived table or of the text.
    static const QRegularExpression order(uR"(\bORDER BY\b\s*([^()]*?)\s*(\)|\bLIMIT\b|$))"_s);
    static const QRegularExpression key(uR"((ID|行)( ASC| DESC)?$)"_s);
    static const QRegularExpression keyFollows(uR"(^(_s)?\s*\+\s*[\w:]*[kK]ey\b)"_s);
    QStringList findings;
    for (const Source::Literal &literal : source.literals) {
        for (auto orders = order.globalMatch(literal.text); orders.hasNext();) {
            const QString terms = orders.next().captured(1);
            const bool goesOn = terms.isEmpty() && source.code.mid(literal.end, 60).contains(keyFollows);
            if (!goesOn && !terms.contains(key))
                findings += finding(source, literal.line, u"an order that does not end in the key"_s);
        }
    }
    return findings;
}

QStringList checkKept(const Source &source)
{
    static const QRegularExpression change(
        uR"((DELETE FROM|UPDATE|DROP TABLE|INTO) 発行控 (?!\(|SET 相手先ID = \?))"_s);
    QStringList findings;
    for (const Source::Literal &literal : source.literals) {
        if ((literal.text + u' ').contains(change))
            findings += finding(source, literal.line, u"issued documents are neither changed nor deleted"_s);
    }
    return findings;
}

QStringList checkSlipSql(const Source &source)
{
    if (source.path.startsWith(u"book/"_s) || source.path.startsWith(u"db/"_s))
        return {};
    static const QRegularExpression fragment(uR"(伝票番号 LIKE|'消費税'|valid_day|種別 *(=|IN\b|<|LIKE))"_s);
    QStringList findings;
    for (const Source::Literal &literal : source.literals) {
        if (literal.text.contains(fragment)) {
            findings += finding(source, literal.line, u"SQL about slips outside book"_s);
        }
    }
    return findings;
}

QStringList filesOfTargets(const QString &cmakeText, const QString &function)
{
    static const QRegularExpression comment(u"#[^\n]*"_s);
    static const QRegularExpression file(uR"(([\w/]+)\.cpp\b)"_s);
    const QRegularExpression call(uR"(\b%1\s*\(([^)]*)\))"_s.arg(function));
    QStringList files;
    for (auto calls = call.globalMatch(QString(cmakeText).remove(comment)); calls.hasNext();) {
        for (auto names = file.globalMatch(calls.next().captured(1)); names.hasNext();) {
            files += names.next().captured(1);
        }
    }
    return files;
}

} // namespace house
