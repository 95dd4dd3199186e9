// The host seams: the memory property bag, twips, colours, ambient properties and the message
// sink. (The QSettings bag is exercised by the control's and the demo's saved forms.)
#include "ambient.h"
#include "messageboxsink.h"
#include "olecolor.h"
#include "messagesink.h"
#include "propertybag.h"
#include "twips.h"

#include <QTest>

using namespace kelfractionint;

class tst_platform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void memorybag()
    {
        memorypropertybag bag;
        bag.writeproperty(QStringLiteral("b"), 2, 0);
        bag.writeproperty(QStringLiteral("a"), QStringLiteral("x"), QStringLiteral("4"));
        bag.writeproperty(QStringLiteral("c"), 600, 600);
        QCOMPARE(bag.keys(), (QStringList{"b", "a"}));
        // Writing the default removes a stored key; rewriting keeps the first position.
        bag.writeproperty(QStringLiteral("b"), 0, 0);
        bag.writeproperty(QStringLiteral("d"), true, false);
        bag.writeproperty(QStringLiteral("a"), QStringLiteral("y"), QStringLiteral("4"));
        QCOMPARE(bag.keys(), (QStringList{"a", "d"}));
        QCOMPARE(bag.readproperty(QStringLiteral("a"), QStringLiteral("4")).toString(), QStringLiteral("y"));
        QCOMPARE(bag.readproperty(QStringLiteral("b"), 7).toInt(), 7);
        // Without a default everything is stored.
        bag.writeproperty(QStringLiteral("f"), QVariant(), QVariant());
        QVERIFY(bag.contains(QStringLiteral("f")));
    }

    void conversions()
    {
        QCOMPARE(twipstopixels(607.6, 15), 41);
        QCOMPARE(twipstopixels(std::nan(""), 15), 0);
        QCOMPARE(twipstopixels(1e300, 15), 1000000);
        // OLE colours are 0x00BBGGRR; the high byte (system colours) does not disturb the channels.
        QCOMPARE(fromoleColor(0x80336699u), QColor(0x99, 0x66, 0x33));
        QCOMPARE(tooleColor(QColor(0x99, 0x66, 0x33)), 0x336699u);
    }

    void ambientproperties()
    {
        // The ambient colour is the form's face as a system colour, with or without a container.
        QWidget form;
        QWidget control(&form);
        QCOMPARE(ambient::backcolor(&form), kelfractionint::olecolor::buttonface);

        // Design mode is inherited from the form, or the default for every control.
        QList<bool> modes{ambient::usermode(&control)};
        ambient::setdesignmode(&form, true);
        modes << ambient::usermode(&control);
        ambient::setdesignmode(&form, false);
        modes << ambient::usermode(&control);
        ambient::setdefaultdesignmode(true);
        modes << ambient::usermode(&control);
        ambient::setdefaultdesignmode(false);
        QCOMPARE(modes, (QList<bool>{true, false, true, false}));
    }

    void capture()
    {
        QStringList outer;
        modfracglobal::setmessagesink([&outer](const std::string &text) { outer.append(QString::fromStdString(text)); });
        {
            messagecapture capture;
            modfracglobal::showmessage("Overflow");
            QCOMPARE(capture.take(), QStringList{"Overflow"});
        }
        modfracglobal::showmessage("after");
        QCOMPARE(outer, QStringList{"after"});
        modfracglobal::setmessagesink({});
    }
};

QTEST_MAIN(tst_platform)
#include "tst_platform.moc"
