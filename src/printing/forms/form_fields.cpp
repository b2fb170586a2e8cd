#include "printing/forms/form_fields.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

QString nameOf(const char *key) { return QString::fromLatin1(key); }

QString nameOf(const TomlNode &node) { return node.key.isEmpty() ? u"値"_s : u"「%1」"_s.arg(node.key); }

bool isNumber(const TomlNode &node)
{
    return node.kind == TomlNode::Kind::Integer || node.kind == TomlNode::Kind::Number;
}

} // namespace

const TomlNode *FormFields::find(const char *key) const
{
    const auto found = std::find_if(m_table.children.begin(), m_table.children.end(),
                                    [&](const TomlNode &node) { return node.key == QLatin1StringView(key); });
    return found == m_table.children.end() ? nullptr : &*found;
}

const TomlNode *FormFields::take(const char *key)
{
    m_known << nameOf(key);
    return find(key);
}

const TomlNode *FormFields::take(const char *key, TomlNode::Kind kind, const QString &wanted)
{
    const TomlNode *node = take(key);
    if (!node || node->kind == kind)
        return node;
    m_faults.add(node->line, u"「%1」には%2を書いてください。"_s.arg(nameOf(key), wanted));
    return nullptr;
}

bool FormFields::has(const char *key) const { return find(key) != nullptr; }

int FormFields::line(const char *key) const
{
    const TomlNode *node = find(key);
    return node ? node->line : m_table.line;
}

bool FormFields::text(const char *key, QString &into)
{
    const TomlNode *node = take(key, TomlNode::Kind::Text, u"「\" \"」で囲んだ文字"_s);
    if (node)
        into = node->text;
    return node != nullptr;
}

bool FormFields::flag(const char *key, bool &into)
{
    const TomlNode *node = take(key, TomlNode::Kind::Flag, u" true か false "_s);
    if (node)
        into = node->flag;
    return node != nullptr;
}

bool FormFields::isWithin(const TomlNode &node, double least, double most) const
{
    if (isNumber(node) && std::isfinite(node.number) && node.number >= least && node.number <= most)
        return true;
    m_faults.add(node.line,
                 u"%1には %2 から %3 までの数を書いてください。"_s.arg(nameOf(node)).arg(least).arg(most));
    return false;
}

bool FormFields::number(const char *key, double &into, double least, double most)
{
    const TomlNode *node = take(key);
    if (!node || !isWithin(*node, least, most))
        return false;
    into = node->number;
    return true;
}

bool FormFields::integer(const char *key, int &into, int least, int most)
{
    const TomlNode *node = take(key);
    if (!node || !isWithin(*node, least, most))
        return false;
    if (node->kind != TomlNode::Kind::Integer) {
        fault(key, u"「%1」には小数点のない数を書いてください。"_s.arg(nameOf(key)));
        return false;
    }
    into = static_cast<int>(node->number);
    return true;
}

bool FormFields::numbers(const char *key, std::vector<double> &into, double least, double most)
{
    const TomlNode *node = take(key, TomlNode::Kind::Array, u" [ ] で囲んだ数"_s);
    if (!node)
        return false;
    std::vector<double> read;
    for (const TomlNode &element : node->children) {
        if (!isWithin(element, least, most))
            return false;
        read.push_back(element.number);
    }
    into = std::move(read);
    return true;
}

bool FormFields::texts(const char *key, QStringList &into)
{
    const TomlNode *node = take(key);
    if (!node)
        return false;
    QStringList read;
    const std::vector<TomlNode> single(1, *node);
    for (const TomlNode &element : node->kind == TomlNode::Kind::Array ? node->children : single) {
        if (element.kind != TomlNode::Kind::Text) {
            fault(key, u"「%1」には「\" \"」で囲んだ名前を書いてください。"_s.arg(nameOf(key)));
            return false;
        }
        read << element.text;
    }
    into = read;
    return true;
}

bool FormFields::choose(const char *key, const QStringList &words, int &index)
{
    QString word;
    if (!text(key, word))
        return false;
    index = static_cast<int>(words.indexOf(word));
    if (index < 0)
        fault(key,
              u"「%1」に「%2」は使えません。使えるもの：%3"_s.arg(nameOf(key), word, words.join(u"、"_s)));
    return index >= 0;
}

const TomlNode *FormFields::table(const char *key)
{
    return take(key, TomlNode::Kind::Table, u"表（{ } か [%1]）"_s.arg(nameOf(key)));
}

void FormFields::tables(const char *key, const std::function<void(const TomlNode &)> &read)
{
    const TomlNode *array = take(key, TomlNode::Kind::Array, u" [[ ]] の表"_s);
    if (!array)
        return;
    for (const TomlNode &element : array->children) {
        if (element.kind == TomlNode::Kind::Table)
            read(element);
        else
            m_faults.add(element.line, u"「%1」は [[ ]] の表で書いてください。"_s.arg(nameOf(key)));
    }
}

void FormFields::require(std::initializer_list<const char *> keys) const
{
    for (const char *key : keys) {
        if (!has(key))
            m_faults.add(m_table.line, u"「%1」が書かれていません。"_s.arg(nameOf(key)));
    }
}

void FormFields::finish() const
{
    for (const TomlNode &node : m_table.children) {
        if (!m_known.contains(node.key))
            m_faults.add(node.line, u"「%1」というキーはありません。使えるキー：%2"_s.arg(
                                        node.key, m_known.join(u"、"_s)));
    }
}

} // namespace printing
