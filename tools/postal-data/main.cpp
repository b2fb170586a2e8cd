// Makes the program's postal-code files of a national list, and looks addresses up in them.
#include "registers/postal/postal_csv.h"
#include "registers/postal/postal_data.h"
#include "registers/postal/postal_dictionaries.h"
#include "registers/postal/postal_index.h"
#include "registers/postal/postal_lookup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace
{

constexpr int done = 0;
constexpr int failed = 1;
constexpr int wrongUsage = 2;

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

int usage(const QString &problem)
{
    if (!problem.isEmpty())
        err() << problem << "\n\n";
    err() << uR"(使い方 Usage:
  postal-data build [--skk FOLDER] [--from FILE]... --to FOLDER
      郵便番号データの4つのファイルを FOLDER に作成します。
      Makes the four postal-code files in FOLDER.
      --skk   SKK-JISYO.zipcode と SKK-JISYO.office.zipcode のあるフォルダ(省略時 /usr/share/skk)
              the dictionaries' folder (by default /usr/share/skk)
      --from  日本郵便の utf_ken_all.csv, KEN_ALL.CSV, JIGYOSYO.CSV
              the postal service's own lists; they win over the dictionaries
  postal-data lookup [--folder FOLDER] ADDRESS...
      住所ごとに郵便番号を1行ずつ表示します(見つからないときは空行)。
      Prints one postal code a line for each address, an empty line for none.
      --folder  郵便番号データのあるフォルダ(省略時はこのプログラムのフォルダ)
                the files' folder (by default this program's own)
)"_s;
    return wrongUsage;
}

int fail(const base::Error &error)
{
    err() << error.text << '\n';
    return failed;
}

// The values of options that take one, the rest as it stands.
struct Arguments
{
    QStringList skk, from, to, folder, rest;
    QString problem;

    Arguments(const QStringList &arguments, const QStringList &known)
    {
        for (qsizetype i = 0; i < arguments.size(); ++i) {
            const QString &argument = arguments[i];
            if (argument == u"--") {
                rest += arguments.sliced(i + 1);
                return;
            }
            if (!argument.startsWith(u"--")) {
                rest += argument;
            } else if (!known.contains(argument)) {
                problem = u"オプション「%1」は使えません。 Unknown option: %1"_s.arg(argument);
            } else if (i + 1 == arguments.size()) {
                problem = u"オプション「%1」に値がありません。 Value missing: %1"_s.arg(argument);
            } else {
                valuesOf(argument) += arguments[++i];
            }
        }
    }

private:
    QStringList &valuesOf(const QString &option)
    {
        if (option == u"--skk")
            return skk;
        if (option == u"--from")
            return from;
        return option == u"--to" ? to : folder;
    }
};

bool holds(const QString &folder, const QString &name)
{
    return QFileInfo::exists(QDir(folder).filePath(name));
}

base::Result<registers::PostalSource> readAll(const Arguments &arguments, const QString &target)
{
    registers::PostalSource source;
    for (const QString &fileName : arguments.from) {
        auto list = registers::readPostalCsv(fileName, base::unwatched);
        if (!list)
            return list.error();
        source.add(std::move(*list));
    }
    // What the lists leave open stays in the folder as it is.
    const bool areasOpen = source.areas.empty() && !holds(target, u"ZIPID1.txt"_s);
    const bool officesOpen = source.offices.empty() && !holds(target, u"ZIPCODE2.txt"_s);
    const bool isWanted = arguments.from.isEmpty() || !arguments.skk.isEmpty();
    if (!isWanted && !areasOpen && !officesOpen)
        return source;
    auto dictionaries =
        registers::readPostalDictionaries(arguments.skk.value(0, u"/usr/share/skk"_s), base::unwatched);
    if (dictionaries)
        source.fillFrom(std::move(*dictionaries));
    else if (isWanted)
        return dictionaries.error();
    return source;
}

void tell(const registers::PostalSource &source, const registers::PostalReport &report)
{
    out() << u"町域 areas: %1, 事業所 offices: %2\n"_s.arg(report.areas).arg(report.offices)
          << u"グループ groups: %1, レコード records: %2\n"_s.arg(report.groups).arg(report.records);
    if (report.shortened > 0)
        out() << u"60バイトに切り詰めた住所 cut to 60 bytes: %1\n"_s.arg(report.shortened);
    if (report.replaced > 0)
        out() << u"置き換えた文字のある行 with replaced characters: %1\n"_s.arg(report.replaced);
    if (source.refused.count() > 0)
        err() << u"取り込まなかった行 lines refused: %1\n"_s.arg(source.refused.count());
    const QStringList reasons = source.refused.summary();
    for (const QString &reason : reasons)
        err() << "  " << reason << '\n';
    if (!source.areas.empty() && source.prefectureCount() < 47)
        err() << u"注意: %1都道府県分しかありません。 Only %1 of 47 prefectures.\n"_s.arg(
            source.prefectureCount());
}

int build(const QStringList &options)
{
    const Arguments arguments(options, {u"--skk"_s, u"--from"_s, u"--to"_s});
    if (!arguments.problem.isEmpty())
        return usage(arguments.problem);
    if (arguments.to.size() != 1 || arguments.skk.size() > 1 || !arguments.rest.isEmpty())
        return usage(u"--to に作成先のフォルダを1つ指定してください。 Name one folder with --to."_s);
    const QString &folder = arguments.to.front();
    if (!QDir().mkpath(folder))
        return fail({u"フォルダ「%1」を作成できませんでした。"_s.arg(folder)});
    const auto source = readAll(arguments, folder);
    if (!source)
        return fail(source.error());
    const auto report = registers::writePostalData(*source, folder, base::unwatched);
    if (!report)
        return fail(report.error());
    tell(*source, *report);
    return done;
}

int lookUp(const QStringList &options)
{
    const Arguments arguments(options, {u"--folder"_s});
    if (!arguments.problem.isEmpty())
        return usage(arguments.problem);
    if (arguments.folder.size() > 1 || arguments.rest.isEmpty())
        return usage(u"住所を指定してください。 Name an address."_s);
    const QString folder = arguments.folder.value(0, QCoreApplication::applicationDirPath());
    const auto index = registers::loadPostalIndex(QDir(folder).filePath(u"ZIPID1.txt"_s));
    if (!index)
        return fail(index.error());
    if (index->groups().empty())
        return fail(
            {u"フォルダ「%1」に郵便番号データがありません。 No postal-code files in %1."_s.arg(folder)});
    const registers::PostalData data{folder, std::make_shared<const registers::PostalIndex>(*index)};
    for (const QString &address : arguments.rest)
        out() << registers::postalCodeOf(data, address) << '\n';
    return done;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QString::fromUtf8(argv[i]);
    const QString command = arguments.value(0);
    if (command == u"build")
        return build(arguments.sliced(1));
    if (command == u"lookup")
        return lookUp(arguments.sliced(1));
    const bool asksForHelp = command == u"--help" || command == u"-h";
    (void)usage(asksForHelp || command.isEmpty() ? QString()
                                                 : u"「%1」は使えません。 Unknown: %1"_s.arg(command));
    return asksForHelp ? done : wrongUsage;
}
