#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace printing
{

/// A value of a TOML file with the line on which it stands, counted from 1.
struct TomlNode
{
    enum class Kind { Flag, Integer, Number, Text, Array, Table, Other };

    Kind kind = Kind::Other;
    int line = 1;
    QString key; // in its table; empty in an array
    bool flag = false;
    double number = 0; // of an integer too
    QString text;
    std::vector<TomlNode> children; // of a table in the order of the file, of an array
};

/// Where and why a file cannot be read, as a sentence.
struct TomlFault
{
    int line = 1;
    QString text;
};

struct TomlFile
{
    TomlNode root;
    std::vector<TomlFault> faults; // empty: the whole file was read
};

/// \a content as a tree. Anything that is no TOML in UTF-8, is over a megabyte or nested deeper than any
/// layout is a fault.
TomlFile readToml(const QByteArray &content);

} // namespace printing
