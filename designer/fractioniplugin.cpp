#include "fractioniplugin.h"

#include "fractionisheet.h"
#include "fractionitaskmenu.h"

#include "ambient.h"
#include "fractioni.h"
#include "messageboxsink.h"
#include "messagesink.h"

#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerPropertyEditorInterface>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QExtensionManager>

#include <QIcon>
#include <QPainter>
#include <QPixmap>

using kelfractionint::fractioni;

namespace {

bool isdefault(const QVariant &value, const QVariant &fallback)
{
    if (value.metaType().flags().testFlag(QMetaType::IsEnumeration))
        return value.toInt() == fallback.toInt();
    QVariant converted = fallback;
    return converted.convert(value.metaType()) && converted == value;
}

// Values are data, edited on one line and never translated.
QString valueentries()
{
    QString entries;
    for (const char *name : {"Wholepartvalue", "Numeratorvalue", "Denominatorvalue"})
        entries += QStringLiteral("   <stringpropertyspecification name=\"%1\" notr=\"true\" type=\"singleline\"/>\n")
                       .arg(QLatin1String(name));
    return entries;
}

} // namespace

fractioniplugin::fractioniplugin(QObject *parent)
    : QObject(parent)
{
}

QString fractioniplugin::name() const
{
    return QStringLiteral("kelfractionint::fractioni");
}

QString fractioniplugin::group() const
{
    return QStringLiteral("kelfractionint");
}

QString fractioniplugin::toolTip() const
{
    return tr("Fraction: shows, edits and computes with one fraction");
}

QString fractioniplugin::whatsThis() const
{
    return tr("A fraction with a whole part, a numerator and a denominator, each in a field of its own. "
              "Right-click it for its values and appearance pages.");
}

QString fractioniplugin::includeFile() const
{
    return QStringLiteral("fractioni.h");
}

QIcon fractioniplugin::icon() const
{
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QFont font = painter.font();
    font.setPixelSize(9);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRect(0, 0, 11, 22), Qt::AlignCenter, QStringLiteral("4"));
    painter.drawText(QRect(11, 0, 11, 11), Qt::AlignCenter, QStringLiteral("1"));
    painter.drawLine(12, 11, 20, 11);
    painter.drawText(QRect(11, 11, 11, 11), Qt::AlignCenter, QStringLiteral("7"));
    return QIcon(pixmap);
}

bool fractioniplugin::isContainer() const
{
    return false;
}

QString fractioniplugin::domXml() const
{
    return QStringLiteral("<ui language=\"c++\">\n"
                          " <widget class=\"kelfractionint::fractioni\" name=\"fraction\"/>\n"
                          " <customwidgets>\n"
                          "  <customwidget>\n"
                          "   <class>kelfractionint::fractioni</class>\n"
                          "   <extends>QWidget</extends>\n"
                          "   <header>fractioni.h</header>\n"
                          "   <propertyspecifications>\n")
        + valueentries()
        + QStringLiteral("   </propertyspecifications>\n"
                          "  </customwidget>\n"
                          " </customwidgets>\n"
                          "</ui>\n");
}

QWidget *fractioniplugin::createWidget(QWidget *parent)
{
    auto *control = new fractioni(parent);
    if (!m_core)
        return control;
    // Designer reads every property of a control as soon as it is created, so each starts in
    // design mode. Design mode belongs to the controls of the forms being edited: one off the
    // forms (a preview, one made to learn the defaults) then runs as in an application.
    kelfractionint::ambient::setdesignmode(control, true);
    if (!QDesignerFormWindowInterface::findFormWindow(parent)) {
        QMetaObject::invokeMethod(
            control,
            [control] {
                if (!QDesignerFormWindowInterface::findFormWindow(control))
                    kelfractionint::ambient::setdesignmode(control, false);
            },
            Qt::QueuedConnection);
    }
    // Marked once the assignment is over: Designer marks what it writes itself as changed, and
    // a value written back equal to its default must still be left out of the form file.
    QPointer<QDesignerFormEditorInterface> core = m_core;
    connect(
        control, &fractioni::propertychanged, control,
        [core, control](const QString &name) {
            if (core)
                markproperty(core, control, name);
        },
        Qt::QueuedConnection);
    return control;
}

bool fractioniplugin::isInitialized() const
{
    return m_initialized;
}

void fractioniplugin::initialize(QDesignerFormEditorInterface *core)
{
    if (m_initialized)
        return;
    m_initialized = true;
    m_core = core;
    if (!core)
        return;
    // Design-time messages appear as message boxes, unless the host already routes them.
    if (modfracglobal::messagesink previous = modfracglobal::setmessagesink({}))
        modfracglobal::setmessagesink(std::move(previous));
    else
        kelfractionint::installmessageboxsink();
    QExtensionManager *manager = core->extensionManager();
    manager->registerExtensions(new fractionitaskmenufactory(manager), Q_TYPEID(QDesignerTaskMenuExtension));
    QDesignerPropertySheetFactory<fractioni, fractionisheet>::registerExtension(manager);
    manager->registerExtensions(new fractioniextrainfofactory(core, manager), Q_TYPEID(QDesignerExtraInfoExtension));

    // A control joins a form after it is created: only then are its stored properties known to
    // Designer, so the changed marks are set when the form takes the widget in.
    if (QDesignerFormWindowManagerInterface *forms = core->formWindowManager()) {
        for (int i = 0; i < forms->formWindowCount(); ++i)
            watchform(forms->formWindow(i));
        connect(forms, &QDesignerFormWindowManagerInterface::formWindowAdded, this, &fractioniplugin::watchform);
    }
}

void fractioniplugin::watchform(QDesignerFormWindowInterface *form)
{
    connect(form, &QDesignerFormWindowInterface::widgetManaged, this, [this](QWidget *widget) {
        auto *control = qobject_cast<fractioni *>(widget);
        if (!control || !m_core)
            return;
        QPointer<QDesignerFormEditorInterface> core = m_core;
        QMetaObject::invokeMethod(
            control,
            [core, control] {
                for (const QString &name : fractionisheet::persisted()) {
                    if (core)
                        markproperty(core, control, name);
                }
            },
            Qt::QueuedConnection);
    });
}

void fractioniplugin::markproperty(QDesignerFormEditorInterface *core, fractioni *control, const QString &name)
{
    if (!QDesignerFormWindowInterface::findFormWindow(control))
        return; // not on a form (yet): Designer's preview or a widget being created
    auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(core->extensionManager(), control);
    if (!sheet)
        return;
    const int index = sheet->indexOf(name);
    if (index < 0)
        return;
    const QVariant value = control->property(name.toLatin1().constData());
    const bool changed = !fractionisheet::persisted().contains(name)
        || !isdefault(value, fractionisheet::formdefault(control, name));
    sheet->setChanged(index, changed);
    if (QDesignerPropertyEditorInterface *editor = core->propertyEditor()) {
        if (editor->object() == control)
            editor->setPropertyValue(name, sheet->property(index), changed);
    }
}
