#include "ambient.h"

#include "olecolor.h"

#include <QApplication>
#include <QWidget>

namespace kelfractionint::ambient {

namespace {
const char designproperty[] = "_kel_designmode";
bool processdesignmode = false;
} // namespace

quint32 backcolor(const QWidget *)
{
    // The face of any form, as a system colour: it stays the container's colour under any theme,
    // also for a control that gets its container later.
    return olecolor::buttonface;
}

QFont font(const QWidget *control)
{
    const QWidget *parent = control ? control->parentWidget() : nullptr;
    return parent ? parent->font() : QApplication::font();
}

bool usermode(const QWidget *control)
{
    if (processdesignmode)
        return false;
    for (const QWidget *w = control; w; w = w->parentWidget()) {
        if (isdesignmode(w))
            return false;
    }
    return true;
}

void setdesignmode(QWidget *widget, bool design)
{
    if (widget)
        widget->setProperty(designproperty, design ? QVariant(true) : QVariant());
}

bool isdesignmode(const QWidget *widget)
{
    return widget && widget->property(designproperty).toBool();
}

void setdefaultdesignmode(bool design)
{
    processdesignmode = design;
}

bool defaultdesignmode()
{
    return processdesignmode;
}

} // namespace kelfractionint::ambient
