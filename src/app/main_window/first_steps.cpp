#include "app/main_window/first_steps.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

constexpr int buttonHeight = 38; // pixels
constexpr int buttonsInARow = 3;

// In the order of FirstStep.
const std::array<QString, firstStepCount> captions = {u"自社情報"_s,   u"社員（担当者）"_s, u"消費税率"_s,
                                                      u"納品先区分"_s, u"納品先"_s,         u"納品書"_s};

} // namespace

FirstSteps::FirstSteps(QWidget *parent)
    : QFrame(parent)
    , m_close(new QPushButton(u"閉じる"_s, this))
{
    auto *grid = new QGridLayout(this);
    auto *title = new QLabel(u"はじめに：番号の順に登録すると、納品書を発行できます。"_s, this);
    title->setWordWrap(true);
    grid->addWidget(title, 0, 0, 1, buttonsInARow - 1);
    grid->addWidget(m_close, 0, buttonsInARow - 1, Qt::AlignRight);
    for (int i = 0; i < static_cast<int>(firstStepCount); ++i) {
        auto *button = new QPushButton(this);
        button->setObjectName(u"cmdStep%1"_s.arg(i + 1));
        button->setMinimumHeight(buttonHeight);
        grid->addWidget(button, 1 + i / buttonsInARow, i % buttonsInARow);
        connect(button, &QPushButton::clicked, this, [this, i] { emit chosen(static_cast<FirstStep>(i)); });
        m_buttons.at(static_cast<std::size_t>(i)) = button;
    }
    grid->setRowStretch(grid->rowCount(), 1);
    m_close->setObjectName(u"cmdCloseSteps"_s);
    m_close->setAccessibleName(u"はじめにを閉じる"_s);
    connect(m_close, &QPushButton::clicked, this, &FirstSteps::dismissed);
    showDone({});
}

void FirstSteps::showDone(const StepsDone &done)
{
    m_done = done;
    for (std::size_t i = 0; i < firstStepCount; ++i) {
        const QString mark = done.at(i) ? u"✓"_s : QString::number(i + 1);
        m_buttons.at(i)->setText(mark + u"　"_s + captions.at(i));
        m_buttons.at(i)->setAccessibleName(captions.at(i) + (done.at(i) ? u"　済み"_s : QString()));
    }
}

void FirstSteps::focusNext()
{
    for (std::size_t i = 0; i < firstStepCount; ++i) {
        if (!m_done.at(i)) {
            m_buttons.at(i)->setFocus();
            return;
        }
    }
}

QList<QPushButton *> FirstSteps::buttons() const
{
    QList<QPushButton *> all(m_buttons.begin(), m_buttons.end());
    return all << m_close;
}

} // namespace app
