#include "ui/focus_style.h"

#include <QCheckBox>
#include <QPainter>
#include <QProxyStyle>
#include <QRadioButton>
#include <QStyleFactory>
#include <QStyleOption>

namespace ui
{

namespace
{

constexpr int frameWidth = 2;       // pixels
constexpr double frameCorner = 2.5; // pixels

// \a option as it is after Tab, where its control has the focus.
template <typename Option>
Option asAfterTab(const Option &option)
{
    Option shown = option;
    if (shown.state & QStyle::State_HasFocus)
        shown.state |= QStyle::State_KeyboardFocusChange;
    return shown;
}

void drawFrame(const QStyleOption &option, QPainter &painter)
{
    if (!(option.state & QStyle::State_HasFocus))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(option.palette.color(QPalette::Highlight), frameWidth));
    painter.setBrush(Qt::NoBrush);
    constexpr double inside = frameWidth / 2.0;
    painter.drawRoundedRect(QRectF(option.rect).adjusted(inside, inside, -inside, -inside), frameCorner,
                            frameCorner);
    painter.restore();
}

class FocusStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        QProxyStyle::drawControl(element, option, painter, widget);
        // A flat button has no panel on which the frame could be.
        if (element == CE_PushButton)
            drawFrame(*option, *painter);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        const auto *frame = qstyleoption_cast<const QStyleOptionFocusRect *>(option);
        if (element != PE_FrameFocusRect || !frame)
            return QProxyStyle::drawPrimitive(element, option, painter, widget);
        const QStyleOptionFocusRect shown = asAfterTab(*frame);
        QProxyStyle::drawPrimitive(element, &shown, painter, widget);
        // What the toolkit lays under the text is hardly seen in the dark.
        if (qobject_cast<const QCheckBox *>(widget) || qobject_cast<const QRadioButton *>(widget))
            drawFrame(*option, *painter);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        if (control == CC_ComboBox || control == CC_SpinBox || control == CC_ToolButton)
            drawFrame(*option, *painter);
    }
};

} // namespace

QStyle *styleShowingFocus(const QString &name) { return new FocusStyle(QStyleFactory::create(name)); }

} // namespace ui
