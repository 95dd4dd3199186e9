// The fraction control beside QDoubleSpinBox, offscreen: one keystroke into the numerator
// through to the repaint, and creating and showing 1000 controls on one form (time and heap per
// control). Prints the ratios against the spin box measured in the same run (CPU time).
#include "fractioni.h"
#include "hostnumbers.h"
#include "messageboxsink.h"

#include "ratiocollector.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QLineEdit>

#include <malloc.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

namespace {

constexpr int formsize = 1000;

void type(QWidget *target, Qt::Key key, const QString &text)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(target, &press);
    QApplication::sendEvent(target, &release);
}

// A keystroke and its undo, each followed by the repaint of the edited widget.
template <typename Setup>
void keystroke(benchmark::State &state, Setup setup)
{
    QWidget window;
    QWidget *repainted = nullptr;
    QWidget *editor = setup(window, repainted);
    window.show();
    QApplication::processEvents();
    for (auto _ : state) {
        type(editor, Qt::Key_5, QStringLiteral("5"));
        repainted->repaint();
        type(editor, Qt::Key_Backspace, QStringLiteral("\b"));
        repainted->repaint();
    }
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
        QLineEdit *edit = spin->findChild<QLineEdit *>();
        edit->setCursorPosition(int(edit->text().size()));
        return static_cast<QWidget *>(edit);
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

std::size_t heapinuse()
{
    return mallinfo2().uordblks;
}

template <typename Make>
void createform(benchmark::State &state, Make make)
{
    std::size_t bytes = 0;
    for (auto _ : state) {
        auto form = std::make_unique<QWidget>();
        form->resize(1200, 900);
        const std::size_t before = heapinuse();
        for (int i = 0; i < formsize; ++i) {
            QWidget *w = make(form.get());
            w->move((i % 25) * 48, (i / 25) * 22);
        }
        form->show();
        QApplication::processEvents();
        bytes = heapinuse() - before;
        state.PauseTiming();
        form.reset();
        QApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["bytes_per_control"] = double(bytes) / formsize;
    state.SetItemsProcessed(state.iterations() * formsize);
}

void BM_form_spinbox(benchmark::State &state)
{
    createform(state, [](QWidget *form) {
        auto *spin = new QDoubleSpinBox(form);
        spin->setValue(4.14);
        return spin;
    });
}

void BM_form_fractioni(benchmark::State &state)
{
    createform(state, [](QWidget *form) { return new kelfractionint::fractioni(form); });
}

BENCHMARK(BM_keystroke_spinbox)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_keystroke_fractioni)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_form_spinbox)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_form_fractioni)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen"));
    QApplication app(argc, argv);
    QLocale::setDefault(QLocale::c());
    modfracglobal::setnumberlocale({".", ","});
    kelfractionint::messagecapture messages;

    benchmark::Initialize(&argc, argv);
    ratiocollector reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    const double memcontrol = reporter.counters["BM_form_fractioni/iterations:5/bytes_per_control"];
    const double memspin = reporter.counters["BM_form_spinbox/iterations:5/bytes_per_control"];
    std::printf("\n| measure | fractioni / QDoubleSpinBox | goal |\n|---|---|---|\n");
    std::printf("| keystroke into the numerator, through the repaint | %.2fx | at most 2x |\n",
                reporter.ratio("BM_keystroke_fractioni", "BM_keystroke_spinbox"));
    std::printf("| creating and showing 1000 controls on a form (time) | %.2fx | at most 2x |\n",
                reporter.ratio("BM_form_fractioni/iterations:5", "BM_form_spinbox/iterations:5"));
    std::printf("| heap per control | %.2fx (%.0f vs %.0f bytes) | at most 2.5x |\n",
                memspin > 0 ? memcontrol / memspin : 0.0, memcontrol, memspin);
    return 0;
}
