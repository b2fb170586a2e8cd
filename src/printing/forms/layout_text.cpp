#include "printing/forms/layout_text.h"

#include <QList>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

bool isOfKey(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.';
}

bool isOfNumber(char c)
{
    return (c >= '0' && c <= '9') || c == '.' || c == '+' || c == '-' || c == '_' || c == 'e' || c == 'E';
}

// Behind the text that begins with the quotation mark at \a at.
qsizetype behindText(const QByteArray &line, qsizetype at)
{
    const char quote = line.at(at);
    for (++at; at < line.size() && line.at(at) != quote; ++at) {
        if (quote == '"' && line.at(at) == '\\')
            ++at;
    }
    return at + 1;
}

// Where the value of \a key begins, looked for from \a from on outside of texts and explanations; -1 where it
// does not stand there.
qsizetype valueOf(const QByteArray &line, const QByteArray &key, qsizetype from)
{
    for (qsizetype at = from; at < line.size() && line.at(at) != '#';) {
        if (line.at(at) == '"' || line.at(at) == '\'') {
            at = behindText(line, at);
            continue;
        }
        const qsizetype begin = at;
        while (at < line.size() && isOfKey(line.at(at)))
            ++at;
        if (at == begin) {
            ++at;
            continue;
        }
        if (line.mid(begin, at - begin) != key)
            continue;
        while (at < line.size() && line.at(at) == ' ')
            ++at;
        if (at >= line.size() || line.at(at) != '=')
            continue;
        for (++at; at < line.size() && line.at(at) == ' ';)
            ++at;
        return at;
    }
    return -1;
}

base::Error beyondUs()
{
    return {u"この値は、レイアウトファイルに別の書き方で書かれているため、画面では変えられません。"_s};
}

base::Result<QByteArray> replaced(const QByteArray &line, const QString &key, double value)
{
    qsizetype at = 0;
    for (const QString &part : key.split(u'.')) {
        at = valueOf(line, part.toUtf8(), at);
        if (at < 0)
            return beyondUs();
    }
    qsizetype end = at;
    while (end < line.size() && isOfNumber(line.at(end)))
        ++end;
    if (end == at)
        return beyondUs();
    return line.left(at) + measureText(value) + line.mid(end);
}

} // namespace

QByteArray measureText(double value)
{
    constexpr int decimals = 3;
    QByteArray text = QByteArray::number(value, 'f', decimals);
    while (text.endsWith('0') && !text.endsWith(".0"))
        text.chop(1);
    return text;
}

base::Result<QByteArray> withMeasure(const QByteArray &content, int line, int measureLine, const QString &key,
                                     double value)
{
    QList<QByteArray> lines = content.split('\n');
    if (line < 0 || line > lines.size() || measureLine < 0 || measureLine > lines.size())
        return beyondUs();
    if (measureLine > 0) {
        const auto changed = replaced(lines.at(measureLine - 1), key, value);
        if (!changed)
            return changed.error();
        lines[measureLine - 1] = *changed;
        return lines.join('\n');
    }
    // A heading in brackets takes a further line; one in braces does not.
    if (line == 0 || key.contains(u'.') || !lines.at(line - 1).trimmed().startsWith('['))
        return beyondUs();
    const QByteArray end = lines.at(line - 1).endsWith('\r') ? "\r" : "";
    lines.insert(line, key.toUtf8() + " = " + measureText(value) + end);
    return lines.join('\n');
}

} // namespace printing
