// Forms with fraction controls through Designer's form editor, QUiLoader and uic: what is
// designed comes back the same through all three, opening a form changes nothing, colours are
// edited as colours, values are never translated, and previews run as applications do.
#include "ui_fractionform.h"
#include "ui_roundtrip.h"

#include "ambient.h"
#include "automationerror.h"
#include "fractioni.h"
#include "messagesink.h"

#include <QtDesigner/QDesignerComponents>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerIntegration>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QExtensionManager>
#include <QtUiTools/QUiLoader>

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QTest>
#include <QUndoStack>

#include <memory>

using kelfractionint::fractioni;

namespace {

// One value for every persisted property, none of them a default, white backgrounds included.
const QList<QPair<const char *, QVariant>> &designed()
{
    static const QList<QPair<const char *, QVariant>> values{
        {"FracType", 1},
        {"Wholepartvalue", QStringLiteral("-x")},
        {"Numeratorvalue", QStringLiteral("2y")},
        {"Denominatorvalue", QStringLiteral("z")},
        {"Backcolor", 0xFFFFFFu},
        {"Wholepartbackcolor", 0xFFFFFFu},
        {"Numeratorbackcolor", 0x00FFFFu},
        {"Denominatorbackcolor", 0xFF0000u},
        {"Fractionslash", false},
        {"Negforecolor", 0x008000u},
        {"Posforecolor", 0x800000u},
        {"Userresizeable", true},
        {"Autoreplace", true},
        {"Forcesign", true},
        {"Borderstyle", 1},
        {"Font", QFont(QStringLiteral("DejaVu Sans"), 12)},
        {"NumeratorLocked", true},
        {"DenominatorLocked", true},
    };
    return values;
}

// Hiding the fraction part empties it; the whole part stays.
const QList<QPair<const char *, QVariant>> &foldedvalues()
{
    static const QList<QPair<const char *, QVariant>> values{
        {"Wholepartvalue", QStringLiteral("5")},
        {"Fracpartvisible", false},
        {"Numeratorvalue", QString()},
        {"Denominatorvalue", QString()},
        {"WholepartLocked", true},
    };
    return values;
}

QString mismatches(const QWidget *form)
{
    QString out;
    for (const auto &[control, values] : {std::pair{"fraction", &designed()}, std::pair{"folded", &foldedvalues()}}) {
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

QString readfile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

std::unique_ptr<QWidget> loadwithuiloader(const QString &contents)
{
    QUiLoader loader;
    QBuffer buffer;
    buffer.setData(contents.toUtf8());
    return std::unique_ptr<QWidget>(loader.load(&buffer));
}

} // namespace

class tst_designerforms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void designedcomesback();
    void formswithoutcolours();
    void colourseditedascolours();
    void previewruns();

private:
    QDesignerFormWindowInterface *openform(const QString &contents);
    static QString normalized(QString contents);

    QDesignerFormEditorInterface *m_core = nullptr;
};

void tst_designerforms::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    modfracglobal::setmessagesink([](const std::string &text) { QFAIL(text.c_str()); });
    QDesignerComponents::initializeResources();
    m_core = QDesignerComponents::createFormEditor(this);
    m_core->setIntegration(new QDesignerIntegration(m_core, m_core));
    QDesignerComponents::createTaskMenu(m_core, m_core);
    QDesignerComponents::initializePlugins(m_core);
}

void tst_designerforms::cleanupTestCase()
{
    modfracglobal::setmessagesink({});
}

QDesignerFormWindowInterface *tst_designerforms::openform(const QString &contents)
{
    QDesignerFormWindowInterface *form = m_core->formWindowManager()->createFormWindow(nullptr);
    form->setContents(contents);
    m_core->formWindowManager()->setActiveFormWindow(form);
    QCoreApplication::processEvents();
    return form;
}

// The file without the parts Designer rewrites from its own state.
QString tst_designerforms::normalized(QString contents)
{
    contents.remove(QRegularExpression(QStringLiteral(" *<propertyspecifications>.*</propertyspecifications>\\n"),
                                       QRegularExpression::DotMatchesEverythingOption));
    return contents.trimmed();
}

