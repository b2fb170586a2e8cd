#include "registers/duplicates/nameless_hint.h"

#include "book/counterpart_search.h"
#include "db/connection.h"
#include "db/no_waiting.h"
#include "text/numbers.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// Milliseconds.
constexpr int beforeCounting = 300;
constexpr int betweenPieces = 20;
constexpr int afterFailure = 2000;

} // namespace

NamelessHint::NamelessHint(QPushButton *button, db::Connection &connection, book::Party party)
    : QObject(button)
    , m_button(button)
    , m_connection(connection)
    , m_party(party)
{
    button->hide();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &NamelessHint::readOn);
}

void NamelessHint::countAnew()
{
    m_count.emplace(m_connection, m_party);
    m_timer.start(beforeCounting);
}

void NamelessHint::readOn()
{
    if (!m_connection.isOpen())
        return;
    base::Status read;
    {
        const db::NoWaiting noWaiting(m_connection);
        read = m_count->readOn();
    }
    if (!m_count->isComplete()) {
        m_timer.start(read ? betweenPieces : afterFailure);
        return;
    }
    m_button->setText(u"名前のない%1 %2 件(&L)"_s.arg(
        book::tableOf(m_party), text::formatAmount(static_cast<double>(m_count->count()))));
    m_button->setVisible(m_count->count() > 0);
}

} // namespace registers
