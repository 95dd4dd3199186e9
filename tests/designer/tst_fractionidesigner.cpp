// The Designer plugin and forms with fraction controls through Designer's form editor, QUiLoader
// and uic: what is designed comes back the same through all three, opening a form changes
// nothing, colours are edited as colours, values are never translated, the pages write through
// the form as one undo step, and previews run as applications do.
#include "ui_roundtrip.h"

#include "ambient.h"
#include "automationerror.h"
#include "fractioni.h"
#include "messageboxsink.h"
#include "propertypagedialog.h"

#include <QtDesigner/QDesignerComponents>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerIntegration>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QExtensionManager>
#include <QtUiTools/QUiLoader>

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QUndoStack>

#include <memory>

using kelfractionint::fractioni;
using kelfractionint::propertypagedialog;
using propertyvalues = QList<QPair<const char *, QVariant>>;

namespace {

// One value for every persisted property, none of them a default, white backgrounds included.
const propertyvalues designed{
    {"FracType", 1}, {"Wholepartvalue", QStringLiteral("-x")}, {"Numeratorvalue", QStringLiteral("2y")},
    {"Denominatorvalue", QStringLiteral("z")}, {"Backcolor", 0xFFFFFFu}, {"Wholepartbackcolor", 0xFFFFFFu},
    {"Numeratorbackcolor", 0x00FFFFu}, {"Denominatorbackcolor", 0xFF0000u}, {"Fractionslash", false},
    {"Negforecolor", 0x008000u}, {"Posforecolor", 0x800000u}, {"Userresizeable", true}, {"Autoreplace", true},
    {"Forcesign", true}, {"Borderstyle", 1}, {"Font", QFont(QStringLiteral("DejaVu Sans"), 12)},
    {"NumeratorLocked", true}, {"DenominatorLocked", true},
};

// Hiding the fraction part empties it; the whole part stays.
const propertyvalues folded{{"Wholepartvalue", QStringLiteral("5")}, {"Fracpartvisible", false},
                            {"Numeratorvalue", QString()}, {"Denominatorvalue", QString()}, {"WholepartLocked", true}};


QString mismatches(const QWidget *form, const QList<QPair<const char *, const propertyvalues *>> &controls)
{
    QString out;
    for (const auto &[control, values] : controls) {
        const auto *each = form->findChild<fractioni *>(QLatin1String(control));
        if (!each)
            return QStringLiteral("no control %1").arg(QLatin1String(control));
        for (const auto &[name, value] : *values) {
            const QVariant actual = each->property(name);
            const bool same = actual.metaType().flags().testFlag(QMetaType::IsEnumeration)
                ? actual.toInt() == value.toInt()
                : actual.toString() == value.toString();
            if (!same)
                out += QStringLiteral("%1.%2=%3 ").arg(QLatin1String(control), QLatin1String(name), actual.toString());
        }
    }
    return out;
}

QString designedmismatches(const QWidget *form)
{
    return mismatches(form, {{"fraction", &designed}, {"folded", &folded}});
}

QString readfile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The round trip's form without the properties whose names match \a name.
QString roundtripwithout(const char *name)
{
    return readfile(QStringLiteral(KEL_TEST_ROUNDTRIP))
        .remove(QRegularExpression(QStringLiteral(" *<property name=\"%1\">.*?</property>\n").arg(QLatin1String(name)),
                                   QRegularExpression::DotMatchesEverythingOption));
}

// The form as it was before anything was designed: the controls' own (capitalised) properties removed.
QString newform()
{
    return roundtripwithout("[A-Z]\\w*");
}

// A form written without colours, as a host writes it by hand.
QString colourless()
{
    return roundtripwithout("\\w*color");
}

std::unique_ptr<QWidget> loadwithuiloader(const QString &contents)
{
    QUiLoader loader;
    QBuffer buffer;
    buffer.setData(contents.toUtf8());
    return std::unique_ptr<QWidget>(loader.load(&buffer));
}

} // namespace

