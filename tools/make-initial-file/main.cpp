// Makes the initial database file during the build: make-initial-file FILE
#include "db/create.h"

#include <QFile>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QTextStream errors(stderr);
    if (argc != 2) {
        errors << "usage: make-initial-file FILE\n";
        return 2;
    }
    const QString fileName = QFile::decodeName(argv[1]);
    QFile::remove(fileName);
    if (const base::Status created = db::createDatabase(fileName); !created) {
        errors << created.error().text << '\n';
        return 1;
    }
    return 0;
}
