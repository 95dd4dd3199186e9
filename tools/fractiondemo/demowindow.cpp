#include "demowindow.h"

#include "ui_demowindow.h"

#include "automationerror.h"
#include "fractionappearance.h"
#include "fractioni.h"
#include "fractionvalues.h"
#include "frmabout.h"
#include "measurements.h"
#include "messagesink.h"
#include "propertybag.h"
#include "propertypagedialog.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QFont>
#include <QSettings>
#include <QSpinBox>

#include <optional>

namespace kelfractionint {

namespace {

QString quoted(const QStringList &texts)
{
    QStringList parts;
    for (const QString &text : texts)
        parts.append(QLatin1Char('"') + text + QLatin1Char('"'));
    return parts.join(QLatin1Char(' '));
}

QString recordtext(const QStringList &record)
{
    return record.size() < 3 ? QStringLiteral("no record") : quoted(record);
}

} // namespace

struct demowindow::sinkguard
{
    explicit sinkguard(modfracglobal::messagesink sink) : scoped(std::move(sink)) {}
    modfracglobal::scopedmessagesink scoped;
};

demowindow::demowindow(QWidget *parent)
    : QMainWindow(parent), ui(std::make_unique<Ui::demowindow>())
{
    ui->setupUi(this);
    setWindowIcon(QApplication::windowIcon());

    for (fractioni *control : {first(), second(), result()})
        connectcontrol(control);
    connectoperations();

    connect(ui->autoreplacebox, &QCheckBox::clicked, this, [this] {
        const bool allon = first()->Autoreplace() && second()->Autoreplace() && result()->Autoreplace();
        setautoreplace(!allon);
    });
    connect(ui->clearlogbutton, &QPushButton::clicked, ui->eventlog, &QPlainTextEdit::clear);

    connect(ui->actionsave, &QAction::triggered, this, &demowindow::saveas);
    connect(ui->actionopen, &QAction::triggered, this, &demowindow::open);
    connect(ui->actionexportpicture, &QAction::triggered, this, &demowindow::exportas);
    connect(ui->actionquit, &QAction::triggered, this, &QWidget::close);
    connect(ui->actioncopypicture, &QAction::triggered, this, &demowindow::copypicture);
    connect(ui->actionvaluespage, &QAction::triggered, this, [this] { openpages(0); });
    connect(ui->actionappearancepage, &QAction::triggered, this, [this] { openpages(1); });
    connect(ui->actionabout, &QAction::triggered, this, &demowindow::about);
    connect(ui->actiontable, &QAction::triggered, this, &demowindow::opentable);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) { focuschanged(now); });

    select(first());
    syncautoreplace();
}

demowindow::~demowindow()
{
    // The children outlive the form's pointers: nothing may reach them through it from here on.
    disconnect(qApp, nullptr, this, nullptr);
    for (fractioni *control : {first(), second(), result()})
        disconnect(control, nullptr, this, nullptr);
}

fractioni *demowindow::first() const
{
    return ui->first;
}

fractioni *demowindow::second() const
{
    return ui->second;
}

fractioni *demowindow::result() const
{
    return ui->result;
}

QString demowindow::controlname(const QObject *control) const
{
    return control ? control->objectName() : QStringLiteral("none");
}

void demowindow::select(fractioni *control)
{
    if (!control || control == m_selected)
        return;
    m_selected = control;
    const std::pair<fractioni *, QLabel *> labels[] = {
        {first(), ui->firstlabel}, {second(), ui->secondlabel}, {result(), ui->resultlabel}};
    for (const auto &[owner, label] : labels) {
        QFont font = label->font();
        font.setBold(owner == control);
        label->setFont(font);
        if (owner == control)
            ui->singlegroup->setTitle(tr("Selected fraction: %1").arg(label->text()));
    }
    statusBar()->showMessage(tr("Selected: %1").arg(control->accessibleName()));
}

void demowindow::focuschanged(QWidget *now)
{
    for (QWidget *widget = now; widget; widget = widget->parentWidget()) {
        if (widget == first() || widget == second() || widget == result()) {
            select(static_cast<fractioni *>(widget));
            return;
        }
    }
}

