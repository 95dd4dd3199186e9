#pragma once

#include "fractionplatform_export.h"

#include <QColor>

class QWidget;

namespace kelfractionint {

/*! Twips per pixel horizontally for \a widget's screen (1440 / logical DPI); the primary
 *  screen's for a null widget. */
FRACTIONPLATFORM_EXPORT double twipsperpixelx(const QWidget *widget = nullptr);
/*! Twips per pixel vertically. */
FRACTIONPLATFORM_EXPORT double twipsperpixely(const QWidget *widget = nullptr);

/*! \a twips as whole pixels at \a twipsperpixel, rounded to the nearest. */
FRACTIONPLATFORM_EXPORT int twipstopixels(double twips, double twipsperpixel);
/*! \a pixels in twips at \a twipsperpixel. */
FRACTIONPLATFORM_EXPORT double pixelstotwips(int pixels, double twipsperpixel);

/*! An OLE_COLOR (0x00BBGGRR) as a QColor. The high byte is ignored. */
FRACTIONPLATFORM_EXPORT QColor fromoleColor(quint32 olecolor);
/*! A QColor as an OLE_COLOR (0x00BBGGRR). */
FRACTIONPLATFORM_EXPORT quint32 tooleColor(const QColor &color);

} // namespace kelfractionint
