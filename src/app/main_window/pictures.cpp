#include "app/main_window/pictures.h"

#include <QResource>

using namespace Qt::StringLiterals;

// The linker drops a library's resources unless somebody names them; outside of namespaces, as Qt asks.
static void makePicturesAvailable() { Q_INIT_RESOURCE(pictures); }

namespace app
{

QString shopPicture()
{
    makePicturesAvailable();
    return u":/pictures/shop.svg"_s;
}

QString programIcon()
{
    makePicturesAvailable();
    return u":/kanbalore.svg"_s;
}

} // namespace app
