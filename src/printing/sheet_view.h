#pragma once

#include "printing/renderer.h"

#include <QAbstractScrollArea>

namespace printing
{

/// Shows one sheet of a document at a time as it will be printed. Only that sheet is ever drawn, and of it
/// what is to be seen, so that a long document opens as fast as a short one.
class SheetView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    /// \a document is there as long as the view.
    SheetView(const Document &document, Look look, QWidget *parent = nullptr);

    [[nodiscard]] int page() const { return m_page; } // counted from 1
    [[nodiscard]] int pageCount() const;
    /// Shows the top of \a page, or of the nearest one that there is.
    void turnTo(int page);

    void setCalibrationGrid(bool on);

    /// Frames \a area of the sheet, millimetres; an empty one is no frame.
    void setMark(const QRectF &area);
    /// The document's sheets have changed.
    void showChange();

    void zoomIn();
    void zoomOut();
    void fitPage();
    void fitWidth();
    /// Screen dots to the millimetre.
    [[nodiscard]] double scale() const { return m_scale; }

signals:
    void turned(int page);
    /// The sheet was clicked at \a point, millimetres.
    void pointedAt(const QPointF &point);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    enum class Fit { Page, Width, None };

    void drawPaper(const QRectF &area, const QRect &seen);
    void drawMark(const QPointF &corner);
    void setFit(Fit fit);
    void zoomTo(double scale);
    void layOut();
    [[nodiscard]] const Sheet *sheet() const;
    [[nodiscard]] double fitting(const QSize &room) const;
    /// Of the paper, on the viewport.
    [[nodiscard]] QRectF paper() const;

    const Document &m_document;
    Look m_look;
    QRectF m_mark;
    int m_page = 1;
    Fit m_fit = Fit::Page;
    double m_scale = 1;
    int m_wheel = 0; // turned beyond the sheet's end, in eighths of a degree
};

} // namespace printing
