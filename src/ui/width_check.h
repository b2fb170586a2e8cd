#pragma once

#include <QObject>

#include <optional>

class QLineEdit;

namespace ui
{

/// The room that a text has on paper, in bytes of CP932: a full-width character takes 2, a half-width one 1.
struct WidthLimit
{
    int bytes;
    QString (*sentence)(); // says the limit to the clerk
};

/// Names and address lines: one printed line.
extern const WidthLimit nameWidth;
/// Notes.
extern const WidthLimit noteWidth;

/// What is wrong with the width of \a text: the sentence of \a limit, and on a further line the characters
/// that the code page does not have, as the clerk cannot know what they count. Nothing when the text fits.
std::optional<QString> widthError(const QString &text, const WidthLimit &limit);

/// Watches one box: when the clerk leaves it for another box of the same screen with a text that is too wide,
/// the screen says so and the cursor goes back. The text is not cut. A button pressed with the mouse still
/// acts first, so that the screen can be closed or the entry given up; leaving for another window, a menu or
/// a message box is not leaving the box.
///
/// Buttons can also be pressed by a key without leaving the box: before saving, ask allFit().
class WidthCheck : public QObject
{
    Q_OBJECT

public:
    /// Watches \a box from now on, as long as it lives.
    static void guard(QLineEdit *box, const WidthLimit &limit);

    /// The same of what is typed: a text that was put into the box, as from the registers, may be wider.
    /// Tells which box it is, by its label, and how long the text is.
    static void guardTyping(QLineEdit *box, const WidthLimit &limit);

    /// Whether the texts of all guarded boxes in \a screen fit. If not, the cursor is in the first one that
    /// does not, and the clerk was told.
    static bool allFit(QWidget *screen);

    /// As allFit(), but leaves the telling to the caller: the sentence for the first text that does not fit.
    static std::optional<QString> refusal(QWidget *screen);

private:
    WidthCheck(QLineEdit *box, const WidthLimit &limit, bool ofTyping);

    static const WidthCheck *firstTooWide(const QWidget *screen);
    [[nodiscard]] std::optional<QString> error() const;
    void tell(const QString &sentence) const;
    void tellAndReturn();

    QLineEdit *m_box;
    WidthLimit m_limit;
    bool m_ofTyping;
};

} // namespace ui
