// The fraction control beside QDoubleSpinBox and beside its floor: the same structure without any
// logic (a bare QWidget holding three frameless QLineEdits and a hidden QLabel). Measures one
// keystroke into the focused field through to the repaint, and creating and showing widgets on one
// form (time, and heap per widget with and without the form's backing store). Runs on the real
// platform when a display is there, offscreen otherwise. The benchmarks give each widget's own
// times and heap; the table's time ratios come from paired rounds that time the three widgets back
// to back, a short batch each, so that a burst of load on a shared machine slows all three alike.
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

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int formsize = 1000;

// The paired rounds: each times a batch of each widget back to back, in every order in turn.
constexpr int keyrounds = 60;   // a multiple of the six orders of three
constexpr int keybatch = 150;   // keystroke pairs a batch: a few milliseconds
constexpr int keywarmup = 5;    // untimed pairs after the focus moved
constexpr int formrounds = 30;  // a multiple of six as well
constexpr int formbatch = 250;  // widgets on a form: a few tens of milliseconds

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

// Warmed up: what the first keystroke measures and keeps is not the cost of every keystroke.
void warmup(QWidget *target, QWidget *repainted, int pairs)
{
    for (int i = 0; i < pairs; ++i) {
        type(target, Qt::Key_5, QStringLiteral("5"));
        repainted->repaint();
        type(target, Qt::Key_Backspace, QStringLiteral("\b"));
        repainted->repaint();
    }
}

// The widgets typed into: each is made in its window and returns the field that is given the
// focus; repainted is the widget repainted after each key.
using keysetup = QWidget *(*)(QWidget &window, QWidget *&repainted);

QWidget *spinboxfield(QWidget &window, QWidget *&repainted)
{
    auto *spin = new QDoubleSpinBox(&window);
    spin->setDecimals(0);
    spin->setMaximum(1e9);
    spin->setValue(1);
    repainted = spin;
    // The spin box takes the focus and hands the keys to its line edit.
    QLineEdit *edit = spin->findChild<QLineEdit *>();
    edit->setCursorPosition(int(edit->text().size()));
    return spin;
}

QWidget *floorfield(QWidget &window, QWidget *&repainted)
{
    auto *floor = new floorcomposite(&window);
    repainted = floor;
    floor->fields[1]->setCursorPosition(1);
    return floor->fields[1];
}

QWidget *fractionifield(QWidget &window, QWidget *&repainted)
{
    auto *control = new kelfractionint::fractioni(&window);
    repainted = control;
    auto *numerator = control->findChild<QLineEdit *>(QStringLiteral("numerator"));
    numerator->setCursorPosition(int(numerator->text().size()));
    return numerator;
}

void keystroke(benchmark::State &state, keysetup setup)
{
    QWidget window;
    QWidget *repainted = nullptr;
    QWidget *target = focus(window, setup(window, repainted));
    if (!target) {
        state.SkipWithError("the edited field did not get the focus");
        return;
    }
    warmup(target, repainted, 3);
    for (auto _ : state)
        typeandundo(repainted);
    state.SetItemsProcessed(state.iterations() * 2);
}

void BM_keystroke_spinbox(benchmark::State &state)
{
    keystroke(state, spinboxfield);
}

void BM_keystroke_floor(benchmark::State &state)
{
    keystroke(state, floorfield);
}

void BM_keystroke_fractioni(benchmark::State &state)
{
    keystroke(state, fractionifield);
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

QWidget *newspinbox(QWidget *form)
{
    auto *spin = new QDoubleSpinBox(form);
    spin->setValue(4.14);
    return spin;
}

QWidget *newfloor(QWidget *form)
{
    return new floorcomposite(form);
}

QWidget *newfractioni(QWidget *form)
{
    return new kelfractionint::fractioni(form);
}

void BM_form_spinbox(benchmark::State &state)
{
    createform(state, newspinbox);
}

void BM_form_floor(benchmark::State &state)
{
    createform(state, newfloor);
}

void BM_form_fractioni(benchmark::State &state)
{
    createform(state, newfractioni);
}

BENCHMARK(BM_keystroke_spinbox)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_keystroke_floor)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_keystroke_fractioni)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_form_empty)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_form_spinbox)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_form_floor)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_form_fractioni)->Unit(benchmark::kMillisecond)->Iterations(5);

