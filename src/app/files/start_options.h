#pragma once

#include <QString>
#include <QStringList>

namespace app
{

/// What the user asked for on the command line.
struct StartOptions
{
    bool help = false;
    bool version = false;
    bool convert = false; // an old file is to be converted, nothing else
    QString convertFrom;
    QString convertTo;
    QString applicationFolder; // empty: as the program finds it
    QString commandLine;       // database file name between its quotes; empty: none given
    QString problem;           // a sentence when an option is not understood
};

/// \a arguments without the program's own name. Everything after "--" is a file name.
StartOptions readStartOptions(const QStringList &arguments);

/// The file name within a command-line text: the text less its first and last character.
QString databaseInCommandLine(const QString &commandLine);

/// The absolute path of \a name, given by someone who means a file: ":memory:" is the name of one, too.
QString pathOfFile(const QString &name);

/// The text of --help.
QString usageText();

} // namespace app
