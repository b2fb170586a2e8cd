#pragma once

#include <QString>

namespace app
{

/// The places at which the application folder and its files can be.
struct FolderPlaces
{
    QString wanted;     // named by option or environment; empty: none
    QString executable; // folder of the executable
    QString user;       // the user's own data folder
    QString installed;  // where an installation puts the delivered files

    /// As this machine and this user have them; \a option wins over the environment.
    static FolderPlaces ofThisMachine(const QString &option);
};

struct ApplicationFolder
{
    QString path;
    QString problem; // a sentence when the folder could not be made or filled; empty: all is well
};

/// A file of this name beside the programs says that their folder is the application folder, for a copy that
/// is carried about with its data.
inline constexpr char16_t portableMark[] = u"Kanbalore.portable";

/// The wanted folder; else the executable's when it holds the initial file, can be written, and has a shop's
/// database or the mark of a portable copy in it; else the user's. A folder other than the executable's gets
/// what it lacks of the delivered files, and newer postal-code files than those that were delivered to it
/// before.
ApplicationFolder settleApplicationFolder(const FolderPlaces &places);

} // namespace app
