// Layout in twips, painting, and the appearance properties.
#include "fractioni.h"

#include "fractioniguard.h"
#include "ambient.h"
#include "fractionipaint.h"
#include "modfracglobal.h"
#include "olecolor.h"
#include "twips.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPaintEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QScopeGuard>
#include <QShowEvent>
#include <QStyle>
#include <QStyleOption>

#include <array>
#include <cmath>
#include <limits>

namespace kelfractionint {

namespace {

// Fonts beyond these sizes would make the control larger than any screen; the resize procedure
// and hosts may ask for anything, so sizes are kept within them.
constexpr double minfontsize = 1.0;
constexpr double maxfontsize = 400.0;
constexpr int maxpixels = 16384;

// A font's size in points; a font given in pixels has its size matched by the font system.
double pointsize(const QFont &font)
{
    return font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
}

qint16 checked16(qint64 value)
{
    if (value < std::numeric_limits<qint16>::min() || value > std::numeric_limits<qint16>::max())
        throw modfracglobal::automationerror(modfracglobal::errnum::overflow);
    return qint16(value);
}

int topixels(double twips, double perpixel)
{
    return std::clamp(twipstopixels(twips, perpixel), -maxpixels, maxpixels);
}

// Clears the re-entry guard on every way out of the resize procedure.
class resizeguard
{
public:
    explicit resizeguard(bool &flag) : m_flag(flag) { m_flag = true; }
    ~resizeguard() { m_flag = false; }
    resizeguard(const resizeguard &) = delete;
    resizeguard &operator=(const resizeguard &) = delete;

private:
    bool &m_flag;
};

} // namespace

qreal fractioni::pixelratio() const
{
    // Until it is made, the control is on no window yet, and finding its screen costs more than
    // the rest of a layout: the ratio of the start is used, looked up once.
    return m_startratio > 0 ? m_startratio : devicePixelRatioF();
}

double fractioni::twipwidth() const
{
    return width() * m_tpx;
}

double fractioni::twipheight() const
{
    return height() * m_tpy;
}

QRectF fractioni::twiprect(const QWidget *child) const
{
    const double tx = m_tpx;
    const double ty = m_tpy;
    QRect r = child->geometry();
    const QSize pending = m_pendingsizes[partindex(child)];
    if (pending.isValid())
        r.setSize(pending);
    return {r.x() * tx, r.y() * ty, r.width() * tx, r.height() * ty};
}

std::size_t fractioni::partindex(const QWidget *child) const
{
    return child == wholepart ? 0 : child == numerator ? 1 : child == denominator ? 2 : 3;
}

void fractioni::applysizes()
{
    for (QWidget *child : {static_cast<QWidget *>(wholepart), static_cast<QWidget *>(numerator),
                           static_cast<QWidget *>(denominator), static_cast<QWidget *>(lblgrip)}) {
        const QSize size = std::exchange(m_pendingsizes[partindex(child)], QSize());
        if (size.isValid() && (size != child->size() || !child->testAttribute(Qt::WA_Resized)))
            child->resize(size);
    }
}

void fractioni::settwipsize(double width, double height)
{
    const int w = std::clamp(topixels(width, m_tpx), 0, maxpixels);
    const int h = std::clamp(topixels(height, m_tpy), 0, maxpixels);
    if (w == this->width() && h == this->height())
        return;
    resize(w, h);
    // A hidden widget gets its resize event only when shown; the host's size operation runs the
    // resize procedure at once all the same (the guard absorbs the nested run of a visible one).
    if (!isVisible())
        resizeprocedure();
}

void fractioni::sizecontrol(QWidget *child, double width, double height)
{
    const QSize size(std::clamp(topixels(width, m_tpx), 0, maxpixels), std::clamp(topixels(height, m_tpy), 0, maxpixels));
    // The part is given its size where it is placed: moving and resizing a widget at once costs
    // half of doing each, and a keystroke does both.
    m_pendingsizes[partindex(child)] = size;
}

void fractioni::placecontrol(QWidget *child, double left, double top)
{
    const QPoint place(topixels(left, m_tpx), topixels(top, m_tpy));
    const QSize size = std::exchange(m_pendingsizes[partindex(child)], QSize());
    // Placing or sizing a part where it already is changes nothing, and costs a lot per keystroke.
    const bool moves = place != child->pos() || !child->testAttribute(Qt::WA_Moved);
    const bool resizes = size.isValid() && (size != child->size() || !child->testAttribute(Qt::WA_Resized));
    if (moves && resizes)
        child->setGeometry(QRect(place, size));
    else if (moves)
        child->move(place);
    else if (resizes)
        child->resize(size);
}

QFont fractioni::builtfont(const QFont &source, double size) const
{
    // Controls on a form mostly ask for the same few fonts: each is built once and shared.
    struct built
    {
        QFont source;
        double size = -1;
        QFont font;
    };
    static std::array<built, 4> recent;
    static std::size_t next = 0;
    QString family = source.family();
    const bool named = !family.trimmed().isEmpty();
    if (named) {
        for (const built &known : recent) {
            if (known.size == size && known.source == source)
                return known.font;
        }
    }
    // A font without a family cannot be saved (Qt crashes serializing it): the control never
    // holds one and takes the container's family instead.
    if (!named)
        family = ambient::font(this).family();
    if (family.trimmed().isEmpty())
        family = QGuiApplication::font().family();
    QFont font(family);
    font.setBold(source.bold());
    font.setItalic(source.italic());
    font.setPointSizeF(std::isfinite(size) ? std::clamp(size, minfontsize, maxfontsize) : minfontsize);
    for (const built &known : recent) {
        if (known.font == font)
            font = known.font;
    }
    if (named) {
        recent[next] = {source, size, font};
        next = (next + 1) % recent.size();
    }
    return font;
}

QFont fractioni::drawnfont(const QFont &font)
{
    // The parts show numbers, which no script's rules change: the font skips text shaping where
    // the text does not need it, which halves what a keystroke costs to lay out and draw, with
    // the same glyphs in the same places. Equal fonts are shared, as built fonts are.
    struct known
    {
        QFont source, drawn;
        bool set = false;
    };
    static std::array<known, 4> recent;
    static std::size_t next = 0;
    for (const known &k : recent) {
        if (k.set && (k.source.isCopyOf(font) || k.source == font))
            return k.drawn;
    }
    QFont drawn = font;
    drawn.setStyleStrategy(QFont::StyleStrategy(font.styleStrategy() | QFont::PreferNoShaping));
    recent[next] = {font, drawn, true};
    next = (next + 1) % recent.size();
    return drawn;
}

void fractioni::setcontrolfont(QWidget *control, const QFont &source, double size)
{
    const QFont font = control == this ? builtfont(source, size) : drawnfont(builtfont(source, size));
    // Fonts are only set when they change: setting a widget's font re-polishes and re-lays it out.
    if (control == this) {
        m_fontbuilt = true;
        if (font == m_font)
            return;
        m_font = font;
        fontchanged();
    } else if (control->font() != font) {
        control->setFont(font);
    }
}

QFont fractioni::startzoomfont()
{
    // A new control is laid out in its font of the start, without a border, and then zoomed to its
    // size of the start (600 x 600 twips; see initproperties): the height of two lines of the
    // font gives the zoom. Its parts are made in the zoomed font, so that the zoom finds them in
    // it already; the layout before the zoom measures in the font of the start.
    // (The control's own font when equal, so that its measures are found as a copy of it.)
    const QFont inherited = m_font.resolve(QWidget::font());
    m_startfont = inherited == m_font ? m_font : inherited;
    const int line = std::clamp(topixels(fractionpaint::fontlineheight(*m_startfont) * m_tpy, m_tpy), 0, maxpixels);
    const int laid = std::clamp(topixels(2 * (line * m_tpy), m_tpy), 0, maxpixels);
    const int start = std::clamp(topixels(600, m_tpy), 0, maxpixels);
    if (laid <= 0 || start <= 0)
        return m_font;
    return builtfont(m_font, pointsize(m_font) * ((start * m_tpy) / (laid * m_tpy)));
}

const QFont &fractioni::measuredfont(const QWidget *field) const
{
    return field != lblgrip && m_startfont.has_value() ? *m_startfont : field->font();
}

void fractioni::fontchanged()
{
    m_startfont.reset();
    // The control's Font property shadows QWidget::setFont; the widget's own font follows it,
    // and the fields inherit it, so that the checks below mostly find nothing to do. A new
    // control's widget takes the zoomed font of the start at once (see startzoomfont).
    if (m_zoomingstart)
        return;
    const QFont drawn = drawnfont(m_font);
    if (QWidget::font() != drawn)
        QWidget::setFont(drawn);
    const QFont fieldfont = drawnfont(builtfont(m_font, pointsize(m_font)));
    for (QWidget *field : {static_cast<QWidget *>(wholepart), static_cast<QWidget *>(numerator),
                           static_cast<QWidget *>(denominator)}) {
        if (field && field->font() != fieldfont)
            field->setFont(fieldfont);
    }
}

double fractioni::textwidth(const QWidget *field, const QString &text) const
{
    const QFont &font = measuredfont(field);
    return fractionpaint::textadvance(font, fractionpaint::visibletext(font, text)) * m_tpx;
}

double fractioni::textheight(const QWidget *field, const QString &) const
{
    return fractionpaint::fontlineheight(measuredfont(field)) * m_tpy;
}

fractioni::layoutstate fractioni::currentlayoutstate() const
{
    int shown = 0;
    int bit = 1;
    for (const QWidget *child : {static_cast<const QWidget *>(wholepart), static_cast<const QWidget *>(numerator),
                                 static_cast<const QWidget *>(denominator), static_cast<const QWidget *>(lblgrip)}) {
        if (!child->isHidden())
            shown |= bit;
        bit <<= 1;
    }
    return {m_wholepart, m_numerator, m_denominator, numerator->text(), denominator->text(), m_font,
            qint64(m_borderstyle), size(), lastheight, shown, startingup, hasFocus() || wholepart->hasFocus(),
            lblgrip->font().pointSizeF()};
}

double fractioni::centeroffset(const QString &numer, const QString &denom) const
{
    return fractionpaint::centeroffset(textwidth(wholepart, numer), textwidth(wholepart, denom), numer.size(),
                                       denom.size());
}

double fractioni::arrangefields()
{
    const double W = twipwidth();
    const double H = twipheight();
    const double B = double(m_borderstyle);
    const double d = centeroffset(numerator->text(), denominator->text());

    placecontrol(wholepart, (B + 1) * gapx, H / 4);
    const fractionpaint::fractionplaces places =
        fractionpaint::placefraction(W, H, gapx, twiprect(wholepart), !wholepart->isHidden(),
                                     twiprect(numerator).size(), twiprect(denominator).size(), d);
    placecontrol(numerator, places.numerator.x(), places.numerator.y());
    placecontrol(denominator, places.denominator.x(), places.denominator.y());
    const QRectF grip = twiprect(lblgrip);
    placecontrol(lblgrip, W - grip.width() - B * gapx, H - grip.height() - B * gapy);
    liftdenominator();
    m_arranged = currentarrangement();
    return d;
}

fractioni::arrangement fractioni::currentarrangement() const
{
    return {size(),
            qint64(m_borderstyle),
            {gapx, gapy, m_tpx, m_tpy},
            {wholepart->geometry(), numerator->geometry(), denominator->geometry(), lblgrip->geometry()},
            wholepart->isHidden(),
            numerator->text(),
            denominator->text(),
            wholepart->font(),
            denominator->font(),
            pixelratio()};
}

void fractioni::liftdenominator()
{
    // The denominator's field may reach below the control (its place follows the layout rules
    // that hosts read); its text is drawn higher inside the field so that no digit is cut off by
    // the control's edge or its border. The last row stays clear of ink either way: the border's,
    // or the edge, where a digit touching it would look cut off.
    const int limit = height() - 1;
    const QFont &font = denominator->font();
    const QString text = denominator->text();
    const qreal dpr = pixelratio();
    // Each keystroke lays out again; the lift changes only with what it is measured from.
    liftinputs &last = m_lastlift;
    if (!last.known || last.height != denominator->height() || last.top != denominator->y() || last.limit != limit
        || last.dpr != dpr || last.text != text || !(last.font.isCopyOf(font) || last.font == font)) {
        last = {font, text, denominator->height(), denominator->y(), limit, dpr,
                fractionpaint::denominatorlift(font, denominator->height(), denominator->y(), text, limit, dpr), true};
    }
    const int lift = last.lift;
    if (denominator->textMargins().bottom() != lift)
        denominator->setTextMargins(-2, -lift, -3, lift);
}

void fractioni::resizeprocedure()
{
    if (inresize || m_initializing)
        return;
    // Keystrokes and setters run the procedure several times for one change; a run on the
    // very state that the last run left behind would change nothing, so it is skipped.
    const layoutstate state = currentlayoutstate();
    if (m_lastlayout && *m_lastlayout == state)
        return;
    resizeguard guard(inresize);
    // Sizes the layout computed but did not get to place are given all the same.
    const auto sized = qScopeGuard([this] { applysizes(); });
    const double W = twipwidth();
    const double H = twipheight();
    if (W <= 0 || H <= 0)
        return;

    // The font follows the control's height: the host's resizing acts as a zoom.
    const double ratio = lastheight > 0 ? H / lastheight : 1.0;
    // At the same height the font the control built last is built again: nothing changes.
    if (ratio != 1.0 || !m_fontbuilt)
        setcontrolfont(this, m_font, pointsize(m_font) * ratio);

    sizecontrol(wholepart, textwidth(wholepart, m_wholepart), textheight(wholepart, m_wholepart));
    const double numerwidth = textwidth(numerator, m_numerator);
    const double denomwidth = textwidth(numerator, m_denominator);
    const double fracwidth = denomwidth > numerwidth ? denomwidth : numerwidth;
    sizecontrol(numerator, fracwidth, textheight(numerator, m_numerator));
    sizecontrol(denominator, fracwidth, textheight(numerator, m_denominator));
    const QString gripglyph = QStringLiteral("o");
    sizecontrol(lblgrip, 0.5 * textwidth(lblgrip, gripglyph), 0.5 * textheight(lblgrip, gripglyph));

    const qint64 B = qint64(m_borderstyle);
    const double gaps = checked16(2 * std::abs(B) + 3);
    const double d = centeroffset(numerator->text(), denominator->text());
    auto counts = [this](const QWidget *child) { return startingup || !child->isHidden() ? 1.0 : 0.0; };
    const double newwidth = gaps * gapx + counts(numerator) * twiprect(numerator).width()
                          + counts(wholepart) * twiprect(wholepart).width()
                          + counts(lblgrip) * twiprect(lblgrip).width() + std::abs(d);
    const double newheight = checked16(2 * B) * gapy + 2 * twiprect(wholepart).height();
    settwipsize(newwidth, newheight);

    if (m_wholepart.isEmpty() && m_numerator.isEmpty()) {
        if (wholepart->isHidden())
            wholepart->setVisible(true);
        settwipsize(600, twipheight());
        if (!startingup)
            wholepart->setFocus(Qt::OtherFocusReason);
    }
    lastwidth = twipwidth();
    lastheight = twipheight();
    m_separatoroffset = arrangefields();
    if (size() != m_hintedsize) {
        m_hintedsize = size();
        updateGeometry();
    }
    m_lastlayout = currentlayoutstate();
}

void fractioni::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    try {
        resizeprocedure();
    } catch (const modfracglobal::automationerror &) {
        // An overflow of the layout arithmetic leaves the fields where they were.
    }
}

