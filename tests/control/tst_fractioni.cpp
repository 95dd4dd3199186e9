// The fraction control's value and lifecycle: the order and arguments of every
// fractionvaluechanged, the documented errors, allowed-character sets and validation, editing keys
// in a filtered whole part, a new control, the property bag's keys and round trips, and bags and
// files with foreign, broken or hostile values.
#include "fractionspeechmodel.h"
#include "messageboxsink.h"
#include "olecolor.h"
#include "propertybag.h"
#include "testsupport.h"
#include "twips.h"

#include <QAccessible>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QSettings>
#include <QStandardItemModel>
#include <QTemporaryDir>

using kelfractionint::fractioni;
using kelfractionint::memorypropertybag;
using testsupport::evs;
using testsupport::field;
using step = std::function<void(fractioni &)>;
struct change { step setup; bool design; step action; QString expected, after; };
struct entry { int type; const char *decimal; int part; QString text; bool accepted; };
struct allowance { QVariant candidate; QStringList stored; QString probe; bool allowed; };
Q_DECLARE_METATYPE(step)
Q_DECLARE_METATYPE(change)
Q_DECLARE_METATYPE(entry)
Q_DECLARE_METATYPE(allowance)

namespace {

QStringList chars(const char *text) { return QString::fromLatin1(text).split(QString(), Qt::SkipEmptyParts); }

const QStringList writerorder{
    "Wholepartvalue", "Numeratorvalue", "Denominatorvalue", "Width", "Height", "Fractionslash", "Backcolor",
    "Wholepartbackcolor", "Numeratorbackcolor", "Denominatorbackcolor", "Negforecolor", "Posforecolor",
    "Userresizeable", "Autoreplace", "Forcesign", "Borderstyle", "Font", "Fracpartvisible", "WholepartLocked",
    "NumeratorLocked", "DenominatorLocked", "FracType"};

// Every persisted property with the size, read through the meta-object.
QVariantMap persisted(const fractioni &control)
{
    QVariantMap values{{QStringLiteral("size"), control.size()}};
    for (const QString &key : writerorder)
        values.insert(key, control.property(key.toLatin1().constData()));
    return values;
}

void changeeverything(fractioni &c)
{
    c.setFracType(fractioni::fracAlgebraic);
    c.loadfraction(QStringList{"-x", "a", "b"});
    for (const auto &[name, value] : std::initializer_list<std::pair<const char *, QVariant>>{
             {"Fractionslash", false}, {"Backcolor", 0x102030}, {"Wholepartbackcolor", 0x405060},
             {"Numeratorbackcolor", 0x708090}, {"Denominatorbackcolor", 0xA0B0C0}, {"Negforecolor", 0x00FF00},
             {"Posforecolor", 0x0000FF}, {"Userresizeable", true}, {"Autoreplace", true}, {"Forcesign", true},
             {"Borderstyle", 1}, {"Font", QFont(QStringLiteral("Serif"), 15, QFont::Bold, true)},
             {"NumeratorLocked", true}, {"DenominatorLocked", true}, {"WholepartLocked", true}})
        QVERIFY(c.setProperty(name, value));
}

} // namespace

