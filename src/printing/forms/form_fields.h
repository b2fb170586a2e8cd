#pragma once

#include "printing/forms/toml_tree.h"

#include <QStringList>

#include <functional>
#include <span>
#include <utility>

namespace printing
{

/// The faults found in a layout file; of a file that is nothing else, no more than anybody would mend.
class FormFaults
{
public:
    void add(int line, const QString &text)
    {
        if (m_faults.size() < mostKept)
            m_faults.push_back({line, text});
    }
    [[nodiscard]] const std::vector<TomlFault> &all() const { return m_faults; }

private:
    static constexpr std::size_t mostKept = 1000;

    std::vector<TomlFault> m_faults;
};

/// Reads the keys of one table of a layout file. A key that is missing leaves its target as it was; each
/// fault is written down with its line, and the reading goes on.
class FormFields
{
public:
    FormFields(const TomlNode &table, FormFaults &faults)
        : m_table(table)
        , m_faults(faults)
    {}

    bool text(const char *key, QString &into);
    bool flag(const char *key, bool &into);
    /// Only numbers from \a least to \a most.
    bool number(const char *key, double &into, double least, double most);
    bool integer(const char *key, int &into, int least, int most);
    bool numbers(const char *key, std::vector<double> &into, double least, double most);
    /// One text, or an array of texts.
    bool texts(const char *key, QStringList &into);
    /// One of the words, as its value.
    template <class Value>
    bool choice(const char *key, Value &into, std::span<const std::pair<const char16_t *, Value>> words);
    /// The table under \a key; none where there is none.
    const TomlNode *table(const char *key);
    /// Calls \a read for each table of the array under \a key.
    void tables(const char *key, const std::function<void(const TomlNode &)> &read);
    [[nodiscard]] bool has(const char *key) const;
    /// The line of \a key, or the table's own.
    [[nodiscard]] int line(const char *key) const;
    void fault(const char *key, const QString &text) const { m_faults.add(line(key), text); }
    void require(std::initializer_list<const char *> keys) const;

    /// To be called last: tells of the keys that nothing asked for.
    void finish() const;

private:
    const TomlNode *take(const char *key);
    const TomlNode *take(const char *key, TomlNode::Kind kind, const QString &wanted);
    [[nodiscard]] const TomlNode *find(const char *key) const;
    bool isWithin(const TomlNode &node, double least, double most) const;
    bool choose(const char *key, const QStringList &words, int &index);

    const TomlNode &m_table;
    FormFaults &m_faults;
    QStringList m_known;
};

template <class Value>
bool FormFields::choice(const char *key, Value &into,
                        std::span<const std::pair<const char16_t *, Value>> words)
{
    QStringList names;
    for (const auto &[word, value] : words)
        names << QString::fromUtf16(word);
    int index = -1;
    if (!choose(key, names, index))
        return false;
    into = words[static_cast<std::size_t>(index)].second;
    return true;
}

} // namespace printing
