#pragma once

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QObject>
#include <QPointer>

class QDesignerFormEditorInterface;
class QDesignerFormWindowInterface;

namespace kelfractionint {
class fractioni;
}

/*!
 * Puts fractioni into Qt Designer's widget box (group "kelfractionint"). In Designer the
 * controls on a form run in design mode, their property-change notification marks the property
 * changed (so that the form file keeps exactly the persisted properties that differ from what a
 * new control has), colours are edited as colours, and the task menu opens the values and
 * appearance pages on the selected controls. Previews and form loaders without Designer
 * (QUiLoader) get ordinary run-mode controls.
 */
class fractioniplugin : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetInterface")
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    explicit fractioniplugin(QObject *parent = nullptr);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QString domXml() const override;
    QWidget *createWidget(QWidget *parent) override;
    bool isInitialized() const override;
    void initialize(QDesignerFormEditorInterface *core) override;

    /*! Marks the property \a name of \a control changed in Designer when its value differs from
     *  the value a form file leaves out, and unchanged otherwise. */
    static void markproperty(QDesignerFormEditorInterface *core, kelfractionint::fractioni *control,
                             const QString &name);

private:
    void watchform(QDesignerFormWindowInterface *form);

    QPointer<QDesignerFormEditorInterface> m_core;
    bool m_initialized = false;
};
