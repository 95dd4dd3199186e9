// Mouse on the control: the separator band and its edges, the click events, the surface click
// that brings back the whole part, and the grip's sizing drag that zooms the control.
#include "../control/testsupport.h"

#include "fractioni.h"
#include "messagesink.h"
#include "twips.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <memory>

using kelfractionint::fractioni;

namespace {

QLineEdit *field(fractioni &control, const char *name)
{
    return control.findChild<QLineEdit *>(QLatin1String(name));
}

QWidget *grip(fractioni &control)
{
    return control.findChild<QWidget *>(QStringLiteral("lblgrip"));
}

} // namespace

class tst_fractionimouse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void separatorband_data();
    void separatorband();
    void bandfollowsthenumeratoronly();
    void clicksonfields();
    void surfaceclickshowswholepart();
    void gripdrag_data();
    void gripdrag();
    void griphiddenwhennotresizeable();

private:
    // A shown control on a host form.
    fractioni *showncontrol();

    std::unique_ptr<QWidget> m_form;
    QStringList m_messages;
};

void tst_fractionimouse::init()
{
    testsupport::pinlocale();
    m_messages.clear();
    modfracglobal::setmessagesink([this](const std::string &text) { m_messages << QString::fromStdString(text); });
    m_form = std::make_unique<QWidget>();
    m_form->resize(600, 300);
}

void tst_fractionimouse::cleanup()
{
    m_form.reset();
    modfracglobal::setmessagesink({});
}

fractioni *tst_fractionimouse::showncontrol()
{
    auto *control = new fractioni(m_form.get());
    control->move(20, 20);
    m_form->show();
    if (!QTest::qWaitForWindowExposed(m_form.get()))
        return nullptr;
    return control;
}

void tst_fractionimouse::separatorband_data()
{
    // Points relative to the numerator field's rectangle and the denominator's top, in pixels;
    // the band runs from the first row below the numerator to the denominator's top row.
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("row");
    QTest::addColumn<bool>("separator");

    QTest::newRow("top edge of the band") << "middle" << "below numerator" << true;
    QTest::newRow("bottom edge on the denominator's top") << "middle" << "denominator top" << true;
    QTest::newRow("left edge") << "left" << "below numerator" << true;
    QTest::newRow("right edge") << "right" << "denominator top" << true;
    QTest::newRow("last row of the numerator") << "middle" << "numerator bottom" << false;
    QTest::newRow("below the band") << "middle" << "below denominator top" << false;
    QTest::newRow("left of the band") << "left of" << "below numerator" << false;
    QTest::newRow("right of the band") << "right of" << "denominator top" << false;
}

void tst_fractionimouse::separatorband()
{
    QFETCH(QString, column);
    QFETCH(QString, row);
    QFETCH(bool, separator);

    fractioni *control = showncontrol();
    QVERIFY(control);
    // A border opens a gap of two pixels between numerator and denominator.
    control->setBorderstyle(fractioni::borderstylefixed);
    const QRect numer = field(*control, "numerator")->geometry();
    const QRect denom = field(*control, "denominator")->geometry();
    QVERIFY2(denom.top() > numer.top() + numer.height(), "no gap between the fields");

    int x = numer.center().x();
    if (column == QLatin1String("left"))
        x = numer.left();
    else if (column == QLatin1String("right"))
        x = numer.left() + numer.width();
    else if (column == QLatin1String("left of"))
        x = numer.left() - 1;
    else if (column == QLatin1String("right of"))
        x = numer.left() + numer.width() + 1;
    int y = denom.top();
    if (row == QLatin1String("below numerator"))
        y = numer.top() + numer.height();
    else if (row == QLatin1String("numerator bottom"))
        y = numer.top() + numer.height() - 1;
    else if (row == QLatin1String("below denominator top"))
        y = denom.top() + 1;

    QSignalSpy separatorspy(control, &fractioni::separatorclick);
    QSignalSpy mousedownspy(control, &fractioni::MouseDown);
    // Any button counts for the band.
    QTest::mousePress(control, Qt::RightButton, Qt::ControlModifier, QPoint(x, y));
    QTest::mouseRelease(control, Qt::RightButton, Qt::ControlModifier, QPoint(x, y));

    QCOMPARE(separatorspy.count(), separator ? 1 : 0);
    QCOMPARE(mousedownspy.count(), separator ? 0 : 1);
    if (!separator) {
        // Button and shift in the host's codes, the position in twips.
        const QList<QVariant> arguments = mousedownspy.takeFirst();
        QCOMPARE(arguments.at(0).value<qint16>(), qint16(2));
        QCOMPARE(arguments.at(1).value<qint16>(), qint16(2));
        QCOMPARE(arguments.at(2).toFloat(), float(x * kelfractionint::twipsperpixelx(control)));
        QCOMPARE(arguments.at(3).toFloat(), float(y * kelfractionint::twipsperpixely(control)));
    }
}

