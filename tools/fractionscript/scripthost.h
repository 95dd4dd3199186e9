#pragma once

#include <QHash>
#include <QJSEngine>
#include <QJSValue>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <utility>

class QWidget;

namespace kelfractionint {

class fractioni;
class messagecapture;
class scriptpropertybag;

/*!
 * The automation client of the fraction control: a QJSEngine with a form on which scripts place
 * controls and drive them by member name or by dispatch id. Globals: createfraction([bag]),
 * createpropertybag(), messages(), print(...), savepicture(control, file),
 * dispinvoke(control, dispid, kind, ...args), typelibrary() and the engine's routines under
 * modfracglobal. A member that raises throws a script error whose `number` and `description` are
 * the automation error's; an argument a member cannot take throws a TypeError that carries them
 * too. Message boxes never open: their texts are kept for messages(). The host owns every control.
 */
class scripthost : public QObject
{
    Q_OBJECT

public:
    explicit scripthost(QObject *parent = nullptr);
    ~scripthost() override;

    /*! Runs \a code; the result, or the uncaught error (QJSValue::isError()). */
    QJSValue evaluate(const QString &code, const QString &filename = QStringLiteral("<code>"));
    /*! The line printed for an uncaught error: "error NUMBER: DESCRIPTION" for an automation
     *  error, the script's own message otherwise. */
    static QString errortext(const QJSValue &error);

    /*! Where print() writes (standard output unless set). */
    void setoutput(std::function<void(const QString &)> output);

    QJSEngine &engine() { return m_engine; }
    QWidget *form() const { return m_form.get(); }
    /*! The controls placed so far, in creation order. */
    QList<fractioni *> controls() const;

    // The natives behind the script globals; scripts reach them through the prelude only.
    Q_INVOKABLE QJSValue invoke(const QJSValue &control, const QJSValue &dispid, const QJSValue &kind,
                                const QJSValue &args);
    Q_INVOKABLE QJSValue createfraction(const QJSValue &bag);
    Q_INVOKABLE QJSValue createpropertybag();
    Q_INVOKABLE QStringList messages();
    Q_INVOKABLE void print(const QString &line);
    Q_INVOKABLE bool savepicture(const QJSValue &control, const QJSValue &file);
    Q_INVOKABLE QString typelibrary() const;
    Q_INVOKABLE QJSValue membertable();
    Q_INVOKABLE QStringList eventnames() const;
    Q_INVOKABLE QJSValue bagcall(const QJSValue &control, const QString &name, const QJSValue &bag);
    Q_INVOKABLE QJSValue invokebyname(const QJSValue &control, const QString &name, const QJSValue &args);
    Q_INVOKABLE void raise(int number, const QString &name);
    Q_INVOKABLE void fail(int number, const QString &detail);
    Q_INVOKABLE int maxitems() const;
    Q_INVOKABLE int eventdepthlimit() const;
    Q_INVOKABLE QJSValue routine(const QString &name, const QJSValue &args);

    /*! A script value for \a value: controls as their script objects, fonts and pictures as plain
     *  objects, lists as arrays. */
    QJSValue toscript(const QVariant &value);
    /*! An automation value for a script value: QObject pointers for objects of the host, lists for
     *  arrays, Empty for undefined and Nothing for null. Throws 28 for a value nested too deep
     *  (a cyclic one). */
    QVariant fromscript(const QJSValue &value, int depth = 0);

    /*! Throws the script error for an automation error (see the class). */
    QJSValue automationerrorobject(int number, const QString &description, const QString &detail = {});
    void throwautomation(int number, const QString &description, const QString &detail = {});

private:
    QJSValue scriptcontrol(fractioni *control);
    fractioni *controlof(const QJSValue &value, const char *function);
    std::pair<fractioni *, scriptpropertybag *> controlandbag(const QJSValue &control, const QJSValue &bag,
                                                              const char *function);
    void placecontrol(fractioni *control);
    // Runs a member of \a target directly and hands the script its result and recorded error.
    QJSValue settled(fractioni *target, const std::function<QVariant()> &run);

    QJSEngine m_engine;
    std::unique_ptr<QWidget> m_form;
    std::unique_ptr<messagecapture> m_capture;
    std::function<void(const QString &)> m_output;
    QJSValue m_makecontrol;
    QHash<fractioni *, QJSValue> m_scriptcontrols;
    QList<QPointer<fractioni>> m_controls;
    int m_created = 0;
    int m_nexttop = 8;
};

} // namespace kelfractionint
