#include "slips/documents/calibration_sheet.h"

#include "printing/forms/form_files.h"
#include "printing/forms/form_sheets.h"
#include "printing/forms/specimen.h"
#include "slips/documents/adjustable_forms.h"
#include "slips/documents/delivery_note.h"
#include "workspace/workspace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

int rowsOf(const printing::Form &form)
{
    const auto count = [](const printing::FormPart &part) { return part.body ? part.body->first.count : 0; };
    int rows = count(form);
    for (const printing::FormPart &part : form.parts)
        rows = std::max(rows, count(part));
    return rows;
}

} // namespace

base::Result<printing::Document> calibrationSheet(workspace::Workspace &workspace,
                                                  const printing::NoteSteps &steps)
{
    const printing::FormItems &items = deliveryNoteItems();
    const QString file = deliveryNoteLayout(workspace.panel.deliveryPaper, false);
    const printing::FormFile layout = printing::loadForm(workspace.applicationFolder(), file, items);
    printing::FormValues values = printing::specimenValues(items, rowsOf(layout.form), inclusiveItems());
    values.shifts = noteShifts(noteOffsets(steps));
    printing::Document document;
    document.title = u"位置合わせ "_s + layout.form.name;
    document.purpose = printing::Purpose::DeliveryNotesAndBills;
    document.remark = layout.complaint;
    document.sheets = printing::formSheets(layout.form, values);
    return document;
}

} // namespace slips