void demowindow::connectcontrol(fractioni *control)
{
    const QString name = control->objectName();
    connect(control, &fractioni::fractionvaluechanged, this,
            [this, name](const QString &oldsign, const QString &oldwhole, const QString &oldnumer,
                         const QString &olddenom, const QString &newsign, const QString &newwhole,
                         const QString &newnumer, const QString &newdenom) {
                log(QStringLiteral("%1: fractionvaluechanged %2 -> %3")
                        .arg(name, quoted({oldsign, oldwhole, oldnumer, olddenom}),
                             quoted({newsign, newwhole, newnumer, newdenom})));
            });
    const std::pair<void (fractioni::*)(), const char *> clicks[] = {
        {&fractioni::wholepartclick, "wholepartclick"},
        {&fractioni::denominatorclick, "denominatorclick"},
        {&fractioni::numeratorclick, "numeratorclick"},
        {&fractioni::separatorclick, "separatorclick"},
        {&fractioni::insidenotcontentclick, "insidenotcontentclick"},
    };
    for (const auto &[signal, event] : clicks) {
        const QString text = QStringLiteral("%1: %2").arg(name, QLatin1String(event));
        connect(control, signal, this, [this, control, text] {
            log(text);
            select(control);
        });
    }
    connect(control, &fractioni::MouseDown, this, [this, control, name](qint16 button, qint16 shift, float x, float y) {
        log(QStringLiteral("%1: MouseDown (Button %2, Shift %3, X %4, Y %5)")
                .arg(name)
                .arg(button)
                .arg(shift)
                .arg(double(x))
                .arg(double(y)));
        select(control);
    });
    connect(control, &fractioni::propertychanged, this, [this](const QString &property) {
        if (property == QLatin1String("Autoreplace"))
            syncautoreplace();
    });
}

void demowindow::connectoperations()
{
    connect(ui->reducebutton, &QPushButton::clicked, this, [this] { single("reduce", &fractioni::reduce); });
    connect(ui->fractomixedbutton, &QPushButton::clicked, this,
            [this] { single("fractomixed", &fractioni::fractomixed); });
    connect(ui->mixedtofracbutton, &QPushButton::clicked, this,
            [this] { single("mixedtofrac", &fractioni::mixedtofrac); });
    connect(ui->invertbutton, &QPushButton::clicked, this, [this] { single("invert", &fractioni::invert); });
    connect(ui->expandbutton, &QPushButton::clicked, this, [this] {
        const qint32 factor = ui->factorbox->value();
        single("expand", [factor](fractioni *control) { return control->expand(factor); });
    });
    connect(ui->fractodecimalbutton, &QPushButton::clicked, this, [this] {
        const qint32 decimals = ui->decimalsbox->value();
        single("fractodecimal", [decimals](fractioni *control) { return control->fractodecimal(decimals); });
    });
    connect(ui->fractopercentbutton, &QPushButton::clicked, this, [this] {
        const qint32 decimals = ui->decimalsbox->value();
        single("fractopercent", [decimals](fractioni *control) { return control->fractopercent(decimals); });
    });
    connect(ui->decimaltofracbutton, &QPushButton::clicked, this,
            [this] { single("decimaltofrac", &fractioni::decimaltofrac); });
    connect(ui->percenttofracbutton, &QPushButton::clicked, this,
            [this] { single("percenttofrac", &fractioni::percenttofrac); });
    connect(ui->approximatebutton, &QPushButton::clicked, this, [this] {
        const qint32 limit = ui->limitbox->value();
        single("approximate", [limit](fractioni *control) { return control->approximate(limit); });
    });
    connect(ui->changesignbutton, &QPushButton::clicked, this, [this] {
        guarded(controlname(m_selected) + QStringLiteral(".changesign"), [this] { m_selected->changesign(); });
    });
    connect(ui->clearbutton, &QPushButton::clicked, this, [this] {
        guarded(controlname(m_selected) + QStringLiteral(".clearfraction"), [this] { m_selected->clearfraction(); });
    });

    // The operations on two controls are methods of any control; the result control runs them.
    connect(ui->addbutton, &QPushButton::clicked, this, [this] {
        pair("addtwofractions", [this](fractioni *a, fractioni *b) { return result()->addtwofractions(a, b); });
    });
    connect(ui->subtractbutton, &QPushButton::clicked, this, [this] {
        pair("subtractfractions", [this](fractioni *a, fractioni *b) { return result()->subtractfractions(a, b); });
    });
    connect(ui->multiplybutton, &QPushButton::clicked, this, [this] {
        pair("multiplytwofractions",
             [this](fractioni *a, fractioni *b) { return result()->multiplytwofractions(a, b); });
    });
    connect(ui->dividebutton, &QPushButton::clicked, this, [this] {
        pair("dividefractions", [this](fractioni *a, fractioni *b) { return result()->dividefractions(a, b); });
    });
    connect(ui->addintobutton, &QPushButton::clicked, this, [this] {
        into("addintofraction", [this](fractioni *a, fractioni *b) { result()->addintofraction(a, b); });
    });
    connect(ui->subtractintobutton, &QPushButton::clicked, this, [this] {
        into("subtractintofraction", [this](fractioni *a, fractioni *b) { result()->subtractintofraction(a, b); });
    });
    connect(ui->multiplyintobutton, &QPushButton::clicked, this, [this] {
        into("multiplyintofraction", [this](fractioni *a, fractioni *b) { result()->multiplyintofraction(a, b); });
    });
    connect(ui->divideintobutton, &QPushButton::clicked, this, [this] {
        into("divideintofraction", [this](fractioni *a, fractioni *b) { result()->divideintofraction(a, b); });
    });
}