void tst_fractionimouse::bandfollowsthenumeratoronly()
{
    fractioni *control = showncontrol();
    QVERIFY(control);
    control->setBorderstyle(fractioni::borderstylefixed);
    control->setNumeratorvalue(QStringLiteral("1"));
    control->setDenominatorvalue(QStringLiteral("12345"));
    const QRect numer = field(*control, "numerator")->geometry();
    const QRect denom = field(*control, "denominator")->geometry();
    // The narrower numerator is shifted right over the wider denominator.
    QVERIFY(numer.left() > denom.left());

    QSignalSpy separatorspy(control, &fractioni::separatorclick);
    QSignalSpy mousedownspy(control, &fractioni::MouseDown);
    const int y = numer.top() + numer.height();
    QTest::mousePress(control, Qt::LeftButton, {}, QPoint(denom.left(), y));
    QCOMPARE(separatorspy.count(), 0);
    QCOMPARE(mousedownspy.count(), 1);
    QCOMPARE(mousedownspy.at(0).at(0).value<qint16>(), qint16(1));
    QCOMPARE(mousedownspy.at(0).at(1).value<qint16>(), qint16(0));
    QTest::mouseRelease(control, Qt::LeftButton, {}, QPoint(denom.left(), y));
}

void tst_fractionimouse::clicksonfields()
{
    fractioni *control = showncontrol();
    QVERIFY(control);
    QSignalSpy wholespy(control, &fractioni::wholepartclick);
    QSignalSpy separatorspy(control, &fractioni::separatorclick);
    QSignalSpy mousedownspy(control, &fractioni::MouseDown);
    QSignalSpy numerspy(control, &fractioni::numeratorclick);
    QSignalSpy denomspy(control, &fractioni::denominatorclick);
    QSignalSpy insidespy(control, &fractioni::insidenotcontentclick);

    QLineEdit *whole = field(*control, "wholepart");
    QTest::mouseClick(whole, Qt::LeftButton, {}, whole->rect().center());
    QCOMPARE(wholespy.count(), 1);
    // A press in the field that is released outside it is no click.
    QTest::mousePress(whole, Qt::LeftButton, {}, whole->rect().center());
    QTest::mouseRelease(whole, Qt::LeftButton, {}, QPoint(whole->width() + 5, whole->height() + 5));
    QCOMPARE(wholespy.count(), 1);
    // A double click (press, release, double click, release) is one click.
    QTest::mouseClick(whole, Qt::LeftButton, {}, whole->rect().center());
    QTest::mouseDClick(whole, Qt::LeftButton, {}, whole->rect().center());
    QTest::mouseRelease(whole, Qt::LeftButton, {}, whole->rect().center());
    QCOMPARE(wholespy.count(), 2);
    QTest::mouseClick(whole, Qt::LeftButton, {}, whole->rect().center());
    QCOMPARE(wholespy.count(), 3);

    for (const char *name : {"numerator", "denominator"}) {
        QLineEdit *fraction = field(*control, name);
        QTest::mouseClick(fraction, Qt::LeftButton, {}, fraction->rect().center());
    }
    QCOMPARE(wholespy.count(), 3);
    QCOMPARE(separatorspy.count() + mousedownspy.count(), 0);
    // Declared for hosts, never raised.
    QCOMPARE(numerspy.count() + denomspy.count() + insidespy.count(), 0);
}

void tst_fractionimouse::surfaceclickshowswholepart()
{
    fractioni *control = showncontrol();
    QVERIFY(control);
    QLineEdit *whole = field(*control, "wholepart");
    const QPoint surface(control->width() - 2, 1);

    // With a field shown, a click on the surface changes nothing.
    whole->hide();
    QTest::mouseClick(control, Qt::LeftButton, {}, surface);
    QVERIFY(whole->isHidden());

    field(*control, "numerator")->hide();
    field(*control, "denominator")->hide();
    QSignalSpy mousedownspy(control, &fractioni::MouseDown);
    QTest::mouseClick(control, Qt::LeftButton, {}, surface);
    QVERIFY(!whole->isHidden());
    QCOMPARE(mousedownspy.count(), 1);
    QCOMPARE(control->Wholepartvalue(), QStringLiteral("4"));
}

