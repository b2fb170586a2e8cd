#pragma once

#include <QLineEdit>

namespace ui
{

/// A box for names that tells how what is typed into it is read. A name is typed as kana and converted by the
/// input method; the kana that stood there before the conversion are its reading.
class ReadingLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit ReadingLineEdit(QWidget *parent = nullptr);

signals:
    /// The reading of each text that the input method has confirmed, in half-width katakana. Letters and
    /// digits read as themselves. Nothing comes for what was typed or pasted without an input method.
    void readingConfirmed(const QString &halfWidthKana);

protected:
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    [[nodiscard]] QString readingOf(const QString &committed) const;
    void remember(const QString &composition);

    QString m_composition; // under way, as it is shown
    QString m_reading;     // of it
};

} // namespace ui
