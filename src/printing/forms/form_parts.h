#pragma once

#include "printing/forms/form.h"
#include "printing/forms/form_fields.h"
#include "printing/forms/form_values.h"

namespace printing
{

/// Reads the elements of a layout file, once the paper is known. Faults go to the list given.
class FormParts
{
public:
    FormParts(const FormItems &items, FormFaults &faults)
        : m_items(items)
        , m_faults(faults)
    {}

    /// What is read from now on stands within this much of the paper, millimetres.
    void setRoom(double width, double height)
    {
        m_width = width;
        m_height = height;
    }

    FormText text(const TomlNode &node, OnSheets usual = OnSheets::Every);
    FormCarry carry(const TomlNode &node);
    FormBox box(const TomlNode &node);
    FormRule rule(const TomlNode &node);
    FormSlot slot(const TomlNode &node);
    FormStack stack(const TomlNode &node);
    FormTable table(const TomlNode &node);
    FormBody body(const TomlNode &node);

    QStringList shiftNames(FormFields &fields, const char *key);

private:
    enum class Wanted { Anything, ItemOrText, Item };

    void readPlace(FormFields &fields, FormPlace &place);
    void readShift(FormFields &fields, FormShift &shift);
    void readSource(FormFields &fields, FormSource &source, Wanted wanted, bool ofRows = false);
    void readType(FormFields &fields, FormType &type);
    void readSize(FormFields &fields, double &points) const;
    void readWhen(FormFields &fields, QString &when);
    void readWrap(FormFields &fields, double &width, double &height, double &leading) const;
    void readTextMeasures(FormFields &fields, FormText &text);
    void readBeside(FormFields &fields, FormText &text);
    void readCell(const TomlNode &node, FormTable &table, FormTableCell &cell, bool isLabel);
    FormText carriedText(FormFields &fields, bool takesRow);
    FormStackLine stackLine(const TomlNode &node);
    FormTableRow tableRow(const TomlNode &node);
    FormColumn column(const TomlNode &node);
    void readBodyRules(FormFields &fields, FormBody &body);
    void readRowRule(FormFields &fields, FormTable &table);
    void readFurther(FormFields &fields, FormBody &body);
    void checkRows(FormFields &fields, const FormBody &body, const FormRows &rows) const;

    bool known(FormFields &fields, const char *key, const QString &item, FormItemKind *kind = nullptr,
               bool ofRows = false) const;
    /// Whether a text that is anchored at \a x stays on the paper.
    void checkAcross(const FormFields &fields, double x, double width, Align align) const;

    void checkDown(const FormFields &fields, const FormText &text) const;

    [[nodiscard]] double paperWidth() const { return m_width; }
    [[nodiscard]] double paperHeight() const { return m_height; }

    const FormItems &m_items;
    FormFaults &m_faults;
    double m_width = 0;
    double m_height = 0;
};

} // namespace printing
