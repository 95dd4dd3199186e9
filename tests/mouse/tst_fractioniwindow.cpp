// The control's window: its picture (size and pixels), its native id, and the container it is
// moved into.
#include "../control/testsupport.h"

#include "automationerror.h"
#include "fractioni.h"
#include "messagesink.h"
#include "twips.h"

#include <QImage>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

using kelfractionint::fractioni;

namespace {

int errornumber(const std::function<void()> &call)
{
    try {
        call();
    } catch (const modfracglobal::automationerror &error) {
        return error.number();
    }
    return 0;
}

// True when some pixel of \a area in \a image differs from \a colour.
bool differs(const QImage &image, const QRect &area, const QColor &colour)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixelColor(x, y) != colour)
                return true;
        }
    }
    return false;
}

bool contains(const QImage &image, const QRect &area, const QColor &colour)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixelColor(x, y) == colour)
                return true;
        }
    }
    return false;
}

const QColor green(0, 255, 0);
const QColor red(255, 0, 0);

} // namespace

class tst_fractioniwindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void picture_data();
    void picture();
    void pictureisofthemoment();
    void emptypicture();
    void hwnd();
    void container();

private:
    std::unique_ptr<QWidget> m_form;
};

void tst_fractioniwindow::init()
{
    testsupport::pinlocale();
    modfracglobal::setmessagesink([](const std::string &) {});
    m_form = std::make_unique<QWidget>();
    m_form->resize(400, 200);
}

void tst_fractioniwindow::cleanup()
{
    m_form.reset();
    modfracglobal::setmessagesink({});
}

void tst_fractioniwindow::picture_data()
{
    QTest::addColumn<bool>("shown");
    QTest::addColumn<int>("border");
    QTest::addColumn<bool>("grip");

    QTest::newRow("shown, plain") << true << 0 << false;
    QTest::newRow("shown, border and grip") << true << 1 << true;
    QTest::newRow("never shown, border and grip") << false << 1 << true;
}

void tst_fractioniwindow::picture()
{
    QFETCH(bool, shown);
    QFETCH(int, border);
    QFETCH(bool, grip);

    auto *control = new fractioni(m_form.get());
    control->setBackcolor(0x00FF00);         // green surface
    control->setWholepartbackcolor(0x0000FF); // red whole part
    control->setBorderstyle(fractioni::fracBorderstyle(border));
    control->setUserresizeable(grip);
    control->Refreshfraction();
    if (shown) {
        m_form->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_form.get()));
    }

    const QPixmap picture = control->Picture();
    QCOMPARE(picture.deviceIndependentSize().toSize(), control->size());
    const QImage image = picture.toImage();

    // The border, when there is one, frames the picture.
    QCOMPARE(image.pixelColor(0, 0) != green, border == 1);
    QCOMPARE(image.pixelColor(image.width() - 1, image.height() / 2) != green, border == 1);
    // The fields are painted in their own colours.
    const QRect whole = control->findChild<QLineEdit *>(QStringLiteral("wholepart"))->geometry();
    QCOMPARE(image.pixelColor(whole.center().x(), whole.top()), red);
    QVERIFY(differs(image, whole, red)); // the digit 4
    // The grip is in the picture exactly when it is shown.
    const QRect gripped = control->findChild<QWidget *>(QStringLiteral("lblgrip"))->geometry();
    QVERIFY(gripped.isValid());
    QCOMPARE(differs(image, gripped & QRect(0, 0, image.width() - border, image.height() - border), green), grip);
}

void tst_fractioniwindow::pictureisofthemoment()
{
    auto *control = new fractioni(m_form.get());
    m_form->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_form.get()));
    const QImage before = control->Picture().toImage();
    control->setNegforecolor(0x00FF00);
    control->changesign();
    const QImage after = control->Picture().toImage();
    QVERIFY(before != after);
    // The new value is drawn in the colour for negative values.
    const QRect whole = control->findChild<QLineEdit *>(QStringLiteral("wholepart"))->geometry();
    QVERIFY(!contains(before, whole & before.rect(), green));
    QVERIFY(contains(after, whole & after.rect(), green));
}

void tst_fractioniwindow::emptypicture()
{
    auto *control = new fractioni(m_form.get());
    m_form->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_form.get()));
    control->resize(0, 0);
    QCOMPARE(control->size(), QSize(0, 0));
    QPixmap picture;
    QCOMPARE(errornumber([&] { picture = control->Picture(); }), 0);
    QVERIFY(picture.isNull());
}

void tst_fractioniwindow::hwnd()
{
    auto *control = new fractioni(m_form.get());
    const qint32 handle = control->hWnd();
    QVERIFY(handle != 0);
    QCOMPARE(handle, qint32(control->winId()));
    QCOMPARE(control->hWnd(), handle);
}

void tst_fractioniwindow::container()
{
    auto *control = new fractioni(m_form.get());
    auto *panel = new QWidget(m_form.get());
    m_form->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_form.get()));
    QSignalSpy changed(control, &fractioni::propertychanged);

    QCOMPARE(errornumber([&] { control->Container(); }), 91);
    control->setContainer(panel);
    QCOMPARE(control->parentWidget(), panel);
    QVERIFY(control->isVisible());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), QStringLiteral("Container"));
    // Reading it back fails every time, also once it is set.
    QCOMPARE(errornumber([&] { control->Container(); }), 91);

    // A control hidden by its host stays hidden in its new container.
    control->hide();
    control->setContainer(m_form.get());
    QCOMPARE(control->parentWidget(), m_form.get());
    QVERIFY(control->isHidden());

    QObject plain;
    QCOMPARE(errornumber([&] { control->setContainer(nullptr); }), 91);
    QCOMPARE(errornumber([&] { control->setContainer(&plain); }), 13);
    QCOMPARE(errornumber([&] { control->setContainer(control); }), 5);
    QCOMPARE(errornumber([&] { control->setContainer(control->findChild<QLineEdit *>()); }), 5);
    QCOMPARE(control->parentWidget(), m_form.get());
    QCOMPARE(changed.count(), 2);
    QCOMPARE(testsupport::value(*control), (QStringList{"4", "1", "7"}));
}

QTEST_MAIN(tst_fractioniwindow)
#include "tst_fractioniwindow.moc"
