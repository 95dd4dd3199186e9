#include "fractionisheet.h"

#include "ambient.h"
#include "fractioni.h"
#include "olecolor.h"
#include "twips.h"

#include <QtDesigner/private/qdesigner_utils_p.h>
#include <QtDesigner/private/ui4_p.h>

using kelfractionint::fractioni;
using qdesigner_internal::PropertySheetStringValue;

namespace {

bool isvalue(const QString &name)
{
    return name == QLatin1String("Wholepartvalue") || name == QLatin1String("Numeratorvalue")
        || name == QLatin1String("Denominatorvalue");
}

bool isbackcolour(const QString &name)
{
    return name == QLatin1String("Backcolor") || name == QLatin1String("Wholepartbackcolor")
        || name == QLatin1String("Numeratorbackcolor") || name == QLatin1String("Denominatorbackcolor");
}

// A fraction's texts are data: never offered for translation.
QVariant untranslatable(const QVariant &value)
{
    PropertySheetStringValue text = value.metaType() == QMetaType::fromType<PropertySheetStringValue>()
        ? qvariant_cast<PropertySheetStringValue>(value)
        : PropertySheetStringValue(value.toString());
    text.setTranslatable(false);
    return QVariant::fromValue(text);
}

} // namespace

fractionisheet::fractionisheet(fractioni *control, QObject *parent)
    : QDesignerPropertySheet(control, parent)
    , m_control(control)
{
}

bool fractionisheet::isVisible(int index) const
{
    // QWidget's font has no effect on the control, whose parts use `Font`.
    return propertyName(index) != QLatin1String("font") && QDesignerPropertySheet::isVisible(index);
}

bool fractionisheet::iscolour(const QString &name)
{
    return isbackcolour(name) || name == QLatin1String("Negforecolor") || name == QLatin1String("Posforecolor");
}

const QStringList &fractionisheet::persisted()
{
    static const QStringList names{
        QStringLiteral("FracType"),          QStringLiteral("Wholepartvalue"),
        QStringLiteral("Numeratorvalue"),    QStringLiteral("Denominatorvalue"),
        QStringLiteral("Backcolor"),         QStringLiteral("Wholepartbackcolor"),
        QStringLiteral("Numeratorbackcolor"), QStringLiteral("Denominatorbackcolor"),
        QStringLiteral("Fractionslash"),     QStringLiteral("Negforecolor"),
        QStringLiteral("Posforecolor"),      QStringLiteral("Userresizeable"),
        QStringLiteral("Autoreplace"),       QStringLiteral("Forcesign"),
        QStringLiteral("Borderstyle"),       QStringLiteral("Fracpartvisible"),
        QStringLiteral("WholepartLocked"),   QStringLiteral("NumeratorLocked"),
        QStringLiteral("DenominatorLocked"),
    };
    return names;
}

QVariant fractionisheet::formdefault(const fractioni *control, const QString &name)
{
    // uic and QUiLoader create a new control and assign what the form holds: a new control's
    // background is its container's colour, so that is what a form leaves out.
    if (isbackcolour(name))
        return kelfractionint::ambient::backcolor(control);
    static const QHash<QString, QVariant> fixed{
        {QStringLiteral("FracType"), 0},
        {QStringLiteral("Wholepartvalue"), QStringLiteral("4")},
        {QStringLiteral("Numeratorvalue"), QStringLiteral("1")},
        {QStringLiteral("Denominatorvalue"), QStringLiteral("7")},
        {QStringLiteral("Fractionslash"), true},
        {QStringLiteral("Negforecolor"), 255u},
        {QStringLiteral("Posforecolor"), 0u},
        {QStringLiteral("Userresizeable"), false},
        {QStringLiteral("Autoreplace"), false},
        {QStringLiteral("Forcesign"), false},
        {QStringLiteral("Borderstyle"), 0},
        {QStringLiteral("Fracpartvisible"), true},
        {QStringLiteral("WholepartLocked"), false},
        {QStringLiteral("NumeratorLocked"), false},
        {QStringLiteral("DenominatorLocked"), false},
    };
    return fixed.value(name);
}

QVariant fractionisheet::property(int index) const
{
    const QVariant value = QDesignerPropertySheet::property(index);
    const QString name = propertyName(index);
    if (isvalue(name))
        return untranslatable(value);
    // A system colour shows as what it stands for in the control's palette; only a colour picked
    // in the editor replaces it, and the form keeps the system colour's number.
    if (iscolour(name) && m_control
        && (value.toUInt() <= 0xFFFFFFu || kelfractionint::olecolor::issystem(value.toUInt())))
        return m_control->systemcolor(value.toUInt());
    return value;
}

void fractionisheet::setProperty(int index, const QVariant &value)
{
    const QString name = propertyName(index);
    if (isvalue(name)) {
        QDesignerPropertySheet::setProperty(index, untranslatable(value));
        return;
    }
    if (iscolour(name) && value.metaType().id() == QMetaType::QColor) {
        QDesignerPropertySheet::setProperty(index, kelfractionint::tooleColor(value.value<QColor>()));
        return;
    }
    QDesignerPropertySheet::setProperty(index, value);
}

bool fractionisheet::hasReset(int index) const
{
    return persisted().contains(propertyName(index)) || QDesignerPropertySheet::hasReset(index);
}

bool fractionisheet::reset(int index)
{
    const QString name = propertyName(index);
    if (!m_control || !persisted().contains(name))
        return QDesignerPropertySheet::reset(index);
    setProperty(index, formdefault(m_control, name));
    setChanged(index, false);
    return true;
}

fractioniextrainfo::fractioniextrainfo(QWidget *widget, QDesignerFormEditorInterface *core, QObject *parent)
    : QObject(parent)
    , m_widget(widget)
    , m_core(core)
{
}

bool fractioniextrainfo::saveWidgetExtraInfo(DomWidget *widget)
{
    for (DomProperty *property : widget->elementProperty()) {
        const DomColor *colour = property->elementColor();
        if (property->kind() != DomProperty::Color || !colour || !fractionisheet::iscolour(property->attributeName()))
            continue;
        // The control's own value: a system colour is saved as such, not as today's RGB.
        const QVariant value = m_widget ? m_widget->property(property->attributeName().toLatin1().constData()) : QVariant();
        property->setElementUInt(value.isValid() ? value.toUInt()
                                                 : kelfractionint::tooleColor(QColor(colour->elementRed(),
                                                                                     colour->elementGreen(),
                                                                                     colour->elementBlue())));
    }
    return true;
}

fractioniextrainfofactory::fractioniextrainfofactory(QDesignerFormEditorInterface *core, QExtensionManager *parent)
    : QExtensionFactory(parent)
    , m_core(core)
{
}

QObject *fractioniextrainfofactory::createExtension(QObject *object, const QString &iid, QObject *parent) const
{
    auto *control = qobject_cast<fractioni *>(object);
    if (!control || iid != Q_TYPEID(QDesignerExtraInfoExtension))
        return nullptr;
    return new fractioniextrainfo(control, m_core, parent);
}
