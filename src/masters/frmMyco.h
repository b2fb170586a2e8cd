#pragma once

#include "masters/master_editor.h"

namespace masters
{

/// The own company: the sender on every printed form.
class frmMyco : public MasterEditor
{
    Q_OBJECT

public:
    explicit frmMyco(workspace::Workspace &workspace, QWidget *parent = nullptr);
};

} // namespace masters
