// The fraction delegate beside QStyledItemDelegate showing the same values as text, offscreen:
// rendering an 800 x 600 viewport of a 100,000-row, 3-column table, scrolling it page by page,
// and opening and committing an editor against a QDoubleSpinBox editor. Prints the ratios.
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

void render(benchmark::State &state, bool fractions)
{
    table t(fractions);
    for (auto _ : state)
        t.render();
}

void scroll(benchmark::State &state, bool fractions)
{
    table t(fractions);
    QScrollBar *bar = t.view.verticalScrollBar();
    for (auto _ : state) {
        bar->setValue(bar->value() + bar->pageStep() > bar->maximum() ? 0 : bar->value() + bar->pageStep());
        t.render();
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
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen"));
    QApplication app(argc, argv);
    QLocale::setDefault(QLocale::c());
    modfracglobal::setnumberlocale({".", ","});
    kelfractionint::messagecapture messages;
    benchmark::Initialize(&argc, argv);
    ratiocollector reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n| measure | fractiondelegate / baseline | goal |\n|---|---:|---:|\n");
    std::printf("| rendering an 800 x 600 viewport of 100,000 rows | %.2fx (vs text) | at most 1.5x |\n",
                reporter.ratio("BM_render_fraction", "BM_render_text"));
    std::printf("| scrolling a page and rendering it | %.2fx (vs text) | at most 1.5x |\n",
                reporter.ratio("BM_scroll_fraction", "BM_scroll_text"));
    std::printf("| opening and committing an editor | %.2fx (vs QDoubleSpinBox) | at most 2x |\n",
                reporter.ratio("BM_editor_fraction", "BM_editor_spinbox"));
    return 0;
}