bool demowindow::guarded(const QString &what, const std::function<void()> &work)
{
    // The controls report their errors; the outermost call reports last, after the handlers'.
    std::optional<std::pair<int, QString>> failure;
    QList<QMetaObject::Connection> links;
    for (fractioni *control : findChildren<fractioni *>()) {
        links.append(connect(control, &fractioni::errorreported, this,
                             [&failure](int number, const QString &description) { failure.emplace(number, description); }));
    }
    work();
    for (const QMetaObject::Connection &link : std::as_const(links))
        disconnect(link);
    if (!failure)
        return true;
    // This host shows the controls' errors the way the component shows its own.
    log(QStringLiteral("%1 raised error %2").arg(what).arg(failure->first));
    modfracglobal::showmessage(tr("Error %1: %2").arg(failure->first).arg(failure->second).toStdString());
    return false;
}

void demowindow::single(const char *name, const std::function<QStringList(fractioni *)> &operation)
{
    fractioni *control = m_selected;
    const QString what = controlname(control) + QLatin1Char('.') + QLatin1String(name);
    QStringList record;
    if (!guarded(what, [&] { record = operation(control); }))
        return;
    log(QStringLiteral("%1 returned %2").arg(what, recordtext(record)));
    // With Autoreplace the result control has already loaded its own result.
    if (control != result() || !control->Autoreplace())
        showresult(record);
}

void demowindow::pair(const char *name, const std::function<QStringList(fractioni *, fractioni *)> &operation)
{
    const QString what = QStringLiteral("result.%1(first, second)").arg(QLatin1String(name));
    QStringList record;
    if (!guarded(what, [&] { record = operation(first(), second()); }))
        return;
    log(QStringLiteral("%1 returned %2").arg(what, recordtext(record)));
    showresult(record);
}

void demowindow::into(const char *name, const std::function<void(fractioni *, fractioni *)> &operation)
{
    const QString what = QStringLiteral("result.%1(first, second)").arg(QLatin1String(name));
    if (guarded(what, [&] { operation(first(), second()); }))
        log(QStringLiteral("%1 loaded first").arg(what));
}

void demowindow::showresult(const QStringList &record)
{
    // An operation that converts nothing returns no record; the result keeps what it shows.
    if (record.size() < 3)
        return;
    guarded(QStringLiteral("result.loadfraction"), [&] { result()->loadfraction(record); });
}

void demowindow::setautoreplace(bool on)
{
    for (fractioni *control : {first(), second(), result()})
        control->setAutoreplace(on);
    syncautoreplace();
}

void demowindow::syncautoreplace()
{
    const int on = int(first()->Autoreplace()) + int(second()->Autoreplace()) + int(result()->Autoreplace());
    QCheckBox *box = ui->autoreplacebox;
    // A form restored with mixed settings shows them as partly checked; a click sets all three.
    box->setTristate(on != 0 && on != 3);
    box->setCheckState(on == 0 ? Qt::Unchecked : on == 3 ? Qt::Checked : Qt::PartiallyChecked);
}

void demowindow::openpages(int page)
{
    auto *dialog = new propertypagedialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Properties of %1").arg(m_selected->accessibleName()));
    dialog->addpage(new fractionvalues);
    dialog->addpage(new fractionappearance);
    dialog->setSelectedControls({m_selected.data()});
    dialog->setcurrentpage(page);
    connect(dialog, &QDialog::finished, this, &demowindow::syncautoreplace);
    dialog->open();
}

