// The fraction control beside QDoubleSpinBox and beside its floor: the same structure without any
// logic (a bare QWidget holding three frameless QLineEdits and a hidden QLabel). Measures one
// keystroke into the focused field through to the repaint, and creating and showing 1000 widgets
// on one form (time, and heap per widget with and without the form's backing store). Runs on the
// real platform when a display is there, offscreen otherwise; the benchmarks run interleaved and
// repeated, and the tables give medians of CPU time measured in the same run.
#include "fractioni.h"
#include "hostnumbers.h"
#include "messageboxsink.h"

#include "ratiocollector.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include <malloc.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int formsize = 1000;

// The control's structure and nothing else: the least any control built of these parts costs.
class floorcomposite : public QWidget
{
public:
    explicit floorcomposite(QWidget *parent) : QWidget(parent)
    {
        for (const char *name : {"wholepart", "numerator", "denominator"}) {
            auto *field = new QLineEdit(this);
            field->setObjectName(QLatin1String(name));
            field->setFrame(false);
        }
        auto *grip = new QLabel(this);
        grip->hide();
        fields = findChildren<QLineEdit *>();
        fields[0]->setText(QStringLiteral("4"));
        fields[1]->setText(QStringLiteral("1"));
        fields[2]->setText(QStringLiteral("7"));
        fields[0]->setGeometry(2, 8, 10, 18);
        fields[1]->setGeometry(14, 0, 10, 18);
        fields[2]->setGeometry(14, 18, 10, 18);
        resize(36, 36);
    }
    QList<QLineEdit *> fields;
};

void type(QWidget *target, Qt::Key key, const QString &text)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(target, &press);
    QApplication::sendEvent(target, &release);
}

// Shows the window and gives the edited field the focus, as a user's click would; keys then go
// to the widget that has the focus.
QWidget *focus(QWidget &window, QWidget *field)
{
    window.show();
    window.activateWindow();
    field->setFocus(Qt::OtherFocusReason);
    QElapsedTimer waited;
    waited.start();
    while (QApplication::focusWidget() != field && waited.elapsed() < 2000)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    QApplication::processEvents();
    return QApplication::focusWidget() == field ? field : nullptr;
}

// A keystroke and its undo, each followed by the repaint of the edited widget. Kept out of line
// so that valgrind --tool=callgrind --toggle-collect='*typeandundo*' counts exactly this.
Q_NEVER_INLINE void typeandundo(QWidget *repainted)
{
    type(QApplication::focusWidget(), Qt::Key_5, QStringLiteral("5"));
    repainted->repaint();
    type(QApplication::focusWidget(), Qt::Key_Backspace, QStringLiteral("\b"));
    repainted->repaint();
}

template <typename Setup>
void keystroke(benchmark::State &state, Setup setup)
{
    QWidget window;
    QWidget *repainted = nullptr;
    QWidget *target = focus(window, setup(window, repainted));
    if (!target) {
        state.SkipWithError("the edited field did not get the focus");
        return;
    }
    // Warmed up: what the first keystroke measures and keeps is not the cost of every keystroke.
    for (int i = 0; i < 3; ++i) {
        type(target, Qt::Key_5, QStringLiteral("5"));
        repainted->repaint();
        type(target, Qt::Key_Backspace, QStringLiteral("\b"));
        repainted->repaint();
    }
    for (auto _ : state)
        typeandundo(repainted);
    state.SetItemsProcessed(state.iterations() * 2);
}

void BM_keystroke_spinbox(benchmark::State &state)
{
    keystroke(state, [](QWidget &window, QWidget *&repainted) {
        auto *spin = new QDoubleSpinBox(&window);
        spin->setDecimals(0);
        spin->setMaximum(1e9);
        spin->setValue(1);
        repainted = spin;
        // The spin box takes the focus and hands the keys to its line edit.
        QLineEdit *edit = spin->findChild<QLineEdit *>();
        edit->setCursorPosition(int(edit->text().size()));
        return static_cast<QWidget *>(spin);
    });
}

void BM_keystroke_floor(benchmark::State &state)
{
    keystroke(state, [](QWidget &window, QWidget *&repainted) {
        auto *floor = new floorcomposite(&window);
        repainted = floor;
        floor->fields[1]->setCursorPosition(1);
        return static_cast<QWidget *>(floor->fields[1]);
    });
}

void BM_keystroke_fractioni(benchmark::State &state)
{
    keystroke(state, [](QWidget &window, QWidget *&repainted) {
        auto *control = new kelfractionint::fractioni(&window);
        repainted = control;
        auto *numerator = control->findChild<QLineEdit *>(QStringLiteral("numerator"));
        numerator->setCursorPosition(int(numerator->text().size()));
        return static_cast<QWidget *>(numerator);
    });
}

