#include "printing/print_frame.h"

#include "printing/font_names.h"
#include "printing/queue/print_system.h"
#include "printing/sheet.h"
#include "workspace/settings.h"

#include <QFontDatabase>
#include <QPainter>

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace printing
{

QString missingInWords(const SelectedPrinter &selected)
{
    if (selected.missing.isEmpty())
        return {};
    return u"設定されているプリンタ「%1」が見つからないため、ほかのプリンタを選んでいます。"_s.arg(
        selected.missing);
}

base::Result<SelectedPrinter> selectPrinter(PrintSystem &system, const workspace::Settings &settings,
                                            Purpose purpose, const QString &other)
{
    const auto queues = system.queues();
    if (!queues)
        return queues.error();
    SelectedPrinter selected{queues->names, other.isEmpty() ? settings.text(printerKey(purpose)) : other, {}};
    if (queues->names.contains(selected.name))
        return selected;
    selected.missing = std::exchange(selected.name, QString());
    if (queues->names.contains(queues->usual))
        selected.name = queues->usual;
    else if (!queues->names.isEmpty())
        selected.name = queues->names.front();
    return selected;
}

QString fontFace(const workspace::Settings &settings, Purpose purpose, const QString &other)
{
    const QString wanted = other.isEmpty() ? settings.text(fontKey(purpose)) : other;
    const QString face = installedFace(wanted, QFontDatabase::families());
    if (!face.isEmpty())
        return face;
    const QStringList japanese = QFontDatabase::families(QFontDatabase::Japanese);
    return japanese.isEmpty() ? QString() : japanese.first();
}

base::Status flushed(workspace::Settings &settings)
{
    if (settings.flush())
        return {};
    return base::Error{u"設定を保存できませんでした。設定ファイルの権限を確認してください。"_s};
}

int typePixels(double points) { return std::max(1, static_cast<int>(std::lround(points * twipsPerPoint))); }

QFont typeFont(const QString &face, double points, bool bold)
{
    QFont font(face);
    font.setPixelSize(typePixels(points));
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

void applyFont(QPainter &painter, const QString &face, double points, bool bold)
{
    painter.setFont(typeFont(face, points, bold));
}

} // namespace printing
