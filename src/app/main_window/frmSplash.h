#pragma once

#include <QSplashScreen>

namespace app
{

/// The splash window of the start.
class frmSplash : public QSplashScreen
{
    Q_OBJECT

public:
    frmSplash();
};

/// The picture with the program's icon, name and version that the splash and the about window show.
/// \a scale: physical pixels a pixel.
QPixmap titlePicture(double scale);

} // namespace app
