#pragma once

#include <QDialog>

namespace app
{

/// What the program is, its version and what it stands on.
class frmAbout : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *parent = nullptr);
};

} // namespace app
