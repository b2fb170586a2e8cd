#pragma once

#include "app/main_window/shop_facts.h"

#include <QFrame>

#include <array>

class QPushButton;

namespace app
{

/// What a new shop does before its first delivery note: a button a step, ticked when the step is done.
class FirstSteps : public QFrame
{
    Q_OBJECT

public:
    explicit FirstSteps(QWidget *parent = nullptr);

    void showDone(const StepsDone &done);

    /// Puts the cursor on the first step that is not done.
    void focusNext();

    /// The buttons in their reading order.
    [[nodiscard]] QList<QPushButton *> buttons() const;

signals:
    void chosen(app::FirstStep step);
    /// The clerk does without.
    void dismissed();

private:
    std::array<QPushButton *, firstStepCount> m_buttons{};
    QPushButton *m_close;
    StepsDone m_done{};
};

} // namespace app
