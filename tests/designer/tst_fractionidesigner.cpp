#include "ui_fractionform.h"

#include "ambient.h"
#include "fractioni.h"
#include "messagesink.h"
#include "propertypagedialog.h"

#ifdef KEL_TEST_FORMEDITOR
#include <QtDesigner/QDesignerComponents>
#endif
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <QtDesigner/QDesignerFormEditorInterface>
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
#include <QPluginLoader>
#include <QPushButton>
#include <QTest>
#include <QUndoStack>

#include <memory>
#include <string>
#include <vector>

using kelfractionint::fractioni;
using kelfractionint::propertypagedialog;

class tst_fractionidesigner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void plugin();
    void uicform();
    void uiloader();
    void formeditor();

private:
    static void checkform(const QWidget *form);
    std::vector<std::string> m_messages;
};

void tst_fractionidesigner::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    modfracglobal::setmessagesink([this](const std::string &text) { m_messages.push_back(text); });
}

void tst_fractionidesigner::cleanupTestCase()
{
    modfracglobal::setmessagesink({});
}

// What fractionform.ui stores, as a loaded form must show it.
void tst_fractionidesigner::checkform(const QWidget *form)
{
    const auto *first = form->findChild<fractioni *>(QStringLiteral("first"));
    const auto *second = form->findChild<fractioni *>(QStringLiteral("second"));
    QVERIFY(first && second);
    QCOMPARE(first->Numeratorvalue(), QStringLiteral("3"));
    QCOMPARE(first->Fractionslash(), false);
    QCOMPARE(first->Borderstyle(), fractioni::borderstylefixed);
    QCOMPARE(second->Wholepartvalue(), QStringLiteral("-2"));
    QCOMPARE(second->Numeratorvalue(), QStringLiteral("1"));
    QCOMPARE(second->Negforecolor(), 65280u);
    QVERIFY(kelfractionint::ambient::usermode(first));
}

void tst_fractionidesigner::plugin()
{
    QPluginLoader loader(QStringLiteral(KEL_TEST_PLUGIN));
    QVERIFY2(loader.load(), qPrintable(loader.errorString()));
    auto *widget = qobject_cast<QDesignerCustomWidgetInterface *>(loader.instance());
    QVERIFY(widget);
    QCOMPARE(widget->name(), QStringLiteral("kelfractionint::fractioni"));
    QCOMPARE(widget->group(), QStringLiteral("kelfractionint"));
    QCOMPARE(widget->includeFile(), QStringLiteral("fractioni.h"));
    QVERIFY(!widget->isContainer());
    QVERIFY(widget->domXml().contains(QLatin1String("class=\"kelfractionint::fractioni\"")));
    QVERIFY(!widget->icon().isNull());

    // Outside Designer (no form editor), a created control is an ordinary run-mode control.
    QWidget parent;
    std::unique_ptr<QWidget> created(widget->createWidget(&parent));
    auto *control = qobject_cast<fractioni *>(created.get());
    QVERIFY(control);
    QVERIFY(kelfractionint::ambient::usermode(control));
    QCOMPARE(control->Wholepartvalue(), QStringLiteral("4"));
}

void tst_fractionidesigner::uicform()
{
    QWidget form;
    Ui::fractionform ui;
    ui.setupUi(&form);
    QCOMPARE(ui.first->Fractionslash(), false);
    checkform(&form);
}

void tst_fractionidesigner::uiloader()
{
    QUiLoader loader;
    QVERIFY(loader.availableWidgets().contains(QStringLiteral("kelfractionint::fractioni")));
    QFile file(QStringLiteral(KEL_TEST_FORM));
    QVERIFY(file.open(QIODevice::ReadOnly));
    std::unique_ptr<QWidget> form(loader.load(&file));
    QVERIFY2(form, qPrintable(loader.errorString()));
    checkform(form.get());
}

