// The control's value as Qt's bindings see it: one property, one change signal, and the end of
// the user's editing.
#include "fractioni.h"

#include "fractioniguard.h"
#include "modfracglobal.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMetaMethod>

#include <utility>

namespace kelfractionint {

fractioni::valuebatch::valuebatch(fractioni *control) : m_control(control)
{
    // The value before is recorded only for someone who listens when the change starts.
    static const QMetaMethod signal = QMetaMethod::fromSignal(&fractioni::valueChanged);
    if (m_control->m_valuedepth++ == 0 && m_control->isSignalConnected(signal)) {
        m_control->m_valuebefore = fractiontoarray(m_control);
        m_recorded = true;
    }
}

fractioni::valuebatch::~valuebatch()
{
    // A handler may have deleted the control.
    if (!m_control || --m_control->m_valuedepth != 0 || !m_recorded)
        return;
    try {
        // Listeners' calls keep their own records, as for the control's other signals.
        // The record before is dropped with the batch: a control at rest holds none.
        if (fractiontoarray(m_control) != std::exchange(m_control->m_valuebefore, {}))
            m_control->emitsafely([this] { Q_EMIT m_control->valueChanged(m_control->value()); });
    } catch (...) {
        // The notification never turns a finished change into a failure.
    }
}

QString fractioni::value() const
{
    // Written as fractiontext() writes it; a getter leaves the error record alone.
    if (getsign() == QLatin1String("0"))
        return {};
    try {
        return QString::fromStdString(modfracglobal::strformatfraction(
            {m_wholepart.toStdString(), m_numerator.toStdString(), m_denominator.toStdString()}));
    } catch (const std::exception &) {
        return {};
    }
}

void fractioni::setValue(const QString &text)
{
    const valuebatch batch(this);
    if (text.trimmed().isEmpty())
        clearfraction();
    else
        loadfractiontext(text);
}

void fractioni::watchediting(QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter)
            Q_EMIT editingFinished();
        return;
    }
    if (event->type() != QEvent::FocusOut)
        return;
    const auto reason = static_cast<QFocusEvent *>(event)->reason();
    const QWidget *now = QApplication::focusWidget();
    if (reason == Qt::PopupFocusReason || (now && isAncestorOf(now)))
        return;
    Q_EMIT editingFinished();
    // Whoever watches the control as one editor (QDataWidgetMapper, an item view) sees the focus
    // leave it, as it would for a single line edit.
    QFocusEvent left(QEvent::FocusOut, reason);
    QCoreApplication::sendEvent(this, &left);
}

} // namespace kelfractionint
