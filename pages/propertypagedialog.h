#pragma once

#include "fractionpages_export.h"

#include <QDialog>
#include <QList>

class QDialogButtonBox;
class QPushButton;
class QTabWidget;

namespace kelfractionint {

class propertypage;

/*!
 * A dialog that shows property pages on one selection, one tab per page (captioned with the
 * page's window title), with OK, Cancel and Apply. Apply is enabled while any page is changed;
 * it applies the changed pages in tab order and clears their flags. OK applies and closes.
 * An error raised while applying is shown through the message sink and keeps the dialog open,
 * with the failing page still changed.
 */
class FRACTIONPAGES_EXPORT propertypagedialog : public QDialog
{
    Q_OBJECT

public:
    explicit propertypagedialog(QWidget *parent = nullptr);
    ~propertypagedialog() override;

    /*! Adds \a page (the dialog takes ownership) and hands it the current selection. */
    void addpage(propertypage *page);
    QList<propertypage *> pages() const;
    /*! Brings the page at \a index to the front. */
    void setcurrentpage(int index);

    /*! Hands every page the selection \a controls. A page that cannot load them (no control,
     *  a property missing) says so through the message sink. */
    void setSelectedControls(const QList<QObject *> &controls);

    /*! Applies every changed page; false when a property raised an error. A host that records
     *  the writes (a form designer's undo stack) brackets this call. */
    virtual bool apply();

    QPushButton *applybutton() const;

public Q_SLOTS:
    void accept() override;

private:
    void updateapply();

    QTabWidget *m_tabs;
    QDialogButtonBox *m_buttons;
    QList<propertypage *> m_pages;
    QList<QObject *> m_selection;
};

} // namespace kelfractionint
