// The designer's property pages: their layout, what they load from and write to the selected
// controls and in which order, and the dialog that hosts them.
#include "../control/testsupport.h"

#include "fractionappearance.h"
#include "fractionvalues.h"
#include "propertypagedialog.h"

#include "messageboxsink.h"

#include <QCheckBox>
#include <QHash>
#include <QPushButton>

#include <algorithm>
#include <memory>

using namespace kelfractionint;
using testsupport::errornumber;
using testsupport::field;
using testsupport::value;

struct applied { QStringList typed; bool designmode; QStringList expected; int error; };
Q_DECLARE_METATYPE(applied)

class tst_fractionpages : public QObject
{
    Q_OBJECT

    kelfractionint::messagecapture m_messages;

private Q_SLOTS:
    void init() { testsupport::pinlocale(); m_messages.take(); }

    // Tab visits a page's boxes in the order given, which is not the order on screen; captions
    // in the order of creation; places in twips, widened to a caption that needs more.
    void layout_data()
    {
        QTest::addColumn<QStringList>("taborder");
        QTest::addColumn<QStringList>("captions");
        QTest::addColumn<QRect>("lasttwips");
        QTest::newRow("fractionvalues") << QStringList{"txtnumeratorvalue", "txtdenominatorvalue", "txtwholepartvalue"}
                                        << QStringList{"numeratorvalue:", "denominatorvalue:", "wholepartvalue:"}
                                        << QRect(90, 1670, 2700, 330);
        QTest::newRow("fractionappearance")
            << QStringList{"chkfractionslash", "chkuserresizeable",  "chkborderstyle",      "chkWholepartLocked",
                           "chkforcesign",     "chkautoreplace",     "Chknumeratorlocked", "ChkdenominatorLocked"}
            << QStringList{"Fractionslash", "Userresizeable", "Borderstyle",     "WholepartLocked",
                           "Forcesign",     "Autoreplace",    "NumeratorLocked", "DenominatorLocked"}
            << QRect(3240, 1440, 2052, 372);
    }

    void layout()
    {
        QFETCH(QStringList, taborder);
        QFETCH(QStringList, captions);
        QFETCH(QRect, lasttwips);
        const bool values = taborder.size() == 3;
        const std::unique_ptr<propertypage> page(values ? static_cast<propertypage *>(new fractionvalues) : new fractionappearance);
        QCOMPARE(page->windowTitle(), QLatin1String(QTest::currentDataTag()));

        QStringList visited, shown;
        QWidget *current = page->findChild<QWidget *>(taborder.first());
        while (visited.size() < taborder.size()) {
            visited << current->objectName();
            do
                current = current->nextInFocusChain();
            while (current->focusPolicy() == Qt::NoFocus);
        }
        QCOMPARE(visited, taborder);
        for (const QWidget *child : page->findChildren<QWidget *>()) {
            if (!child->property("text").toString().isEmpty())
                shown << child->property("text").toString();
        }
        QCOMPARE(shown, captions);

        const auto pixels = [&page](int twips) { return qRound(twips * page->logicalDpiX() / 1440.0); };
        const QWidget *last = page->findChild<QWidget *>(taborder.last());
        QCOMPARE(last->pos(), QPoint(pixels(lasttwips.x()), pixels(lasttwips.y())));
        QCOMPARE(last->height(), pixels(lasttwips.height()));
        QVERIFY(last->width() >= std::max(pixels(lasttwips.width()), last->sizeHint().width()));
    }

