#pragma once

#include <QChar>
#include <QString>

class QMenu;

namespace app
{

/// The letter with which \a caption is chosen in a menu: the one behind its mark, or else one in brackets at
/// its end, as in "入金伝票(R)"; a capital. Null when it has none.
QChar letterOf(const QString &caption);

/// Has the letters in brackets that bear no mark choose their items in \a menu, as the marked ones do: at
/// once where the letter stands once, else one item after the other, to be taken by Enter.
void heedUnmarkedLetters(QMenu &menu);

} // namespace app
