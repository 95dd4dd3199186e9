// Where a fraction's texts and separator are drawn, from fonts and rectangles alone.
#include "fractionipaint.h"

#include <QFontMetrics>
#include <QFontMetricsF>
#include <QHash>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kelfractionint::fractionpaint {

namespace {

struct ink
{
    double top = 0;
    double bottom = 0;
    bool any = false;
};

// The rows that \a text's glyphs cover when its line starts at 0, measured from the glyphs as
// drawn at this pixel density (a font's own ink boxes are rounded). Shared per font and text.
ink measuredink(const QFont &font, const QString &text, qreal dpr)
{
    static QHash<QString, ink> known;
    // Painting asks again and again in one font: its key is made once.
    static QFont lastfont;
    static QString lastkey;
    if (lastkey.isEmpty() || font != lastfont) {
        lastfont = font;
        lastkey = font.key();
    }
    QString key;
    key.reserve(lastkey.size() + text.size() + 8);
    key.append(lastkey).append(QLatin1Char('\x1f')).append(QString::number(dpr)).append(QLatin1Char('\x1f')).append(text);
    const auto found = known.constFind(key);
    if (found != known.constEnd())
        return *found;
    if (known.size() > 4096)
        known.clear();
    const QFontMetricsF metrics(font);
    const QSize size(int(std::ceil(metrics.horizontalAdvance(text) + metrics.height())) + 4,
                     int(std::ceil(metrics.height())) + 4);
    QImage image(size * dpr, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setFont(font);
        painter.setPen(Qt::black);
        painter.drawText(QPointF(2, 2 + metrics.ascent()), text);
    }
    ink result;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (std::any_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; })) {
            const double row = y / dpr - 2;
            result.top = result.any ? result.top : row;
            result.bottom = row + 1 / dpr;
            result.any = true;
        }
    }
    known.insert(key, result);
    return result;
}

// Where a frameless line edit of \a fieldheight starts the line of \a text, raised by \a lift.
int linetop(const QFont &font, int fieldheight, const QString &text, int lift)
{
    // As QLineEdit centres its line: the text's height is at least the font's.
    const QFontMetrics metrics(font);
    const int lineheight = std::max(metrics.boundingRect(text).height(), metrics.height());
    return -lift + (fieldheight - lineheight + 1) / 2;
}

} // namespace

double inktop(const QFont &font, int fieldheight, const QString &text, int lift, qreal dpr)
{
    const ink glyphs = measuredink(font, text, dpr);
    return linetop(font, fieldheight, text, lift) + (glyphs.any ? glyphs.top : QFontMetricsF(font).ascent());
}

double inkbottom(const QFont &font, int fieldheight, const QString &text, int lift, qreal dpr)
{
    const ink glyphs = measuredink(font, text, dpr);
    return linetop(font, fieldheight, text, lift) + (glyphs.any ? glyphs.bottom : QFontMetricsF(font).ascent());
}

int denominatorlift(const QFont &font, int fieldheight, int fieldtop, const QString &text, int limit, qreal dpr)
{
    if (!measuredink(font, text, dpr).any)
        return 0;
    const int needed = int(std::ceil(fieldtop + inkbottom(font, fieldheight, text, 0, dpr) - limit));
    // Raised no further than the ink's top stays inside the field, which clips it.
    const int room = int(std::floor(inktop(font, fieldheight, text, 0, dpr)));
    return std::clamp(needed, 0, std::max(room, 0));
}

double separatorwidth(double linewidth)
{
    return std::max(1.0, linewidth);
}

