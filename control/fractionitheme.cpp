// The control in its application: palette, font and style sheets of the container.
#include "fractioni.h"

#include "ambient.h"
#include "olecolor.h"

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QStyle>

namespace kelfractionint {

namespace {

bool sametypeface(const QFont &a, const QFont &b)
{
    return a.family() == b.family() && a.pointSizeF() == b.pointSizeF() && a.bold() == b.bold()
        && a.italic() == b.italic();
}

} // namespace

QColor fractioni::systemcolor(quint32 color) const
{
    // The control's own Base and Text are its fields' (see showforecolor): the system colours
    // that stand for them are those of the container.
    if (color == olecolor::window || color == olecolor::graytext)
        return olecolor::toqcolor(color, parentWidget() && !isWindow() ? parentWidget()->palette()
                                                                       : QApplication::palette(this));
    return olecolor::toqcolor(color, palette());
}

void fractioni::showforecolor()
{
    // The control paints each field's back colour beneath it, so that the separator between the
    // glyphs is not covered by the field's box; the text is in the sign's colour. The fields
    // inherit both from the control's palette, which they share rather than each holding one.
    // A system colour is looked up each time it is shown.
    const QColor color = systemcolor(m_shownforecolor);
    // The palette as this left it, in the same colour, needs nothing.
    if (palette().cacheKey() != m_surfacekey || color.rgba() != m_surfaceink) {
        // Brushes are shared: most controls show the same few colours.
        static const QBrush transparent(Qt::transparent);
        static QBrush lastink;
        QPalette surface = palette();
        bool current = true;
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            current = current && surface.color(group, QPalette::Base).rgba() == 0
                && surface.color(group, QPalette::Text) == color;
        }
        if (!current) {
            if (lastink.color() != color || lastink.style() != Qt::SolidPattern)
                lastink = QBrush(color);
            surface.setBrush(QPalette::Base, transparent);
            surface.setBrush(QPalette::Text, lastink);
            setPalette(surface);
        }
        m_surfacekey = palette().cacheKey();
        m_surfaceink = color.rgba();
    }
    if (m_styledfields)
        stylefields();
}

void fractioni::stylefields()
{
    // Under a style sheet the fields keep the control's look: any rule for line edits (a border,
    // padding, a background, a colour) would change their geometry or hide the sign's colour.
    const QColor color = systemcolor(m_shownforecolor);
    const QString sheet = QStringLiteral("QLineEdit { border: none; padding: 0px; margin: 0px; "
                                         "background: transparent; color: %1; }")
                              .arg(color.name(QColor::HexArgb));
    for (QLineEdit *field : {wholepart, numerator, denominator}) {
        if (field->styleSheet() != sheet)
            field->setStyleSheet(sheet);
    }
    // The grip keeps its own font, whose "o" gives its size.
    lblgrip->setStyleSheet(QStringLiteral("* { font-size: 18pt; }"));
}

void fractioni::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
        showforecolor();
        update();
        break;
    case QEvent::FontChange:
        // QWidget::setFont through a QWidget pointer, or a style sheet's font, sets Font.
        if (!m_adoptingfont && !sametypeface(QWidget::font(), m_font)) {
            m_adoptingfont = true;
            m_fontisambient = false;
            absorbfont(QWidget::font());
            m_adoptingfont = false;
        }
        break;
    case QEvent::ParentChange:
        // A control made without a parent takes its first container's typeface, until it is
        // shown or given a font of its own; its size stays the one its height gave it.
        if (m_fontisambient && startingup && parentWidget()) {
            m_fontisambient = false;
            QFont ambientfont = ambient::font(this);
            ambientfont.setPointSizeF(m_font.pointSizeF());
            absorbfont(ambientfont);
        }
        break;
    default:
        break;
    }
}

void fractioni::watchfield(QLineEdit *field, QEvent *event)
{
    // A style sheet polishing a field gives it the sheet's font; the field keeps the control's,
    // which its place is computed for (once: a sheet's font for the field itself wins).
    static bool keeping = false;
    if (event->type() == QEvent::Polish || event->type() == QEvent::StyleChange) {
        // A style sheet reaches the fields when they are polished, from the application or a
        // container, at any time.
        if (!m_styledfields && field->style()->inherits("QStyleSheetStyle")) {
            m_styledfields = true;
            stylefields();
        }
    } else if (event->type() != QEvent::FontChange) {
        watchediting(event);
    } else if (!keeping) {
        const QScopedValueRollback<bool> once(keeping, true);
        setcontrolfont(field, m_font, m_font.pointSizeF());
    }
}

void fractioni::absorbfont(const QFont &font)
{
    try {
        setFont(font);
    } catch (const std::exception &) {
        // A font the layout cannot take leaves the control as it was.
    }
}

} // namespace kelfractionint
