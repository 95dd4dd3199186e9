// The control's window: its picture, its native id and the container it sits in.
#include "fractioni.h"

#include "fractioniguard.h"
#include "ambient.h"
#include "modfracglobal.h"

namespace kelfractionint {

QPixmap fractioni::Picture() const
{
    // A control without area gives an empty picture, not an error.
    if (width() <= 0 || height() <= 0)
        return {};
    // A form designer reads every property of each control it creates, before the form is
    // shown; rendering a widget that is not shown lays out and resizes its whole window, which
    // the designer takes for an edit of the form. At design time such a control has no picture.
    if (!isVisible() && !ambient::usermode(this))
        return {};
    // Rendered from the control itself, fields, separator, border and grip included, so a
    // covered or hidden control still gives its own picture.
    return const_cast<fractioni *>(this)->grab(rect());
}

qint32 fractioni::hWnd() const
{
    return qint32(quintptr(const_cast<fractioni *>(this)->winId()));
}

QObject *fractioni::Container() const
{
    // Read by style sheets, form designers and script engines walking the properties: a getter
    // never fails. Late-bound callers get the error hosts rely on from the dispatch table.
    return nullptr;
}

void fractioni::setContainer(QObject *value)
{
    guarded([&] {
        if (!value)
            throw modfracglobal::automationerror(modfracglobal::errnum::objectnotset);
        auto *widget = qobject_cast<QWidget *>(value);
        if (!widget)
            throw modfracglobal::automationerror(modfracglobal::errnum::typemismatch);
        // A control cannot sit inside itself or one of its own parts.
        if (widget == this || isAncestorOf(widget))
            throw modfracglobal::automationerror(modfracglobal::errnum::invalidcall);

        m_container = value;
        if (widget != parentWidget()) {
            // Re-parenting hides a widget; the control stays shown unless the host hid it.
            const bool hidden = testAttribute(Qt::WA_WState_ExplicitShowHide) && isHidden();
            setParent(widget);
            if (!hidden)
                show();
        }
        deliver([&] { Q_EMIT propertychanged(QStringLiteral("Container")); });
    });
}

} // namespace kelfractionint
