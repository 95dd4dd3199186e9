#pragma once

#include <QtDesigner/QDesignerExtraInfoExtension>
#include <QtDesigner/QExtensionFactory>
#include <QtDesigner/private/qdesigner_propertysheet_p.h>

#include <QPointer>
#include <QWidget>

namespace kelfractionint {
class fractioni;
}

/*!
 * How Designer sees a fraction control's properties. The six colours are edited as colours
 * (the form file and the C++ API keep the control's 0x00BBGGRR values); the three value texts
 * are plain strings that are never translated; QWidget's own font is hidden, because only
 * the control's `Font` is used; resetting a property gives the value a new control has.
 */
class fractionisheet : public QDesignerPropertySheet
{
    Q_OBJECT

public:
    fractionisheet(kelfractionint::fractioni *control, QObject *parent);

    bool isVisible(int index) const override;
    QVariant property(int index) const override;
    void setProperty(int index, const QVariant &value) override;
    bool hasReset(int index) const override;
    bool reset(int index) override;

    /*! True for the control's colour properties. */
    static bool iscolour(const QString &name);
    /*! The value a new control on the same container has: what a form file leaves out. */
    static QVariant formdefault(const kelfractionint::fractioni *control, const QString &name);
    /*! The persisted properties, in the order a restore assigns them. */
    static const QStringList &persisted();

private:
    QPointer<kelfractionint::fractioni> m_control;
};

/*!
 * Rewrites a saved control's colours into the control's own values: Designer writes what the
 * property sheet shows (a colour), while uic, QUiLoader and the control read 32-bit values.
 */
class fractioniextrainfo : public QObject, public QDesignerExtraInfoExtension
{
    Q_OBJECT
    Q_INTERFACES(QDesignerExtraInfoExtension)

public:
    fractioniextrainfo(QWidget *widget, QDesignerFormEditorInterface *core, QObject *parent);

    QDesignerFormEditorInterface *core() const override { return m_core; }
    QWidget *widget() const override { return m_widget; }
    bool saveUiExtraInfo(DomUI *) override { return false; }
    bool loadUiExtraInfo(DomUI *) override { return false; }
    bool saveWidgetExtraInfo(DomWidget *widget) override;
    bool loadWidgetExtraInfo(DomWidget *) override { return false; }

private:
    QPointer<QWidget> m_widget;
    QDesignerFormEditorInterface *m_core;
};

class fractioniextrainfofactory : public QExtensionFactory
{
    Q_OBJECT

public:
    fractioniextrainfofactory(QDesignerFormEditorInterface *core, QExtensionManager *parent);

protected:
    QObject *createExtension(QObject *object, const QString &iid, QObject *parent) const override;

private:
    QDesignerFormEditorInterface *m_core;
};
