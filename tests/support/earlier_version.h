#pragma once

#include <QByteArray>
#include <QString>

/// Makes a database file \a fileName as \a version of the program made it, and runs \a statements on it.
void makeVersion(int version, const QString &fileName, const QByteArray &statements = {});