class tst_fractionidesigner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale::c());
        QDesignerComponents::initializeResources();
        m_core = QDesignerComponents::createFormEditor(this);
        m_core->setIntegration(new QDesignerIntegration(m_core, m_core));
        QDesignerComponents::createTaskMenu(m_core, m_core);
        QDesignerComponents::initializePlugins(m_core);
    }

    // A control on a grey form given every property in Designer is saved so that Designer,
    // QUiLoader and uic all give it back; reopening the saved form changes nothing.
    void designedcomesback()
    {
        QDesignerFormWindowInterface *form = openform(newform());
        auto *control = form->mainContainer()->findChild<fractioni *>(QStringLiteral("fraction"));
        QVERIFY(!kelfractionint::ambient::usermode(control));
        for (const auto &[name, value] : designed)
            form->cursor()->setWidgetProperty(control, QLatin1String(name), value);
        for (const auto &[name, value] : folded)
            form->cursor()->setWidgetProperty(form->mainContainer()->findChild<fractioni *>(QStringLiteral("folded")),
                                              QLatin1String(name), value);
        QCoreApplication::processEvents();
        QCOMPARE(designedmismatches(form->mainContainer()), QString());

        const QString contents = form->contents();
        // The type is saved first, so that the values meet its rules when they are read back.
        QVERIFY(contents.indexOf(QLatin1String("\"FracType\"")) < contents.indexOf(QLatin1String("\"Wholepartvalue\"")));
        QCOMPARE(contents.count(QLatin1String("<string notr=\"true\">")), 4);
        // uic compiles exactly this file into the test.
        const auto normalized = [](QString text) {
            return text.remove(QRegularExpression(QStringLiteral(" *<propertyspecifications>.*</propertyspecifications>\\n"),
                                                  QRegularExpression::DotMatchesEverythingOption))
                .trimmed();
        };
        QCOMPARE(normalized(contents), normalized(readfile(QStringLiteral(KEL_TEST_ROUNDTRIP))));

        std::unique_ptr<QWidget> loaded = loadwithuiloader(contents);
        QCOMPARE(designedmismatches(loaded.get()), QString());
        QWidget compiled;
        Ui::roundtrip ui;
        ui.setupUi(&compiled);
        QCOMPARE(designedmismatches(&compiled), QString());

        // Reopened, the form is the same, unmodified, with nothing to undo.
        QDesignerFormWindowInterface *again = openform(contents);
        QCOMPARE(designedmismatches(again->mainContainer()), QString());
        QVERIFY(!again->isDirty());
        QCOMPARE(again->commandHistory()->count(), 0);
        QCOMPARE(again->contents(), contents);
        delete again;
        delete form;
    }

    // A form without colour keys gives every control its container's colour, whoever loads it;
    // Designer keeps the file as it is.
    void formswithoutcolours()
    {
        propertyvalues uncoloured;
        std::copy_if(designed.cbegin(), designed.cend(), std::back_inserter(uncoloured),
                     [](const auto &value) { return !QByteArray(value.first).endsWith("color"); });
        QDesignerFormWindowInterface *form = openform(colourless());
        std::unique_ptr<QWidget> loaded = loadwithuiloader(colourless());
        for (const QWidget *top : {form->mainContainer(), loaded.get()}) {
            QCOMPARE(mismatches(top, {{"fraction", &uncoloured}, {"folded", &folded}}), QString());
            for (const fractioni *control : top->findChildren<fractioni *>()) {
                QCOMPARE(control->Backcolor(), kelfractionint::ambient::backcolor(control));
                QCOMPARE(control->Denominatorbackcolor(), kelfractionint::ambient::backcolor(control));
            }
        }
        QVERIFY(!form->isDirty());
        QVERIFY(!form->contents().contains(QLatin1String("backcolor")));
        delete form;
    }

    void colourseditedascolours()
    {
        QDesignerFormWindowInterface *form = openform(newform());
        auto *control = form->mainContainer()->findChild<fractioni *>();
        auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(m_core->extensionManager(), control);
        QVERIFY(sheet);
        const int negative = sheet->indexOf(QStringLiteral("Negforecolor"));
        QCOMPARE(sheet->property(negative), QVariant(QColor(Qt::red)));
        // The property editor writes a QColor: blue is blue, stored as 0x00BBGGRR.
        form->cursor()->setWidgetProperty(control, QStringLiteral("Negforecolor"), QColor(Qt::blue));
        QCOMPARE(control->Negforecolor(), 0xFF0000u);
        QVERIFY(form->contents().contains(QLatin1String("<UInt>16711680</UInt>")));
        // Resetting gives back what a new control has: red, and the container's background.
        QVERIFY(sheet->reset(negative));
        QCOMPARE(control->Negforecolor(), 255u);
        form->cursor()->setWidgetProperty(control, QStringLiteral("Backcolor"), QColor(Qt::white));
        QVERIFY(sheet->reset(sheet->indexOf(QStringLiteral("Backcolor"))));
        QCOMPARE(control->Backcolor(), kelfractionint::ambient::backcolor(control));
        // Only the control's own font is offered.
        QVERIFY(!sheet->isVisible(sheet->indexOf(QStringLiteral("font"))));
        QVERIFY(sheet->isVisible(sheet->indexOf(QStringLiteral("Font"))));
        delete form;
    }

    // The task menu's pages write through the form: one Apply is one undo step over the selected
    // controls, the values page writes the clicked control only, and a value written back equal to
    // what a new control has is not stored.
    void pagesareoneundostep()
    {
        QDesignerFormWindowInterface *form = openform(colourless());
        auto *first = form->mainContainer()->findChild<fractioni *>(QStringLiteral("fraction"));
        auto *second = form->mainContainer()->findChild<fractioni *>(QStringLiteral("folded"));
        form->clearSelection(false);
        form->selectWidget(second, true);
        form->selectWidget(first, true);
        auto *menu = qt_extension<QDesignerTaskMenuExtension *>(m_core->extensionManager(), first);
        QVERIFY(menu);
        const QList<QAction *> actions = menu->taskActions();
        const auto opendialog = [&](int action) -> propertypagedialog * {
            actions.at(action)->trigger();
            for (QWidget *top : QApplication::topLevelWidgets()) {
                if (auto *dialog = qobject_cast<propertypagedialog *>(top); dialog && dialog->isVisible())
                    return dialog;
            }
            return nullptr;
        };

        propertypagedialog *dialog = opendialog(1);
        QVERIFY(dialog);
        const int steps = form->commandHistory()->count();
        dialog->findChild<QCheckBox *>(QStringLiteral("chkautoreplace"))->click();
        dialog->findChild<QCheckBox *>(QStringLiteral("chkborderstyle"))->setChecked(false);
        dialog->applybutton()->click();
        QVERIFY(first->Autoreplace() && second->Autoreplace());
        QCOMPARE(form->commandHistory()->count(), steps + 1);
        QVERIFY(form->isDirty());
        dialog->reject();
        form->commandHistory()->undo();
        QVERIFY(first->Autoreplace() && !second->Autoreplace());
        QCOMPARE(first->Borderstyle(), fractioni::borderstylefixed);
        form->commandHistory()->redo();

        dialog = opendialog(0);
        QVERIFY(dialog);
        dialog->findChild<QLineEdit *>(QStringLiteral("txtnumeratorvalue"))->setText(QStringLiteral("1"));
        dialog->findChild<QLineEdit *>(QStringLiteral("txtdenominatorvalue"))->setText(QStringLiteral("9"));
        dialog->accept();
        QCOMPARE(second->Denominatorvalue(), QString());
        QCoreApplication::processEvents();

        // A forbidden combination at design time is a message, not an error.
        m_messages.take();
        second->setForcesign(true);
        QCOMPARE(m_messages.take(), QStringList{"Usereditable and forcesign can't be True simultaneously"});

        const QString contents = form->contents();
        QVERIFY(contents.contains(QLatin1String("<string notr=\"true\">9</string>")));
        QCOMPARE(contents.count(QLatin1String("\"Numeratorvalue\"")), 1); // the folded control's empty one
        std::unique_ptr<QWidget> loaded = loadwithuiloader(contents);
        const auto *again = loaded->findChild<fractioni *>(QStringLiteral("fraction"));
        QCOMPARE(again->Denominatorvalue(), QStringLiteral("9"));
        QCOMPARE(again->Numeratorvalue(), QStringLiteral("1"));
        QVERIFY(again->Autoreplace());
        // The appearance page showed the last selected control and wrote its slash to both.
        QVERIFY(again->Fractionslash());
        QCOMPARE(again->Borderstyle(), fractioni::borderstylenone);
        delete form;
    }

    // Form > Preview shows controls that run as in an application; the form's own stay in design mode.
    void previewruns()
    {
        QDesignerFormWindowInterface *form = openform(newform());
        auto *onform = form->mainContainer()->findChild<fractioni *>();
        QAction *preview = m_core->formWindowManager()->action(QDesignerFormWindowManagerInterface::DefaultPreviewAction);
        QVERIFY(preview && preview->isEnabled());
        preview->trigger();
        QCoreApplication::processEvents();
        fractioni *running = nullptr;
        for (QWidget *top : QApplication::topLevelWidgets()) {
            if (top->isVisible() && !QDesignerFormWindowInterface::findFormWindow(top) && !running)
                running = top->findChild<fractioni *>();
        }
        QVERIFY(running);
        QVERIFY(kelfractionint::ambient::usermode(running));
        QVERIFY(!kelfractionint::ambient::usermode(onform));
        QCOMPARE(onform->Container(), nullptr); // read without an error at design time
        QVERIFY_THROWS_EXCEPTION(modfracglobal::automationerror, running->setWholepartvalue(QStringLiteral("x")));
        running->window()->close();
        delete form;
    }

private:
    QDesignerFormWindowInterface *openform(const QString &contents);

    QDesignerFormEditorInterface *m_core = nullptr;
    kelfractionint::messagecapture m_messages;
};

QDesignerFormWindowInterface *tst_fractionidesigner::openform(const QString &contents)
{
    QDesignerFormWindowInterface *form = m_core->formWindowManager()->createFormWindow(nullptr);
    form->setContents(contents);
    m_core->formWindowManager()->setActiveFormWindow(form);
    QCoreApplication::processEvents();
    return form;
}

QTEST_MAIN(tst_fractionidesigner)
#include "tst_fractionidesigner.moc"
