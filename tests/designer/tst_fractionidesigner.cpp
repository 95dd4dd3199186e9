// The Designer plugin and forms with fraction controls through Designer's form editor, QUiLoader
// and uic: what is designed comes back the same through all three, a control whose form holds no
// colour has its container's, opening a form changes nothing, colours are edited as colours,
// values are never translated, the pages write through the form as one undo step, and previews
// run as applications do.
#include "ui_roundtrip.h"

#include "ambient.h"
#include "fractioni.h"
#include "messageboxsink.h"
#include "olecolor.h"
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

// One value for every persisted property, none of them a default, white backgrounds and a system
// colour included.
const propertyvalues designed{
    {"FracType", 1}, {"Wholepartvalue", QStringLiteral("-x")}, {"Numeratorvalue", QStringLiteral("2y")},
    {"Denominatorvalue", QStringLiteral("z")}, {"Backcolor", 0xFFFFFFu}, {"Wholepartbackcolor", 0xFFFFFFu},
    {"Numeratorbackcolor", 0x00FFFFu}, {"Denominatorbackcolor", 0xFF0000u}, {"Fractionslash", false},
    {"Negforecolor", 0x008000u}, {"Posforecolor", kelfractionint::olecolor::windowtext}, {"Userresizeable", true}, {"Autoreplace", true},
    {"Forcesign", true}, {"Borderstyle", 1}, {"Font", QFont(QStringLiteral("DejaVu Sans"), 12)},
    {"NumeratorLocked", true}, {"DenominatorLocked", true},
};

// Hiding the fraction part empties it; the whole part stays.
const propertyvalues folded{{"Wholepartvalue", QStringLiteral("5")}, {"Fracpartvisible", false},
                            {"Numeratorvalue", QString()}, {"Denominatorvalue", QString()}, {"WholepartLocked", true}};

// What differs from the design in \a form. The folded control's form holds no colour, so it has
// its container's.
QString designedmismatches(const QWidget *form)
{
    QString out;
    for (const auto &[control, design] : {std::pair{"fraction", &designed}, std::pair{"folded", &folded}}) {
        const auto *each = form->findChild<fractioni *>(QLatin1String(control));
        propertyvalues values = *design;
        if (design == &folded)
            values << qMakePair("Backcolor", QVariant(kelfractionint::ambient::backcolor(each)))
                   << qMakePair("Denominatorbackcolor", QVariant(kelfractionint::ambient::backcolor(each)));
        for (const auto &[name, value] : values) {
            const QVariant actual = each->property(name);
            const bool same = actual.metaType().flags().testFlag(QMetaType::IsEnumeration) ? actual.toInt() == value.toInt()
                : actual.toString() == value.toString();
            if (!same)
                out += QStringLiteral("%1.%2=%3 ").arg(QLatin1String(control), QLatin1String(name), actual.toString());
        }
    }
    return out;
}

QString readfile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The form as it was before anything was designed: the controls' own (capitalised) properties removed.
QString newform()
{
    return readfile(QStringLiteral(KEL_TEST_ROUNDTRIP))
        .remove(QRegularExpression(QStringLiteral(" *<property name=\"[A-Z]\\w*\">.*?</property>\n"),
                                   QRegularExpression::DotMatchesEverythingOption));
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
        for (const auto &[name, value] : designed)
            form->cursor()->setWidgetProperty(control, QLatin1String(name), value);
        for (const auto &[name, value] : folded)
            form->cursor()->setWidgetProperty(form->mainContainer()->findChild<fractioni *>(QStringLiteral("folded")),
                                              QLatin1String(name), value);
        QCoreApplication::processEvents();

        // uic compiles exactly this file into the test: the type comes first, so that the values
        // meet its rules when they are read back, and no value is offered for translation.
        const QString contents = form->contents();
        const auto normalized = [](QString text) {
            return text.remove(QRegularExpression(QStringLiteral(" *<propertyspecifications>.*</propertyspecifications>\\n"),
                                                  QRegularExpression::DotMatchesEverythingOption)).trimmed();
        };
        QCOMPARE(normalized(contents), normalized(readfile(QStringLiteral(KEL_TEST_ROUNDTRIP))));

        QUiLoader loader;
        QBuffer buffer;
        buffer.setData(contents.toUtf8());
        const std::unique_ptr<QWidget> loaded(loader.load(&buffer));
        QCOMPARE(designedmismatches(loaded.get()), QString());
        QWidget compiled;
        Ui::roundtrip ui;
        ui.setupUi(&compiled);
        QCOMPARE(designedmismatches(&compiled), QString());

        // Reopened, the form is the same and unmodified.
        QDesignerFormWindowInterface *again = openform(contents);
        QVERIFY(!again->isDirty());
        QCOMPARE(again->contents(), contents);
        delete again;
        delete form;
    }

    void colourseditedascolours()
    {
        QDesignerFormWindowInterface *form = openform(newform());
        auto *control = form->mainContainer()->findChild<fractioni *>();
        auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(m_core->extensionManager(), control);
        const int negative = sheet->indexOf(QStringLiteral("Negforecolor"));
        QCOMPARE(sheet->property(negative), QVariant(QColor(Qt::red)));
        // The property editor writes a QColor: blue is blue, stored as 0x00BBGGRR.
        form->cursor()->setWidgetProperty(control, QStringLiteral("Negforecolor"), QColor(Qt::blue));
        QCOMPARE(control->Negforecolor(), 0xFF0000u);
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
    // controls (the clicked one first, so the appearance page shows the other), the values page
    // writes the clicked control only, and a value written back equal to what a new control has
    // is not stored.
    void pagesareoneundostep()
    {
        QDesignerFormWindowInterface *form = openform(readfile(QStringLiteral(KEL_TEST_ROUNDTRIP)));
        auto *first = form->mainContainer()->findChild<fractioni *>(QStringLiteral("fraction"));
        auto *second = form->mainContainer()->findChild<fractioni *>(QStringLiteral("folded"));
        form->clearSelection(false);
        form->selectWidget(second, true);
        form->selectWidget(first, true);
        const QList<QAction *> actions
            = qt_extension<QDesignerTaskMenuExtension *>(m_core->extensionManager(), first)->taskActions();
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
        dialog->reject();
        form->commandHistory()->undo();
        QVERIFY(first->Autoreplace() && !second->Autoreplace());
        QCOMPARE(first->Borderstyle(), fractioni::borderstylefixed);

        dialog = opendialog(0);
        QVERIFY(dialog);
        dialog->findChild<QLineEdit *>(QStringLiteral("txtnumeratorvalue"))->setText(QStringLiteral("1"));
        dialog->findChild<QLineEdit *>(QStringLiteral("txtdenominatorvalue"))->setText(QStringLiteral("9"));
        dialog->accept();
        QCOMPARE(second->Denominatorvalue(), QString());
        QCoreApplication::processEvents();

        const QString contents = form->contents();
        QVERIFY(contents.contains(QLatin1String("<string notr=\"true\">9</string>")));
        QCOMPARE(contents.count(QLatin1String("\"Numeratorvalue\"")), 1); // the folded control's empty one
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
        running->window()->close();
        delete form;
    }

private:
    QDesignerFormWindowInterface *openform(const QString &contents);

    QDesignerFormEditorInterface *m_core = nullptr;
    kelfractionint::messagecapture m_messages; // design-time messages, instead of message boxes
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
