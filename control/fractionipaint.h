#pragma once

#include <QColor>
#include <QFont>
#include <QLineF>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QRect>
#include <QString>

class QPainter;

/*!
 * Where a fraction's texts and separator are drawn, from fonts and rectangles alone: the control
 * uses it for its fields and anything else that paints a fraction the same way can too.
 */
namespace kelfractionint::fractionpaint {

/*! The top and the bottom of the ink of \a text in a frameless line edit of \a fieldheight
 *  pixels whose text is raised by \a lift pixels, from the field's top, at the pixel density
 *  \a dpr; the baseline for a text without ink. */
double inktop(const QFont &font, int fieldheight, const QString &text, int lift, qreal dpr);
double inkbottom(const QFont &font, int fieldheight, const QString &text, int lift, qreal dpr);
/*! How far the text of a field at \a fieldtop must be raised so that its ink ends above
 *  \a limit (all in the parent's pixels), as far as the ink above leaves room. */
int denominatorlift(const QFont &font, int fieldheight, int fieldtop, const QString &text, int limit, qreal dpr);
/*! The advance of \a text, the line width and the line height of \a font, in pixels, as
 *  QFontMetricsF gives them; measured once and kept. */
qreal textadvance(const QFont &font, const QString &text);
/*! What can be seen of \a text in \a font: the text, or for a very long text the start that is
 *  already wider than any field or cell, so that measuring and drawing cost what is visible. */
QString visibletext(const QFont &font, const QString &text);
qreal fontlinewidth(const QFont &font);
qreal fontlineheight(const QFont &font);
/*! Draws \a text in the painter's font with its baseline starting at \a baseline, as
 *  QPainter::drawText does, from glyphs shaped once per font and text. */
void drawtext(QPainter *painter, const QPointF &baseline, const QString &text);
/*! The pen width of a separator in a font whose line width is \a linewidth. */
double separatorwidth(double linewidth);
/*! Draws \a line as a separator: a pen of \a width in \a color with flat ends, antialiased or
 *  not; the painter's pen and hints may be changed. */
void drawseparator(QPainter *painter, const QLineF &line, const QColor &color, double width, bool antialiased);

/*! The separator over \a wider: a slash from its lower left to its upper right, or a bar,
 *  between the numerator's ink ending at \a numerbottom and the denominator's ink starting at
 *  \a denomtop, one device pixel clear of both where there is room. */
QLineF separatorline(const QRect &wider, double numerbottom, double denomtop, bool slash, double devicepixelratio,
                     double linewidth);

/*! How far the denominator's field is shifted right of the numerator's (negative: left) so that
 *  the narrower text is centred over the wider: half the difference of their widths, and none
 *  for texts of equal length, whatever their drawn widths; hosts rely on that rule. */
double centeroffset(double numeratorwidth, double denominatorwidth, qsizetype numeratorlength,
                    qsizetype denominatorlength);

/*! Where the numerator's and the denominator's fields go in a fraction of \a width x \a height,
 *  in any unit: beside the whole part's box \a whole (an eighth and five eighths down) when it is
 *  shown, otherwise centred, above and below the whole part's middle; \a offset from
 *  centeroffset(). The control places its fields by it in twips, painters in pixels. */
struct fractionplaces
{
    QPointF numerator;
    QPointF denominator;
};
fractionplaces placefraction(double width, double height, double gapx, const QRectF &whole, bool wholeshown,
                             const QSizeF &numerator, const QSizeF &denominator, double offset);

/*! Where a fraction's parts go in a box of their own, in pixels, by the control's rules: the
 *  whole part a quarter down, the numerator an eighth down and the denominator five eighths down
 *  a box two lines high, the narrower of numerator and denominator centred over the wider, two
 *  pixels between the parts; the whole part left out when empty. */
struct fractionparts
{
    QRect whole;
    QRect numerator;
    QRect denominator;
    int denominatorlift = 0;
    QLineF separator;
    QSize size;
    double ascent = 0;
    double penwidth = 1;
};
fractionparts arrange(const QFont &font, const QString &whole, const QString &numerator, const QString &denominator,
                      bool slash, qreal devicepixelratio);

} // namespace kelfractionint::fractionpaint
