// Where a fraction's texts and separator are drawn, from fonts and rectangles alone.
#include "fractionipaint.h"

#include <QFontMetrics>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QHash>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <vector>

namespace kelfractionint::fractionpaint {

namespace {

struct ink
{
    double top = 0;
    double bottom = 0;
    bool any = false;
};

// What is known of one text in one font: measured when first asked for, then kept.
struct textmeasures
{
    qreal advance = -1;
    int lineheight = -1;
    // The ink at the last two pixel densities asked for (a screen's, and a picture's).
    qreal inkdpr[2] = {0, 0};
    ink inks[2];
    int nextink = 0;
    // The text shaped into glyphs, its baseline at 0, once it is drawn again.
    bool drawn = false;
    std::optional<QList<QGlyphRun>> glyphs;
};

// What is known of one font: its line's measures once, its texts' when asked for.
struct fontmeasures
{
    explicit fontmeasures(const QFont &f)
        : font(f), metrics(f), height(QFontMetrics(f).height()), heightf(metrics.height()),
          ascent(metrics.ascent()), linewidth(metrics.lineWidth())
    {
    }
    QFont font;
    QFontMetricsF metrics;
    int height;
    qreal heightf;
    qreal ascent;
    qreal linewidth;
    QHash<QString, textmeasures> texts;
    textmeasures scratch;

