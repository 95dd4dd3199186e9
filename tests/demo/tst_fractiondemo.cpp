// The demo application's window driven as a user drives it: the operations from buttons and keys,
// selection, keyboard and screen-reader access, the property pages, saving and reopening the form,
// pictures and the scripted tour; and the measurements page: editing through the keyboard, and a
// 100,000-row model that opens without touching every row.
#include "../control/testsupport.h"
#include "demowindow.h"
#include "measurements.h"
#include "scriptedrun.h"

#include "fractiondelegate.h"
#include "frmabout.h"
#include "propertypagedialog.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QSpinBox>
#include <QTableView>
#include <QTemporaryDir>

#include <memory>

using kelfractionint::demowindow;
using kelfractionint::fractiondelegate;
using kelfractionint::fractioni;
using kelfractionint::scriptedrun::click;
using testsupport::field;
using testsupport::value;

namespace {

// An operation from a button (or a shortcut when there is none) on the first and second operands.
struct operation { const char *button; QStringList first, second, result, firstafter; const char *message = ""; QKeyCombination key = {}; };

// Counts the rows whose data a view asks for.
struct rowcounter : QIdentityProxyModel
{
    QVariant data(const QModelIndex &index, int role) const override
    {
        rows.insert(index.row());
        return QIdentityProxyModel::data(index, role);
    }
    mutable QSet<int> rows;
};

} // namespace

Q_DECLARE_METATYPE(operation)

