#include "printing/forms/toml_tree.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>

#define TOML_EXCEPTIONS 0
#define TOML_ENABLE_FORMATTERS 0
// A layout is five levels deep; the parser calls itself for each.
#define TOML_MAX_NESTED_VALUES 32
#include <toml++/toml.h>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr qsizetype largestFile = 1024 * 1024; // bytes

QString textOf(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

TomlNode nodeOf(const toml::node &node);

void addChildren(TomlNode &result, const toml::node &node)
{
    if (const toml::array *array = node.as_array()) {
        for (const toml::node &element : *array)
            result.children.push_back(nodeOf(element));
        return;
    }
    for (const auto &[key, value] : *node.as_table()) {
        TomlNode child = nodeOf(value);
        child.key = textOf(key.str());
        child.line = std::max(1, static_cast<int>(key.source().begin.line));
        result.children.push_back(std::move(child));
    }
    // toml++ keeps them by name.
    std::stable_sort(result.children.begin(), result.children.end(),
                     [](const TomlNode &a, const TomlNode &b) { return a.line < b.line; });
}

TomlNode nodeOf(const toml::node &node)
{
    TomlNode result;
    result.line = std::max(1, static_cast<int>(node.source().begin.line));
    if (const auto flag = node.value_exact<bool>()) {
        result.kind = TomlNode::Kind::Flag;
        result.flag = *flag;
    } else if (const auto integer = node.value_exact<int64_t>()) {
        result.kind = TomlNode::Kind::Integer;
        result.number = static_cast<double>(*integer);
    } else if (const auto number = node.value_exact<double>()) {
        result.kind = TomlNode::Kind::Number;
        result.number = *number;
    } else if (const auto text = node.value_exact<std::string_view>()) {
        result.kind = TomlNode::Kind::Text;
        result.text = textOf(*text);
    } else if (node.is_array() || node.is_table()) {
        result.kind = node.is_array() ? TomlNode::Kind::Array : TomlNode::Kind::Table;
        addChildren(result, node);
    }
    return result;
}

/// The first line, counted from 1, of which \a fault holds; 0 where there is none.
template <class Fault>
int firstLine(const QByteArray &content, Fault fault)
{
    int line = 1;
    for (const QByteArray &bytes : content.split('\n')) {
        if (fault(bytes))
            return line;
        ++line;
    }
    return 0;
}

bool isForeign(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(bytes);
    return decoder.hasError();
}

// A key of so many parts ("a.a.a…") would nest its tables without end, which the parser does not bound.
bool isEndlessKey(const QByteArray &bytes)
{
    constexpr qsizetype mostPoints = 200;
    return bytes.count('.') > mostPoints;
}

TomlFile faultAt(int line, const QString &text)
{
    TomlFile file;
    file.faults.push_back({line, text});
    return file;
}

/// A part of the parser's message on what it met, and what that means to who writes a layout.
struct Meaning
{
    std::string_view met;
    const char16_t *text;
};
constexpr auto meanings = std::to_array<Meaning>({
    {"cannot redefine", u"同じ名前が前にもあります"},
    {"saw closing", u"区切りの「,」が余っています"},
    {"expected value", u"「=」の後に値がありません"},
    {"key-value pair: encountered end-of-file", u"「=」の後に値がありません"},
    {"encountered end-of-file", u"「\"」「]」「}」などで閉じられていません"},
    {"control characters", u"「\"」で閉じられていないか、使えない文字があります"},
    {"expected '='", u"名前の後に「=」がありません"},
    {"decimal integer", u"数は半角の数字と小数点だけで書きます"},
    {"floating-point", u"数は半角の数字と小数点だけで書きます"},
    {"value type", u"値は半角の数か、「\"」で囲んだ文字です"},
    {"boolean", u"値は true か false です"},
    {"expected keys", u"名前は半角の英数字で書きます"},
    {"expected a comment", u"値の後に余分な文字があります"},
    {"escape sequence", u"「\\」の後の文字が正しくありません"},
    {"parsing array", u"「,」で区切られていないか、「]」がありません"},
});

/// What \a fault is, in words of our own, with its place in the line.
QString textOf(const toml::parse_error &fault)
{
    const auto meaning = std::find_if(meanings.begin(), meanings.end(), [&](const Meaning &each) {
        return fault.description().find(each.met) != std::string_view::npos;
    });
    const QString what =
        meaning == meanings.end() ? u"記号を確かめてください"_s : QString::fromUtf16(meaning->text);
    return u"書き方が正しくありません（%1 文字目：%2）。"_s.arg(fault.source().begin.column).arg(what);
}

} // namespace

TomlFile readToml(const QByteArray &content)
{
    if (content.size() > largestFile)
        return faultAt(1, u"ファイルが大きすぎます（1 MB まで）。"_s);
    if (const int line = firstLine(content, isForeign); line > 0)
        return faultAt(line, u"文字コードが UTF-8 ではありません。UTF-8 で保存し直してください。"_s);
    if (const int line = firstLine(content, isEndlessKey); line > 0)
        return faultAt(line, u"1 行に点（.）が多すぎます。"_s);
    const toml::parse_result result =
        toml::parse(std::string_view(content.constData(), static_cast<std::size_t>(content.size())));
    if (!result)
        return faultAt(std::max(1, static_cast<int>(result.error().source().begin.line)),
                       textOf(result.error()));
    TomlFile file;
    file.root = nodeOf(result.table());
    return file;
}

} // namespace printing
