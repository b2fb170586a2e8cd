#include "app/main_window/appearance.h"

#include "ui/focus_style.h"

#include <QApplication>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QLocale>
#include <QPalette>
#include <QTranslator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

constexpr int typeSize = 10;     // points
constexpr int largestUsual = 11; // points that desktops have without being asked for large type

struct Shades
{
    QColor window, base, alternate, button, text, faint, accent, accentText, link;
};

const Shades light{QColor(0xf4f5f2), QColor(0xffffff), QColor(0xf0f4f5), QColor(0xfbfbf9), QColor(0x22282b),
                   QColor(0x9aa3a6), QColor(0x2b6577), QColor(0xffffff), QColor(0x245a6c)};
const Shades dark{QColor(0x1f2427), QColor(0x364046), QColor(0x282f33), QColor(0x39434a), QColor(0xe6e9e8),
                  QColor(0x7b8589), QColor(0x4f9bb3), QColor(0x0e1516), QColor(0x8cc8da)};

QPalette paletteOf(const Shades &shades)
{
    QPalette palette(shades.button, shades.window);
    palette.setColor(QPalette::WindowText, shades.text);
    palette.setColor(QPalette::Text, shades.text);
    palette.setColor(QPalette::ButtonText, shades.text);
    palette.setColor(QPalette::Base, shades.base);
    palette.setColor(QPalette::AlternateBase, shades.alternate);
    palette.setColor(QPalette::ToolTipBase, shades.base);
    palette.setColor(QPalette::ToolTipText, shades.text);
    palette.setColor(QPalette::PlaceholderText, shades.faint);
    palette.setColor(QPalette::Highlight, shades.accent);
    palette.setColor(QPalette::HighlightedText, shades.accentText);
    palette.setColor(QPalette::Link, shades.link);
    palette.setColor(QPalette::LinkVisited, shades.link);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, shades.faint);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, shades.faint);
    return palette;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

// What the desktop asked for, before the program's own palette is set.
bool desktopIsDark()
{
    static const bool asked = isDark(QGuiApplication::palette());
    return asked;
}

// The toolkit's file dialog looks for its kinds of file ("Folder", "Drive") where its translation no longer
// has them; they still stand among the texts of the dialog itself.
class FileKinds : public QTranslator
{
public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *text, const char *meaning,
                                    int count) const override
    {
        if (qstrcmp(context, "QAbstractFileIconProvider") != 0)
            return {};
        return QCoreApplication::translate("QFileDialog", text, meaning, count);
    }
};

void loadTranslations(QApplication &application)
{
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    for (const QString &name : {u"qtbase_ja"_s, u"qt_ja"_s}) {
        auto *translator = new QTranslator(&application);
        if (translator->load(name, folder))
            QApplication::installTranslator(translator);
    }
    QApplication::installTranslator(new FileKinds(&application));
}

// The desktop's type before the program sets its own.
int &desktopSize()
{
    static int points = typeSize;
    return points;
}

QFont typeface()
{
    const QStringList present = QFontDatabase::families();
    for (const QString &family : {u"Noto Sans CJK JP"_s, u"Noto Sans JP"_s, u"Yu Gothic UI"_s, u"Meiryo UI"_s,
                                  u"IPAPGothic"_s, u"IPAGothic"_s}) {
        if (present.contains(family))
            return QFont(family, typeSize + desktopSurplus());
    }
    return QFont(QApplication::font().family(), typeSize + desktopSurplus());
}

} // namespace

void setUpAppearance(QApplication &application)
{
    (void)desktopIsDark();
    desktopSize() = QApplication::font().pointSize();
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    loadTranslations(application);
    QApplication::setStyle(ui::styleShowingFocus(u"Fusion"_s));
    QApplication::setFont(typeface());
    applyColours(Colours::Automatic);
}

int desktopSurplus()
{
    constexpr int most = 10;
    return desktopSize() > largestUsual ? std::min(desktopSize() - typeSize, most) : 0;
}

void applyColours(Colours colours)
{
    const bool asked = colours == Colours::Automatic ? desktopIsDark() : colours == Colours::Dark;
    QApplication::setPalette(paletteOf(asked ? dark : light));
}

QString mainWindowStyle()
{
    const bool isNight = isDark(QApplication::palette());
    const Shades &shades = isNight ? dark : light;
    const QString line = (isNight ? shades.button.lighter(140) : shades.window.darker(115)).name();
    const QString soft = (isNight ? shades.accent.darker(260) : QColor(0xe4eef2)).name();
    const struct
    {
        const char *name;
        QColor colour;
    } names[] = {
        {"@banner@", QColor(0x2b6577)},
        {"@accentText@", shades.accentText},
        {"@accent@", shades.accent},
        {"@line@", QColor(line)},
        {"@card@", isNight ? shades.alternate : shades.base},
        {"@link@", shades.link},
        {"@button@", shades.button},
        {"@text@", shades.text},
        {"@soft@", QColor(soft)},
        {"@faint@", shades.faint},
    };
    QString style = uR"(
#header { background: @banner@; }
#header QLabel { color: white; }
#lblCompany { font-size: 15pt; font-weight: bold; }
#lblFile { font-size: 9pt; }
QGroupBox { border: 1px solid @line@; border-radius: 8px; margin-top: 8px; padding-top: 8px; background: @card@; }
QGroupBox::title { subcontrol-origin: margin; left: 12px; padding: 0 5px; color: @link@; font-weight: bold; }
#SSTab1::pane { border: none; border-top: 1px solid @line@; }
#SSTab1 QTabBar::tab { padding: 7px 15px; border: none; border-bottom: 3px solid transparent; color: @text@; }
#SSTab1 QTabBar::tab:selected { border-bottom-color: @accent@; color: @link@; font-weight: bold; }
#SSTab1 QTabBar::tab:hover:!selected { border-bottom-color: @line@; }
#SSTab1 QPushButton { text-align: left; padding: 0 14px; border: 1px solid @line@; border-radius: 6px;
  background: @button@; color: @text@; }
#SSTab1 QPushButton:hover { border-color: @accent@; background: @soft@; }
#SSTab1 QPushButton:focus { border: 2px solid @accent@; padding: 0 13px; outline: none; }
#SSTab1 QPushButton:pressed { background: @accent@; color: @accentText@; }
#SSTab1 QPushButton:disabled { color: @faint@; background: transparent; }
#SSTab1 #Command45:enabled { background: @accent@; color: @accentText@; font-weight: bold; }
#SSTab1 #Command45:enabled:hover { background: @link@; }
#SSTab1 #Command45:enabled:focus { background: @soft@; color: @link@; }
#shortcuts QPushButton, #LblPrinterName, #Label19 { border: none; padding: 3px 8px; color: @link@;
  text-decoration: underline; text-align: left; background: transparent; }
#shortcuts QPushButton:hover { background: @soft@; border-radius: 4px; }
#shortcuts QPushButton:focus, #LblPrinterName:focus, #Label19:focus { background: @soft@;
  border: 2px solid @accent@; border-radius: 4px; padding: 1px 6px; outline: none; }
#shortcuts QPushButton:disabled, #LblPrinterName:disabled, #Label19:disabled { color: @faint@;
  text-decoration: none; }
)"_s;
    for (const auto &name : names)
        style.replace(QLatin1StringView(name.name), name.colour.name());
    return style;
}

} // namespace app
