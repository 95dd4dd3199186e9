#pragma once

#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QExtensionFactory>

#include <QPointer>

class QAction;
class QDesignerFormWindowInterface;

namespace kelfractionint {
class fractioni;
class propertypagedialog;
} // namespace kelfractionint

/*!
 * The task menu of a fractioni on a form: "Values..." and "Appearance..." open the two property
 * pages on the selected controls (the clicked one first), "About..." the component's About box. Apply and OK write the pages' changes
 * through the form window's cursor as one undoable step.
 */
class fractionitaskmenu : public QObject, public QDesignerTaskMenuExtension
{
    Q_OBJECT
    Q_INTERFACES(QDesignerTaskMenuExtension)

public:
    fractionitaskmenu(kelfractionint::fractioni *control, QObject *parent);

    QAction *preferredEditAction() const override;
    QList<QAction *> taskActions() const override;

    /*! The dialog the task menu opens, on the form's selected controls, with page \a page
     *  (0 values, 1 appearance) in front. The caller owns it. */
    kelfractionint::propertypagedialog *createdialog(int page) const;

private:
    void openpages(int page);

    QPointer<kelfractionint::fractioni> m_control;
    QAction *m_values;
    QAction *m_appearance;
    QAction *m_about;
};

class fractionitaskmenufactory : public QExtensionFactory
{
    Q_OBJECT

public:
    explicit fractionitaskmenufactory(QExtensionManager *parent = nullptr);

protected:
    QObject *createExtension(QObject *object, const QString &iid, QObject *parent) const override;
};
