#include "first_day.h"

#include "app/main_window/frmAMain.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QDialog>
#include <QTest>

using namespace Qt::StringLiterals;

namespace tour
{

// A new customer is given up before there is a name; the register leads to the row that stays. Then a look at
// those who may stand there twice.
void FirstDay::tidyCustomers()
{
    const auto openRegister = [this] { m_walker.on(m_window).press(u"Command29"_s); };
    m_walker.visit(u"a customer given up"_s, openRegister,
                   [this](QDialog &screen) { m_walker.on(screen).press(u"cmdAdd"_s); });
    m_walker.visit(u"customers to tidy"_s, openRegister, [this](QDialog &screen) {
        auto &nameless = m_walker.on(screen).the<QWidget>(u"cmdNameless"_s);
        m_walker.check(QTest::qWaitFor([&nameless] { return nameless.isVisible(); }, 5000),
                       u"the row without a name is not told of"_s);
        m_walker.picture(screen, u"customers-nameless"_s);
        m_walker.visit(
            u"nameless customers"_s, [&] { m_walker.on(screen).press(u"cmdNameless"_s); },
            [this](QDialog &list) {
                m_walker.picture(list, u"nameless-customers"_s);
                ui::prompts::expectAskCautiously({}, true);
                m_walker.on(list).press(u"cmdDelete"_s);
            });
        m_walker.visit(
            u"duplicates"_s, [&] { m_walker.on(screen).press(u"cmdDuplicates"_s); },
            [this](QDialog &list) {
                QTest::qWait(300); // what becomes of two waits for the clerk
                m_walker.picture(list, u"customer-duplicates"_s);
            });
    });
}

} // namespace tour
