// A form as applications build them, driven by the accessibility check: "Amount:" labels a
// cleared fraction control that can be resized, "Price:" a spin box.
#include "fractioni.h"

#include <QApplication>
#include <QDoubleSpinBox>
#include <QFormLayout>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QWidget window;
    auto *layout = new QFormLayout(&window);
    auto *amount = new kelfractionint::fractioni;
    amount->setUserresizeable(true);
    amount->clearfraction();
    layout->addRow(QStringLiteral("&Amount:"), amount);
    layout->addRow(QStringLiteral("&Price:"), new QDoubleSpinBox);
    window.show();
    window.activateWindow();
    amount->setFocus();
    return app.exec();
}
