#include "twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <cmath>

namespace kelfractionint {

namespace {
const QScreen *screenof(const QWidget *widget)
{
    // A widget's screen is looked up once: finding it costs much before the widget is shown.
    const QScreen *screen = widget ? widget->screen() : nullptr;
    return screen ? screen : QGuiApplication::primaryScreen();
}

double perpixel(double dpi)
{
    return dpi > 0 ? 1440.0 / dpi : 15.0;
}
} // namespace

double twipsperpixelx(const QWidget *widget)
{
    const QScreen *screen = screenof(widget);
    return perpixel(screen ? screen->logicalDotsPerInchX() : 96.0);
}

double twipsperpixely(const QWidget *widget)
{
    const QScreen *screen = screenof(widget);
    return perpixel(screen ? screen->logicalDotsPerInchY() : 96.0);
}

int twipstopixels(double twips, double twipsperpixel)
{
    if (!std::isfinite(twips) || twipsperpixel <= 0)
        return 0;
    const double pixels = std::round(twips / twipsperpixel);
    if (pixels > 1e6)
        return 1000000;
    if (pixels < -1e6)
        return -1000000;
    return int(pixels);
}

double pixelstotwips(int pixels, double twipsperpixel)
{
    return pixels * twipsperpixel;
}

QColor fromoleColor(quint32 olecolor)
{
    return QColor(int(olecolor & 0xFF), int((olecolor >> 8) & 0xFF), int((olecolor >> 16) & 0xFF));
}

quint32 tooleColor(const QColor &color)
{
    const QColor rgb = color.toRgb();
    return quint32(rgb.red()) | (quint32(rgb.green()) << 8) | (quint32(rgb.blue()) << 16);
}

} // namespace kelfractionint
