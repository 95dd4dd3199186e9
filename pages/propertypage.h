#pragma once

#include "fractionpages_export.h"

#include <QList>
#include <QPointer>
#include <QVariant>
#include <QWidget>

#include <functional>

namespace kelfractionint {

/*!
 * The base of a property page: a page that edits the selected controls of a form through their
 * public properties, read and written by name (late-bound), so that any object with properties
 * of those names can be edited.
 *
 * The host (a dialog, Qt Designer's task menu) hands the page its selection with
 * setSelectedControls(), which runs SelectionChanged(); it enables its Apply button while
 * Changed() is true and runs ApplyChanges() on Apply or OK. Errors raised by a property
 * (modfracglobal::automationerror) pass out of ApplyChanges() unchanged.
 */
class FRACTIONPAGES_EXPORT propertypage : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool Changed READ Changed WRITE setChanged NOTIFY Changedchanged)

public:
    /*! Writes one property of one selected control; the default calls writeproperty(). A form
     *  designer installs one that records each write as an undoable step. */
    using propertywriter = std::function<void(QObject *control, const char *name, const QVariant &value)>;

    explicit propertypage(QWidget *parent = nullptr);
    ~propertypage() override;

    /*! True once the page holds edits that Apply would write. */
    bool Changed() const { return m_changed; }
    void setChanged(bool changed);

    /*! The selected controls, in selection order; deleted controls read as null. */
    QList<QObject *> SelectedControls() const;
    /*! Hands the page a new selection and runs SelectionChanged(). */
    void setSelectedControls(const QList<QObject *> &controls);

    /*! Loads the page from the selection. */
    virtual void SelectionChanged() = 0;
    /*! Writes the page to the selection. Raises what the properties raise. */
    virtual void ApplyChanges() = 0;

    /*! Routes the page's writes through \a writer (an empty one restores the direct write). */
    void setpropertywriter(propertywriter writer);

    /*! The value of the property \a name of \a control. Raises error 438 when \a control has no
     *  readable property of that name, and 91 when \a control is null. */
    static QVariant readproperty(const QObject *control, const char *name);
    /*! Assigns \a value to the property \a name of \a control, converted to the property's
     *  type. Raises error 438 when there is no writable property of that name, 13 when the value
     *  does not convert, 91 when \a control is null, and whatever the property itself raises. */
    static void writeproperty(QObject *control, const char *name, const QVariant &value);

Q_SIGNALS:
    void Changedchanged(bool changed);

protected:
    /*! Selected control \a index; raises error 9 when there is no such item and 91 when that
     *  control no longer exists. */
    QObject *selectedcontrol(int index) const;
    /*! The number of selected controls as a loop bound of a 16-bit counter: raises error 6 when
     *  the last index does not fit in one. */
    int selectedcount16() const;
    /*! Writes through the installed writer. */
    void write(QObject *control, const char *name, const QVariant &value) const;
    /*! Places \a child at a rectangle given in twips, converted to this page's pixels; a child
     *  whose caption needs more room is widened. */
    void placetwips(QWidget *child, int left, int top, int width, int height) const;
    /*! Sizes the page to its design size in twips. */
    void sizetwips(int width, int height);
    int twipstopixels(int twips, bool vertical) const;

private:
    bool m_changed = false;
    QList<QPointer<QObject>> m_selection;
    propertywriter m_writer;
};

} // namespace kelfractionint