// The paired rounds. The subjects are numbered as the table's columns read: the spin box, the floor,
// the control. Each round times one batch of each, in one of the six orders (every order as often,
// so that none always comes first or after the same one); a round's times are CPU nanoseconds.
namespace subject {
enum { spinbox, floor, control, count };
}
using roundtimes = std::array<std::vector<double>, subject::count>;

template <typename Timed>
roundtimes pairedrounds(int rounds, Timed timed)
{
    roundtimes times;
    std::array<int, subject::count> order{subject::spinbox, subject::floor, subject::control};
    for (int round = 0; round < rounds; ++round) {
        for (int s : order) {
            const double t = timed(s);
            if (t < 0)
                return {};
            times[s].push_back(t);
        }
        std::next_permutation(order.begin(), order.end());
    }
    return times;
}

// Each widget in its own window, as the keystroke benchmarks have it; before each batch its window
// is activated, its field given the focus and a few keys typed, none of it timed.
roundtimes pairedkeystrokes()
{
    const std::array<keysetup, subject::count> setups{spinboxfield, floorfield, fractionifield};
    std::array<std::unique_ptr<QWidget>, subject::count> windows;
    std::array<QWidget *, subject::count> fields{}, repainted{};
    for (int s = 0; s < subject::count; ++s) {
        windows[s] = std::make_unique<QWidget>();
        fields[s] = setups[s](*windows[s], repainted[s]);
        windows[s]->show();
    }
    return pairedrounds(keyrounds, [&](int s) {
        if (!focus(*windows[s], fields[s]))
            return -1.0;
        warmup(fields[s], repainted[s], keywarmup);
        const std::int64_t start = threadcputime();
        for (int i = 0; i < keybatch; ++i)
            typeandundo(repainted[s]);
        return double(threadcputime() - start);
    });
}

// A fresh form for each batch, taken down after it untimed.
roundtimes pairedforms()
{
    using maker = QWidget *(*)(QWidget *);
    const std::array<maker, subject::count> makers{newspinbox, newfloor, newfractioni};
    auto batch = [&](int s) {
        auto form = std::make_unique<QWidget>();
        form->resize(1200, 900);
        const std::int64_t start = threadcputime();
        fillandshow(*form, makers[s], formbatch);
        const std::int64_t took = threadcputime() - start;
        form.reset();
        QApplication::processEvents();
        return double(took);
    };
    pairedrounds(1, batch); // what the first widget of each kind sets up once
    return pairedrounds(formrounds, batch);
}

bool hasargument(int argc, char **argv, const char *prefix)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], prefix, std::strlen(prefix)) == 0)
            return true;
    }
    return false;
}

} // namespace

