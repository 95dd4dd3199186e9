#include "fractionidispatch.h"
#include "typelibrary.h"

#include <QRegularExpression>
#include <QTest>

using namespace kelfractionint;

class tst_typelibrary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_text = typelibrarytext(); }

    // Lines an object browser or a container author looks for, each as it must read.
    void keylines_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("library") << "library kelfractionint";
        QTest::newRow("help file") << "helpfile(\"Kel0101.hlp\")";
        QTest::newRow("whole part read")
            << "[id(0x68030019), propget, helpstring(\"numerical value of wholepart of fraction\")]\n"
               "        HRESULT Wholepartvalue([out, retval] BSTR*);";
        QTest::newRow("back colour through the standard id")
            << "[id(0xfffffe0b), propput, helpstring(\"backcolor of fractioncontrol\")]\n"
               "        HRESULT Backcolor([in] OLE_COLOR value);";
        QTest::newRow("record by reference")
            << "HRESULT loadfraction([in, out] SAFEARRAY(BSTR)* strarr, [out, retval] _fractioni**);";
        QTest::newRow("multiplier by value")
            << "HRESULT multiplyintofraction([in, out] _fractioni** resultfrac, [in] _fractioni* multiplierfrac, "
               "[out, retval] _fractioni**);";
        QTest::newRow("font by reference") << "[id(0x6803000b), propputref]\n        HRESULT Font([in, out] Font** value);";
        QTest::newRow("allowed set as Variant by reference")
            << "[id(0x68030000), propput]\n        HRESULT Denomallowedchars([in, out] VARIANT* value);";
        QTest::newRow("help string with trailing blank") << "helpstring(\"Backcolor of denominatorpart \")";
        QTest::newRow("border enumeration") << "        borderstylenone = 0,\n        borderstylefixed = 1\n    } fracBorderstyle;";
        QTest::newRow("type enumeration") << "        fracnumeric = 0,\n        fracAlgebraic = 1\n    } fractiontype;";
        QTest::newRow("control class") << "      control\n    ]\n    coclass fractioni {\n"
                                          "        [default] interface _fractioni;\n"
                                          "        [default, source] dispinterface __fractioni;";
        QTest::newRow("value event")
            << "void fractionvaluechanged([in, out] BSTR* oldsign, [in, out] BSTR* oldwhole, [in, out] BSTR* oldnumer, "
               "[in, out] BSTR* olddenom, [in, out] BSTR* newsign, [in, out] BSTR* newwhole, [in, out] BSTR* newnumer, "
               "[in, out] BSTR* newdenom);";
        QTest::newRow("mouse event") << "[id(0x00000007)]\n            void MouseDown([in, out] short* Button, "
                                        "[in, out] short* Shift, [in, out] single* X, [in, out] single* Y);";
        QTest::newRow("control ProgID") << "// ProgID: kelfractionint.fractioni";
        QTest::newRow("values page ProgID") << "// ProgID: kelfractionint.fractionvalues";
        QTest::newRow("appearance page ProgID") << "// ProgID: kelfractionint.fractionappearance";
        QTest::newRow("interface flags") << "      hidden,\n      dual,\n      nonextensible,\n      oleautomation\n    ]\n"
                                            "    interface _fractioni : IDispatch {";
    }

    void keylines()
    {
        QFETCH(QString, line);
        QVERIFY2(m_text.contains(line), qPrintable(line));
    }

    // The interface lists its members in the table's order: the order of the function table.
    void membersintableorder()
    {
        static const QRegularExpression declaration(QStringLiteral(R"(^        HRESULT (\w+)\()"),
                                                    QRegularExpression::MultilineOption);
        QStringList listed;
        for (auto it = declaration.globalMatch(m_text); it.hasNext();)
            listed << it.next().captured(1);
        QStringList expected;
        for (const dispmember &member : fractionimembers())
            expected << QString::fromLatin1(member.name);
        QCOMPARE(listed, expected);
    }

    // GUIDs are part of the contract: the same text every time, each GUID distinct.
    void stableguids()
    {
        QCOMPARE(typelibrarytext(), m_text);
        static const QRegularExpression uuid(QStringLiteral(R"(uuid\(([0-9a-f-]{36})\))"));
        QStringList guids;
        for (auto it = uuid.globalMatch(m_text); it.hasNext();)
            guids << it.next().captured(1);
        QCOMPARE(guids.size(), 10);
        guids.removeDuplicates();
        QCOMPARE(guids.size(), 10);
    }

private:
    QString m_text;
};

QTEST_MAIN(tst_typelibrary)
#include "tst_typelibrary.moc"
