#pragma once

#include <QByteArray>
#include <QString>

/// Makes a database file \a fileName as version 1 of the program made it, and runs \a statements on it.
void makeVersion1(const QString &fileName, const QByteArray &statements = {});