void demowindow::opentable()
{
    if (!m_table) {
        m_table = new measurementspage(100000, this);
        m_table->setWindowFlag(Qt::Window);
        m_table->resize(520, 600);
    }
    m_table->show();
    m_table->raise();
}

void demowindow::about()
{
    auto *box = new frmAbout(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

bool demowindow::saveform(const QString &path)
{
    QSettings settings(path, QSettings::IniFormat);
    settings.clear();
    for (fractioni *control : {first(), second(), result()}) {
        settingspropertybag bag(settings, control->objectName());
        control->WriteProperties(bag);
    }
    settings.sync();
    const bool saved = settings.status() == QSettings::NoError;
    log(saved ? QStringLiteral("saved %1").arg(path) : QStringLiteral("could not save %1").arg(path));
    return saved;
}

bool demowindow::openform(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile() || !info.isReadable()) {
        log(QStringLiteral("could not open %1").arg(path));
        modfracglobal::showmessage(tr("Cannot open %1").arg(path).toStdString());
        return false;
    }
    QSettings settings(path, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError) {
        log(QStringLiteral("could not read %1").arg(path));
        modfracglobal::showmessage(tr("%1 is no form file").arg(path).toStdString());
        return false;
    }
    log(QStringLiteral("opening %1").arg(path));
    for (fractioni **control : {&ui->first, &ui->second, &ui->result}) {
        const settingspropertybag bag(settings, (*control)->objectName());
        *control = restoredcontrol(*control, bag);
    }
    syncautoreplace();
    return true;
}

fractioni *demowindow::restoredcontrol(fractioni *old, const propertybag &bag)
{
    // A saved control comes back as a control restored from its bag, in the old one's place: it
    // never passes through a new control's values.
    auto *control = new fractioni(bag, old->parentWidget());
    control->setObjectName(old->objectName());
    control->setAccessibleName(old->accessibleName());
    QWidget::setTabOrder(old, control);
    const bool wasselected = m_selected == old;
    disconnect(old, nullptr, this, nullptr);
    if (QLayout *layout = old->parentWidget()->layout())
        delete layout->replaceWidget(old, control);
    delete old;
    control->show();
    // Shown on a form that is already up, it lays itself out without its hidden parts at once.
    if (control->isVisible())
        control->Refreshfraction();
    connectcontrol(control);
    if (wasselected)
        select(control);
    return control;
}

bool demowindow::exportpicture(const QString &path)
{
    const bool saved = m_selected->Picture().save(path, "PNG");
    log(saved ? QStringLiteral("%1: Picture saved as %2").arg(controlname(m_selected), path)
              : QStringLiteral("could not save %1").arg(path));
    if (!saved)
        modfracglobal::showmessage(tr("Cannot write %1").arg(path).toStdString());
    return saved;
}

void demowindow::saveas()
{
    QString path = m_formfile;
    if (path.isEmpty()) {
        path = QFileDialog::getSaveFileName(this, tr("Save form"), QString(), tr("Form files (*.ini)"));
        if (path.isEmpty())
            return;
        if (QFileInfo(path).suffix().isEmpty())
            path += QStringLiteral(".ini");
    }
    if (saveform(path))
        statusBar()->showMessage(tr("Saved %1").arg(path));
}

void demowindow::open()
{
    QString path = m_formfile;
    if (path.isEmpty()) {
        path = QFileDialog::getOpenFileName(this, tr("Open form"), QString(), tr("Form files (*.ini)"));
        if (path.isEmpty())
            return;
    }
    if (openform(path))
        statusBar()->showMessage(tr("Opened %1").arg(path));
}

void demowindow::exportas()
{
    QString path =
        QFileDialog::getSaveFileName(this, tr("Export picture"), QString(), tr("PNG pictures (*.png)"));
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".png");
    exportpicture(path);
}

void demowindow::copypicture()
{
    QApplication::clipboard()->setPixmap(m_selected->Picture());
    log(QStringLiteral("%1: Picture copied").arg(controlname(m_selected)));
}

void demowindow::logmessages()
{
    m_sink = std::make_unique<sinkguard>([this](const std::string &text) {
        log(QStringLiteral("message: ") + QString::fromStdString(text).replace(QLatin1Char('\n'), QLatin1Char(' ')));
    });
}

void demowindow::log(const QString &line)
{
    ui->eventlog->appendPlainText(line);
}

QStringList demowindow::loglines() const
{
    return ui->eventlog->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace kelfractionint
