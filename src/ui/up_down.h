#pragma once

#include <QWidget>

namespace ui
{

/// The two small arrows beside a number box.
class UpDown : public QWidget
{
    Q_OBJECT

public:
    explicit UpDown(QWidget *parent = nullptr);

signals:
    /// +1 or -1.
    void stepped(int direction);
};

} // namespace ui
