#include "app/main_window/companions.h"

#include "base/file_rights.h"
#include "text/cp932.h"
#include "workspace/workspace.h"

#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace app
{

QString companionFile(const QString &applicationFolder, Companion companion)
{
    QString name;
    switch (companion) {
    case Companion::Ledger:
        name = u"KanbaloreLedger"_s;
        break;
    case Companion::CashBook:
        name = u"KanbaloreCash"_s;
        break;
    case Companion::BulkMail:
        name = u"KanbaloreMail"_s;
        break;
    case Companion::PostalCodes:
        name = u"KanbaloreZip"_s;
        break;
    }
#ifdef Q_OS_WIN
    name += u".exe"_s;
#endif
    return workspace::joinPath(applicationFolder, name);
}

bool isCompanionInstalled(const QString &applicationFolder, Companion companion)
{
    const QFileInfo file(companionFile(applicationFolder, companion));
    return file.isFile() && file.isExecutable() && base::isTrusted(file.filePath(), applicationFolder);
}

base::Status writeHandOver(const QString &applicationFolder, const HandOver &values)
{
    const QString lines = QStringList{values.fileName,
                                      values.employeeId,
                                      values.supplierId,
                                      values.customerId,
                                      QString::number(values.textSize),
                                      values.taxRate,
                                      values.numberInfix,
                                      QString()}
                              .join(u"\r\n"_s);
    const auto bytes = text::toCp932(lines);
    if (!bytes)
        return base::Error{u"ファイル名または伝票番号の頭文字に、管理業務のプログラムへ渡せない文字（"_s +
                           text::notInCp932(lines) + u"）があります。"_s};
    QSaveFile file(workspace::joinPath(applicationFolder, u"SendData.txt"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(*bytes) != bytes->size() || !file.commit())
        return base::Error{u"SendData.txt に書き込めませんでした。("_s + file.errorString() + u")"_s};
    return {};
}

base::Status startCompanion(const QString &applicationFolder, Companion companion)
{
    const QString program = companionFile(applicationFolder, companion);
    if (!QProcess::startDetached(program, {}, applicationFolder))
        return base::Error{u"「"_s + QFileInfo(program).fileName() + u"」を起動できませんでした。"_s};
    return {};
}

} // namespace app
