// Placeholder bodies for members that are still being written; each goes away when its real
// implementation lands in its own file.
#include "fractioni.h"

#include <QEvent>
#include <QMouseEvent>

namespace kelfractionint {

qint32 fractioni::Numerdenomgcd() const { return -1; }
QObject *fractioni::Container() const { return nullptr; }
void fractioni::setContainer(QObject *) {}
qint32 fractioni::hWnd() const { return 0; }
QPixmap fractioni::Picture() const { return {}; }

QStringList fractioni::reduce() { return {}; }
QStringList fractioni::fractomixed() { return {}; }
QStringList fractioni::expand(qint32) { return {}; }
QStringList fractioni::mixedtofrac() { return {}; }
QStringList fractioni::addfractions(const QVariant &) { return {}; }
QStringList fractioni::addfractions(const QList<fractioni *> &) { return {}; }
QStringList fractioni::invert() { return {}; }
QStringList fractioni::multiplyfractions(const QVariant &) { return {}; }
QStringList fractioni::multiplyfractions(const QList<fractioni *> &) { return {}; }
QStringList fractioni::dividefractions(fractioni *, fractioni *) { return {}; }
QStringList fractioni::fractodecimal(qint32) { return {}; }
QStringList fractioni::decimaltofrac() { return {}; }
QStringList fractioni::fractopercent(qint32) { return {}; }
QStringList fractioni::percenttofrac() { return {}; }
QStringList fractioni::subtractfractions(fractioni *, fractioni *) { return {}; }
QStringList fractioni::addtwofractions(fractioni *, fractioni *) { return {}; }
QStringList fractioni::multiplytwofractions(fractioni *, fractioni *) { return {}; }
fractioni *fractioni::addintofraction(fractioni *resultfrac, fractioni *) { return resultfrac; }
fractioni *fractioni::subtractintofraction(fractioni *resultfrac, fractioni *) { return resultfrac; }
fractioni *fractioni::divideintofraction(fractioni *resultfrac, fractioni *) { return resultfrac; }
fractioni *fractioni::multiplyintofraction(fractioni *resultfrac, fractioni *) { return resultfrac; }

void fractioni::mousePressEvent(QMouseEvent *event) { QWidget::mousePressEvent(event); }
void fractioni::mouseReleaseEvent(QMouseEvent *event) { QWidget::mouseReleaseEvent(event); }
bool fractioni::childmouseevent(QObject *, QEvent *) { return false; }

} // namespace kelfractionint
