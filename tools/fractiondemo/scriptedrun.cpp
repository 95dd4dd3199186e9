#include "scriptedrun.h"

#include "demowindow.h"
#include "fractioni.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPixmap>

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

void sendkey(QEvent::Type type, Qt::Key key, const QString &text, Qt::KeyboardModifiers modifiers = {})
{
    QWidget *target = QApplication::focusWidget();
    if (!target)
        return;
    QKeyEvent event(type, key, modifiers, text);
    QApplication::sendEvent(target, &event);
}

void presskey(Qt::Key key, const QString &text = {}, Qt::KeyboardModifiers modifiers = {})
{
    sendkey(QEvent::KeyPress, key, text, modifiers);
    sendkey(QEvent::KeyRelease, key, text, modifiers);
    settle();
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
        presskey(Qt::Key_Delete);
    // Each key goes to whichever widget holds the focus then, as a keyboard's would.
    for (const QChar ch : text)
        presskey(keyfor(ch), QString(ch));
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
