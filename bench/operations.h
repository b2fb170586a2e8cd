#pragma once

#include "table_reporter.h"

#include "app/settings.h"
#include "app/workspace.h"
#include "db/connection.h"

#include <QDir>

namespace bench
{

/// The shops to measure in, made once and kept in a folder.
class Shops
{
public:
    explicit Shops(const QDir &folder)
        : m_folder(folder)
    {}

    /// The file of a shop of that size; made when it is not there yet.
    QString shop(int customers, int slips) const;
    /// A copy of it that may be written to.
    QString copy(int customers, int slips, const QString &name) const;

private:
    QDir m_folder;
};

/// A shop as the program has it open, to set screens upon.
struct OpenShop
{
    /// Nothing open yet.
    OpenShop();
    explicit OpenShop(const QString &fileName);

    db::Connection connection;
    app::Settings settings;
    app::Workspace workspace;
};

/// Registers each row's two benchmarks with Google Benchmark and returns the rows of the table.
std::vector<Row> registerOperations(const Shops &shops);

} // namespace bench
