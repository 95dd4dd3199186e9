#include "scriptedrun.h"

#include "demowindow.h"
#include "fractiondelegate.h"
#include "fractioni.h"
#include "measurements.h"
#include "olecolor.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPixmap>
#include <QStandardItemModel>
#include <QTableView>
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

bool gallery(const QString &dir)
{
    QDir().mkpath(dir);
    const auto save = [&dir](QWidget &widget, const char *name) {
        widget.show();
        if (!widget.testAttribute(Qt::WA_Resized))
            widget.adjustSize();
        settle();
        for (fractioni *control : widget.findChildren<fractioni *>())
            control->Refreshfraction();
        return widget.grab().save(dir + QLatin1Char('/') + QLatin1String(name), "PNG");
    };
    const auto control = [](QWidget *parent, const QStringList &value, bool slash, int points = 0) {
        auto *made = new fractioni(parent);
        made->setFractionslash(slash);
        if (points > 0) {
            QFont font = made->Font();
            font.setPointSize(points);
            made->setFont(font);
        }
        made->loadfraction(value);
        return made;
    };

    // A form as a user sees it: both signs, bar, border and grip, whole part only, colours with
    // Forcesign, and an enlarged font.
    QWidget form;
    form.setWindowTitle(QStringLiteral("Fractions"));
    auto *grid = new QGridLayout(&form);
    grid->setHorizontalSpacing(24);
    grid->setVerticalSpacing(12);
    QList<fractioni *> samples{control(&form, {"4", "1", "7"}, true), control(&form, {"-12", "3", "145"}, true),
                               control(&form, {"2", "5", "8"}, false), control(&form, {"", "11", "16"}, true),
                               control(&form, {"42", "", ""}, true), control(&form, {"3", "1", "2"}, true),
                               control(&form, {"-1", "3", "4"}, false)};
    samples[3]->setBorderstyle(fractioni::borderstylefixed);
    samples[3]->setUserresizeable(true);
    samples[5]->setForcesign(true);
    samples[5]->setPosforecolor(0x806000);
    samples[5]->setNumeratorbackcolor(0xE0FFFF);
    samples[5]->setDenominatorbackcolor(0xE0FFFF);
    QFont enlarged = samples[6]->Font();
    enlarged.setPointSizeF(enlarged.pointSizeF() * 2);
    samples[6]->setFont(enlarged);
    const char *captions[] = {"positive", "negative", "bar", "border and grip", "whole part only",
                              "colours and Forcesign", "enlarged font"};
    for (int i = 0; i < samples.size(); ++i) {
        grid->addWidget(new QLabel(QLatin1String(captions[i]), &form), 0, i, Qt::AlignHCenter);
        grid->addWidget(samples[i], 1, i, Qt::AlignCenter);
    }

    // Every size in five states, on white.
    QWidget sizes;
    QPalette white = sizes.palette();
    white.setColor(QPalette::Window, Qt::white);
    sizes.setPalette(white);
    auto *table = new QGridLayout(&sizes);
    table->setHorizontalSpacing(18);
    const QList<std::tuple<const char *, QStringList, bool, bool>> states{
        {"slash", {"4", "1", "7"}, true, false}, {"bar", {"-12", "3", "145"}, false, false},
        {"border", {"2", "35", "89"}, true, true}, {"bar, border", {"", "12345", "6"}, false, true},
        {"no whole part", {"-", "5", "8"}, true, false}};
    for (int column = 0; column < states.size(); ++column)
        table->addWidget(new QLabel(QLatin1String(std::get<0>(states[column]))), 0, column + 1, Qt::AlignCenter);
    int row = 1;
    for (int points : {8, 10, 12, 16, 24, 28, 40}) {
        table->addWidget(new QLabel(QStringLiteral("%1 pt").arg(points)), row, 0);
        for (int column = 0; column < states.size(); ++column) {
            const auto &[caption, value, slash, border] = states[column];
            fractioni *each = control(&sizes, value, slash, points);
            each->setBorderstyle(border ? fractioni::borderstylefixed : fractioni::borderstylenone);
            table->addWidget(each, row, column + 1, Qt::AlignCenter);
        }
        ++row;
    }

    // One form in a dark and in a light theme: positive values in the theme's window text, the
    // backgrounds the form's face, a table of fractions through the delegate.
    QWidget themes;
    auto *sides = new QHBoxLayout(&themes);
    for (const QColor face : {QColor(45, 45, 48), QColor(239, 239, 239)}) {
        auto *pane = new QWidget(&themes);
        pane->setPalette(QPalette(face, face));
        pane->setAutoFillBackground(true);
        auto *fields = new QGridLayout(pane);
        fields->addWidget(new QLabel(face.lightness() < 128 ? QStringLiteral("Dark") : QStringLiteral("Light"), pane), 0, 0, 1, 2);
        const QList<std::pair<const char *, QStringList>> rows{
            {"Width", {"12", "3", "8"}}, {"Offset", {"-1", "5", "16"}}, {"Ratio", {"", "2", "3"}}};
        for (int row = 1; row <= rows.size(); ++row) {
            fractioni *each = control(pane, rows[row - 1].second, row != 3);
            each->setPosforecolor(olecolor::windowtext);
            fields->addWidget(new QLabel(QLatin1String(rows[row - 1].first), pane), row, 0);
            fields->addWidget(each, row, 1, Qt::AlignLeft);
        }
        fields->addWidget(new QLabel(QStringLiteral("Note"), pane), rows.size() + 1, 0);
        fields->addWidget(new QLineEdit(QStringLiteral("cut twice"), pane), rows.size() + 1, 1);
        auto *model = new QStandardItemModel(3, 1, pane);
        for (int row = 0; row < 3; ++row)
            model->setData(model->index(row, 0), QStringList{"-1 1/2", "3 5/8", "7/16"}[row]);
        auto *cuts = new QTableView(pane);
        cuts->setItemDelegate(new fractiondelegate(cuts));
        cuts->setModel(model);
        cuts->setFixedHeight(120);
        fields->addWidget(cuts, rows.size() + 2, 0, 1, 2);
        sides->addWidget(pane);
    }

    measurementspage page;
    page.resize(520, 420);
    page.table()->selectRow(2);
    return save(form, "controls.png") && save(sizes, "sizes.png") && save(page, "table.png")
        && save(themes, "themes.png");
}

} // namespace kelfractionint::scriptedrun
