#include "ui/record_panel.h"

#include "db/recordset.h"
#include "text/dates.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QScopedValueRollback>

namespace ui
{

RecordPanel::RecordPanel(db::Recordset &recordset, QObject *parent)
    : QObject(parent)
    , m_recordset(recordset)
{
    connect(&recordset, &db::Recordset::currentRowChanged, this, &RecordPanel::show);
}

void RecordPanel::bind(QLineEdit *box, const QString &column)
{
    m_fields.append({box, nullptr, column});
    connect(box, &QLineEdit::textChanged, this, [this, column](const QString &text) {
        if (!m_showing)
            m_recordset.setValue(column, text);
    });
}

void RecordPanel::bindDay(QLineEdit *box, const QString &column)
{
    m_fields.append({box, nullptr, column, true});
    connect(box, &QLineEdit::textChanged, this, [this, column](const QString &text) {
        if (!m_showing)
            m_recordset.setValue(column, text::storedDay(text));
    });
    connect(box, &QLineEdit::editingFinished, this, [this, box, column] {
        const QScopedValueRollback showing(m_showing, true);
        if (m_recordset.isEdited(column))
            box->setText(text::shownDay(m_recordset.text(column)));
    });
}

void RecordPanel::bind(QCheckBox *box, const QString &column)
{
    m_fields.append({nullptr, box, column});
    connect(box, &QCheckBox::toggled, this, [this, column](bool checked) {
        if (!m_showing)
            m_recordset.setValue(column, checked ? 1 : 0);
    });
}

void RecordPanel::bind(QComboBox *box, const QString &column)
{
    m_fields.append({nullptr, nullptr, column, false, box});
    connect(box, &QComboBox::activated, this,
            [this, column](int index) { m_recordset.setValue(column, index); });
}

// What is not shown whole is not to be edited.
void RecordPanel::lockIfCut(QLineEdit &box, bool isCut)
{
    if (isCut == m_locked.contains(&box))
        return;
    if (isCut) {
        m_locked.insert(&box, box.isReadOnly());
        box.setReadOnly(true);
    } else {
        box.setReadOnly(m_locked.take(&box));
    }
}

void RecordPanel::show()
{
    const QScopedValueRollback showing(m_showing, true);
    for (const Field &field : std::as_const(m_fields)) {
        const QVariant value = m_recordset.value(field.column);
        if (field.line)
            lockIfCut(*field.line, m_recordset.isCut(field.column));
        if (field.choice)
            field.choice->setCurrentIndex(value.toInt());
        else if (field.check)
            field.check->setChecked(value.toInt() == 1);
        else if (const QString text = shown(field); field.line->text() != text)
            field.line->setText(text);
    }
}

QString RecordPanel::shown(const Field &field) const
{
    const QString text = m_recordset.value(field.column).toString();
    return field.isDay ? text::shownDay(text) : text;
}

} // namespace ui
