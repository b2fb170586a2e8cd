#pragma once

#include <QAbstractButton>
#include <QImage>

namespace app
{

/// The picture of the main window: the built-in shop, or one of the user's. A click on it is a click on a
/// button.
class PictureBox : public QAbstractButton
{
    Q_OBJECT

public:
    explicit PictureBox(QWidget *parent = nullptr);

    /// Shows the picture in \a fileName. \return a sentence when it cannot be shown; the present picture
    /// stays then
    QString load(const QString &fileName);

    QSize sizeHint() const override { return {640, 200}; }
    QSize minimumSizeHint() const override { return {120, 90}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_picture; // null: the built-in one
};

} // namespace app