void fractioni::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    startingup = false;
}

void fractioni::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor background = systemcolor(m_backcolor);
    painter.fillRect(rect(), background);
    if (testAttribute(Qt::WA_StyledBackground)) {
        // A style sheet that gives the control a background or a border draws it.
        QStyleOption option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
    }
    // Placed again only when something the placement depends on changed since it was last done.
    if (m_arranged != currentarrangement())
        m_separatoroffset = arrangefields();
    const std::array<std::pair<const QLineEdit *, quint32>, 3> fields{{
        {wholepart, m_wholepartbackcolor},
        {numerator, m_numeratorbackcolor},
        {denominator, m_denominatorbackcolor},
    }};
    for (const auto &[field, color] : fields) {
        // A field in the surface's own colour is already painted.
        const QColor fill = systemcolor(color);
        if (!field->isHidden() && (fill != background || fill.alpha() != 255))
            painter.fillRect(field->geometry(), fill);
    }
    paintseparator(painter);
}

void fractioni::paintseparator(QPainter &painter) const
{
    QColor separator = numerator->isHidden() ? systemcolor(m_backcolor)
                                             : wholepart->palette().color(QPalette::Text);
    if (m_numerator.isEmpty() && m_denominator.isEmpty() && m_wholepart.isEmpty())
        separator = wholepart->palette().color(QPalette::Text);

    // The fields are as tall as a line of their font, so the separator is drawn between the
    // glyphs rather than at the boxes' edges: from the numerator's baseline to the top of the
    // denominator's digits.
    const QRect numer = numerator->geometry();
    const QRect denom = denominator->geometry();
    const QRect &wider = m_separatoroffset < 0 ? denom : numer;
    // Over a field without width (an empty control) the separator has no length: nothing shows.
    if (wider.width() > 0) {
        const qreal dpr = pixelratio();
        // Between the numerator's ink and the denominator's ink rather than between the fields,
        // which overlap the glyphs: a line there would be flat or run through the digits.
        const double numerbottom =
            numer.top() + fractionpaint::inkbottom(numerator->font(), numer.height(), numerator->text(), 0, dpr);
        const double denomtop = denom.top()
                              + fractionpaint::inktop(denominator->font(), denom.height(), denominator->text(),
                                                      denominator->textMargins().bottom(), dpr);
        const double linewidth = fractionpaint::fontlinewidth(numerator->font());
        const QLineF line = fractionpaint::separatorline(wider, numerbottom, denomtop, m_fractionslash, dpr, linewidth);
        // Flat ends: a square cap would reach past the line's end toward the digits.
        fractionpaint::drawseparator(&painter, line, separator, fractionpaint::separatorwidth(linewidth),
                                     m_fractionslash);
    }
    if (m_borderstyle != borderstylenone) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(QColor(Qt::black), 0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void fractioni::fracsize(float fracwidth, float fracheight)
{
    guarded([&] {
        if (fracwidth > 0 && fracheight > 0)
            settwipsize(fracwidth, fracheight);
    });
}

void fractioni::Refreshfraction()
{
    guarded([&] {
        wholepart->update();
        numerator->update();
        denominator->update();
        resizeprocedure();
        update();
    });
}

void fractioni::setFractionslash(bool value)
{
    guarded([&] {
        m_fractionslash = value;
        closingsteps(QStringLiteral("Fractionslash"));
    });
}

void fractioni::setBackcolor(quint32 value)
{
    guarded([&] {
        m_backcolor = value;
        closingsteps(QStringLiteral("Backcolor"));
    });
}

void fractioni::setUserresizeable(bool value)
{
    guarded([&] {
        m_userresizeable = value;
        lblgrip->setVisible(value);
        deliver([&] { Q_EMIT propertychanged(QStringLiteral("Userresizeable")); });
        update();
    });
}

void fractioni::setBorderstyle(fracBorderstyle value)
{
    guarded([&] {
        // The layout computes with twice the border in 16 bits: a border it cannot hold is
        // refused before it is stored, so that no later layout fails.
        const qint64 border = qint64(value);
        checked16(2 * std::abs(border) + 3);
        checked16(2 * border);
        m_borderstyle = value;
        closingsteps(QStringLiteral("Borderstyle"));
    });
}

void fractioni::setNegforecolor(quint32 value)
{
    guarded([&] {
        m_negforecolor = value;
        setWholepartvalue(m_wholepart);
        closingsteps(QStringLiteral("Negforecolor"));
    });
}

void fractioni::setPosforecolor(quint32 value)
{
    guarded([&] {
        m_posforecolor = value;
        setWholepartvalue(m_wholepart);
        closingsteps(QStringLiteral("Posforecolor"));
    });
}

namespace {
// The back colour is painted by the control beneath the transparent field.
void setbackcolor(QLineEdit *field, quint32)
{
    field->update();
}
} // namespace

void fractioni::setWholepartbackcolor(quint32 value)
{
    guarded([&] {
        m_wholepartbackcolor = value;
        setbackcolor(wholepart, value);
        closingsteps(QStringLiteral("Wholepartbackcolor"));
    });
}

void fractioni::setNumeratorbackcolor(quint32 value)
{
    guarded([&] {
        m_numeratorbackcolor = value;
        setbackcolor(numerator, value);
        closingsteps(QStringLiteral("Numeratorbackcolor"));
    });
}

void fractioni::setDenominatorbackcolor(quint32 value)
{
    guarded([&] {
        m_denominatorbackcolor = value;
        setbackcolor(denominator, value);
        closingsteps(QStringLiteral("Denominatorbackcolor"));
    });
}

void fractioni::setFont(const QFont &value)
{
    guarded([&] {
        const double size = pointsize(value);
        setcontrolfont(this, value, size);
        deliver([&] { Q_EMIT propertychanged(QStringLiteral("Font")); });
        // The fields are sized for the new font at once, so that no text is clipped until the next
        // re-layout.
        resizeprocedure();
        update();
    });
}

void fractioni::setFracpartvisible(bool value)
{
    guarded([&] {
        const valuebatch batch(this);
        if (value) {
            numerator->setVisible(true);
            denominator->setVisible(true);
        } else {
            setNumeratorvalue(QString());
            setDenominatorvalue(QString());
            numerator->setVisible(false);
            denominator->setVisible(false);
        }
        m_fracpartvisible = value;
        closingsteps(QStringLiteral("Fracpartvisible"));
    });
}

} // namespace kelfractionint
