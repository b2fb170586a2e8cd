#include "food_day.h"

#include "walker.h"

#include "db/connection.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "workspace/workspace.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

struct Line
{
    QString product;
    QString quantity;
    QString price;
};

class FoodDay
{
public:
    FoodDay(Walker &walker, workspace::Workspace &workspace, QWidget &window, const QDir &folder)
        : m_walker(walker)
        , m_workspace(workspace)
        , m_window(window)
        , m_folder(folder)
    {}

    void run()
    {
        const QScopedValueRollback follows(m_workspace.panel.followsTaxTable, true);
        const QScopedValueRollback paper(m_workspace.panel.deliveryPaper, u"A4 無地"_s);
        check(m_workspace.connection.execute(u"UPDATE 自社情報 SET 登録番号 = 'T7000012050002'"_s).status());
        giveClass();
        sell(u"food-sale"_s, {{u"信州りんご　サンふじ"_s, u"3"_s, u"3,980"_s},
                              {u"木箱"_s, u"1"_s, u"1,200"_s},
                              {u"送料"_s, u"1"_s, u"800"_s},
                              {u"クーポン"_s, u"1"_s, u"-500"_s}});
        sell(u"food-return"_s, {{u"信州りんご　サンふじ"_s, u"-3"_s, u"3,980"_s}});
        check(m_workspace.connection.execute(u"UPDATE 自社情報 SET 登録番号 = NULL"_s).status());
    }

private:
    void check(const base::Status &status)
    {
        m_walker.check(bool(status), status ? QString() : status.error().text);
    }

    void giveClass()
    {
        m_walker.visit(
            u"products"_s, [this] { m_walker.on(m_window).the<QAction>(u"mnuPreOutShohin"_s).trigger(); },
            [this](QDialog &screen) {
                auto &grid = m_walker.on(screen).the<ui::Grid>(u"DataGrid1"_s);
                for (int row = 0; row < grid.model()->rowCount(); ++row) {
                    grid.selectRow(row);
                    // Neither paper nor what is drunk for its alcohol is food.
                    const QString name = grid.model()->index(row, 1).data().toString();
                    if (name.contains(u"紙") || name.contains(u"酒"))
                        continue;
                    m_walker.on(screen).choose(u"cboTaxClass"_s, u"軽減（飲食料品）"_s);
                }
                grid.selectRow(0); // a row is stored when it is left
                m_walker.picture(screen, u"products-with-classes"_s);
            });
    }

    void sell(const QString &name, const QList<Line> &lines)
    {
        m_walker.visit(
            name, [this] { m_walker.on(m_window).the<QAction>(u"mnuDenOut"_s).trigger(); },
            [&](QDialog &screen) {
                m_walker.on(screen).the<QLineEdit>(u"txtKey1"_s).setText(u"みやざき"_s);
                m_walker.on(screen).press(u"Command1"_s);
                m_walker.on(screen).press(u"cmdMasterUpdate"_s);
                for (const Line &line : lines)
                    enter(screen, line);
                m_walker.picture(screen, name);
                print(screen, name);
                m_walker.on(screen).the<QCheckBox>(u"Check3"_s).setChecked(false);
                m_walker.on(screen).press(u"cmdNext"_s);
            });
    }

    void enter(QDialog &screen, const Line &line)
    {
        m_walker.on(screen).the<QComboBox>(u"dbcShohin"_s).setEditText(line.product);
        m_walker.on(screen).enter(u"txtCnt"_s, line.quantity);
        m_walker.on(screen).enter(u"txtTanka"_s, line.price);
        if (!line.quantity.startsWith(u'-')) {
            m_walker.on(screen).press(u"cmdSubAdd"_s);
            return;
        }
        m_walker.visit(
            u"of which sale"_s, [&] { m_walker.on(screen).press(u"cmdSubAdd"_s); },
            [this](QDialog &question) {
                m_walker.picture(question, u"of-which-sale"_s);
                m_walker.on(question).press(u"cmdTake"_s);
            });
    }

    void print(QDialog &screen, const QString &name)
    {
        const QString fileName = m_folder.filePath(name + u".pdf"_s);
        m_walker.visit(
            name + u" note"_s, [&] { m_walker.on(screen).press(u"Command3"_s); },
            [&](QDialog &preview) {
                ui::file_dialogs::expectFile(fileName);
                m_walker.on(preview).press(u"cmdPdf"_s);
            });
        m_walker.pages(fileName, name + u"-note"_s);
    }

    Walker &m_walker;
    workspace::Workspace &m_workspace;
    QWidget &m_window;
    const QDir &m_folder;
};

} // namespace

void sellFood(Walker &walker, workspace::Workspace &workspace, QWidget &window, const QDir &folder)
{
    FoodDay(walker, workspace, window, folder).run();
}

} // namespace tour
