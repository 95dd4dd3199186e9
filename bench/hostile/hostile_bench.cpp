// Costs that hostile or careless input could make run away, each beside a baseline in the same
// run: a 65,536-character allowed set, a 10^6-character algebraic numerator and denominator, a
// delegate's cell holding one, a member call with 10,000 controls alive, and the host's exit after
// 10,000 controls. Prints the ratios.
#include "fractiondelegate.h"
#include "fractioni.h"
#include "hostnumbers.h"
#include "messageboxsink.h"
#include "scripthost.h"

#include "ratiocollector.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QSet>
#include <QStandardItemModel>
#include <QStyledItemDelegate>

#include <cstdio>
#include <map>
#include <string>

using kelfractionint::fractioni;
using kelfractionint::scripthost;

namespace {

QStringList everycharacter()
{
    QStringList chars;
    for (int code = 0; code < 65536; ++code)
        chars.append(QString(QChar(char16_t(code))));
    return chars;
}

void BM_set_baseline(benchmark::State &state)
{
    const QStringList chars = everycharacter();
    for (auto _ : state) {
        QSet<QString> set(chars.begin(), chars.end());
        QStringList copy = chars;
        benchmark::DoNotOptimize(set);
        benchmark::DoNotOptimize(copy);
    }
}

void BM_set_fractioni(benchmark::State &state)
{
    const QStringList chars = everycharacter();
    fractioni control;
    for (auto _ : state)
        control.setNumerallowedchars(chars);
}

const QString &longvalue()
{
    static const QString text = [] {
        QString t;
        for (int i = 0; i < 1000000; ++i)
            t.append(QChar(u'a' + i % 26));
        return t;
    }();
    return text;
}

void BM_value_baseline(benchmark::State &state)
{
    QLineEdit field;
    field.setMaxLength(std::numeric_limits<int>::max());
    bool odd = false;
    for (auto _ : state) {
        // The field shows the text and measures it, as the control's field does.
        field.setText((odd = !odd) ? longvalue() : longvalue().left(999999));
        benchmark::DoNotOptimize(field.fontMetrics().horizontalAdvance(field.text()));
    }
}

QStringList letters()
{
    QStringList chars;
    for (char16_t c = u'a'; c <= u'z'; ++c)
        chars.append(QString(QChar(c)));
    return chars;
}

void BM_value_fractioni(benchmark::State &state)
{
    fractioni control;
    control.setFracType(fractioni::fracAlgebraic);
    control.setNumerallowedchars(letters());
    bool odd = false;
    for (auto _ : state)
        control.setNumeratorvalue((odd = !odd) ? longvalue() : longvalue().left(999999));
}

void BM_denominator_fractioni(benchmark::State &state)
{
    fractioni control;
    control.setFracType(fractioni::fracAlgebraic);
    control.setDenomallowedchars(letters());
    bool odd = false;
    for (auto _ : state)
        control.setDenominatorvalue((odd = !odd) ? longvalue() : longvalue().left(999999));
}

// One cell painted by a delegate, its text (or numerator) 10^6 characters long and new each time.
void paintcell(benchmark::State &state, QAbstractItemDelegate &delegate, bool fraction)
{
    QStandardItemModel model(1, 1);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 800, 36);
    option.font = QApplication::font();
    option.palette = QApplication::palette();
    option.state = QStyle::State_Enabled;
    QImage image(option.rect.size(), QImage::Format_ARGB32_Premultiplied);
    bool odd = false;
    for (auto _ : state) {
        const QString text = (odd = !odd) ? longvalue() : longvalue().left(999999);
        if (fraction)
            model.setData(model.index(0, 0), QStringList{QString(), text, QStringLiteral("b")}, Qt::EditRole);
        else
            model.setData(model.index(0, 0), text + QStringLiteral("/b"), Qt::DisplayRole);
        QPainter painter(&image);
        delegate.paint(&painter, option, model.index(0, 0));
    }
}

void BM_cell_baseline(benchmark::State &state)
{
    QStyledItemDelegate delegate;
    paintcell(state, delegate, false);
}

void BM_cell_fractiondelegate(benchmark::State &state)
{
    kelfractionint::fractiondelegate delegate;
    paintcell(state, delegate, true);
}

void BM_call(benchmark::State &state)
{
    scripthost host;
    host.evaluate(QStringLiteral("var all = []; for (var i = 0; i < %1; ++i) all.push(createfraction());"
                                 "var a = all[0], b = all[all.length - 1];")
                      .arg(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(host.evaluate(QStringLiteral("a.addtwofractions(a, b)")));
}

void BM_exit(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto host = std::make_unique<scripthost>();
        host->evaluate(QStringLiteral("for (var i = 0; i < %1; ++i) createfraction();").arg(state.range(0)));
        state.ResumeTiming();
        host.reset();
    }
    state.counters["per_control_us"] = benchmark::Counter(double(state.range(0)), benchmark::Counter::kIsRate |
                                                                                      benchmark::Counter::kInvert);
}

BENCHMARK(BM_set_baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_set_fractioni)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_value_baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_value_fractioni)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_denominator_fractioni)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_cell_baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_cell_fractiondelegate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_call)->Arg(1)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_exit)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(3);

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
    std::printf("\n| measure | ratio | against |\n|---|---:|---|\n");
    std::printf("| storing a 65,536-character allowed set | %.2fx | a QSet and a copy of the list |\n",
                reporter.ratio("BM_set_fractioni", "BM_set_baseline"));
    std::printf("| a 10^6-character algebraic numerator | %.2fx | QLineEdit::setText and measuring it |\n",
                reporter.ratio("BM_value_fractioni", "BM_value_baseline"));
    std::printf("| a 10^6-character algebraic denominator | %.2fx | QLineEdit::setText and measuring it |\n",
                reporter.ratio("BM_denominator_fractioni", "BM_value_baseline"));
    std::printf("| a delegate's cell with a 10^6-character numerator | %.2fx | QStyledItemDelegate painting the text |\n",
                reporter.ratio("BM_cell_fractiondelegate", "BM_cell_baseline"));
    std::printf("| a member call with 10,000 controls alive | %.2fx | the same call with 1 control |\n",
                reporter.ratio("BM_call/10000", "BM_call/1"));
    std::printf("| exit after 10,000 controls, per control | %.2fx | exit after 1,000, per control |\n",
                reporter.ratio("BM_exit/10000/iterations:3", "BM_exit/1000/iterations:3", 10));
    return 0;
}
