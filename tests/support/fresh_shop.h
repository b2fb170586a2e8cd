#pragma once

#include "db/connection.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QTemporaryDir>

/// A shop on its first day, for one test: an application folder of its own with an empty, open database
/// "shop.cdb", settings that nobody else reads, and a clock that stands still on 2026-04-01 10:00.
class FreshShop
{
public:
    FreshShop();

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }

    /// Runs a statement that prepares the shop; a failure ends the test program.
    void run(const QString &sql, const QVariantList &values = {});
    /// Lets triggers fire, which a test takes to have an action fail in its middle; the program has them off.
    void fireTriggers();
    /// The single value of a query.
    QVariant value(const QString &sql, const QVariantList &values = {});
    /// The rows of a query as "a|b|c" lines, NULL as "-".
    QStringList rows(const QString &sql, const QVariantList &values = {});

    QTemporaryDir folder;
    QTemporaryDir settingsFolder;
    QDateTime now;
    db::Connection connection;
    workspace::Settings settings;
    workspace::Workspace workspace;
};
