#include "support/scripted_test.h"

#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QTest>

void ScriptedTest::initTestCase()
{
    ui::prompts::beginScript();
    ui::file_dialogs::beginScript();
}

void ScriptedTest::cleanup()
{
    QCOMPARE(ui::prompts::takeUnexpected(), QString());
    QCOMPARE(ui::file_dialogs::takeUnexpected(), QString());
}
