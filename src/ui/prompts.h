#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QWidget;

// The one seam for message boxes. Tests put answers into a queue; a box that nobody scripted is recorded as
// unexpected, so that the test can fail on it.
namespace ui::prompts
{

enum class Icon { None, Information, Exclamation, Question };

/// Titles by purpose.
inline constexpr const char16_t *information = u"Information";
inline constexpr const char16_t *question = u"Question";
inline constexpr const char16_t *errorCheck = u"Error check";

/// Tells \a text with an OK button. \a remark stands below it, in a paragraph of its own.
void inform(QWidget *parent, const QString &text, const QString &title = QString::fromUtf16(information),
            Icon icon = Icon::Information, const QString &remark = {});

/// Asks \a text with Yes and No. \a remark stands below the question, in a paragraph of its own.
/// \return true for Yes
bool ask(QWidget *parent, const QString &text, const QString &title = QString::fromUtf16(question),
         const QString &remark = {});

/// Asks whether the file \a fileName may be replaced where there is one already. \return whether it may be
/// written. A database is replaced with more care: the old one stays as \a kept, which is said.
bool askToOverwrite(QWidget *parent, const QString &fileName, const QString &kept = {});

/// As ask(), where Yes deletes something, drops what was typed or stores what may be a slip of the hand:
/// Enter alone says No.
bool askCautiously(QWidget *parent, const QString &text, const QString &remark = {});

enum class Choice { Save, Discard, Cancel };

/// Asks whether edits are to be saved before they are left.
Choice askToSave(QWidget *parent, const QString &text, const QString &title = QString::fromUtf16(question));

enum class Version { Mine, Theirs, Undecided };

/// Asks which of two versions of a row is to stay: what was typed here, or what another program saved
/// meanwhile. Enter and Esc alone leave it undecided.
Version askWhichVersion(QWidget *parent, const QString &text);

/// The ways out of a question, by the captions of its buttons; "戻る", Esc and the box's close button go
/// back.
struct Ways
{
    QString save;
    QString discard;
    bool goesBackByItself = false; // Enter alone goes back, where saving means to delete or is in doubt
};

/// As askToSave() with ways of its own. \return Cancel to go back
Choice askHowToLeave(QWidget *parent, const QString &text, const Ways &ways, const QString &remark = {});

/// Asks \a text with a button for each of \a ways; "戻る", Enter, Esc and the box's close button go back.
/// \return the way that was chosen, by its place; nothing to go back
std::optional<qsizetype> askWhichWay(QWidget *parent, const QString &text, const QStringList &ways,
                                     const QString &remark = {});

// --- For tests ---

/// Puts all boxes under script until the process ends: none is shown any more.
void beginScript();
/// The remark of a box of which a test only knows that there is one.
inline const QString anyRemark = QStringLiteral("\u2026");
/// Expects a box with \a text (compared whole) next; \a yes answers a question. An empty text fits any box.
void expectInform(const QString &text, const QString &remark = {});
void expectAsk(const QString &text, bool yes, const QString &remark = {});
/// As expectAsk() for a question that Enter alone must not say Yes to.
void expectAskCautiously(const QString &text, bool yes, const QString &remark = {});
void expectAskToSave(const QString &text, Choice choice);
void expectAskWhichVersion(const QString &text, Version version);
/// As expectAskToSave(); \a preset is what Enter alone must do.
void expectAskHowToLeave(const QString &text, Choice choice, Choice preset);
/// Expects a question of several ways, and that \a way is one of them; an empty one goes back. An empty
/// \a remark fits any.
void expectAskWhichWay(const QString &text, const QString &way, const QString &remark = {});
/// What another program does while the box that is expected last stands.
void meanwhile(const std::function<void()> &action);
/// What did not go by the script since the last call: boxes nobody expected, and expected ones that never
/// came. Empty when all went as scripted. Clears the script.
QString takeUnexpected();

} // namespace ui::prompts
