#pragma once

#include "printing/forms/toml_tree.h"

#include <QRectF>
#include <QString>

#include <vector>

// What can be moved on a form: the elements of a layout file with their measures, as a person looks at them.
namespace printing
{

/// A measure of an element.
struct LayoutMeasure
{
    QString key;     // "x"; "label.x" in a table written in braces
    QString caption; // "左から"
    double value = 0;
    int line = 0;        // where it is written; 0: it is not
    bool isSize = false; // of type, points; else millimetres
    bool isCount = false;
};

struct LayoutElement
{
    QString kind; // "文字"
    QString name; // what it shows, or what it is for
    int line = 0; // of its heading; 0: the file itself
    std::vector<LayoutMeasure> measures;
    QString sheet{}; // the word of the sheets that bear it; empty: every one
    QRectF area{};   // where it stands on the sheet as it is read, millimetres; of text without a width about
                     // there
};

/// The elements of the layout file \a root, in the order of the file; the first is its paper.
std::vector<LayoutElement> layoutElements(const TomlNode &root);

/// The element of \a elements that a click on \a point, millimetres, means: the smallest one there; -1: none.
int elementAt(const std::vector<LayoutElement> &elements, const QPointF &point);

} // namespace printing
