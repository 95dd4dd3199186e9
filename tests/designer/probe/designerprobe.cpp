// A Designer plugin used only by tests: once Designer has opened its form and gone idle, it
// writes how its form window looks to the file named by KEL_PROBE_OUT and ends Designer
// without asking to save.
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QApplication>
#include <QFile>
#include <QTimer>
#include <QUndoStack>
#include <QWidget>

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
            report(forms->formWindow(0));
        });
        timer->start(100);
    }

private:
    // The form's name, dirty flag and number of undo steps.
    void report(const QDesignerFormWindowInterface *form)
    {
        QFile out(qEnvironmentVariable("KEL_PROBE_OUT"));
        if (out.open(QIODevice::WriteOnly | QIODevice::Truncate))
            out.write(QStringLiteral("%1 dirty %2 undo %3\n")
                          .arg(form->fileName()).arg(form->isDirty()).arg(form->commandHistory()->count()).toUtf8());
        QCoreApplication::exit(0);
    }

    QDesignerFormEditorInterface *m_core = nullptr;
    int m_ticks = 0;
};

#include "designerprobe.moc"
