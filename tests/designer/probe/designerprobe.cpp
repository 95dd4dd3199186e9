// A Designer plugin used only by tests: once Designer has opened its form and gone idle, it
// writes how each form window looks (title as shown, dirty flag, undo steps, contents) to the
// file named by KEL_PROBE_OUT and ends Designer without asking to save. With KEL_PROBE_SHOT, it
// first selects the form's widget named by KEL_PROBE_WIDGET, opens the property editor's
// editor of KEL_PROBE_PROPERTY (a colour opens Designer's colour dialog) and saves a picture
// of the screen there.
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerPropertyEditorInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QScreen>
#include <QTreeWidget>
#include <QFile>
#include <QTimer>
#include <QUndoStack>
#include <QWidget>

namespace {

QString shown(const QWidget *window)
{
    QString title = window->windowTitle();
    return title.replace(QLatin1String("[*]"), window->isWindowModified() ? QStringLiteral("*") : QString());
}

} // namespace

class designerprobe : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetInterface")
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    QString name() const override { return QStringLiteral("designerprobe"); }
    QString group() const override { return QStringLiteral("probe"); }
    QString toolTip() const override { return {}; }
    QString whatsThis() const override { return {}; }
    QString includeFile() const override { return {}; }
    QIcon icon() const override { return {}; }
    bool isContainer() const override { return false; }
    QWidget *createWidget(QWidget *parent) override { return new QWidget(parent); }
    bool isInitialized() const override { return m_core; }

    void initialize(QDesignerFormEditorInterface *core) override
    {
        if (m_core || !core)
            return;
        m_core = core;
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, [this, timer] {
            QDesignerFormWindowManagerInterface *forms = m_core->formWindowManager();
            if (!forms || forms->formWindowCount() == 0 || ++m_ticks < 10)
                return; // let the form settle: queued work after loading runs first
            timer->stop();
            if (qEnvironmentVariableIsSet("KEL_PROBE_SHOT"))
                picture(forms->formWindow(0));
            else
                report(forms);
        });
        timer->start(100);
    }

private:
    void picture(QDesignerFormWindowInterface *form)
    {
        m_core->topLevel()->resize(1180, 760);
        auto *widget = form->mainContainer()->findChild<QWidget *>(qEnvironmentVariable("KEL_PROBE_WIDGET"));
        if (!widget) {
            QCoreApplication::exit(1);
            return;
        }
        form->clearSelection(false);
        form->selectWidget(widget, true);
        m_core->propertyEditor()->setObject(widget);
        QCoreApplication::processEvents();
        const QString property = qEnvironmentVariable("KEL_PROBE_PROPERTY");
        for (QTreeWidget *tree : m_core->propertyEditor()->findChildren<QTreeWidget *>()) {
            const QList<QTreeWidgetItem *> items = tree->findItems(property, Qt::MatchExactly | Qt::MatchRecursive);
            if (items.isEmpty())
                continue;
            tree->scrollToItem(items.first(), QAbstractItemView::PositionAtCenter);
            tree->setCurrentItem(items.first(), 1);
            tree->editItem(items.first(), 1);
            QCoreApplication::processEvents();
            // The shot is taken inside the dialog's own event loop, the dialog beside the form.
            QTimer::singleShot(700, this, [] {
                if (QWidget *dialog = QApplication::activeModalWidget())
                    dialog->move(8, 240);
            });
            QTimer::singleShot(1500, this, [] {
                QScreen *screen = QGuiApplication::primaryScreen();
                screen->grabWindow(0).save(qEnvironmentVariable("KEL_PROBE_SHOT"));
                if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
                    dialog->reject();
                QCoreApplication::exit(0);
            });
            for (QAbstractButton *button : tree->viewport()->findChildren<QAbstractButton *>()) {
                if (button->isVisible() && button->text() == QLatin1String("...")) {
                    button->click();
                    return;
                }
            }
        }
    }

    void report(QDesignerFormWindowManagerInterface *forms)
    {
        QFile out(qEnvironmentVariable("KEL_PROBE_OUT"));
        if (out.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            for (int i = 0; i < forms->formWindowCount(); ++i) {
                QDesignerFormWindowInterface *form = forms->formWindow(i);
                QWidget *frame = form;
                while (frame->parentWidget() && !frame->isWindow() && frame->windowTitle().isEmpty())
                    frame = frame->parentWidget();
                out.write(QStringLiteral("title: %1\ndirty: %2\nundo: %3\n")
                              .arg(shown(frame))
                              .arg(form->isDirty() ? 1 : 0)
                              .arg(form->commandHistory()->count())
                              .toUtf8());
                out.write(form->contents().toUtf8());
            }
        }
        out.close();
        QCoreApplication::exit(0);
    }

    QDesignerFormEditorInterface *m_core = nullptr;
    int m_ticks = 0;
};

#include "designerprobe.moc"
