#include "scriptedrun.h"

#include "demowindow.h"
#include "fractioni.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPixmap>
#include <QThread>

namespace kelfractionint::scriptedrun {

namespace {

void settle()
{
    QApplication::processEvents();
}

Qt::Key keyfor(QChar ch)
{
    if (ch.isDigit())
        return Qt::Key(Qt::Key_0 + ch.digitValue());
    switch (ch.unicode()) {
    case '-':
        return Qt::Key_Minus;
    case '+':
        return Qt::Key_Plus;
    case '.':
        return Qt::Key_Period;
    case ',':
        return Qt::Key_Comma;
    case '%':
        return Qt::Key_Percent;
    default:
        return Qt::Key_unknown;
    }
}

// The key goes to the widget with the focus; that of the field's window while the window
// manager has not yet activated it.
void sendkey(QWidget *window, QEvent::Type type, Qt::Key key, const QString &text, Qt::KeyboardModifiers modifiers = {})
{
    QWidget *target = QApplication::focusWidget();
    if (!target)
        target = window->focusWidget();
    if (!target)
        return;
    QKeyEvent event(type, key, modifiers, text);
    QApplication::sendEvent(target, &event);
}

void presskey(QWidget *window, Qt::Key key, const QString &text = {})
{
    sendkey(window, QEvent::KeyPress, key, text);
    sendkey(window, QEvent::KeyRelease, key, text);
    settle();
}

// Waits up to two seconds for the window manager to activate \a window.
void activate(QWidget *window)
{
    window->raise();
    window->activateWindow();
    QElapsedTimer timer;
    timer.start();
    while (!window->isActiveWindow() && timer.elapsed() < 2000) {
        QApplication::processEvents(QEventLoop::AllEvents, 50);
        QThread::msleep(10);
    }
}

} // namespace

void typeinto(QLineEdit *field, const QString &text)
{
    field->setFocus(Qt::OtherFocusReason);
    settle();
    // The field puts the caret at the end after every key it sees released, so a keyboard
    // selection does not survive; the text is selected as a drag over it with the mouse would.
    field->selectAll();
    if (text.isEmpty())
        presskey(field->window(), Qt::Key_Delete);
    // Each key goes to whichever widget holds the focus then, as a keyboard's would.
    for (const QChar ch : text)
        presskey(field->window(), keyfor(ch), QString(ch));
}

void click(QAbstractButton *button)
{
    const QPointF centre = QRectF(button->rect()).center();
    const QPointF global = button->mapToGlobal(centre);
    QMouseEvent press(QEvent::MouseButtonPress, centre, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(button, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, centre, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(button, &release);
    settle();
}

bool run(demowindow &window, const QString &png)
{
    const auto field = [](fractioni *control, const char *name) {
        return control->findChild<QLineEdit *>(QLatin1String(name));
    };
    const auto button = [&window](const char *name) {
        return window.findChild<QAbstractButton *>(QLatin1String(name));
    };
    activate(&window);
    settle();

    // First operand 2 6/8, reduced in place.
    click(button("autoreplacebox"));
    typeinto(field(window.first(), "wholepart"), QStringLiteral("2"));
    typeinto(field(window.first(), "numerator"), QStringLiteral("6"));
    typeinto(field(window.first(), "denominator"), QStringLiteral("8"));
    click(button("reducebutton"));

    // Second operand -1 1/3 (drawn with a bar), then their sum as a mixed number.
    typeinto(field(window.second(), "wholepart"), QStringLiteral("1"));
    typeinto(field(window.second(), "numerator"), QStringLiteral("1"));
    typeinto(field(window.second(), "denominator"), QStringLiteral("3"));
    click(button("changesignbutton"));
    click(button("addbutton"));
    field(window.result(), "numerator")->setFocus(Qt::OtherFocusReason);
    settle();
    click(button("fractomixedbutton"));
    button("fractomixedbutton")->setFocus(Qt::MouseFocusReason);
    settle();

    const QString path = QFileInfo(png).absoluteFilePath();
    QDir().mkpath(QFileInfo(path).absolutePath());
    return window.grab().save(path, "PNG");
}

} // namespace kelfractionint::scriptedrun