class tst_fractiondemo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testsupport::pinlocale(); }

    void init()
    {
        window = std::make_unique<demowindow>();
        window->logmessages();
        QVERIFY(testsupport::shown(window.get(), true));
    }

    void cleanup() { window.reset(); }

    // Each button and shortcut reaches its own operation; the "into" ones load the first operand
    // and leave the result alone. Errors the control raises and those the engine reports itself
    // both end in the log as messages.
    void operations_data()
    {
        QTest::addColumn<operation>("op");
        const QStringList any{"", "1", "2"}, kept, untouched{"4", "1", "7"}, big{"", "2000000000", "3"};
        const auto row = [](const char *name, operation op) { QTest::newRow(name) << op; };
        row("reduce", {"reducebutton", {"", "6", "8"}, any, {"", "3", "4"}, kept});
        row("fractomixed", {"fractomixedbutton", {"", "7", "4"}, any, {"1", "3", "4"}, kept});
        row("mixedtofrac", {"mixedtofracbutton", {"1", "1", "2"}, any, {"", "3", "2"}, kept});
        row("expand", {"expandbutton", {"", "2", "3"}, any, {"", "6", "9"}, kept});
        row("invert", {"invertbutton", {"", "2", "3"}, any, {"", "3", "2"}, kept});
        row("fractodecimal", {"fractodecimalbutton", {"", "1", "3"}, any, {"0.33", "", ""}, kept});
        row("fractopercent", {"fractopercentbutton", {"", "1", "3"}, any, {"33%", "", ""}, kept});
        row("decimaltofrac", {"decimaltofracbutton", {"0.25", "", ""}, any, {"", "25", "100"}, kept});
        row("percenttofrac", {"percenttofracbutton", {"12.5%", "", ""}, any, {"", "125", "1000"}, kept});
        row("add", {"addbutton", {"", "1", "2"}, {"", "1", "3"}, {"", "5", "6"}, kept});
        row("subtract", {"subtractbutton", {"", "1", "2"}, {"", "1", "3"}, {"", "1", "6"}, kept});
        row("multiply", {"multiplybutton", {"", "2", "3"}, {"", "3", "4"}, {"", "6", "12"}, kept});
        row("divide", {"dividebutton", {"", "1", "2"}, {"", "1", "4"}, {"", "4", "2"}, kept});
        row("addinto", {"addintobutton", {"", "1", "2"}, {"", "1", "3"}, untouched, {"", "5", "6"}});
        row("subtractinto", {"subtractintobutton", {"", "1", "2"}, {"", "1", "3"}, untouched, {"", "1", "6"}});
        row("multiplyinto", {"multiplyintobutton", {"", "2", "3"}, {"", "3", "4"}, untouched, {"", "6", "12"}});
        row("divideinto", {"divideintobutton", {"", "1", "2"}, {"", "1", "4"}, untouched, {"", "4", "2"}});
        row("dividing by an empty fraction",
            {"dividebutton", big, {"", "", ""}, untouched, kept, "message: Error 11: Division by zero"});
        row("expanding beyond 32 bits", {"expandbutton", big, any, untouched, kept, "message: Overflow"});
        row("Alt+A adds", {"", {"", "6", "8"}, {"", "1", "1"}, {"", "14", "8"}, kept, "", Qt::ALT | Qt::Key_A});
        row("Ctrl+Shift+A adds into first", {"", {"", "6", "8"}, {"", "1", "1"}, untouched, {"", "14", "8"}, "",
                                             Qt::CTRL | Qt::SHIFT | Qt::Key_A});
    }

    void operations()
    {
        QFETCH(operation, op);
        window->first()->setFracType(fractioni::fracAlgebraic);
        window->first()->loadfraction(op.first);
        window->second()->loadfraction(op.second);
        window->findChild<QSpinBox *>(QStringLiteral("factorbox"))->setValue(3);
        window->findChild<QSpinBox *>(QStringLiteral("decimalsbox"))->setValue(2);
        if (*op.button)
            click(button(QLatin1String(op.button)));
        else // A shortcut presses its button visibly and releases it a moment later.
            QTest::keyClick(static_cast<QWidget *>(nullptr), op.key.key(), op.key.keyboardModifiers());
        QTRY_COMPARE(value(*window->result()), op.result);
        QTRY_COMPARE(value(*window->first()), op.firstafter.isEmpty() ? op.first : op.firstafter);
        QCOMPARE(logged(QStringLiteral("message:")), *op.message ? QStringList{QLatin1String(op.message)} : QStringList());
    }

    void selectionfollowsfocusandclicks()
    {
        window->second()->loadfraction(QStringList{"", "6", "8"});
        QTest::mouseClick(field(window->second(), "numerator"), Qt::LeftButton);
        QVERIFY(window->findChild<QGroupBox *>(QStringLiteral("singlegroup"))->title().contains(QLatin1String("Second")));
        click(button(QStringLiteral("reducebutton")));
        QCOMPARE(value(*window->result()), QStringList({"", "3", "4"}));

        // A press on the result's own surface (left of its fields) raises MouseDown and selects it.
        fractioni *result = window->result();
        QTest::mouseClick(result, Qt::LeftButton, Qt::NoModifier, QPoint(1, result->height() - 2));
        QCOMPARE(window->selected(), result);
        QVERIFY(!logged(QStringLiteral("result: MouseDown (Button 1, Shift 0")).isEmpty());
    }

    // Every input has a name for screen readers; Tab visits the fractions part by part, then the
    // toggle and the operations in reading order, then the log, and comes round again.
    void keyboardandscreenreaders()
    {
        for (const QWidget *widget : window->centralWidget()->findChildren<QWidget *>()) {
            if (qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QSpinBox *>(widget)
                || qobject_cast<const fractioni *>(widget))
                QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
        }

        QLineEdit *start = field(window->first(), "wholepart");
        start->setFocus(Qt::TabFocusReason);
        QStringList visited;
        do {
            const QWidget *now = QApplication::focusWidget();
            const bool part = qobject_cast<const fractioni *>(now->parentWidget());
            visited.append(part ? now->parentWidget()->objectName() + QLatin1Char('.') + now->objectName() : now->objectName());
            QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Tab);
        } while (QApplication::focusWidget() != start && visited.size() < 40);
        QString expected;
        for (const char *control : {"first", "second", "result"})
            expected += QStringLiteral("%1.wholepart %1.numerator %1.denominator ").arg(QLatin1String(control));
        QCOMPARE(visited.join(QLatin1Char(' ')).remove(QLatin1String("button")),
                 expected + "autoreplacebox reduce fractomixed mixedtofrac invert expand factorbox changesign clear "
                            "fractodecimal fractopercent decimalsbox decimaltofrac percenttofrac approximate limitbox add "
                            "subtract multiply divide addinto subtractinto multiplyinto divideinto eventlog clearlog");
    }

    void pageseditselectedcontrol()
    {
        QTest::mouseClick(field(window->second(), "wholepart"), Qt::LeftButton);
        const auto page = [this](const char *name) {
            action(name)->trigger();
            auto *dialog = window->findChild<kelfractionint::propertypagedialog *>();
            return dialog && dialog->isVisible() ? dialog : nullptr;
        };
        auto *dialog = page("actionvaluespage");
        QVERIFY(dialog);
        dialog->findChild<QLineEdit *>(QStringLiteral("txtnumeratorvalue"))->setText(QStringLiteral("5"));
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        QVERIFY(QTest::qWaitFor([&] { return !window->findChild<kelfractionint::propertypagedialog *>(); }));
        QCOMPARE(value(*window->second()), QStringList({"4", "5", "7"}));
        QCOMPARE(value(*window->first()), QStringList({"4", "1", "7"}));

        // Autoreplace set on the appearance page shows in the window's toggle as a mixed state.
        dialog = page("actionappearancepage");
        QVERIFY(dialog);
        dialog->findChild<QCheckBox *>(QStringLiteral("chkautoreplace"))->setChecked(true);
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        auto *toggle = window->findChild<QCheckBox *>(QStringLiteral("autoreplacebox"));
        QCOMPARE(toggle->checkState(), Qt::PartiallyChecked);
        click(toggle);
        QCOMPARE(toggle->checkState(), Qt::Checked);
        QVERIFY(window->first()->Autoreplace() && window->second()->Autoreplace() && window->result()->Autoreplace());

        action("actionabout")->trigger();
        const auto *about = window->findChild<kelfractionint::frmAbout *>();
        QVERIFY(about && about->isVisible());
    }

    // Saved, changed and reopened in the same window and in a new one, every control looks as saved
    // and the toggle shows the result's Autoreplace; a picture exported and copied.
    void savedformandpictures()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("form.ini"));
        window->setformfile(path);
        kelfractionint::scriptedrun::typeinto(field(window->first(), "wholepart"), QStringLiteral("-3"));
        window->second()->setFractionslash(true);
        window->result()->loadfraction(QStringList{"", "7", "12"});
        window->result()->setBorderstyle(fractioni::borderstylefixed);
        window->result()->setAutoreplace(true);

        const QList<QImage> saved = pictures(*window);
        action("actionsave")->trigger();

        window->first()->clearfraction();
        window->second()->setFractionslash(false);
        window->result()->setBorderstyle(fractioni::borderstylenone);
        action("actionopen")->trigger();
        demowindow other;
        other.logmessages();
        other.show();
        QVERIFY(other.openform(path));
        for (demowindow *reopened : {window.get(), &other}) {
            QCOMPARE(pictures(*reopened), saved);
            QCOMPARE(reopened->findChild<QCheckBox *>(QStringLiteral("autoreplacebox"))->checkState(), Qt::PartiallyChecked);
        }
        // The newest window's log receives the messages.
        QVERIFY(!other.openform(dir.filePath(QStringLiteral("missing.ini"))));
        QCOMPARE(other.loglines().filter(QStringLiteral("message:")).size(), 1);

        QVERIFY(window->exportpicture(dir.filePath(QStringLiteral("first.png"))));
        QCOMPARE(QImage(dir.filePath(QStringLiteral("first.png"))).convertToFormat(QImage::Format_ARGB32),
                 window->first()->Picture().toImage().convertToFormat(QImage::Format_ARGB32));

        QTest::mouseClick(field(window->second(), "numerator"), Qt::LeftButton);
        action("actioncopypicture")->trigger();
        QCOMPARE(QApplication::clipboard()->image().size(), window->second()->Picture().size());
    }

    void scriptedtour()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("shots/demo.png"));
        QVERIFY(kelfractionint::scriptedrun::run(*window, path));
        QCOMPARE(QImage(path).size(), window->grab().size());
        QCOMPARE(value(*window->first()) + value(*window->second()) + value(*window->result()),
                 QStringList({"2", "3", "4", "-1", "1", "3", "1", "5", "12"}));
        // The log shows the typed keys' events.
        QVERIFY(window->loglines().contains(QStringLiteral(R"(first: fractionvaluechanged "+" "4" "1" "7" -> "+" "2" "1" "7")")));
    }

    void editing_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<int>("end");
        QTest::addColumn<QString>("value");
        QTest::newRow("Enter commits") << "3 1/8" << int(Qt::Key_Return) << "3 1/8";
        QTest::newRow("Escape cancels") << "3 1/8" << int(Qt::Key_Escape) << "";
        QTest::newRow("Tab commits and moves on") << "5" << int(Qt::Key_Tab) << "5 2/4";
    }

    void editing()
    {
        QFETCH(QString, keys);
        QFETCH(int, end);
        QFETCH(QString, value);
        kelfractionint::measurementspage page(20);
        page.resize(500, 400);
        QVERIFY(testsupport::shown(&page, true));
        QTableView *table = page.table();
        const QModelIndex cell = page.model()->index(0, 0);
        const QString before = cell.data(Qt::DisplayRole).toString();
        const QLabel *total = page.findChild<QLabel *>(QStringLiteral("total"));
        const QString totalbefore = total->text();
        table->setCurrentIndex(cell);
        table->setFocus();
        QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_F2);
        auto *editor = table->findChild<fractioni *>();
        QVERIFY(editor);
        // F2 puts the caret in the editor's first part; typing over it replaces part by part.
        QTRY_COMPARE(QApplication::focusWidget(), field(editor, "wholepart"));
        field(editor, "wholepart")->selectAll();
        QTest::keyClicks(static_cast<QWidget *>(nullptr), keys);
        QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key(end));
        QTRY_VERIFY(!table->findChild<fractioni *>() || !table->findChild<fractioni *>()->isVisible());
        QCOMPARE(cell.data(Qt::DisplayRole).toString(), value.isEmpty() ? before : value);
        if (end == Qt::Key_Tab)
            QCOMPARE(table->currentIndex(), page.model()->index(0, 1));
        QCOMPARE(total->text() != totalbefore, !value.isEmpty());
    }

    void largemodelopensquickly()
    {
        kelfractionint::measurementmodel model(100000);
        rowcounter counter;
        counter.setSourceModel(&model);
        QTableView table;
        table.setItemDelegate(new fractiondelegate(&table));
        table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        table.setModel(&counter);
        table.resize(800, 600);
        QVERIFY(testsupport::shown(&table));
        // Only the rows on the screen are read.
        QVERIFY2(counter.rows.size() < 200, qPrintable(QString::number(counter.rows.size())));
    }

private:
    QAbstractButton *button(const QString &name) const { return window->findChild<QAbstractButton *>(name); }
    QAction *action(const char *name) const { return window->findChild<QAction *>(QLatin1String(name)); }
    QStringList logged(const QString &part) const { return window->loglines().filter(part); }
    static QList<QImage> pictures(const demowindow &w)
    {
        return {w.first()->Picture().toImage(), w.second()->Picture().toImage(), w.result()->Picture().toImage()};
    }

    std::unique_ptr<demowindow> window;
};

QTEST_MAIN(tst_fractiondemo)
#include "tst_fractiondemo.moc"
