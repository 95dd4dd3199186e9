// Pictures of a set of controls and delegate cells, as grab() paints them and as they show on
// screen, for comparing what is drawn before and after
// a change to layout or painting code. Not a test: run it by hand, at each scale factor.
//   bench_pictures write DIR        writes one PNG per case into DIR
//   bench_pictures compare A B      names every case whose pixels or size differ; exit 1 if any
// Run both with QT_SCALE_FACTOR=1 and =2 (offscreen or under xvfb-run).
#include "fractiondelegate.h"
#include "fractioni.h"
#include "hostnumbers.h"
#include "messageboxsink.h"

#include <QApplication>
#include <QBackingStore>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QStandardItemModel>
#include <QTableView>

#include <cstdio>
#include <functional>

using kelfractionint::fractioni;

namespace {

struct fractioncase
{
    QString name;
    QString whole, numer, denom;
    bool slash;
    bool border;
    bool fracvisible;
};

QList<fractioncase> cases()
{
    QList<fractioncase> all;
    const QList<std::array<QString, 4>> values{
        {"pos", "4", "1", "7"},     {"neg", "-4", "1", "7"},       {"nowhole", "", "3", "8"},
        {"negnowhole", "-", "12", "5"}, {"wide", "12", "1", "128"}, {"widenumer", "", "1234", "9"},
        {"empty", "", "", ""},      {"wholeonly", "-17", "", ""},  {"equal", "3", "11", "88"},
    };
    for (const auto &[name, whole, numer, denom] : values) {
        for (bool slash : {true, false}) {
            for (bool border : {false, true})
                all.append({QStringLiteral("%1_%2_%3").arg(name, slash ? "slash" : "bar", border ? "border" : "flat"),
                            whole, numer, denom, slash, border, true});
        }
    }
    all.append({"hiddenfraction_slash", "5", "2", "3", true, false, true});
    all.last().fracvisible = false;
    all.append({"hiddenfraction_bar_border", "-5", "2", "3", false, true, true});
    all.last().fracvisible = false;
    return all;
}

// What \a widget shows on screen, painted as a repaint paints it; grab() paints into a pixmap,
// where some drawing takes other paths.
QImage onscreen(QWidget *widget)
{
    widget->repaint();
    QApplication::processEvents();
    const QRect area(widget->mapTo(widget->window(), QPoint(0, 0)), widget->size());
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
        const auto *image = dynamic_cast<const QImage *>(widget->window()->backingStore()->paintDevice());
        const qreal dpr = widget->devicePixelRatioF();
        return image ? image->copy(QRectF(QPointF(area.topLeft()) * dpr, QSizeF(area.size()) * dpr).toAlignedRect())
                     : QImage();
    }
    QApplication::sync();
    return widget->screen()
        ->grabWindow(widget->window()->winId(), area.x(), area.y(), area.width(), area.height())
        .toImage();
}

QImage controlpicture(const fractioncase &c, double points, bool screen)
{
    QWidget window;
    window.resize(900, 400);
    auto *control = new fractioni(&window);
    QFont font = control->Font();
    font.setFamily(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(points);
    control->setFont(font);
    control->setFractionslash(c.slash);
    control->setBorderstyle(c.border ? fractioni::borderstylefixed : fractioni::borderstylenone);
    try {
        control->setWholepartvalue(c.whole);
        control->setNumeratorvalue(c.numer);
        if (!c.numer.isEmpty())
            control->setDenominatorvalue(c.denom);
        control->setFracpartvisible(c.fracvisible);
    } catch (const std::exception &) {
        // A refused value is pictured as the control shows it.
    }
    window.show();
    QApplication::processEvents();
    return screen ? onscreen(control) : control->grab().toImage();
}

QImage tablepicture(bool slash, double points, bool screen)
{
    QStandardItemModel model(6, 2);
    const QStringList texts{"4 1/7", "-4 1/7", "3/8", "-12/5", "12 1/128", "-17"};
    for (int row = 0; row < texts.size(); ++row) {
        model.setData(model.index(row, 0), texts[row]);
        model.setData(model.index(row, 1), QStringList{"1", "1234", "9"}, Qt::EditRole);
    }
    QTableView view;
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(points);
    view.setFont(font);
    auto *delegate = new kelfractionint::fractiondelegate(&view);
    delegate->setFractionslash(slash);
    view.setItemDelegate(delegate);
    view.setModel(&model);
    view.resize(500, 600);
    view.resizeRowsToContents();
    view.resizeColumnsToContents();
    view.show();
    QApplication::processEvents();
    return screen ? onscreen(view.viewport()) : view.viewport()->grab().toImage();
}

void eachpicture(const std::function<void(const QString &, const QImage &)> &take)
{
    for (double points : {8.0, 9.0, 10.0, 12.0, 14.0, 18.0, 24.0, 32.0, 40.0}) {
        const QString size = QString::number(points);
        for (bool screen : {false, true}) {
            const QString how = screen ? QStringLiteral("_screen") : QString();
            for (const fractioncase &c : cases())
                take(c.name + "_" + size + how, controlpicture(c, points, screen));
            for (bool slash : {true, false})
                take(QStringLiteral("table_%1_%2%3").arg(slash ? "slash" : "bar", size, how), tablepicture(slash, points, screen));
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QLocale::setDefault(QLocale::c());
    modfracglobal::setnumberlocale({".", ","});
    kelfractionint::messagecapture messages;
    const QStringList args = app.arguments();
    if (args.size() == 3 && args[1] == "write") {
        QDir().mkpath(args[2]);
        int count = 0;
        eachpicture([&](const QString &name, const QImage &image) {
            image.save(args[2] + "/" + name + ".png");
            ++count;
        });
        std::printf("%d pictures\n", count);
        return 0;
    }
    if (args.size() == 4 && args[1] == "compare") {
        int differ = 0;
        int count = 0;
        for (const QString &file : QDir(args[2]).entryList({"*.png"})) {
            const QImage a(args[2] + "/" + file);
            const QImage b(args[3] + "/" + file);
            ++count;
            if (a.size() != b.size() || a.convertToFormat(QImage::Format_ARGB32) != b.convertToFormat(QImage::Format_ARGB32)) {
                std::printf("differs: %s\n", qPrintable(file));
                ++differ;
            }
        }
        std::printf("%d of %d pictures differ\n", differ, count);
        return differ ? 1 : 0;
    }
    std::fprintf(stderr, "usage: bench_pictures write DIR | compare DIR DIR\n");
    return 2;
}