// A control dropped on a grey form and given every property in Designer is saved so that
// Designer, QUiLoader and uic all give it back; reopening the saved form changes nothing.
void tst_designerforms::designedcomesback()
{
    QDesignerFormWindowInterface *form = openform(readfile(QStringLiteral(KEL_TEST_NEWFORM)));
    auto *control = form->mainContainer()->findChild<fractioni *>(QStringLiteral("fraction"));
    QVERIFY(control);
    QVERIFY(!kelfractionint::ambient::usermode(control));
    auto *folded = form->mainContainer()->findChild<fractioni *>(QStringLiteral("folded"));
    for (const auto &[name, value] : designed())
        form->cursor()->setWidgetProperty(control, QLatin1String(name), value);
    for (const auto &[name, value] : foldedvalues())
        form->cursor()->setWidgetProperty(folded, QLatin1String(name), value);
    QCoreApplication::processEvents();
    QCOMPARE(mismatches(form->mainContainer()), QString());

    const QString contents = form->contents();
    if (qEnvironmentVariableIsSet("KEL_DUMP_FORM"))
        qInfo().noquote() << contents;
    // The type is saved first, so that the values meet its rules when they are read back.
    QVERIFY(contents.indexOf(QLatin1String("\"FracType\"")) < contents.indexOf(QLatin1String("\"Wholepartvalue\"")));
    QVERIFY(!contents.contains(QLatin1String("<color")));
    QCOMPARE(contents.count(QLatin1String("<string notr=\"true\">")), 4);
    // uic compiles exactly this file into the test.
    QCOMPARE(normalized(contents), normalized(readfile(QStringLiteral(KEL_TEST_ROUNDTRIP))));

    std::unique_ptr<QWidget> loaded = loadwithuiloader(contents);
    QVERIFY(loaded);
    QCOMPARE(mismatches(loaded.get()), QString());
    QWidget compiled;
    Ui::roundtrip ui;
    ui.setupUi(&compiled);
    QCOMPARE(mismatches(&compiled), QString());
    QCOMPARE(ui.fraction->geometry(), control->geometry());
    QCOMPARE(loaded->findChild<fractioni *>(QStringLiteral("fraction"))->geometry(), control->geometry());

    // Nothing to translate in what uic makes of the form.
    QProcess uic;
    uic.start(QLibraryInfo::path(QLibraryInfo::LibraryExecutablesPath) + QStringLiteral("/uic"),
              {QStringLiteral(KEL_TEST_ROUNDTRIP)});
    QVERIFY(uic.waitForFinished(30000));
    const QString generated = QString::fromUtf8(uic.readAllStandardOutput());
    QVERIFY(generated.contains(QLatin1String("setNumeratorvalue(QString::fromUtf8(\"2y\"))")));
    QVERIFY(!generated.contains(QLatin1String("translate(\"roundtrip\", \"2y\"")));

    // Reopened, the form is the same, unmodified, with nothing to undo.
    QDesignerFormWindowInterface *again = openform(contents);
    QCOMPARE(mismatches(again->mainContainer()), QString());
    QCoreApplication::processEvents();
    QVERIFY(!again->isDirty());
    QCOMPARE(again->commandHistory()->count(), 0);
    QCOMPARE(again->contents(), contents);
    delete again;
    delete form;
}

// A form without colour keys gives every control its container's colour, whoever loads it;
// Designer keeps the file as it is.
void tst_designerforms::formswithoutcolours()
{
    const QString contents = readfile(QStringLiteral(KEL_TEST_FORM));
    QDesignerFormWindowInterface *form = openform(contents);
    std::unique_ptr<QWidget> loaded = loadwithuiloader(contents);
    QWidget compiled;
    Ui::fractionform ui;
    ui.setupUi(&compiled);
    QVERIFY(loaded);
    for (const QWidget *top : {form->mainContainer(), loaded.get(), static_cast<QWidget *>(&compiled)}) {
        for (const fractioni *control : top->findChildren<fractioni *>()) {
            const quint32 container = kelfractionint::ambient::backcolor(control);
            QCOMPARE(control->Backcolor(), container);
            QCOMPARE(control->Denominatorbackcolor(), container);
        }
    }
    QCoreApplication::processEvents();
    QVERIFY(!form->isDirty());
    QVERIFY(!form->contents().contains(QLatin1String("backcolor")));
    delete form;
}

void tst_designerforms::colourseditedascolours()
{
    QDesignerFormWindowInterface *form = openform(readfile(QStringLiteral(KEL_TEST_NEWFORM)));
    auto *control = form->mainContainer()->findChild<fractioni *>();
    auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(m_core->extensionManager(), control);
    QVERIFY(sheet);
    const int negative = sheet->indexOf(QStringLiteral("Negforecolor"));
    QCOMPARE(sheet->property(negative), QVariant(QColor(Qt::red)));
    // The property editor writes a QColor: blue is blue, stored as 0x00BBGGRR.
    form->cursor()->setWidgetProperty(control, QStringLiteral("Negforecolor"), QColor(Qt::blue));
    QCOMPARE(control->Negforecolor(), 0xFF0000u);
    QVERIFY(sheet->isChanged(negative));
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

// Form > Preview shows controls that run as in an application; the form's own stay in design mode.
void tst_designerforms::previewruns()
{
    QDesignerFormWindowInterface *form = openform(readfile(QStringLiteral(KEL_TEST_NEWFORM)));
    auto *designed = form->mainContainer()->findChild<fractioni *>();
    QAction *preview = m_core->formWindowManager()->action(QDesignerFormWindowManagerInterface::DefaultPreviewAction);
    QVERIFY(preview && preview->isEnabled());
    preview->trigger();
    QCoreApplication::processEvents();
    fractioni *running = nullptr;
    for (QWidget *top : QApplication::topLevelWidgets()) {
        if (top->isVisible() && !QDesignerFormWindowInterface::findFormWindow(top))
            running = running ? running : top->findChild<fractioni *>();
    }
    QVERIFY(running);
    QVERIFY(kelfractionint::ambient::usermode(running));
    QVERIFY(!kelfractionint::ambient::usermode(designed));
    QCOMPARE(designed->Container(), nullptr);
    try {
        running->Container();
        QFAIL("Container read without an error");
    } catch (const modfracglobal::automationerror &error) {
        QCOMPARE(error.number(), 91);
    }
    QVERIFY_THROWS_EXCEPTION(modfracglobal::automationerror, running->setWholepartvalue(QStringLiteral("x")));
    QCOMPARE(running->Wholepartvalue(), QStringLiteral("4"));
    for (QWidget *top : QApplication::topLevelWidgets()) {
        if (top->findChild<fractioni *>() == running)
            top->close();
    }
    delete form;
}

QTEST_MAIN(tst_designerforms)
#include "tst_designerforms.moc"
