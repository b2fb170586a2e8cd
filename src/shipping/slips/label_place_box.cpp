#include "shipping/slips/label_place_box.h"

#include "shipping/slips/label_places.h"
#include "shipping/slips/place_grid.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace shipping
{

LabelPlaceBox::LabelPlaceBox(workspace::Workspace &workspace, QWidget *parent)
    : QWidget(parent)
    , m_workspace(workspace)
    , m_form(labelForm())
    , m_caption(new QLabel(u"ラベルの用紙"_s, this))
    , m_sheets(new QComboBox(this))
    , m_grid(new PlaceGrid(this))
    , m_words(new QLabel(this))
{
    m_sheets->setObjectName(u"cboLabelSheet"_s);
    m_sheets->setAccessibleName(u"ラベルの用紙"_s);
    m_caption->setBuddy(m_sheets);
    for (const LabelSheet &sheet : labelSheets())
        m_sheets->addItem(sheet.name);
    m_grid->setObjectName(u"labelPlace"_s);
    m_grid->setAccessibleName(u"次に印刷する場所"_s);
    m_words->setObjectName(u"lblLabelPlace"_s);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_grid, 0, 0, 3, 1);
    layout->addWidget(m_caption, 0, 1);
    layout->addWidget(m_sheets, 1, 1);
    layout->addWidget(m_words, 2, 1, Qt::AlignTop);
    layout->setRowStretch(2, 1);
    layout->setColumnStretch(1, 1);
    setTabOrder(m_sheets, m_grid);
    connect(m_sheets, &QComboBox::activated, this, &LabelPlaceBox::chooseSheet);
    connect(m_grid, &PlaceGrid::chosen, this, &LabelPlaceBox::choosePlace);
    reload();
}

void LabelPlaceBox::setForm(const QString &form)
{
    m_form = form;
    const bool hasPlaces = sheetOfForm(form, m_workspace.settings).has_value();
    if (hasPlaces)
        reload();
    setVisible(hasPlaces);
}

void LabelPlaceBox::reload()
{
    const auto sheet = sheetOfForm(m_form, m_workspace.settings);
    if (!sheet)
        return;
    const int place = nextPlace(m_workspace.settings, m_form);
    for (QWidget *part : std::initializer_list<QWidget *>{m_caption, m_sheets})
        part->setVisible(m_form == labelForm());
    m_sheets->setCurrentText(sheet->name);
    m_grid->show(*sheet, place);
    m_words->setText(u"次は %1 番目（全 %2）"_s.arg(place).arg(sheet->places()));
}

int LabelPlaceBox::place() const { return m_grid->place(); }

void LabelPlaceBox::chooseSheet(int index)
{
    chooseLabelSheet(m_workspace.settings, m_sheets->itemText(index));
    reload();
    emit placeChanged(place());
}

void LabelPlaceBox::choosePlace(int place)
{
    setNextPlace(m_workspace.settings, m_form, place);
    reload();
    emit placeChanged(place);
}

} // namespace shipping