    // The values page writes the first selected control only, the appearance page each one.
    void writeorder()
    {
        fractioni first, second;
        QHash<QObject *, QStringList> writes;
        const auto record = [&writes](QObject *c, const char *name, const QVariant &) { writes[c] << name; };
        fractionvalues values;
        values.setpropertywriter(record);
        values.setSelectedControls({&first, &second});
        values.ApplyChanges();
        QCOMPARE(writes.keys(), QList<QObject *>{&first});
        QCOMPARE(writes.value(&first), (QStringList{"Wholepartvalue", "Denominatorvalue", "Numeratorvalue"}));

        writes.clear();
        fractionappearance appearance;
        appearance.setpropertywriter(record);
        appearance.setSelectedControls({&first, &second});
        appearance.ApplyChanges();
        const QStringList each{"Userresizeable",    "Fractionslash", "WholepartLocked", "NumeratorLocked",
                               "DenominatorLocked", "Forcesign",     "Autoreplace",     "Borderstyle"};
        QCOMPARE(writes.value(&first), each);
        QCOMPARE(writes.value(&second), each);
    }

    // The page shows and writes the first selected control only (see writeorder()).
    void valuesapply_data()
    {
        QTest::addColumn<applied>("row"); // typed: whole part, numerator, denominator
        const auto row = [](const char *name, QStringList typed, bool designmode, QStringList expected, int error) {
            QTest::newRow(name) << applied{typed, designmode, expected, error};
        };
        row("all three parts replaced", {"-2", "3", "5"}, false, {"-2", "3", "5"}, 0);
        row("signed numerator refused silently", {"4", "-3", "7"}, false, {"4", "1", "7"}, 0);
        row("bad whole part raises before the others are written", {"x", "3", "5"}, false, {"4", "1", "7"}, 380);
        row("bad whole part at design time is refused without error", {"x", "3", "5"}, true, {"4", "3", "5"}, 0);
    }

    void valuesapply()
    {
        QFETCH(applied, row);
        const auto &[typed, designmode, expected, error] = row;
        fractioni control, second;
        ambient::setdesignmode(&control, designmode);
        fractionvalues page;
        QVERIFY(!page.Changed());
        QSignalSpy changed(&page, &propertypage::Changedchanged);
        page.setSelectedControls({&control, &second});
        QCOMPARE(field(&page, "txtdenominatorvalue")->text(), QStringLiteral("7"));
        // A freshly loaded page counts as changed.
        QCOMPARE(changed.count(), 1);
        QVERIFY(page.Changed());
        for (int part = 0; part < 3; ++part)
            field(&page, std::array{"txtwholepartvalue", "txtnumeratorvalue", "txtdenominatorvalue"}[part])->setText(typed.at(part));

        QCOMPARE(errornumber([&] { page.ApplyChanges(); }), error);
        QCOMPARE(value(control), expected);
        QVERIFY(m_messages.take().isEmpty());
    }

    // The last selected control's states are shown (there is no mixed state) and written to all.
    void appearanceload_data()
    {
        QTest::addColumn<int>("border");
        QTest::addColumn<bool>("ticked");

        QTest::newRow("borderstylenone clear") << 0 << false;
        QTest::newRow("borderstylefixed ticked") << 1 << true;
        QTest::newRow("value outside the list clear") << 5 << false;
    }

    void appearanceload()
    {
        QFETCH(int, border);
        QFETCH(bool, ticked);

        fractioni first, control;
        first.setAutoreplace(true);
        control.setBorderstyle(static_cast<fractioni::fracBorderstyle>(border));
        control.setFractionslash(false);
        control.setNumeratorLocked(true);
        fractionappearance page;
        page.setSelectedControls({&first, &control});
        const QList<int> expected{ticked, false, true, false};
        QList<int> boxes;
        for (const char *box : {"chkborderstyle", "chkfractionslash", "Chknumeratorlocked", "chkautoreplace"})
            boxes << (field<QCheckBox>(&page, box)->checkState() == Qt::Checked);
        QCOMPARE(boxes, expected);
        QVERIFY(page.Changed());

        page.ApplyChanges();
        for (const fractioni *c : {&first, &control})
            QCOMPARE((QList<int>{c->Borderstyle(), c->Fractionslash(), c->NumeratorLocked(), c->Autoreplace()}), expected);
    }

