#pragma once

#include "ui/date_box.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <vector>

namespace ui
{
class Grid;
}

namespace slips
{

/// A box of the header that shows a column of the chosen counterpart.
struct HeaderField
{
    QLineEdit *box;
    const char16_t *column;
};

/// The controls of a slip screen's header, and those that carry a slip through its life.
struct SlipControls
{
    QWidget *header; // the frame with all of it
    QLineEdit *key;
    QPushButton *search;
    ui::Grid *found;
    QLineEdit *counterpart; // the hidden key of the chosen one
    QLineEdit *number;
    ui::DateBox *date;
    QPushButton *save;
    QWidget *lines; // the frame in which lines are typed
    QPushButton *addLine;
    QPushButton *removeLine;
    QPushButton *next;
    QPushButton *cancel;
    QLabel *message;
    std::vector<HeaderField> fields = {};
    // Not on every screen.
    QPushButton *newCounterpart = nullptr;
    QPushButton *print = nullptr;
};

/// Those of a form, which has them under the names that the slip forms share.
template <class Form>
SlipControls slipControls(const Form &form)
{
    return {.header = form.Frame2,
            .key = form.txtKey1,
            .search = form.Command1,
            .found = form.DataGrid1,
            .counterpart = form.Text1,
            .number = form.txtDenNo,
            .date = form.DTPicker1,
            .save = form.cmdMasterUpdate,
            .lines = form.Frame1,
            .addLine = form.cmdSubAdd,
            .removeLine = form.cmdSubCancel,
            .next = form.cmdNext,
            .cancel = form.cmdMasterCancel,
            .message = form.lblMessage};
}

} // namespace slips
