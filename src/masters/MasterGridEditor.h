#pragma once

#include "masters/master_editor.h"

namespace masters
{

/// The form of the seven small masters: a grid over the table, and below it one box a column.
class MasterGridEditor : public MasterEditor
{
    Q_OBJECT

public:
    MasterGridEditor(workspace::Workspace &workspace, Master master, QWidget *parent = nullptr);
};

// The seven, under their screens' names.
template <Master master>
class MasterScreen : public MasterGridEditor
{
public:
    explicit MasterScreen(workspace::Workspace &workspace, QWidget *parent = nullptr)
        : MasterGridEditor(workspace, master, parent)
    {}
};

using frmTani = MasterScreen<Master::Units>;
using frmKikaku = MasterScreen<Master::Specifications>;
using frmShain = MasterScreen<Master::Employees>;
using frmKubun = MasterScreen<Master::CustomerCategories>;
using frmInvKubun = MasterScreen<Master::ShippingCategories>;
using frmInShohin = MasterScreen<Master::PurchaseProducts>;
using frmOutShohin = MasterScreen<Master::SalesProducts>;

} // namespace masters
