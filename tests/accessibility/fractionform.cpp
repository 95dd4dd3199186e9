// A small form as applications build them: "Amount:" labelling a fraction control, "Price:" a
// spin box. The accessibility check drives it through the desktop's accessibility bus.
#include "fractioni.h"

#include <QApplication>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Fraction form"));
    auto *layout = new QGridLayout(&window);
    auto *amount = new kelfractionint::fractioni;
    auto *price = new QDoubleSpinBox;
    price->setValue(4.14);
    auto *amountlabel = new QLabel(QStringLiteral("&Amount:"));
    auto *pricelabel = new QLabel(QStringLiteral("&Price:"));
    amountlabel->setBuddy(amount);
    pricelabel->setBuddy(price);
    layout->addWidget(amountlabel, 0, 0);
    layout->addWidget(amount, 0, 1);
    layout->addWidget(pricelabel, 1, 0);
    layout->addWidget(price, 1, 1);
    amount->setUserresizeable(true);
    amount->clearfraction();
    window.show();
    window.activateWindow();
    amount->setFocus();
    return app.exec();
}
