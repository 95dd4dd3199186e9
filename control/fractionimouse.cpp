// Mouse on the control: the click events, the separator band, and resizing through the grip.
#include "fractioni.h"

#include "fractioniguard.h"
#include "modfracglobal.h"
#include "twips.h"

#include <QLineEdit>
#include <QMouseEvent>

#include <algorithm>

namespace kelfractionint {

namespace {

// The host's button and shift codes of a mouse event.
qint16 buttoncode(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::RightButton:
        return 2;
    case Qt::MiddleButton:
        return 4;
    default:
        return 0;
    }
}

qint16 shiftcode(Qt::KeyboardModifiers modifiers)
{
    qint16 code = 0;
    if (modifiers & Qt::ShiftModifier)
        code |= 1;
    if (modifiers & Qt::ControlModifier)
        code |= 2;
    if (modifiers & Qt::AltModifier)
        code |= 4;
    return code;
}

// The smallest size a grip drag leaves the control, in pixels: small enough to zoom far out,
// large enough to keep the grip within reach.
constexpr int mindragsize = 8;
constexpr int maxdragsize = 16384;

} // namespace

void fractioni::mousePressEvent(QMouseEvent *event)
{
    // The control handles its own presses; the form below it does not see them.
    event->accept();
    eventguarded([&] { pressed(event); });
}

void fractioni::pressed(QMouseEvent *event)
{
    const float x = float(event->position().x() * twipsperpixelx(this));
    const float y = float(event->position().y() * twipsperpixely(this));
    const QRectF numer = twiprect(numerator);
    const double denomtop = twiprect(denominator).top();

    // The band spans the numerator's width only, also under a wider denominator, and any button
    // counts; hosts rely on both.
    const bool inband = x >= numer.left() && x <= float(numer.left() + numer.width())
                     && y >= float(numer.top() + numer.height()) && y <= denomtop;
    if (inband) {
        deliver([&] { Q_EMIT separatorclick(); });
        return;
    }
    deliver([&] { Q_EMIT MouseDown(buttoncode(event->button()), shiftcode(event->modifiers()), x, y); });
}

void fractioni::mouseReleaseEvent(QMouseEvent *event)
{
    event->accept();
    if (!rect().contains(event->position().toPoint()))
        return;
    // A click on the surface brings back a control whose parts are all hidden.
    if (wholepart->isHidden() && numerator->isHidden() && denominator->isHidden()) {
        wholepart->setVisible(true);
        wholepart->setFocus(Qt::MouseFocusReason);
        update();
    }
}

bool fractioni::childmouseevent(QObject *watched, QEvent *event)
{
    auto *mouse = static_cast<QMouseEvent *>(event);
    if (watched == wholepart) {
        // The second click of a double click is no click of its own.
        if (event->type() == QEvent::MouseButtonPress)
            m_wholepartdoubleclick = false;
        else if (event->type() == QEvent::MouseButtonDblClick)
            m_wholepartdoubleclick = true;
        else if (event->type() == QEvent::MouseButtonRelease && !m_wholepartdoubleclick
                 && wholepart->rect().contains(mouse->position().toPoint()))
            deliver([&] { Q_EMIT wholepartclick(); });
        return false;
    }
    if (watched != lblgrip)
        return false;

    // The grip runs a sizing drag of its own: the control follows the pointer from its
    // bottom-right corner, and only the end of the drag lays it out again, so the drag acts as a
    // zoom of the font by the new height.
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        // A second button during a drag changes nothing.
        if (!m_griptracking) {
            m_griptracking = true;
            m_gripstart = mouse->globalPosition().toPoint();
            m_gripstartsize = size();
        }
        return true;
    case QEvent::MouseMove:
        if (m_griptracking) {
            const QPoint moved = mouse->globalPosition().toPoint() - m_gripstart;
            const int w = std::clamp(m_gripstartsize.width() + moved.x(), mindragsize, maxdragsize);
            const int h = std::clamp(m_gripstartsize.height() + moved.y(), mindragsize, maxdragsize);
            const bool guarded = inresize;
            inresize = true;
            resize(w, h);
            inresize = guarded;
            update();
        }
        return true;
    case QEvent::MouseButtonRelease:
        if (m_griptracking && mouse->buttons() == Qt::NoButton) {
            m_griptracking = false;
            try {
                resizeprocedure();
            } catch (const modfracglobal::automationerror &) {
                // An overflow of the layout arithmetic leaves the control at the dragged size.
            }
            update();
        }
        return true;
    default:
        return false;
    }
}

} // namespace kelfractionint
