#pragma once

#include "ambient.h"
#include "automationerror.h"
#include "fractioni.h"
#include "hostnumbers.h"

#include <QApplication>
#include <QBackingStore>
#include <QImage>
#include <QLineEdit>
#include <QLocale>
#include <QSignalSpy>
#include <QStringList>
#include <QTest>

#include <functional>

// Shared set-up of the widget tests, with the headers they all use: a pinned locale, values and
// events in a short notation, a control's parts, a shown widget, a control in a shown window,
// design mode and the error a call raises.
namespace testsupport {

// The grouping mark is the other one of "." and ",".
inline void pinlocale(const char *decimal = ".")
{
    QLocale::setDefault(QLocale::c());
    modfracglobal::setnumberlocale({decimal, qstrcmp(decimal, ",") == 0 ? "." : ","});
}

inline QList<QStringList> events(const QSignalSpy &spy)
{
    QList<QStringList> rows;
    for (const QList<QVariant> &emission : spy) {
        QStringList row;
        for (const QVariant &argument : emission)
            row.append(argument.toString());
        rows.append(row);
    }
    return rows;
}

// Records written "whole numerator denominator" and value events "old sign whole numerator
// denominator > new ...", separated by ";", with "_" for an empty text.
inline QList<QStringList> evs(const QString &text)
{
    QList<QStringList> rows;
    for (const QString &event : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        QStringList row = event.simplified().remove(QLatin1String("> ")).split(QLatin1Char(' '));
        rows.append(row.replaceInStrings(QStringLiteral("_"), QString()));
    }
    return rows;
}

inline QStringList rec(const QString &text) { return evs(text).value(0); }

// A part of a control by name: "wholepart", "numerator", "denominator" or, as a QWidget, "lblgrip".
template <class part = QLineEdit>
part *field(const QWidget *control, const QString &name) { return control->findChild<part *>(name); }

inline QStringList value(const kelfractionint::fractioni &control)
{
    return {control.Wholepartvalue(), control.Numeratorvalue(), control.Denominatorvalue()};
}

// Shows \a widget and waits until it is on the screen or, if \a active, has the window system's focus.
inline bool shown(QWidget *widget, bool active = false)
{
    widget->show();
    if (active)
        widget->activateWindow();
    return active ? QTest::qWaitForWindowActive(widget) : QTest::qWaitForWindowExposed(widget);
}

// What \a widget shows in its window after a repaint, as the backing store holds it (a null image
// where the store is not an image in memory).
inline QImage onscreen(QWidget *widget)
{
    widget->repaint();
    const auto *store = dynamic_cast<const QImage *>(widget->window()->backingStore()->paintDevice());
    const qreal dpr = widget->devicePixelRatioF();
    const QRectF area(QPointF(widget->mapTo(widget->window(), QPoint())) * dpr, QSizeF(widget->size()) * dpr);
    QImage shown = store ? store->copy(area.toRect()).convertToFormat(QImage::Format_RGB32) : QImage();
    shown.setDevicePixelRatio(dpr);
    return shown;
}

// A control in a shown, active window, as a user meets it.
struct form
{
    QWidget window;
    kelfractionint::fractioni *control = new kelfractionint::fractioni(&window);

    bool show() { window.resize(240, 120); return shown(&window, true); }
    QLineEdit *field(const QString &name) const { return testsupport::field(control, name); }
};

// Puts every control into design mode while alive (a form designer's canvas).
struct designtime
{
    designtime() { kelfractionint::ambient::setdefaultdesignmode(true); }
    ~designtime() { kelfractionint::ambient::setdefaultdesignmode(false); }
};

// The automation error that \a call raises (late-bound calls) or that a control reports for it
// (direct calls: the outermost call reports last), or 0 for none.
inline int errornumber(const std::function<void()> &call)
{
    int reported = 0;
    QList<QMetaObject::Connection> links;
    for (QWidget *widget : QApplication::allWidgets()) {
        if (auto *control = qobject_cast<kelfractionint::fractioni *>(widget))
            links.append(QObject::connect(control, &kelfractionint::fractioni::errorreported,
                                          [&reported](int number) { reported = number; }));
    }
    try {
        call();
    } catch (const modfracglobal::automationerror &error) {
        reported = error.number();
    }
    for (const QMetaObject::Connection &link : std::as_const(links))
        QObject::disconnect(link);
    return reported;
}

} // namespace testsupport
