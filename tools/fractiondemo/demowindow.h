#pragma once

#include "fractioni.h"

#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Ui {
class demowindow;
}

namespace kelfractionint {

class measurementspage;

/*!
 * The demo's main window: two operand fractions and a result, a button for every operation of the
 * control, an Autoreplace toggle, a live log of the controls' events, the property pages and the
 * About box, saving and opening the form through a QSettings file, and pictures of a control.
 *
 * Operations on one fraction act on the selected control: the one that last had the focus or was
 * last clicked (the first operand at the start). Their result is loaded into the result control;
 * with Autoreplace on, the control itself shows it as well.
 */
class demowindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit demowindow(QWidget *parent = nullptr);
    ~demowindow() override;

    fractioni *first() const;
    fractioni *second() const;
    fractioni *result() const;

    /*! The control that operations on one fraction act on. */
    fractioni *selected() const { return m_selected; }
    void select(fractioni *control);

    /*! The form file used by File > Save and Open instead of asking with a file dialog (empty:
     *  ask). Set from the command line or the environment. */
    void setformfile(const QString &path) { m_formfile = path; }
    QString formfile() const { return m_formfile; }

    /*! Saves every control into the ini file \a path, one group per control; false when the file
     *  could not be written. */
    bool saveform(const QString &path);
    /*! Restores every control from the ini file \a path; false when it cannot be read. */
    bool openform(const QString &path);
    /*! Saves the selected control's Picture as PNG into \a path. */
    bool exportpicture(const QString &path);

    /*! Routes the component's messages (engine errors and the errors of operations) into the
     *  event log instead of message boxes, for runs without anyone to close a box. The previous
     *  sink comes back when the window goes. */
    void logmessages();
    /*! The lines of the event log. */
    QStringList loglines() const;
    void log(const QString &line);

private:
    void connectcontrol(fractioni *control);
    fractioni *restoredcontrol(fractioni *old, const propertybag &bag);
    void connectoperations();
    void single(const char *name, const std::function<QStringList(fractioni *)> &operation);
    void pair(const char *name, const std::function<QStringList(fractioni *, fractioni *)> &operation);
    void into(const char *name, const std::function<void(fractioni *, fractioni *)> &operation);
    bool guarded(const QString &what, const std::function<void()> &work);
    void showresult(const QStringList &record);
    QString controlname(const QObject *control) const;
    void syncautoreplace();
    void setautoreplace(bool on);
    void openpages(int page);
    void about();
    void opentable();
    void saveas();
    void open();
    void exportas();
    void copypicture();
    void focuschanged(QWidget *now);

    std::unique_ptr<Ui::demowindow> ui;
    QPointer<fractioni> m_selected;
    QPointer<measurementspage> m_table;
    QString m_formfile;
    struct sinkguard;
    std::unique_ptr<sinkguard> m_sink;
};

} // namespace kelfractionint