void tst_fractionidesigner::formeditor()
{
#ifndef KEL_TEST_FORMEDITOR
    QSKIP("Designer's components library is not installed");
#else
    QDesignerComponents::initializeResources();
    QDesignerFormEditorInterface *core = QDesignerComponents::createFormEditor(this);
    core->setIntegration(new QDesignerIntegration(core, core));
    QDesignerComponents::createTaskMenu(core, core);
    QDesignerComponents::initializePlugins(core);

    QDesignerFormWindowInterface *form = core->formWindowManager()->createFormWindow(nullptr);
    QFile file(QStringLiteral(KEL_TEST_FORM));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(form->setContents(&file));
    core->formWindowManager()->setActiveFormWindow(form);
    QCoreApplication::processEvents();

    auto *first = form->mainContainer()->findChild<fractioni *>(QStringLiteral("first"));
    auto *second = form->mainContainer()->findChild<fractioni *>(QStringLiteral("second"));
    QVERIFY(first && second);
    QVERIFY(!kelfractionint::ambient::usermode(first));

    // Both selected, the clicked one current.
    form->clearSelection(false);
    form->selectWidget(second, true);
    form->selectWidget(first, true);
    auto *menu = qt_extension<QDesignerTaskMenuExtension *>(core->extensionManager(), first);
    QVERIFY(menu);
    const QList<QAction *> actions = menu->taskActions();
    QCOMPARE(actions.size(), 3);
    QCOMPARE(menu->preferredEditAction(), actions.at(0));

    const auto opendialog = [&](int action) -> propertypagedialog * {
        actions.at(action)->trigger();
        for (QWidget *top : QApplication::topLevelWidgets()) {
            if (auto *dialog = qobject_cast<propertypagedialog *>(top); dialog && dialog->isVisible())
                return dialog;
        }
        return nullptr;
    };

    // Appearance: one Apply is one undoable step over both controls.
    propertypagedialog *dialog = opendialog(1);
    QVERIFY(dialog);
    form->setDirty(false);
    const int steps = form->commandHistory()->count();
    dialog->findChild<QCheckBox *>(QStringLiteral("chkautoreplace"))->click();
    dialog->findChild<QCheckBox *>(QStringLiteral("chkborderstyle"))->setChecked(false);
    dialog->applybutton()->click();
    QVERIFY(first->Autoreplace() && second->Autoreplace());
    QCOMPARE(first->Borderstyle(), fractioni::borderstylenone);
    QCOMPARE(form->commandHistory()->count(), steps + 1);
    QVERIFY(form->isDirty());
    dialog->reject();

    form->commandHistory()->undo();
    QVERIFY(!first->Autoreplace() && !second->Autoreplace());
    QCOMPARE(first->Borderstyle(), fractioni::borderstylefixed);
    form->commandHistory()->redo();
    QVERIFY(first->Autoreplace());

    // Values: only the clicked control; a value written back equal to its default is not stored.
    dialog = opendialog(0);
    QVERIFY(dialog);
    dialog->findChild<QLineEdit *>(QStringLiteral("txtnumeratorvalue"))->setText(QStringLiteral("1"));
    dialog->findChild<QLineEdit *>(QStringLiteral("txtdenominatorvalue"))->setText(QStringLiteral("9"));
    dialog->accept();
    QVERIFY(!dialog->isVisible());
    QCOMPARE(first->Numeratorvalue(), QStringLiteral("1"));
    QCOMPARE(first->Denominatorvalue(), QStringLiteral("9"));
    QCOMPARE(second->Denominatorvalue(), QStringLiteral("7"));
    QCoreApplication::processEvents();

    auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(core->extensionManager(), first);
    QVERIFY(sheet);
    const auto changed = [sheet](const char *name) { return sheet->isChanged(sheet->indexOf(QLatin1String(name))); };
    QVERIFY(changed("Denominatorvalue"));
    QVERIFY(changed("Autoreplace"));
    QVERIFY(!changed("Numeratorvalue"));
    QVERIFY(!changed("Wholepartvalue"));
    QVERIFY(!changed("Forcesign"));

    // A forbidden combination at design time is a message, not an error.
    m_messages.clear();
    first->setWholepartLocked(true);
    first->setForcesign(true);
    QCOMPARE(m_messages, std::vector<std::string>{"Usereditable and forcesign can't be True simultaneously"});
    first->setWholepartLocked(false);
    QCoreApplication::processEvents();

    // The saved form keeps what changed and loads back the same.
    const QString contents = form->contents();
    if (qEnvironmentVariableIsSet("KEL_DUMP_FORM"))
        qInfo().noquote() << contents;
    QVERIFY(contents.contains(QLatin1String("\"Autoreplace\"")));
    QVERIFY(!contents.contains(QLatin1String("\"Numeratorvalue\"")));
    QVERIFY(!contents.contains(QLatin1String("\"WholepartLocked\"")));
    QUiLoader loader;
    QBuffer buffer;
    buffer.setData(contents.toUtf8());
    std::unique_ptr<QWidget> loaded(loader.load(&buffer));
    QVERIFY2(loaded, qPrintable(loader.errorString()));
    const auto *again = loaded->findChild<fractioni *>(QStringLiteral("first"));
    QVERIFY(again);
    QCOMPARE(again->Denominatorvalue(), QStringLiteral("9"));
    QCOMPARE(again->Numeratorvalue(), QStringLiteral("1"));
    QCOMPARE(again->Autoreplace(), true);
    // The appearance page showed the last selected control and wrote its slash to both.
    QCOMPARE(again->Fractionslash(), true);
    QCOMPARE(again->Borderstyle(), fractioni::borderstylenone);
    QCOMPARE(loaded->findChild<fractioni *>(QStringLiteral("second"))->Negforecolor(), 65280u);
    delete form;
    kelfractionint::ambient::setdefaultdesignmode(false);
#endif
}

QTEST_MAIN(tst_fractionidesigner)
#include "tst_fractionidesigner.moc"
