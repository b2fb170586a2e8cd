// Makes a shop to measure and to try things with: make-shop [--customers N] [--slips M] [--seed S] FILE
#include "shop_maker.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{u"customers"_s, u"number of customers"_s, u"N"_s, u"1000"_s},
                       {u"slips"_s, u"number of slips"_s, u"M"_s, u"10000"_s},
                       {u"seed"_s, u"another seed gives another shop"_s, u"S"_s, u"1"_s}});
    parser.addPositionalArgument(u"FILE"_s, u"the database file to make"_s);
    parser.process(application);
    QTextStream errors(stderr);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);
    bench::ShopSize size;
    size.customers = parser.value(u"customers"_s).toInt();
    size.slips = parser.value(u"slips"_s).toInt();
    size.seed = parser.value(u"seed"_s).toULongLong();
    if (size.customers < 1 || size.slips < 0) {
        errors << "make-shop: at least one customer, please\n";
        return 2;
    }
    if (const base::Status made = bench::makeShop(parser.positionalArguments().constFirst(), size); !made) {
        errors << made.error().text << '\n';
        return 1;
    }
    return 0;
}