QLineF separatorline(const QRect &wider, double numerbottom, double denomtop, bool slash, double devicepixelratio,
                     double linewidth)
{
    const double dpr = devicepixelratio > 0 ? devicepixelratio : 1.0;
    const double width = separatorwidth(linewidth);
    // The free band in device pixels: a clear row below the numerator's ink and one above the
    // denominator's.
    const double freetop = (std::ceil(numerbottom * dpr) + 1) / dpr;
    const double freebottom = (std::floor(denomtop * dpr) - 1) / dpr;
    double left = wider.left();
    double right = wider.left() + wider.width();
    if (!slash) {
        const double middle = (freetop + freebottom) / 2;
        // A bar of whole device pixels, centred in the band.
        const double pixels = std::max(1.0, std::round(width * dpr));
        const double y = (std::floor(middle * dpr - pixels / 2 + 0.5) + pixels / 2) / dpr;
        return {left, y, right, y};
    }
    // The slash's ends stay a device pixel inside the field: its pen and antialiasing would
    // otherwise reach the whole part's last digit beside it.
    const double inset = std::min(width / 2 + 1 / dpr, (right - left) / 4);
    left += inset;
    right -= inset;
    // A slanted line is thicker vertically: half its width over the cosine of its angle.
    double top = freetop + width / 2;
    double bottom = freebottom - width / 2;
    for (int round = 0; round < 2; ++round) {
        const double length = std::hypot(right - left, bottom - top);
        const double half = length > 0 ? width / 2 * length / (right - left) : width / 2;
        top = freetop + half;
        bottom = freebottom - half;
    }
    if (bottom < top)
        top = bottom = (freetop + freebottom) / 2;
    return {left, bottom, right, top};
}

double centeroffset(double numeratorwidth, double denominatorwidth, qsizetype numeratorlength,
                    qsizetype denominatorlength)
{
    if (numeratorlength == denominatorlength)
        return 0;
    return (numeratorwidth - denominatorwidth) / 2;
}

fractionplaces placefraction(double width, double height, double gapx, const QRectF &whole, bool wholeshown,
                             const QSizeF &numerator, const QSizeF &denominator, double offset)
{
    double left = 0;
    double numertop = height / 8;
    double denomtop = 5 * height / 8;
    if (wholeshown) {
        // The numerator's left is reckoned from gapx and the whole part's width, so with a border
        // the fields overlap by one gap; hosts rely on this placement.
        left = gapx + whole.width();
    } else {
        left = (width - numerator.width()) / 2;
        numertop = whole.top() - numerator.height() / 2;
        denomtop = whole.top() + whole.height() - denominator.height() / 2;
    }
    if (offset >= 0)
        return {QPointF(left, numertop), QPointF(left + offset, denomtop)};
    return {QPointF(left - offset, numertop), QPointF(left, denomtop)};
}

fractionparts arrange(const QFont &font, const QString &whole, const QString &numerator, const QString &denominator,
                      bool slash, qreal devicepixelratio)
{
    constexpr int gap = 2;
    const QFontMetricsF metrics(font);
    const int line = QFontMetrics(font).height();
    const int height = 2 * line;
    const int wholewidth = whole.isEmpty() ? 0 : int(std::ceil(metrics.horizontalAdvance(whole)));
    const double numerwidth = metrics.horizontalAdvance(numerator);
    const double denomwidth = metrics.horizontalAdvance(denominator);
    const int fracwidth = int(std::ceil(std::max(numerwidth, denomwidth)));
    const int offset = int(std::lround(centeroffset(numerwidth, denomwidth, numerator.size(), denominator.size())));
    fractionparts parts;
    const int width = 3 * gap + wholewidth + fracwidth + std::abs(offset);
    parts.size = QSize(width, height);
    const QRectF wholebox(gap, height / 4, wholewidth, line);
    if (!whole.isEmpty())
        parts.whole = wholebox.toRect();
    const fractionplaces places = placefraction(width, height, gap, wholebox, !whole.isEmpty(), QSizeF(fracwidth, line),
                                                QSizeF(fracwidth, line), offset);
    parts.numerator = QRect(places.numerator.toPoint(), QSize(fracwidth, line));
    parts.denominator = QRect(places.denominator.toPoint(), QSize(fracwidth, line));
    const int numertop = parts.numerator.top();
    const int denomtop = parts.denominator.top();
    parts.denominatorlift = denominatorlift(font, line, denomtop, denominator, height, devicepixelratio);
    const double numerbottom = numertop + inkbottom(font, line, numerator, 0, devicepixelratio);
    const double denominktop = denomtop + inktop(font, line, denominator, parts.denominatorlift, devicepixelratio);
    parts.separator = separatorline(offset < 0 ? parts.denominator : parts.numerator, numerbottom, denominktop, slash,
                                    devicepixelratio, metrics.lineWidth());
    return parts;
}

} // namespace kelfractionint::fractionpaint
