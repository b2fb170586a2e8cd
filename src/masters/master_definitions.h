#pragma once

#include "db/query.h"
#include "masters/editor_states.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace masters
{

enum class Master {
    Units,
    Specifications,
    Employees,
    CustomerCategories,
    ShippingCategories,
    PurchaseProducts,
    SalesProducts,
    OwnCompany
};

/// A box of an editor in the common form, and the column that it shows.
struct MasterField
{
    QString control; // object name
    QString column;
    QString label;
    QStringList choices = {}; // what the numbers in the column stand for: the box is a drop-down
};

/// All that makes one master editor differ from another.
struct MasterDefinition
{
    QString screen; // object name
    QString caption;
    db::Query list;
    QList<MasterField> fields; // the key first; empty for a form that has its own boxes
    EditorKind kind = EditorKind::Plain;
    QString deleteCaption = {}; // where it is not the form's own
    bool hasReturnButton = false;
    bool blamesConnection = false; // a list that cannot be shown is told as a failed connection
};

const MasterDefinition &definitionOf(Master master);

} // namespace masters
