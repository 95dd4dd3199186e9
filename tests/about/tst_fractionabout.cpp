// The About box: its resource strings, the system information readings and the form.
#include "frmabout.h"
#include "resstrings.h"
#include "sysinfo.h"

#include "automationerror.h"
#include "messageboxsink.h"

#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using kelfractionint::frmAbout;
namespace resstrings = kelfractionint::resstrings;
namespace sysinfo = kelfractionint::sysinfo;

class tst_fractionabout : public QObject
{
    Q_OBJECT

    QByteArray m_path = qgetenv("PATH");

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void cleanup() { qputenv("PATH", m_path); }

    // The resource strings (by id) and the captions of the box (by child name, or its window
    // title), each as it must read; a missing string raises 326.
    void texts_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("text"); // empty: our own wording, which must credit the maker

        QTest::newRow("1 component name") << "1" << QStringLiteral("NORVANE Fraction Control");
        QTest::newRow("4 maker's contact line") << "4" << QString();
        QTest::newRow("102 first paragraph") << "102" << QString();
        QTest::newRow("104 second paragraph") << "104" << QString();
        QTest::newRow("200 invalid value") << "200" << QStringLiteral("Invalid property value");
        QTest::newRow("3 is no string") << "3" << QStringLiteral("error 326");
        QTest::newRow("window title") << "" << QStringLiteral("About " KEL_TEST_TITLE);
        QTest::newRow("title") << "lblTitle" << QStringLiteral(KEL_TEST_TITLE);
        QTest::newRow("version") << "lblVersion" << QStringLiteral("Version " KEL_TEST_VERSION);
        QTest::newRow("system information button") << "cmdSysInfo" << QStringLiteral("&System Info...");
    }

    void texts()
    {
        QFETCH(QString, source);
        QFETCH(QString, text);
        frmAbout about;
        QString shown = about.windowTitle();
        try {
            if (source.toInt())
                shown = resstrings::loadresstring(source.toInt());
            else if (!source.isEmpty())
                shown = about.findChild<QWidget *>(source)->property("text").toString();
        } catch (const modfracglobal::automationerror &error) {
            shown = QStringLiteral("error %1").arg(error.number());
        }
        QVERIFY2(text.isEmpty() ? shown.contains(QLatin1String("NORVANE")) : shown == text, qPrintable(shown));
    }

    void dword_data()
    {
        QTest::addColumn<quint32>("value");
        QTest::addColumn<QString>("texts"); // in hexadecimal, then as read back

        QTest::newRow("bytes 1 and 10 read as 1A, not 10A") << 0x0000010Au << "&h001A 26";
        QTest::newRow("FFFF reads as a 16-bit value") << 0x0000FFFFu << "&h00FFFF -1";
        QTest::newRow("five digits read as positive") << 0x00FF00FFu << "&h0FF0FF 1044735";
        QTest::newRow("short bytes shorten a high value") << 0x80000001u << "&h80001 524289";
        QTest::newRow("high bit of eight digits is the sign") << 0x80101010u << "&h80101010 -2146430960";
    }

    void dword()
    {
        QFETCH(quint32, value);
        QFETCH(QString, texts);
        QCOMPARE(sysinfo::dwordhextext(value) + u' ' + sysinfo::dwordtotext(value), texts);
    }

    void form()
    {
        frmAbout about;
        QCOMPARE(about.findChild<QLabel *>(QStringLiteral("lblDescription"))->text(),
                 resstrings::loadresstring(102) + QStringLiteral("\r\n\n\r") + resstrings::loadresstring(104)
                     + QStringLiteral("\r\n") + resstrings::loadresstring(4));
        QVERIFY(!about.findChild<QLabel *>(QStringLiteral("picIcon"))->pixmap().isNull());
        QCOMPARE(about.findChildren<QFrame *>(QStringLiteral("Line1")).size(), 2);

        about.show();
        about.findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
        QVERIFY(!about.isVisible());
    }

    // No tool on the PATH gives the message; once one is there, the button starts it.
    void sysinfobutton()
    {
#ifdef Q_OS_WIN
        QSKIP("Windows finds the tool through the registry");
#endif
        QTemporaryDir bin;
        qputenv("PATH", QFile::encodeName(bin.path()));
        kelfractionint::messagecapture messages;
        frmAbout about;
        auto *button = about.findChild<QPushButton *>(QStringLiteral("cmdSysInfo"));
        button->click();
        QCOMPARE(messages.take(), QStringList{"System Information Is Unavailable At This Time"});

        const QString marker = bin.filePath(QStringLiteral("started"));
        QFile tool(bin.filePath(QStringLiteral("hardinfo")));
        QVERIFY(tool.open(QIODevice::WriteOnly));
        tool.write("#!/bin/sh\necho \"$0\" > '" + marker.toUtf8() + "'\n");
        tool.close();
        tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        button->click();
        QTRY_VERIFY(QFile::exists(marker));
        QVERIFY(messages.take().isEmpty());
    }
};

QTEST_MAIN(tst_fractionabout)
#include "tst_fractionabout.moc"
