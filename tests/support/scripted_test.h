#pragma once

#include <QObject>

/// A test that answers message boxes and file choices through the scripted queues: one that comes without
/// being expected, or is expected and does not come, fails the case.
class ScriptedTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
};
