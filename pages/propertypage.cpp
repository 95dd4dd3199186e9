#include "propertypage.h"

#include "automationerror.h"
#include "fractioni.h"
#include "fractionidispatch.h"
#include "twips.h"

#include <QMetaProperty>

#include <limits>

namespace kelfractionint {

namespace {

constexpr int errnomember = 438;

QMetaProperty findproperty(const QObject *control, const char *name)
{
    if (!control)
        throw modfracglobal::automationerror(modfracglobal::errnum::objectnotset);
    const QMetaObject *meta = control->metaObject();
    const int index = meta->indexOfProperty(name);
    if (index < 0)
        throw modfracglobal::automationerror(errnomember, "Object doesn't support this property or method");
    return meta->property(index);
}

} // namespace

propertypage::propertypage(QWidget *parent)
    : QWidget(parent)
{
}

propertypage::~propertypage() = default;

void propertypage::setChanged(bool changed)
{
    if (m_changed == changed)
        return;
    m_changed = changed;
    Q_EMIT Changedchanged(changed);
}

QList<QObject *> propertypage::SelectedControls() const
{
    QList<QObject *> controls;
    controls.reserve(m_selection.size());
    for (const QPointer<QObject> &control : m_selection)
        controls.append(control.data());
    return controls;
}

void propertypage::setSelectedControls(const QList<QObject *> &controls)
{
    m_selection.clear();
    for (QObject *control : controls)
        m_selection.append(control);
    SelectionChanged();
}

void propertypage::setpropertywriter(propertywriter writer)
{
    m_writer = std::move(writer);
}

QVariant propertypage::readproperty(const QObject *control, const char *name)
{
    const QMetaProperty property = findproperty(control, name);
    if (!property.isReadable())
        throw modfracglobal::automationerror(errnomember, "Object doesn't support this property or method");
    return property.read(control);
}

void propertypage::writeproperty(QObject *control, const char *name, const QVariant &value)
{
    const QMetaProperty property = findproperty(control, name);
    if (!property.isWritable())
        throw modfracglobal::automationerror(errnomember, "Object doesn't support this property or method");
    // Convert first, so that a value of the wrong kind is an error rather than a silent no-op.
    QVariant converted = value;
    if (!property.isEnumType() && converted.metaType() != property.metaType()
        && !converted.convert(property.metaType()))
        throw modfracglobal::automationerror(modfracglobal::errnum::typemismatch);
    // A control records the error of the assignment; the page raises it to its caller.
    auto *fraction = qobject_cast<fractioni *>(control);
    const QPointer<fractioni> alive(fraction);
    const automationcall scope;
    if (fraction)
        fraction->clearlasterror();
    if (!property.write(control, converted))
        throw modfracglobal::automationerror(modfracglobal::errnum::typemismatch);
    if (alive && alive->lasterrornumber() != 0)
        throw modfracglobal::automationerror(alive->lasterrornumber(), alive->lasterrordescription().toStdString());
}

QObject *propertypage::selectedcontrol(int index) const
{
    if (index < 0 || index >= m_selection.size())
        throw modfracglobal::automationerror(modfracglobal::errnum::subscript);
    QObject *control = m_selection.at(index).data();
    if (!control)
        throw modfracglobal::automationerror(modfracglobal::errnum::objectnotset);
    return control;
}

int propertypage::selectedcount16() const
{
    // The selection is walked with a 16-bit counter: a bound beyond its range overflows before
    // the first control is touched.
    if (m_selection.size() - 1 > std::numeric_limits<qint16>::max())
        throw modfracglobal::automationerror(modfracglobal::errnum::overflow);
    return static_cast<int>(m_selection.size());
}

void propertypage::write(QObject *control, const char *name, const QVariant &value) const
{
    if (m_writer)
        m_writer(control, name, value);
    else
        writeproperty(control, name, value);
}

int propertypage::twipstopixels(int twips, bool vertical) const
{
    return kelfractionint::twipstopixels(twips, vertical ? twipsperpixely(this) : twipsperpixelx(this));
}

void propertypage::placetwips(QWidget *child, int left, int top, int width, int height) const
{
    // Captions keep their full text where this platform's font is wider than the design's.
    const int pixelwidth = qMax(twipstopixels(width, false), child->sizeHint().width());
    child->setGeometry(twipstopixels(left, false), twipstopixels(top, true), pixelwidth, twipstopixels(height, true));
}

void propertypage::sizetwips(int width, int height)
{
    const QSize size(twipstopixels(width, false), twipstopixels(height, true));
    setMinimumSize(size);
    resize(size);
}

} // namespace kelfractionint
