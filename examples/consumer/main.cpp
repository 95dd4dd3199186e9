// Embeds two fraction controls in a window, adds them and prints the sum.
#include <kelfractionint/fractioni.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QTextStream>
#include <QWidget>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QWidget form;
    auto *layout = new QHBoxLayout(&form);
    auto *first = new kelfractionint::fractioni(&form);   // a new control shows 4 1/7
    auto *second = new kelfractionint::fractioni(&form);
    second->setWholepartvalue(QStringLiteral("-1"));
    second->setNumeratorvalue(QStringLiteral("1"));
    second->setDenominatorvalue(QStringLiteral("2"));
    layout->addWidget(first);
    layout->addWidget(second);
    form.show();

    const QStringList sum = first->addtwofractions(first, second);   // improper, unreduced
    QTextStream(stdout) << "4 1/7 + (-1 1/2) = " << sum.join(QLatin1Char('|')) << Qt::endl;
    return sum.isEmpty() ? 1 : 0;
}