    textmeasures &text(const QString &t)
    {
        // A long text is measured each time rather than kept alive here.
        if (t.size() > 256) {
            scratch = {};
            return scratch;
        }
        auto found = texts.find(t);
        if (found != texts.end())
            return *found;
        // Bounded for hosts that show many values, say a table scrolled through.
        if (texts.size() >= 4096)
            texts.clear();
        return *texts.insert(t, {});
    }
};

// Every layout and paint measures the same few texts in the same few fonts again, and a form
// holds many controls with equal fonts: the measures are shared. A font is found by comparing
// fonts, which is quick for copies of one font; forgotten when the installed fonts change, and
// bounded for hosts that zoom through many sizes. A reference is good until the next lookup.
fontmeasures &measuresof(const QFont &font)
{
    static std::vector<std::unique_ptr<fontmeasures>> fonts;
    // The fonts last asked for: a widget's font asked for again is the very same copy.
    struct recent
    {
        QFont font;
        fontmeasures *measures = nullptr;
    };
    static std::array<recent, 4> recents;
    static std::size_t nextrecent = 0;
    static const bool watching = [] {
        if (auto *app = qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
            QObject::connect(app, &QGuiApplication::fontDatabaseChanged, app, [] {
                recents = {};
                fonts.clear();
            });
        return true;
    }();
    Q_UNUSED(watching);
    for (const recent &known : recents) {
        if (known.measures && known.font.isCopyOf(font))
            return *known.measures;
    }
    fontmeasures *found = nullptr;
    for (const auto &known : fonts) {
        if (known->font == font) {
            found = known.get();
            break;
        }
    }
    if (!found) {
        if (fonts.size() >= 32) {
            recents = {};
            fonts.clear();
        }
        fonts.push_back(std::make_unique<fontmeasures>(font));
        found = fonts.back().get();
    }
    recents[nextrecent] = {font, found};
    nextrecent = (nextrecent + 1) % recents.size();
    return *found;
}

qreal advanceof(fontmeasures &measures, textmeasures &text, const QString &t)
{
    if (text.advance < 0)
        text.advance = measures.metrics.horizontalAdvance(t);
    return text.advance;
}

// What stands for \a text when its ink is measured: a long text covers the rows of its distinct
// glyphs, which are drawn once each, so that the cost is bounded by the glyphs a font has rather
// than by the text's length.
QString inksample(const QString &text)
{
    constexpr qsizetype shortest = 64;
    constexpr qsizetype mostglyphs = 1024;
    if (text.size() <= shortest)
        return text;
    std::vector<bool> seen(0x110000);
    QString sample;
    for (qsizetype i = 0; i < text.size() && sample.size() < mostglyphs; ++i) {
        char32_t code = text.at(i).unicode();
        qsizetype length = 1;
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            code = QChar::surrogateToUcs4(text.at(i), text.at(i + 1));
            length = 2;
        }
        if (!seen[code]) {
            seen[code] = true;
            sample.append(QStringView(text).mid(i, length));
        }
        i += length - 1;
    }
    return sample;
}

// The rows that \a text's glyphs cover when its line starts at 0, measured from the glyphs as
// drawn at this pixel density (a font's own ink boxes are rounded).
ink measuredink(fontmeasures &measures, textmeasures &known, const QString &whole, qreal dpr)
{
    for (int i = 0; i < 2; ++i) {
        if (known.inkdpr[i] == dpr)
            return known.inks[i];
    }
    const QString text = inksample(whole);
    const qreal advance = text.size() == whole.size() ? advanceof(measures, known, whole)
                                                      : measures.metrics.horizontalAdvance(text);
    const QSize size(int(std::ceil(advance + measures.heightf)) + 4, int(std::ceil(measures.heightf)) + 4);
    QImage image(size * dpr, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setFont(measures.font);
        painter.setPen(Qt::black);
        painter.drawText(QPointF(2, 2 + measures.ascent), text);
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
    known.inkdpr[known.nextink] = dpr;
    known.inks[known.nextink] = result;
    known.nextink = 1 - known.nextink;
    return result;
}

// Where a frameless line edit of \a fieldheight starts the line of \a text, raised by \a lift.
int linetop(const fontmeasures &measures, textmeasures &known, int fieldheight, const QString &text, int lift)
{
    // As QLineEdit centres its line: the text's height is at least the font's.
    if (known.lineheight < 0)
        known.lineheight = std::max(QFontMetrics(measures.font).boundingRect(inksample(text)).height(), measures.height);
    return -lift + (fieldheight - known.lineheight + 1) / 2;
}

double inktop(fontmeasures &measures, const QString &text, int fieldheight, int lift, qreal dpr)
{
    textmeasures &known = measures.text(text);
    const ink glyphs = measuredink(measures, known, text, dpr);
    return linetop(measures, known, fieldheight, text, lift) + (glyphs.any ? glyphs.top : measures.ascent);
}

double inkbottom(fontmeasures &measures, const QString &text, int fieldheight, int lift, qreal dpr)
{
    textmeasures &known = measures.text(text);
    const ink glyphs = measuredink(measures, known, text, dpr);
    return linetop(measures, known, fieldheight, text, lift) + (glyphs.any ? glyphs.bottom : measures.ascent);
}

int denominatorlift(fontmeasures &measures, int fieldheight, int fieldtop, const QString &text, int limit, qreal dpr)
{
    if (!measuredink(measures, measures.text(text), text, dpr).any)
        return 0;
    const int needed = int(std::ceil(fieldtop + inkbottom(measures, text, fieldheight, 0, dpr) - limit));
    // Raised no further than the ink's top stays inside the field, which clips it.
    const int room = int(std::floor(inktop(measures, text, fieldheight, 0, dpr)));
    return std::clamp(needed, 0, std::max(room, 0));
}

} // namespace

double inktop(const QFont &font, int fieldheight, const QString &text, int lift, qreal dpr)
{
    return inktop(measuresof(font), text, fieldheight, lift, dpr);
}

double inkbottom(const QFont &font, int fieldheight, const QString &text, int lift, qreal dpr)
{
    return inkbottom(measuresof(font), text, fieldheight, lift, dpr);
}

int denominatorlift(const QFont &font, int fieldheight, int fieldtop, const QString &text, int limit, qreal dpr)
{
    return denominatorlift(measuresof(font), fieldheight, fieldtop, text, limit, dpr);
}

void drawtext(QPainter *painter, const QPointF &baseline, const QString &text)
{
    fontmeasures &measures = measuresof(painter->font());
    textmeasures &known = measures.text(text);
    // A text seen once, say a table's running total, is not worth keeping shaped.
    if (!known.drawn) {
        known.drawn = true;
        painter->drawText(baseline, text);
        return;
    }
    if (!known.glyphs) {
        QTextLayout layout(text, measures.font);
        QTextOption option;
        option.setTextDirection(painter->layoutDirection());
        layout.setTextOption(option);
        layout.beginLayout();
        QTextLine line = layout.createLine();
        layout.endLayout();
        QList<QGlyphRun> runs = layout.glyphRuns();
        for (QGlyphRun &run : runs) {
            QList<QPointF> positions = run.positions();
            for (QPointF &position : positions)
                position.ry() -= line.ascent();
            run.setPositions(positions);
        }
        known.glyphs = runs;
    }
    for (const QGlyphRun &run : std::as_const(*known.glyphs))
        painter->drawGlyphRun(baseline, run);
}

QString visibletext(const QFont &font, const QString &text)
{
    // No field or cell is wider than this many pixels.
    constexpr qreal widest = 16384;
    constexpr qsizetype prefix = 4096;
    if (text.size() <= prefix)
        return text;
    const qsizetype length = text.at(prefix - 1).isHighSurrogate() ? prefix - 1 : prefix;
    const QString start = text.left(length);
    return measuresof(font).metrics.horizontalAdvance(start) >= widest ? start : text;
}

qreal textadvance(const QFont &font, const QString &text)
{
    fontmeasures &measures = measuresof(font);
    return advanceof(measures, measures.text(text), text);
}

qreal fontlinewidth(const QFont &font)
{
    return measuresof(font).linewidth;
}

qreal fontlineheight(const QFont &font)
{
    return measuresof(font).heightf;
}

double separatorwidth(double linewidth)
{
    return std::max(1.0, linewidth);
}

namespace {

// Whether an image drawn by \a painter lands on whole pixels of an image that the raster engine
// blends into as it blends a line: then a line drawn once into an image and copied gives the
// very pixels that drawing the line there gives.
bool copiesexactly(const QPainter *painter, const QTransform &matrix)
{
    const QPaintEngine *engine = painter->paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster || painter->opacity() != 1.0
        || painter->compositionMode() != QPainter::CompositionMode_SourceOver)
        return false;
    if (matrix.type() > QTransform::TxTranslate || matrix.dx() != std::floor(matrix.dx())
        || matrix.dy() != std::floor(matrix.dy()))
        return false;
    const QPaintDevice *device = engine->paintDevice();
    if (!device || device->devType() != QInternal::Image)
        return false;
    const QImage::Format format = static_cast<const QImage *>(device)->format();
    return format == QImage::Format_ARGB32_Premultiplied || format == QImage::Format_RGB32;
}

} // namespace

void drawseparator(QPainter *painter, const QLineF &line, const QColor &color, double width, bool antialiased)
{
    const QPen pen(color, width, Qt::SolidLine, Qt::FlatCap);
    const QTransform matrix = painter->deviceTransform();
    if (!copiesexactly(painter, matrix)) {
        painter->setRenderHint(QPainter::Antialiasing, antialiased);
        painter->setPen(pen);
        painter->drawLine(line);
        return;
    }
    // Each paint draws the same few separators again: each is drawn once, onto nothing, and
    // copied after, which blends the same as drawing it (an image's pixels are the line's
    // colour times its cover, which is what drawing blends).
    struct drawn
    {
        QLineF line;
        QRgb color = 0;
        double width = 0;
        bool antialiased = false;
        QImage image;
    };
    static std::array<drawn, 8> known;
    static std::size_t next = 0;
    const QLineF device = matrix.map(line);
    const double reach = width / 2 + 2;
    const QPoint origin(int(std::floor(std::min(device.x1(), device.x2()) - reach)),
                        int(std::floor(std::min(device.y1(), device.y2()) - reach)));
    const QLineF local = device.translated(-origin);
    auto found = std::find_if(known.begin(), known.end(), [&](const drawn &d) {
        return !d.image.isNull() && d.line == local && d.color == color.rgba() && d.width == width
            && d.antialiased == antialiased;
    });
    if (found == known.end()) {
        const QSize size(int(std::ceil(std::max(local.x1(), local.x2()) + reach)),
                         int(std::ceil(std::max(local.y1(), local.y2()) + reach)));
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter onto(&image);
        onto.setRenderHint(QPainter::Antialiasing, antialiased);
        onto.setPen(pen);
        onto.drawLine(local);
        onto.end();
        found = known.begin() + std::ptrdiff_t(next);
        *found = {local, color.rgba(), width, antialiased, image};
        next = (next + 1) % known.size();
    }
    painter->drawImage(QPointF(origin.x() - matrix.dx(), origin.y() - matrix.dy()), found->image);
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
    fontmeasures &measures = measuresof(font);
    const int line = measures.height;
    const int height = 2 * line;
    const int wholewidth = whole.isEmpty() ? 0 : int(std::ceil(advanceof(measures, measures.text(whole), whole)));
    const double numerwidth = advanceof(measures, measures.text(numerator), numerator);
    const double denomwidth = advanceof(measures, measures.text(denominator), denominator);
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
    parts.denominatorlift = denominatorlift(measures, line, denomtop, denominator, height, devicepixelratio);
    const double numerbottom = numertop + inkbottom(measures, numerator, line, 0, devicepixelratio);
    const double denominktop = denomtop + inktop(measures, denominator, line, parts.denominatorlift, devicepixelratio);
    parts.separator = separatorline(offset < 0 ? parts.denominator : parts.numerator, numerbottom, denominktop, slash,
                                    devicepixelratio, measures.linewidth);
    parts.ascent = measures.ascent;
    parts.penwidth = separatorwidth(measures.linewidth);
    return parts;
}

} // namespace kelfractionint::fractionpaint
