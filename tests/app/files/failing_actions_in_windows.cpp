// Slips on their screen, and the file as a whole in the main window.
#include "app/files/backups.h"
#include "app/files/failing_actions.h"
#include "base/dated_name.h"
#include "db/care/plain_handle.h"
#include "db/care/salvage.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"

#include <QComboBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// --- Slips, on their screen ---

void openDesk(Scene &scene)
{
    scene.desk = std::make_unique<SlipDesk<slips::frmOut>>();
    scene.desk->driver().box("txtKey1").setText(u"aite0"_s);
    scene.desk->driver().press("Command1");
}

void openSlip(Scene &scene)
{
    openDesk(scene);
    scene.desk->driver().press("cmdMasterUpdate");
}

void openSlipWithLine(Scene &scene)
{
    openSlip(scene);
    scene.desk->goods(u"2"_s, u"3980"_s);
}

QString press(Scene &scene, const char *name)
{
    scene.desk->driver().press(name);
    return told();
}

QString saveHeader(Scene &scene) { return press(scene, "cmdMasterUpdate"); }

QString saveLine(Scene &scene)
{
    scene.desk->goods(u"2"_s, u"3980"_s);
    return told();
}

QString removeLine(Scene &scene) { return press(scene, "cmdSubCancel"); }

QString closeWithTax(Scene &scene) { return press(scene, "cmdNext"); }

QString deleteSlip(Scene &scene)
{
    ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true);
    return press(scene, "cmdMasterCancel");
}

// --- The file, in the main window ---

void openWindow(Scene &scene)
{
    scene.stage = std::make_unique<Stage>();
    scene.stage->load();
}

void openWindowOnDamage(Scene &scene)
{
    scene.stage = std::make_unique<Stage>();
    QByteArray bytes = bytesOf(scene.stage->file);
    bytes.replace(bytes.indexOf("顧客150") / 4096 * 4096, 4096, QByteArray(4096, 0));
    QFile file(scene.stage->file);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("no damaged file");
    file.close();
    scene.damaged = bytes;
    scene.stage->load();
}

void expectTarget(Scene &scene)
{
    const QString target = scene.stage->shop.path(u"other.cdb"_s);
    if (QFile::exists(target))
        ui::prompts::expectAskCautiously({}, true);
    ui::file_dialogs::expectFile(target);
}

void openWindowBesideOther(Scene &scene)
{
    openWindow(scene);
    const QString other = scene.stage->shop.path(u"other.cdb"_s);
    db::PlainHandle file;
    if (!db::createDatabase(other) || !file.open(other) ||
        !file.run("INSERT INTO 単位 (単位ID, 単位) VALUES (1, '箱')"))
        qFatal("no other file");
}

QString createNew(Scene &scene)
{
    expectTarget(scene);
    scene.stage->choose("mnuNew");
    return told();
}

QString saveAs(Scene &scene)
{
    // It was done, and told was that the file left behind could not be backed up.
    if (scene.shop().connection.fileName().endsWith(u"/other.cdb"_s))
        return {};
    // Where the disk stayed full, neither file could be opened: the clerk opens his own again.
    if (!scene.shop().connection.isOpen()) {
        ui::file_dialogs::expectFile(scene.stage->file);
        scene.stage->choose("mnuOpen");
    }
    expectTarget(scene);
    scene.stage->choose("mnuSave");
    return told();
}

QString repair(Scene &scene)
{
    ui::prompts::expectInform(u"データベースを最適化しました。"_s);
    scene.stage->click("Command22");
    return told();
}

QString repairDamage(Scene &scene)
{
    // Where only the opening failed afterwards, the file is sound by the second time.
    if (bytesOf(scene.stage->file) == scene.damaged) {
        ui::prompts::expectInform({}); // what the check found, or that it could not be begun
        ui::prompts::expectInform({}); // what was carried over, or why nothing was
    }
    return repair(scene);
}

QString emptyAll(Scene &scene)
{
    scene.stage->find<QComboBox>("Combo3")->setCurrentIndex(0);
    ui::prompts::expectAskCautiously({}, true);
    ui::prompts::expectInform(u"すべて選択を削除しました。"_s);
    scene.stage->click("Command58");
    return told();
}

QString leaveProgram(Scene &scene)
{
    scene.stage->window->show(); // again, when it was left in vain
    scene.stage->window->close();
    return told();
}

} // namespace

std::vector<Action> actionsInWindows()
{
    return {
        {"header", openDesk, saveHeader, u"shop.cdb"_s, true},
        {"line", openSlip, saveLine, u"shop.cdb"_s, true},
        {"line removed", openSlipWithLine, removeLine, u"shop.cdb"_s, true},
        {"close with tax", openSlipWithLine, closeWithTax, u"shop.cdb"_s, true},
        {"slip deleted", openSlipWithLine, deleteSlip, u"shop.cdb"_s, true},
        {"new", openWindow, createNew, u"other.cdb"_s},
        {"new over another", openWindowBesideOther, createNew, u"other.cdb"_s},
        {"save as", openWindow, saveAs, u"other.cdb"_s},
        {"save as over another", openWindowBesideOther, saveAs, u"other.cdb"_s},
        {"compaction", openWindow, repair, u"shop.cdb"_s},
        {"repair", openWindowOnDamage, repairDamage, u"shop.cdb"_s},
        {"tables emptied", openWindow, emptyAll, u"shop.cdb"_s},
        {"backups at exit", openWindow, leaveProgram, u"BackupKanbalore.cdb"_s},
    };
}
