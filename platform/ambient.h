#pragma once

#include "fractionplatform_export.h"

#include <QFont>

class QWidget;

namespace kelfractionint {

/*!
 * The container's ambient properties as a control sees them: the back colour and font of the
 * widget it sits on, and whether it runs in a form designer (design mode) or in an application.
 */
namespace ambient {

/*! The container's back colour: the system colour of a form's face (olecolor::buttonface), which
 *  a control resolves in its palette, inherited from its parent. */
FRACTIONPLATFORM_EXPORT quint32 backcolor(const QWidget *control);
/*! The parent's font; the application font for a control without a parent. */
FRACTIONPLATFORM_EXPORT QFont font(const QWidget *control);
/*! True unless \a control or one of its ancestors is in design mode, or the process default is
 *  design mode. */
FRACTIONPLATFORM_EXPORT bool usermode(const QWidget *control);

/*! Puts \a widget and its descendants into design mode (a form designer's canvas) or back. */
FRACTIONPLATFORM_EXPORT void setdesignmode(QWidget *widget, bool design);
/*! True when \a widget itself was put into design mode. */
FRACTIONPLATFORM_EXPORT bool isdesignmode(const QWidget *widget);
/*! The process-wide default: a script host or designer sets every control to design mode. */
FRACTIONPLATFORM_EXPORT void setdefaultdesignmode(bool design);
FRACTIONPLATFORM_EXPORT bool defaultdesignmode();

} // namespace ambient
} // namespace kelfractionint
