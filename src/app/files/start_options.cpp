#include "app/files/start_options.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

// A shell has already taken the quotes away, the text that the rule is about has them.
QString quoted(const QString &name)
{
    const bool isQuoted = name.size() >= 2 && name.startsWith(u'"') && name.endsWith(u'"');
    return isQuoted ? name : u'"' + name + u'"';
}

} // namespace

StartOptions readStartOptions(const QStringList &arguments)
{
    static constexpr auto folderOption = "--application-folder"_L1;
    StartOptions options;
    QStringList names;
    bool onlyNames = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (onlyNames || !argument.startsWith(u'-') || argument.size() == 1)
            names << argument;
        else if (argument == "--"_L1)
            onlyNames = true;
        else if (argument == "--help"_L1 || argument == "-h"_L1)
            options.help = true;
        else if (argument == "--version"_L1 || argument == "-v"_L1)
            options.version = true;
        else if (argument == "--convert"_L1) {
            options.convert = true;
            options.convertFrom = arguments.value(i + 1);
            options.convertTo = arguments.value(i + 2);
            i += 2;
        } else if (argument == folderOption && i + 1 < arguments.size())
            options.applicationFolder = arguments.at(++i);
        else if (argument.startsWith(folderOption + u'='))
            options.applicationFolder = argument.sliced(folderOption.size() + 1);
        else if (argument == folderOption)
            options.problem = u"オプション「--application-folder」には、フォルダを続けて指定してください。"_s;
        else
            options.problem = u"オプション「"_s + argument + u"」は使えません。"_s;
    }
    if (options.convert && (options.convertTo.isEmpty() || options.convertFrom.isEmpty() || !names.isEmpty()))
        options.problem =
            u"オプション「--convert」には、以前の形式のファイルと新しいファイルの二つを続けて指定してください。"_s;
    if (!names.isEmpty())
        options.commandLine = quoted(names.join(u' '));
    return options;
}

QString databaseInCommandLine(const QString &commandLine)
{
    return commandLine.size() > 2 ? commandLine.sliced(1, commandLine.size() - 2) : QString();
}

// What begins with a colon means something else to the toolkit and to the database engine.
QString pathOfFile(const QString &name)
{
    const bool isAbsolute = QDir::isAbsolutePath(name) && !name.startsWith(u':');
    return isAbsolute ? name : QDir::currentPath() + u'/' + name;
}

QString usageText()
{
    return uR"(使い方: kanbalore [オプション] [データベースファイル]
        kanbalore --convert 以前の形式のファイル 新しいファイル

  --application-folder フォルダ  初期ファイル、バックアップ、郵便番号データを置くフォルダ
                                 (環境変数 KANBALORE_FOLDER でも指定できます)
  --convert                      以前の形式のデータベースファイルを新しい形式に変換し、結果を表示します
                                 (すべて移せたときの終了コードは 0 です)
  --help                         この説明を表示します
  --version                      版を表示します
)"_s;
}

} // namespace app
