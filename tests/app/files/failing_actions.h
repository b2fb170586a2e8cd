#pragma once

#include "app/shop_window.h"
#include "slips/entry/frmOut.h"
#include "slips/slip_desk.h"
#include "support/files_content.h"
#include "ui/prompts.h"

#include <memory>
#include <vector>

// The actions of the program that change the disk, each to be tried while the disk fails.

// What an action is done in: one of the three.
struct Scene
{
    std::unique_ptr<SlipDesk<slips::frmOut>> desk;
    std::unique_ptr<Stage> stage;
    std::unique_ptr<FreshShop> logic;
    QByteArray damaged; // what the stage's file held when it was to be repaired

    FreshShop &shop() const { return desk ? desk->shop : stage ? stage->shop : *logic; }
};

// \return what was told; empty: the action was done
inline QString told(const base::Status &status) { return status ? QString() : status.error().text; }
template <class Value>
QString told(const base::Result<Value> &result)
{
    return result ? QString() : result.error().text;
}
inline QString told() { return ui::prompts::takeUnexpected(); }

inline void copyOver(const QString &from, const QString &to)
{
    QFile file(to);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytesOf(from)) < 0)
        qFatal("cannot write %s", qPrintable(to));
}

struct Action
{
    const char *name;
    void (*prepare)(Scene &);
    QString (*act)(Scene &);
    QString result; // the file that the action makes or changes
    // Nothing but a transaction: told to have failed, it is not stored, or the clerk would enter it twice.
    bool isTransaction = false;
};

std::vector<Action> actionsInWindows();
std::vector<Action> actionsOfLogic();