    void appearanceconflict_data()
    {
        QTest::addColumn<bool>("designmode");
        QTest::newRow("run time raises and stops") << false;
        QTest::newRow("design time shows a message and goes on") << true;
    }

    void appearanceconflict()
    {
        // Forcesign with a locked whole part: the first control keeps what was written before
        // Forcesign; at run time the rest is left untouched.
        QFETCH(bool, designmode);
        fractioni first, second;
        ambient::setdesignmode(&first, designmode);
        ambient::setdesignmode(&second, designmode);
        fractionappearance page;
        page.setSelectedControls({&first, &second});
        field<QCheckBox>(&page, "chkWholepartLocked")->click();
        field<QCheckBox>(&page, "chkforcesign")->click();
        field<QCheckBox>(&page, "chkautoreplace")->click();

        QCOMPARE(errornumber([&] { page.ApplyChanges(); }), designmode ? 0 : 380);
        QCOMPARE(first.WholepartLocked(), true);
        QCOMPARE(first.Forcesign(), false);
        QCOMPARE(first.Autoreplace(), designmode);
        QCOMPARE(second.WholepartLocked(), designmode);
        QCOMPARE(second.Autoreplace(), designmode);
        const QStringList conflict(2, QStringLiteral("Usereditable and forcesign can't be True simultaneously"));
        QCOMPARE(m_messages.take(), designmode ? conflict : QStringList());
    }

    void latebinding()
    {
        QObject plain;
        fractioni control;
        QCOMPARE(errornumber([&] { (void)propertypage::readproperty(&plain, "Wholepartvalue"); }), 438);
        QCOMPARE(errornumber([&] { propertypage::writeproperty(&control, "Numerdenomgcd", 3); }), 438);
        QCOMPARE(errornumber([&] { propertypage::writeproperty(&control, "Font", QStringList()); }), 13);

        fractionvalues page;
        auto *gone = new fractioni;
        page.setSelectedControls({gone});
        delete gone;
        QCOMPARE(errornumber([&] { page.ApplyChanges(); }), 91);
    }

    void dialog()
    {
        fractioni control;
        propertypagedialog dialog;
        auto *values = new fractionvalues;
        auto *appearance = new fractionappearance;
        dialog.addpage(values);
        dialog.addpage(appearance);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Property Pages"));
        QVERIFY(!dialog.applybutton()->isEnabled());

        dialog.setSelectedControls({&control});
        QVERIFY(dialog.applybutton()->isEnabled());
        field(values, "txtnumeratorvalue")->setText(QStringLiteral("6"));
        dialog.applybutton()->click();
        QCOMPARE(control.Numeratorvalue(), QStringLiteral("6"));
        QVERIFY(!dialog.applybutton()->isEnabled());
        // Typing changes the page.
        QTest::keyClicks(field(values, "txtwholepartvalue"), QStringLiteral("x"));
        QVERIFY(values->Changed() && dialog.applybutton()->isEnabled());

        // A refused Apply keeps the dialog open and the page changed, and says why.
        dialog.show();
        dialog.accept();
        QVERIFY(dialog.isVisible());
        QVERIFY(values->Changed());
        QCOMPARE(m_messages.take(), QStringList{"Invalid property value"});

        field(values, "txtwholepartvalue")->setText(QStringLiteral("-3"));
        dialog.accept();
        QVERIFY(!dialog.isVisible());
        QCOMPARE(control.Wholepartvalue(), QStringLiteral("-3"));

        // A selection the pages cannot read is reported, and Apply stays off.
        m_messages.take();
        propertypagedialog empty;
        empty.addpage(new fractionvalues);
        empty.setSelectedControls({});
        QCOMPARE(m_messages.take(), QStringList{"Subscript out of range"});
        QVERIFY(!empty.applybutton()->isEnabled());
    }
};

QTEST_MAIN(tst_fractionpages)
#include "tst_fractionpages.moc"
