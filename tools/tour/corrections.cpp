#include "first_day.h"

#include "app/main_window/frmAMain.h"
#include "ui/grid.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

// Opens the current cell, replaces what it holds, and takes it with Enter.
void typeIntoCell(ui::Grid &grid, const QString &text)
{
    QTest::keyClick(&grid, Qt::Key_F2);
    if (auto *editor = grid.viewport()->findChild<QLineEdit *>()) {
        editor->setText(text);
        QTest::keyClick(editor, Qt::Key_Return);
    }
}

} // namespace

// A quantity is corrected: the remark shows what does not fit any more; then the amount is.
void FirstDay::correctSlips()
{
    m_walker.visit(
        u"sales correction"_s, [this] { m_walker.on(m_window).press(u"Command9"_s); },
        [this](QDialog &screen) {
            m_walker.on(screen).the<QComboBox>(u"dbcNouhin"_s).setEditText(u"山田"_s);
            m_walker.on(screen).press(u"Command1"_s);
            auto &slips = m_walker.on(screen).the<ui::Grid>(u"DataGrid1"_s);
            slips.setCurrentIndex(slips.model()->index(0, 1));
            m_walker.checkText(screen, u"txtDenNo"_s, u"O1"_s);
            m_walker.picture(screen, u"sales-correction"_s);
            auto &lines = m_walker.on(screen).the<ui::Grid>(u"dgdSub"_s);
            lines.setFocus();
            const QModelIndex quantity = lines.model()->index(0, 3);
            const QString before = quantity.data(Qt::EditRole).toString();
            lines.setCurrentIndex(quantity);
            typeIntoCell(lines, u"９９"_s);
            m_walker.check(m_walker.on(screen).the<QLabel>(u"lblMessage"_s).text().contains(u"数量×単価"_s),
                           u"no remark on the quantity"_s);
            m_walker.picture(screen, u"sales-correction-remark"_s);
            lines.setCurrentIndex(quantity);
            typeIntoCell(lines, before);
            m_walker.on(screen).press(u"Command3"_s);
        });
}

} // namespace tour
