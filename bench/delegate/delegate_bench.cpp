// The fraction delegate beside QStyledItemDelegate showing the same values as text: rendering an
// 800 x 600 viewport of a 100,000-row, 3-column table, paging through all of it, and opening and
// committing an editor against a QDoubleSpinBox editor. On the real platform when a display is
// there, offscreen otherwise; repeated and interleaved. Prints the ratios of the medians.
#include "fractiondelegate.h"
#include "fractioni.h"
#include "hostnumbers.h"
#include "measurements.h"
#include "messageboxsink.h"

#include "ratiocollector.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDoubleSpinBox>
#include <QHeaderView>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTableView>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

using kelfractionint::fractiondelegate;
using kelfractionint::measurementmodel;

namespace {

// The same table twice: fractions shown by the fraction delegate, or as their text.
struct table
{
    explicit table(bool fractions)
    {
        view.setModel(&model());
        if (fractions)
            view.setItemDelegate(new fractiondelegate(&view));
        view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        view.verticalHeader()->setDefaultSectionSize(36);
        view.resize(800, 600);
        view.show();
        image = QImage(view.viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    }
    static measurementmodel &model()
    {
        static measurementmodel rows(100000);
        return rows;
    }
    void render()
    {
        QPainter painter(&image);
        view.viewport()->render(&painter);
    }
    QTableView view;
    QImage image;
};

// Kept out of line so that valgrind --tool=callgrind --toggle-collect='*renderonce*' counts
// exactly the rendering.
Q_NEVER_INLINE void renderonce(table &t)
{
    t.render();
}

void render(benchmark::State &state, bool fractions)
{
    table t(fractions);
    t.render();
    for (auto _ : state)
        renderonce(t);
}

// Pages through the whole table: each step moves on by a prime number of pages, so that a run of
// a few hundred steps shows rows from all of it and no page twice in a row.
void scroll(benchmark::State &state, bool fractions)
{
    table t(fractions);
    QScrollBar *bar = t.view.verticalScrollBar();
    constexpr int pages = 37;
    for (auto _ : state) {
        const int next = bar->value() + pages * bar->pageStep();
        bar->setValue(next > bar->maximum() ? next - bar->maximum() - 1 : next);
        renderonce(t);
    }
}

void BM_render_text(benchmark::State &state) { render(state, false); }
void BM_render_fraction(benchmark::State &state) { render(state, true); }
void BM_scroll_text(benchmark::State &state) { scroll(state, false); }
void BM_scroll_fraction(benchmark::State &state) { scroll(state, true); }

// An editor opened on a cell, filled, shown and committed into a one-cell model, through a
// delegate, as a view does it: a double in QStyledItemDelegate's QDoubleSpinBox, or a fraction.
void edit(benchmark::State &state, QAbstractItemDelegate &delegate, const QVariant &value)
{
    QWidget parent;
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), value, Qt::EditRole);
    const QModelIndex index = model.index(0, 0);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 140, 36);
    for (auto _ : state) {
        QWidget *editor = delegate.createEditor(&parent, option, index);
        delegate.setEditorData(editor, index);
        delegate.updateEditorGeometry(editor, option, index);
        editor->show();
        delegate.setModelData(editor, &model, index);
        delete editor;
    }
}

void BM_editor_spinbox(benchmark::State &state)
{
    QStyledItemDelegate delegate;
    edit(state, delegate, 67.5);
}

void BM_editor_fraction(benchmark::State &state)
{
    fractiondelegate delegate;
    edit(state, delegate, QStringList{"67", "1", "2"});
}

BENCHMARK(BM_render_text)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_render_fraction)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_scroll_text)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_scroll_fraction)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_editor_spinbox)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_editor_fraction)->Unit(benchmark::kMicrosecond);

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
    std::printf("\nplatform: %s\n", qPrintable(QGuiApplication::platformName()));
    std::printf("\n| measure | fractiondelegate / baseline | goal |\n|---|---:|---:|\n");
    std::printf("| rendering an 800 x 600 viewport of 100,000 rows | %.2fx (vs text) | at most 1.0x |\n",
                reporter.ratio("BM_render_fraction", "BM_render_text"));
    std::printf("| paging through the 100,000 rows, rendering each page | %.2fx (vs text) | at most 1.0x |\n",
                reporter.ratio("BM_scroll_fraction", "BM_scroll_text"));
    std::printf("| opening and committing an editor | %.2fx (vs QDoubleSpinBox) | at most 2x |\n",
                reporter.ratio("BM_editor_fraction", "BM_editor_spinbox"));
    return 0;
}