// Usage: bench_control [Google Benchmark's options] [--paired_only]
// With --benchmark_filter the paired rounds are left out, so that callgrind's count of typeandundo
// or fillandshow is the filtered benchmark's alone; --paired_only runs nothing but the rounds.
int main(int argc, char **argv)
{
    choosebenchmarkplatform();
    QApplication app(argc, argv);
    QLocale::setDefault(QLocale::c());
    modfracglobal::setnumberlocale({".", ","});
    kelfractionint::messagecapture messages;

    const bool pairedonly = hasargument(argc, argv, "--paired_only");
    const bool paired = pairedonly || !hasargument(argc, argv, "--benchmark_filter");
    ratiocollector reporter;
    if (!pairedonly) {
        std::vector<char *> args = benchmarkarguments(argc, argv);
        int count = int(args.size()) - 1;
        benchmark::Initialize(&count, args.data());
        benchmark::RunSpecifiedBenchmarks(&reporter);
    }
    roundtimes keys, forms;
    if (paired) {
        std::printf("\npaired rounds: %d of %d keystroke pairs, %d of %d widgets on a form\n", keyrounds,
                    keybatch, formrounds, formbatch);
        std::fflush(stdout);
        keys = pairedkeystrokes();
        if (keys[subject::spinbox].empty())
            std::printf("the paired keystrokes did not run: an edited field did not get the focus\n");
        forms = pairedforms();
    }

    // A ratio's cell: the median of the paired rounds with its interquartile range, or the ratio of
    // the benchmarks' medians when the rounds did not run.
    auto cell = [&](const roundtimes &times, int a, int b, const std::string &bma, const std::string &bmb) {
        char text[64];
        if (!times[a].empty()) {
            const spread r = pairedratios(times[a], times[b]);
            std::snprintf(text, sizeof text, "%.2fx (%.2f-%.2f)", r.median, r.low, r.high);
        } else {
            std::snprintf(text, sizeof text, "%.2fx", reporter.ratio(bma, bmb));
        }
        return std::string(text);
    };
    auto method = [&](const roundtimes &times, int rounds, int batch, const char *what) {
        char text[128];
        if (!times[subject::spinbox].empty())
            std::snprintf(text, sizeof text, "paired: median of %d rounds of %d %s (quartiles)", rounds, batch, what);
        else
            std::snprintf(text, sizeof text, "medians of the benchmarks");
        return std::string(text);
    };
    const std::string key = "BM_keystroke_";
    const std::string form = "BM_form_";
    const std::string five = "/iterations:5";

    auto bytes = [&](const char *name) { return reporter.counters[form + name + five + "/bytes"] / formsize; };
    const double backing = bytes("empty");
    const double heap = bytes("fractioni"), heapfloor = bytes("floor"), heapspin = bytes("spinbox");
    std::printf("\nplatform: %s\n", qPrintable(QGuiApplication::platformName()));
    std::printf("\n| measure | fractioni / QDoubleSpinBox | floor / QDoubleSpinBox | fractioni / floor | goal | method |\n"
                "|---|---:|---:|---:|---|---|\n");
    std::printf("| keystroke into the focused field, through the repaint | %s | %s | %s | at most 1.5x QDoubleSpinBox | %s |\n",
                cell(keys, subject::control, subject::spinbox, key + "fractioni", key + "spinbox").c_str(),
                cell(keys, subject::floor, subject::spinbox, key + "floor", key + "spinbox").c_str(),
                cell(keys, subject::control, subject::floor, key + "fractioni", key + "floor").c_str(),
                method(keys, keyrounds, keybatch, "pairs").c_str());
    std::printf("| creating and showing %d on a form (time) | %s | %s | %s | at most 1.15x the floor | %s |\n",
                forms[subject::spinbox].empty() ? formsize : formbatch,
                cell(forms, subject::control, subject::spinbox, form + "fractioni" + five, form + "spinbox" + five).c_str(),
                cell(forms, subject::floor, subject::spinbox, form + "floor" + five, form + "spinbox" + five).c_str(),
                cell(forms, subject::control, subject::floor, form + "fractioni" + five, form + "floor" + five).c_str(),
                method(forms, formrounds, formbatch, "widgets").c_str());
    if (!pairedonly) {
        std::printf("| heap per widget, with the backing store | %.2fx (%.0f B) | %.2fx (%.0f B) | %.2fx | at most 1.10x the floor | %d on a form |\n",
                    heap / heapspin, heap, heapfloor / heapspin, heapfloor, heap / heapfloor, formsize);
        std::printf("| heap per widget, without the backing store | %.2fx (%.0f B) | %.2fx (%.0f B) | %.2fx | at most 1.10x the floor | %d on a form, less an empty one |\n",
                    (heap - backing) / (heapspin - backing), heap - backing, (heapfloor - backing) / (heapspin - backing),
                    heapfloor - backing, (heap - backing) / (heapfloor - backing), formsize);
    }
    return 0;
}
