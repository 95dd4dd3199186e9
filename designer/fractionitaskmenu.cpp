#include "fractionitaskmenu.h"

#include "fractionappearance.h"
#include "fractioni.h"
#include "fractionvalues.h"
#include "frmabout.h"
#include "propertypagedialog.h"

#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>

#include <QAction>

#include <algorithm>

using kelfractionint::fractioni;
using kelfractionint::propertypagedialog;

namespace {

// A page dialog whose Apply is one step on the form's undo stack, written through the cursor.
class formpagedialog : public propertypagedialog
{
public:
    formpagedialog(QDesignerFormWindowInterface *form, QWidget *parent)
        : propertypagedialog(parent)
        , m_form(form)
    {
    }

    bool apply() override
    {
        const QList<kelfractionint::propertypage *> all = pages();
        const bool changed = std::any_of(all.cbegin(), all.cend(), [](const auto *page) { return page->Changed(); });
        if (!m_form || !changed)
            return propertypagedialog::apply();
        m_form->beginCommand(tr("Apply property pages"));
        const bool applied = propertypagedialog::apply();
        m_form->endCommand();
        return applied;
    }

private:
    QPointer<QDesignerFormWindowInterface> m_form;
};

} // namespace

fractionitaskmenu::fractionitaskmenu(fractioni *control, QObject *parent)
    : QObject(parent)
    , m_control(control)
    , m_values(new QAction(tr("Values..."), this))
    , m_appearance(new QAction(tr("Appearance..."), this))
    , m_about(new QAction(tr("About..."), this))
{
    m_values->setObjectName(QStringLiteral("fractionvalues"));
    m_appearance->setObjectName(QStringLiteral("fractionappearance"));
    connect(m_values, &QAction::triggered, this, [this] { openpages(0); });
    connect(m_appearance, &QAction::triggered, this, [this] { openpages(1); });
    m_about->setObjectName(QStringLiteral("frmAbout"));
    connect(m_about, &QAction::triggered, this, [this] {
        auto *about = new kelfractionint::frmAbout(m_control ? m_control->window() : nullptr);
        about->setAttribute(Qt::WA_DeleteOnClose);
        about->open();
    });
}

QAction *fractionitaskmenu::preferredEditAction() const
{
    return m_values;
}

QList<QAction *> fractionitaskmenu::taskActions() const
{
    return {m_values, m_appearance, m_about};
}

propertypagedialog *fractionitaskmenu::createdialog(int page) const
{
    if (!m_control)
        return nullptr;
    QDesignerFormWindowInterface *form = QDesignerFormWindowInterface::findFormWindow(m_control);
    auto *dialog = new formpagedialog(form, form ? form->window() : nullptr);
    dialog->setWindowTitle(tr("Property Pages - %1").arg(m_control->objectName()));

    // The clicked control is item 0; the rest of the selection follows in the form's order.
    QList<QObject *> selection{m_control.data()};
    if (form) {
        QDesignerFormWindowCursorInterface *cursor = form->cursor();
        for (int i = 0; i < cursor->selectedWidgetCount(); ++i) {
            QWidget *widget = cursor->selectedWidget(i);
            if (widget != m_control && qobject_cast<fractioni *>(widget))
                selection.append(widget);
        }
    }

    const auto throughcursor = [form = QPointer<QDesignerFormWindowInterface>(form)](
                                   QObject *control, const char *name, const QVariant &value) {
        auto *widget = qobject_cast<QWidget *>(control);
        if (form && widget)
            form->cursor()->setWidgetProperty(widget, QString::fromLatin1(name), value);
        else
            kelfractionint::propertypage::writeproperty(control, name, value);
    };
    for (kelfractionint::propertypage *each :
         {static_cast<kelfractionint::propertypage *>(new kelfractionint::fractionvalues),
          static_cast<kelfractionint::propertypage *>(new kelfractionint::fractionappearance)}) {
        each->setpropertywriter(throughcursor);
        dialog->addpage(each);
    }
    dialog->setSelectedControls(selection);
    dialog->setcurrentpage(page);
    return dialog;
}

void fractionitaskmenu::openpages(int page)
{
    propertypagedialog *dialog = createdialog(page);
    if (!dialog)
        return;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

fractionitaskmenufactory::fractionitaskmenufactory(QExtensionManager *parent)
    : QExtensionFactory(parent)
{
}

QObject *fractionitaskmenufactory::createExtension(QObject *object, const QString &iid, QObject *parent) const
{
    if (iid != Q_TYPEID(QDesignerTaskMenuExtension))
        return nullptr;
    if (auto *control = qobject_cast<fractioni *>(object))
        return new fractionitaskmenu(control, parent);
    return nullptr;
}