void tst_fractionimouse::gripdrag_data()
{
    QTest::addColumn<int>("dx");
    QTest::addColumn<int>("dy");
    QTest::addColumn<int>("border");

    QTest::newRow("twice the height") << 0 << 100 << 0;
    QTest::newRow("twice the height with a border") << 10 << 100 << 1;
    QTest::newRow("half the height") << -5 << -50 << 0;
    QTest::newRow("wider only keeps the font") << 60 << 0 << 0;
    QTest::newRow("beyond the top left corner") << -500 << -500 << 0;
}

void tst_fractionimouse::gripdrag()
{
    QFETCH(int, dx);
    QFETCH(int, dy);
    QFETCH(int, border);

    fractioni *control = showncontrol();
    QVERIFY(control);
    control->setBorderstyle(fractioni::fracBorderstyle(border));
    QFont font = control->Font();
    font.setPointSizeF(20);
    control->setFont(font);
    control->setUserresizeable(true);
    control->Refreshfraction();
    QWidget *lblgrip = grip(*control);
    QVERIFY(lblgrip->isVisible());

    const QSize before = control->size();
    const double fontbefore = control->Font().pointSizeF();
    QSignalSpy valuespy(control, &fractioni::fractionvaluechanged);

    // Scale the drag to the control's own height so that each row means what its name says.
    dy = dy * before.height() / 100;
    const QPoint start = lblgrip->mapToGlobal(lblgrip->rect().center());
    const QPoint end = start + QPoint(dx, dy);
    QTest::mousePress(lblgrip, Qt::LeftButton, {}, lblgrip->rect().center());
    QTest::mouseMove(lblgrip, lblgrip->mapFromGlobal(start + QPoint(dx / 2, dy / 2)));
    QTest::mouseMove(lblgrip, lblgrip->mapFromGlobal(end));
    // While dragging, the control follows the pointer and keeps its font.
    const QSize dragged(std::max(8, before.width() + dx), std::max(8, before.height() + dy));
    QCOMPARE(control->size(), dragged);
    QCOMPARE(control->Font().pointSizeF(), fontbefore);
    QTest::mouseRelease(lblgrip, Qt::LeftButton, {}, lblgrip->mapFromGlobal(end));

    // The release zooms: the font scales by the dragged height...
    const double expectedfont = std::max(1.0, fontbefore * dragged.height() / before.height());
    QVERIFY2(std::abs(control->Font().pointSizeF() - expectedfont) < 0.05 * expectedfont,
             qPrintable(QStringLiteral("font %1, expected %2").arg(control->Font().pointSizeF()).arg(expectedfont)));

    // ...and the control snaps to what its content needs in that font: the size a control of
    // the same value gets when given that font directly.
    auto *reference = new fractioni(m_form.get());
    reference->setBorderstyle(fractioni::fracBorderstyle(border));
    reference->setUserresizeable(true);
    reference->show();
    QFont zoomed = control->Font();
    reference->setFont(zoomed);
    QVERIFY2(std::abs(control->width() - reference->width()) <= 1
                 && std::abs(control->height() - reference->height()) <= 1,
             qPrintable(QStringLiteral("%1x%2, expected %3x%4")
                            .arg(control->width())
                            .arg(control->height())
                            .arg(reference->width())
                            .arg(reference->height())));
    // The grip sits in the new bottom-right corner, and the value was not touched.
    QVERIFY(std::abs(lblgrip->geometry().right() - (control->width() - 1 - 2 * border)) <= 2 * border + 1);
    QCOMPARE(valuespy.count(), 0);
    QCOMPARE(testsupport::value(*control), (QStringList{"4", "1", "7"}));
}

void tst_fractionimouse::griphiddenwhennotresizeable()
{
    fractioni *control = showncontrol();
    QVERIFY(control);
    control->setUserresizeable(true);
    const int withgrip = control->width();
    control->setUserresizeable(false);
    QVERIFY(grip(*control)->isHidden());
    // The grip's width no longer counts once the control is laid out again.
    control->Refreshfraction();
    QVERIFY(control->width() < withgrip);
}

QTEST_MAIN(tst_fractionimouse)
#include "tst_fractionimouse.moc"