class tst_fractioni : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); m_messages.take(); }

    // Each row: the action, the events it raises and the value afterwards in evs() notation, a set-up
    // done before the spy listens, and whether the action runs at design time.
    void events_data()
    {
        QTest::addColumn<change>("row");
        const auto row = [](const char *name, step action, const QString &expected, const char *after,
                            step setup = {}, bool design = false) {
            QTest::newRow(name) << change{setup, design, action, expected, QString::fromLatin1(after)};
        };
        const auto load = [](const char *record) { return [=](fractioni &f) { f.loadfraction(testsupport::rec(record)); }; };
        const auto set = [](const char *name, const QVariant &value) { return [=](fractioni &f) { f.setProperty(name, value); }; };
        const QString same = "+ 4 1 7 > + 4 1 7", twice = same + ";" + same;
        const step changesign = [](fractioni &f) { QCOMPARE(f.changesign(), &f); };
        row("whole part -3 with blanks is stored trimmed", set("Wholepartvalue", "  -3  "), "+ 4 1 7 > - -3 1 7", "-3 1 7");
        row("+4 loses its plus without Forcesign", set("Wholepartvalue", "+4"), same, "4 1 7");
        row("Forcesign re-assigns the whole part with a plus", set("Forcesign", true), "+ 4 1 7 > + +4 1 7", "+4 1 7");
        row("Forcesign off re-assigns a lone plus as nothing", set("Forcesign", false), "+ + 3 4 > + _ 3 4", "_ 3 4",
            [](fractioni &f) { f.loadfraction(testsupport::rec("_ 3 4")); f.setForcesign(true); });
        row("Forcesign turns an empty whole part into plus", set("Wholepartvalue", ""), "+ +4 1 7 > + + 1 7", "+ 1 7",
            set("Forcesign", true));
        row("clearing the numerator sets the denominator to 1 first", set("Numeratorvalue", ""),
            "+ _ 3 4 > + _ 3 1; + _ 3 1 > + _ _ 1", "_ _ 1", load("_ 3 4"));
        row("denominator without a numerator stays empty", set("Denominatorvalue", "5"), "+ 2 _ _ > + 2 _ _", "2 _ _", load("2 _ _"));
        row("numerator -3 is refused: two events without change", set("Numeratorvalue", "-3"), twice, "4 1 7");
        row("refused whole part at design time re-applies the value", set("Wholepartvalue", "abc"), twice, "4 1 7", {}, true);
        row("refused whole part while locked re-applies the value", set("Wholepartvalue", "5-"), twice, "4 1 7",
            set("WholepartLocked", true));
        row("changesign of 2/3 gives the whole part minus and a second event", changesign,
            "+ _ 2 3 > - - 2 3; _ - 2 3 > - - 2 3", "- 2 3", load("_ 2 3"));
        row("changesign of -1 1/2 drops the minus", changesign, "- -1 1 2 > + 1 1 2; _ 1 1 2 > + 1 1 2", "1 1 2", load("-1 1 2"));
        row("changesign of an empty value does nothing", changesign, "", "_ _ _", load("_ _ _"));
        row("clearfraction of 1 2/3 clears whole, denominator, numerator", [](fractioni &f) { QCOMPARE(f.clearfraction(), &f); },
            "+ 1 2 3 > + _ 2 3; + _ 2 3 > + _ 2 _; + _ 2 _ > + _ 2 1; + _ 2 1 > + _ _ 1", "_ _ 1", load("1 2 3"));
        row("FracType 7 refuses even the empty text: clearfraction keeps the value", [](fractioni &f) { f.clearfraction(); },
            twice + ";" + twice + ";" + twice, "4 1 7", set("FracType", 7), true);
        row("loadfraction while the whole part is locked adds a summary", [](fractioni &f) { f.loadfraction({" -1", "2 ", " 5 "}); },
            "+ 4 1 7 > - -1 1 7; - -1 1 7 > - -1 2 7; - -1 2 7 > - -1 2 5; + 4 1 7 > - -1 2 5", "-1 2 5", set("WholepartLocked", true));
        row("loadfraction of a whole number applies the denominator rule", load("3 _ 9"),
            "+ 4 1 7 > + 3 1 7; + 3 1 7 > + 3 1 1; + 3 1 1 > + 3 _ 1; + 3 _ 1 > + 3 _ _", "3 _ _");
        row("Negforecolor re-assigns the whole part", set("Negforecolor", 0x00FF00), same, "4 1 7");
        row("hiding the fraction part clears numerator then denominator", set("Fracpartvisible", false),
            "+ 4 1 7 > + 4 1 1; + 4 1 1 > + 4 _ 1; + 4 _ 1 > + 4 _ _", "4 _ _");
        row("Autoreplace and FracType raise no value event",
            [](fractioni &f) { f.setAutoreplace(true); f.setFracType(fractioni::fracAlgebraic); }, "", "4 1 7");
        row("a record is trimmed and extra items ignored", [](fractioni &f) { f.loadfraction({" 2 ", "4", "8 ", "extra"}); },
            "+ 4 1 7 > + 2 1 7; + 2 1 7 > + 2 4 7; + 2 4 7 > + 2 4 8", "2 4 8");
        // A listener that changes the value: later listeners see the nested event first, then the
        // outer one with what it raised.
        row("a listener changing the value", [](fractioni &f) { f.changesign(); },
            "- -4 1 7 > + 9 1 7; + 4 1 7 > - -4 1 7; _ 9 1 7 > + 9 1 7", "9 1 7", [](fractioni &f) {
                QObject::connect(&f, &fractioni::fractionvaluechanged, &f, [&f] { f.setWholepartvalue("9"); },
                                 Qt::SingleShotConnection);
            });
    }

    void events()
    {
        QFETCH(change, row);
        const auto &[setup, design, action, expected, after] = row;
        fractioni control;
        if (setup)
            setup(control);
        std::optional<testsupport::designtime> designscope;
        if (design)
            designscope.emplace();
        QSignalSpy spy(&control, &fractioni::fractionvaluechanged);
        action(control);
        QCOMPARE(testsupport::events(spy), evs(expected));
        QCOMPARE(testsupport::value(control), testsupport::rec(after));
        QVERIFY(m_messages.take().isEmpty());
    }

    // Refused assignments raise their error in run mode and change nothing; at design time a
    // forbidden combination is a message instead.
    void errors()
    {
        fractioni control;
        QSignalSpy spy(&control, &fractioni::fractionvaluechanged);
        for (const QString &text : {QStringLiteral("abc"), QStringLiteral("%"), QString(100000, u'9') + u'x'})
            QCOMPARE(testsupport::errornumber([&] { control.setWholepartvalue(text); }), 380);
        QCOMPARE(testsupport::errornumber([&] { control.loadfraction(QStringList{"1", "2"}); }), 9);
        QCOMPARE(spy.count(), 0);
        QCOMPARE(testsupport::value(control), (QStringList{"4", "1", "7"}));

        control.setWholepartLocked(true);
        QSignalSpy changed(&control, &fractioni::propertychanged);
        QCOMPARE(testsupport::errornumber([&] { control.setForcesign(true); }), 380);
        testsupport::designtime design;
        control.setForcesign(true);
        QVERIFY(!control.Forcesign());
        QCOMPARE(m_messages.take(), QStringList{QStringLiteral("Usereditable and forcesign can't be True simultaneously")});
        QCOMPARE(testsupport::events(changed), QList<QStringList>{{"Forcesign"}});
    }

    // The sign, the fields in the sign's colour, and the fields shown (w, n, d).
    void signandcolours_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QString>("sign");
        QTest::addColumn<QString>("shown");
        QTest::newRow("empty value has sign 0") << "_ _ _" << "0" << "w";
        QTest::newRow("numerator only is positive") << "_ 1 2" << "+" << "nd";
        QTest::newRow("negative mixed number") << "-2 1 2" << "-" << "wnd";
        QTest::newRow("lone minus keeps the fraction negative") << "- 1 2" << "-" << "wnd";
    }

    void signandcolours()
    {
        QFETCH(QString, record);
        QFETCH(QString, sign);
        QFETCH(QString, shown);
        fractioni control;
        control.setNegforecolor(0x0000FF);
        control.setPosforecolor(0x00FF00);
        control.loadfraction(testsupport::rec(record));
        QCOMPARE(control.getsign(), sign);
        const QList<QLineEdit *> fields = control.findChildren<QLineEdit *>();
        for (qsizetype i = 0; i < fields.size(); ++i) {
            QCOMPARE(fields[i]->palette().color(QPalette::Text), sign == u'-' ? QColor(Qt::red) : QColor(Qt::green));
            QCOMPARE(!fields[i]->isHidden(), shown.contains(QLatin1String("wnd").at(i)));
        }
    }

    // A whole-part set assigned, what is stored of it, and whether \a probe is then allowed.
    void allowedsets_data()
    {
        QTest::addColumn<allowance>("row");
        const auto row = [](const char *name, const QVariant &candidate, const QStringList &stored, const QString &probe,
                            bool allowed) { QTest::newRow(name) << allowance{candidate, stored, probe, allowed}; };
        row("a b a c is stored as c b a; case counts", chars("abac"), chars("cba"), "A", false);
        row("empty strings count as elements", QStringList{"", "x", ""}, {"x", ""}, "", true);
        row("an element of two characters is ignored", QStringList{"a", "bc"}, {}, "x", true);
        row("an array without elements is ignored", QStringList(), {}, "\u00e9", false);
        row("Empty is ignored", QVariant(), {}, " ", true);
        row("a plain string is no array", QStringLiteral("a"), {}, "b", true);
        row("a list of variants from a script", QVariantList{"x", "y", "x"}, chars("yx"), "z", false);
        row("two characters are never one", chars("12"), chars("21"), "12", false);
    }

    void allowedsets()
    {
        QFETCH(allowance, row);
        const auto &[candidate, stored, probe, allowed] = row;
        fractioni control;
        const QStringList defaults = control.Wholeallowedchars().toStringList();
        QCOMPARE(defaults.size(), 97);
        QCOMPARE(QStringList({defaults.first(), defaults.at(95), defaults.last()}), (QStringList{" ", "\x7f", "\b"}));

        QSignalSpy changed(&control, &fractioni::propertychanged);
        control.setWholeallowedchars(candidate);
        QCOMPARE(control.Wholeallowedchars().toStringList(), stored.isEmpty() ? defaults : stored);
        QCOMPARE(changed.count(), stored.isEmpty() ? 0 : 1);
        QCOMPARE(control.wholecharallowed(probe), allowed);
        // Only the set assigned changes.
        QCOMPARE(control.Denomallowedchars().toStringList(), defaults);
    }

    // A text assigned at design time to a part (0 whole, 1 numerator, 2 denominator) of a control of
    // the given type, under the "." or "," locale, and whether the part takes it.
    void validation_data()
    {
        QTest::addColumn<entry>("row");
        QTest::newRow("whole part minus alone") << entry{0, ".", 0, "-", true};
        QTest::newRow("whole part 7%") << entry{0, ".", 0, "7%", true};
        QTest::newRow("whole part lone percent") << entry{0, ".", 0, "%", false};
        QTest::newRow("whole part trailing minus") << entry{0, ".", 0, "5-", false};
        QTest::newRow("whole 2.5 with point") << entry{0, ".", 0, "2.5", true};
        QTest::newRow("whole 2,5 with comma") << entry{0, ",", 0, "2,5", true};
        QTest::newRow("numerator 0,75 with comma") << entry{0, ",", 1, "0,75", true};
        QTest::newRow("denominator x") << entry{0, ".", 2, "x", false};
        QTest::newRow("algebraic numerator x") << entry{1, ".", 1, "x", true};
        QTest::newRow("algebraic numerator with a character outside the set") << entry{1, ".", 1, "x\u00e9", false};
        QTest::newRow("type 7 refuses digits") << entry{7, ".", 2, "3", false};
    }

    void validation()
    {
        QFETCH(entry, row);
        testsupport::pinlocale(row.decimal);
        fractioni control;
        control.setFracType(fractioni::fractiontype(row.type));
        const QStringList before = testsupport::value(control);
        testsupport::designtime design;
        control.setProperty(std::array{"Wholepartvalue", "Numeratorvalue", "Denominatorvalue"}[row.part], row.text);
        QCOMPARE(testsupport::value(control) != before, row.accepted);
    }

    void editingkeysinwholepart_data()
    {
        QTest::addColumn<QString>("keys"); // as a QKeySequence
        QTest::addColumn<QString>("expected");
        QTest::newRow("Delete removes the next digit") << "Del" << "23";
        QTest::newRow("select all, then typing replaces") << "Ctrl+A, 9" << "9";
        QTest::newRow("cut and paste back") << "Ctrl+A, Ctrl+X, Ctrl+V" << "123";
        QTest::newRow("undo a Delete") << "Del, Ctrl+Z" << "123";
        QTest::newRow("a letter stays refused") << "X" << "123";
        QTest::newRow("Enter stays refused") << "Return" << "123";
        QTest::newRow("Backspace is typed, and in the set") << "End, Backspace" << "12";
    }

    void editingkeysinwholepart()
    {
        QFETCH(QString, keys);
        QFETCH(QString, expected);
        fractioni control;
        control.setWholeallowedchars(chars("0123456789\b"));
        control.setWholepartvalue(QStringLiteral("123"));
        QLineEdit *wholepart = field(&control, "wholepart");
        QSignalSpy returns(wholepart, &QLineEdit::returnPressed);
        wholepart->setCursorPosition(0);
        QGuiApplication::clipboard()->clear();
        // Each key with the text the window system sends with it: X11 sends Delete as "\x7f" and
        // Ctrl+letter as a control character.
        const QHash<int, QString> texts{{Qt::Key_Delete, "\x7f"}, {Qt::Key_Return, "\r"}, {Qt::Key_Backspace, "\b"}, {Qt::Key_End, ""}};
        const QKeySequence sequence(keys);
        for (int i = 0; i < sequence.count(); ++i) {
            const QKeyCombination key = sequence[i];
            const QString text = key.keyboardModifiers()       ? QString(QChar(key.key() - Qt::Key_A + 1))
                               : texts.contains(key.key()) ? texts.value(key.key())
                                                           : QString(QChar(key.key())).toLower();
            QKeyEvent event(QEvent::KeyPress, key.key(), key.keyboardModifiers(), text);
            QApplication::sendEvent(wholepart, &event);
        }
        QCOMPARE(control.Wholepartvalue(), expected);
        QCOMPARE(returns.count(), 0);
    }

    // A new control takes the form's colour and font and stores only what differs from the
    // defaults (the font, an object, always; the size where it is not 600 x 600 twips); screen
    // readers find the value and the fields by name.
    void newcontrol()
    {
        QWidget form;
        form.setPalette(QPalette(QColor(0x33, 0x66, 0x99)));
        form.setFont(QFont(QStringLiteral("Serif"), 10, QFont::Normal, true));
        fractioni control(&form);
        QVERIFY(control.Font().italic());
        QCOMPARE(control.Font().family(), form.font().family());
        control.fracsize(600, 600);
        memorypropertybag bag;
        control.WriteProperties(bag);
        QStringList expected;
        if (std::lround(control.width() * kelfractionint::twipsperpixelx(&control)) != 600)
            expected << QStringLiteral("Width");
        if (std::lround(control.height() * kelfractionint::twipsperpixely(&control)) != 600)
            expected << QStringLiteral("Height");
        for (const char *name : {"Backcolor", "Wholepartbackcolor", "Numeratorbackcolor", "Denominatorbackcolor"}) {
            expected << QLatin1String(name);
            QCOMPARE(bag.readproperty(expected.last()).toUInt(), kelfractionint::olecolor::buttonface);
        }
        QCOMPARE(bag.keys(), expected << QStringLiteral("Font"));
        // The edit boxes' colour is the form's, though the control's own base is its fields'.
        control.setBackcolor(kelfractionint::olecolor::window);
        QCOMPARE(control.Picture().toImage().pixelColor(0, 0), form.palette().color(QPalette::Base));

        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&control);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("fraction"));
        control.loadfraction(QStringList{"-2", "1", "4"});
        QCOMPARE(accessible->text(QAccessible::Description), QStringLiteral("minus two and one quarter"));
        QCOMPARE(accessible->child(0)->text(QAccessible::Name), QStringLiteral("fraction, whole part"));
    }

    void cellsinwords()
    {
        // A view's cells are named by their fractions in words; other cells keep what they have.
        QStandardItemModel source(1, 2);
        source.setData(source.index(0, 0), QStringLiteral("-2 1/4"));
        source.setData(source.index(0, 1), QStringLiteral("note"));
        const kelfractionint::fractionspeechmodel model(&source);
        QCOMPARE(model.index(0, 0).data(Qt::AccessibleTextRole).toString(), QStringLiteral("minus two and one quarter"));
        QVERIFY(!model.index(0, 1).data(Qt::AccessibleTextRole).isValid());
    }

    void roundtrip_data()
    {
        QTest::addColumn<bool>("settings");
        QTest::addColumn<QVariant>("font");
        QFont nameless(QStringLiteral("x"));
        nameless.setFamily(QString());
        QTest::newRow("memory") << false << QVariant();
        QTest::newRow("QSettings, read back as text") << true << QVariant();
        QTest::newRow("a font without a family") << true << QVariant(nameless);
        QTest::newRow("a font restored from a damaged text") << true << QVariant(QStringLiteral(",12,-1,5,50,0,0,0,0,0"));
    }

    // Everything but Fracpartvisible (still at its default) is stored, in the writer's order where
    // the bag keeps one, and comes back; the value through the setters, whole part first. A font
    // without a family gets one, so that it can be saved.
    void roundtrip()
    {
        QFETCH(bool, settings);
        QFETCH(QVariant, font);
        fractioni original;
        changeeverything(original);
        if (font.typeId() == QMetaType::QFont) {
            original.setFont(font.value<QFont>());
        } else if (font.isValid()) {
            memorypropertybag source;
            original.WriteProperties(source);
            source.setraw(QStringLiteral("Font"), font);
            original.ReadProperties(source);
        }
        QVERIFY(!original.Font().family().isEmpty());
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("form.ini"));
        memorypropertybag memory;
        if (settings) {
            QSettings file(path, QSettings::IniFormat);
            kelfractionint::settingspropertybag bag(file, QStringLiteral("fraction1"));
            original.WriteProperties(bag);
        } else {
            original.WriteProperties(memory);
            QCOMPARE(memory.readproperty(QStringLiteral("Width")).typeId(), QMetaType::Float);
        }
        QSettings file(path, QSettings::IniFormat);
        kelfractionint::settingspropertybag fromfile(file, QStringLiteral("fraction1"));
        kelfractionint::propertybag &bag = settings ? static_cast<kelfractionint::propertybag &>(fromfile) : memory;
        QStringList expected = writerorder, keys = bag.keys();
        expected.removeOne(QStringLiteral("Fracpartvisible"));
        if (settings) { // QSettings lists its keys sorted
            expected.sort();
            keys.sort();
        }
        QCOMPARE(keys, expected);

        fractioni restored;
        QSignalSpy spy(&restored, &fractioni::fractionvaluechanged);
        restored.ReadProperties(bag);
        QCOMPARE(persisted(restored), persisted(original));
        QVERIFY(spy.count() >= 3);
        QCOMPARE(spy.at(0).at(5).toString(), QStringLiteral("-x"));
        QVERIFY(m_messages.take().isEmpty());
    }

    // A control restored from a bag starts from the empty value and takes what the bag holds; a
    // broken key leaves its property as it was and the keys after it are restored all the same.
    // "value" is the value in evs() notation.
    void restoredcontrol_data()
    {
        QTest::addColumn<QVariantMap>("keys");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("expected");
        const auto row = [](const char *name, const QVariantMap &keys, const char *property, const QVariant &expected) {
            QTest::newRow(name) << keys << property << expected;
        };
        const QString e = QStringLiteral("\u00e9");
        row("a type outside the list refuses the saved value", {{"FracType", 7}, {"Wholepartvalue", "5"}}, "value", "_ _ _");
        row("algebraic parts outside the sets are refused",
            {{"FracType", 1}, {"Wholepartvalue", e}, {"Numeratorvalue", e}, {"Denominatorvalue", e}}, "value", "_ _ _");
        row("an empty bag gives the default value", {}, "value", "4 1 7");
        row("no colour keys give white on a grey form", {}, "Denominatorbackcolor", 0xFFFFFFu);
        row("saved colour", {{"Backcolor", 0x00FF00}}, "Backcolor", 0x00FF00u);
        row("a number in a text key reads with the decimal comma", {{"Wholepartvalue", 2.5}, {"Numeratorvalue", 3}},
            "value", "2,5 3 7");
        row("FracType as text", {{"FracType", "algebraic"}}, "FracType", "fracnumeric");
        row("FracType beyond 32 bits", {{"FracType", 1e12}}, "FracType", "fracnumeric");
        row("whole part refused by the saved type", {{"Wholepartvalue", "abc"}}, "value", "_ 1 7");
        row("numerator as a list", {{"Numeratorvalue", QStringList{"1", "2"}}}, "value", "4 _ _");
        row("colour as a word", {{"Backcolor", "red"}}, "Backcolor", 0xFFFFFFu);
        row("colour beyond 32 bits", {{"Posforecolor", 1e20}}, "Posforecolor", 0u);
        row("Borderstyle beyond 16 bits", {{"Borderstyle", 70000}}, "Borderstyle", "borderstylenone");
        row("Fractionslash as a word", {{"Fractionslash", "maybe"}}, "Fractionslash", true);
        row("Font as a number, Width not a number, negative Height", {{"Font", 12}, {"Width", "wide"}, {"Height", -500}},
            "Fracpartvisible", true);
        row("huge Width", {{"Width", 1e30}}, "Fracpartvisible", true);
    }

    void restoredcontrol()
    {
        QFETCH(QVariantMap, keys);
        QFETCH(QString, property);
        QFETCH(QVariant, expected);
        testsupport::pinlocale(",");
        QWidget form;
        form.setPalette(QPalette(QColor(0x80, 0x80, 0x80)));
        memorypropertybag bag;
        for (auto it = keys.cbegin(); it != keys.cend(); ++it)
            bag.setraw(it.key(), it.value());
        bag.setraw(QStringLiteral("DenominatorLocked"), true);

        fractioni restored(bag, &form);
        if (property == QLatin1String("value"))
            QCOMPARE(testsupport::value(restored), testsupport::rec(expected.toString()));
        else
            QCOMPARE(restored.property(property.toLatin1().constData()).toString(), expected.toString());
        QVERIFY(restored.DenominatorLocked());
        QVERIFY(restored.width() > 0 && restored.width() < 20000);
        QVERIFY(m_messages.take().isEmpty());
        // A new control on the same form still takes its value and the form's colour.
        fractioni fresh(&form);
        QCOMPARE(testsupport::value(fresh), (QStringList{"4", "1", "7"}));
        QCOMPARE(fresh.Backcolor(), kelfractionint::olecolor::buttonface);
    }

    // A form file entry whose data claims 2 GB counts as absent; a value longer than a line edit
    // keeps by default loses nothing when typed at.
    void hostilevalues()
    {
        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("form.ini")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[first]\nWholepartvalue=@Variant(\\0\\0\\0\\n\\0\\x7f\\xff\\xff\\xfe)\nNumeratorvalue=3\n");
        file.close();
        QSettings settings(file.fileName(), QSettings::IniFormat);
        QCOMPARE(testsupport::value(fractioni(kelfractionint::settingspropertybag(settings, QStringLiteral("first")))),
                 (QStringList{"4", "3", "7"}));

        fractioni control;
        control.setFracType(fractioni::fracAlgebraic);
        control.setNumerallowedchars(QStringList{"a"});
        control.setNumeratorvalue(QString(40000, QLatin1Char('a')));
        QLineEdit *numerator = field(&control, "numerator");
        numerator->end(false);
        QKeyEvent event(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
        QApplication::sendEvent(numerator, &event);
        QCOMPARE(control.Numeratorvalue().size(), 40001);
    }

    // Three empty texts: the fields have no width, so neither slash nor bar has any length.
    void emptycontrolshowsnoseparator()
    {
        for (bool slash : {true, false}) {
            fractioni control;
            control.setFractionslash(slash);
            QVERIFY(testsupport::shown(&control));
            control.loadfraction(QStringList{"", "", ""});
            const QImage picture = control.Picture().toImage();
            QImage blank(picture.size(), picture.format());
            blank.fill(picture.pixel(0, 0));
            QVERIFY(picture == blank);
        }
    }

private:
    kelfractionint::messagecapture m_messages;
};

QTEST_MAIN(tst_fractioni)
#include "tst_fractioni.moc"