// Everything the heap holds, the large blocks Qt maps on its own (a backing store) included.
std::size_t heapinuse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Kept out of line so that valgrind --tool=callgrind --toggle-collect='*fillandshow*' counts
// creating and showing, without taking the form down.
template <typename Make>
Q_NEVER_INLINE void fillandshow(QWidget &form, Make make, int count)
{
    for (int i = 0; i < count; ++i) {
        QWidget *w = make(&form);
        if (w)
            w->move((i % 25) * 48, (i / 25) * 22);
    }
    form.show();
    QApplication::processEvents();
}

template <typename Make>
void createform(benchmark::State &state, Make make, int count = formsize)
{
    std::size_t bytes = 0;
    for (auto _ : state) {
        auto form = std::make_unique<QWidget>();
        form->resize(1200, 900);
        const std::size_t before = heapinuse();
        fillandshow(*form, make, count);
        bytes = heapinuse() - before;
        state.PauseTiming();
        form.reset();
        QApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["bytes"] = double(bytes);
    state.SetItemsProcessed(state.iterations() * count);
}

// The form alone: what showing it costs, its backing store above all.
void BM_form_empty(benchmark::State &state)
{
    createform(state, [](QWidget *) -> QWidget * { return nullptr; }, 0);
}

void BM_form_spinbox(benchmark::State &state)
{
    createform(state, [](QWidget *form) {
        auto *spin = new QDoubleSpinBox(form);
        spin->setValue(4.14);
        return spin;
    });
}

void BM_form_floor(benchmark::State &state)
{
    createform(state, [](QWidget *form) { return new floorcomposite(form); });
}

void BM_form_fractioni(benchmark::State &state)
{
    createform(state, [](QWidget *form) { return new kelfractionint::fractioni(form); });
}

BENCHMARK(BM_keystroke_spinbox)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_keystroke_floor)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_keystroke_fractioni)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_form_empty)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_form_spinbox)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_form_floor)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_form_fractioni)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

int main(int argc, char **argv)
{
    choosebenchmarkplatform();
    QApplication app(argc, argv);
    QLocale::setDefault(QLocale::c());
    modfracglobal::setnumberlocale({".", ","});
    kelfractionint::messagecapture messages;

    std::vector<char *> args = benchmarkarguments(argc, argv);
    int count = int(args.size()) - 1;
    benchmark::Initialize(&count, args.data());
    ratiocollector reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    auto bytes = [&](const char *name) {
        return reporter.counters[std::string("BM_form_") + name + "/iterations:5/bytes"] / formsize;
    };
    auto time = [&](const char *name) { return std::string("BM_form_") + name + "/iterations:5"; };
    const double backing = bytes("empty");
    const double heap = bytes("fractioni"), heapfloor = bytes("floor"), heapspin = bytes("spinbox");
    std::printf("\nplatform: %s\n", qPrintable(QGuiApplication::platformName()));
    std::printf("\n| measure | fractioni / QDoubleSpinBox | floor / QDoubleSpinBox | fractioni / floor | goal |\n"
                "|---|---:|---:|---:|---|\n");
    std::printf("| keystroke into the focused field, through the repaint | %.2fx | %.2fx | %.2fx | at most 1.5x QDoubleSpinBox |\n",
                reporter.ratio("BM_keystroke_fractioni", "BM_keystroke_spinbox"),
                reporter.ratio("BM_keystroke_floor", "BM_keystroke_spinbox"),
                reporter.ratio("BM_keystroke_fractioni", "BM_keystroke_floor"));
    std::printf("| creating and showing 1000 on a form (time) | %.2fx | %.2fx | %.2fx | at most 1.15x the floor |\n",
                reporter.ratio(time("fractioni"), time("spinbox")), reporter.ratio(time("floor"), time("spinbox")),
                reporter.ratio(time("fractioni"), time("floor")));
    std::printf("| heap per widget, with the backing store | %.2fx (%.0f B) | %.2fx (%.0f B) | %.2fx | at most 1.10x the floor |\n",
                heap / heapspin, heap, heapfloor / heapspin, heapfloor, heap / heapfloor);
    std::printf("| heap per widget, without the backing store | %.2fx (%.0f B) | %.2fx (%.0f B) | %.2fx | at most 1.10x the floor |\n",
                (heap - backing) / (heapspin - backing), heap - backing, (heapfloor - backing) / (heapspin - backing),
                heapfloor - backing, (heap - backing) / (heapfloor - backing));
    return 0;
}
