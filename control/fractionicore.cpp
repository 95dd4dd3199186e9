// Temporary bodies of the control's core so that the library links; replaced piece by piece.
#include "fractioni.h"

#include <QEvent>
#include <QLineEdit>
#include <QPaintEvent>

namespace kelfractionint {

fractioni::fractioni(QWidget *parent) : QWidget(parent)
{
    wholepart = new QLineEdit(this);
    wholepart->setObjectName(QStringLiteral("wholepart"));
    numerator = new QLineEdit(this);
    numerator->setObjectName(QStringLiteral("numerator"));
    denominator = new QLineEdit(this);
    denominator->setObjectName(QStringLiteral("denominator"));
    lblgrip = new QWidget(this);
    lblgrip->setObjectName(QStringLiteral("lblgrip"));
    m_wholepart = QStringLiteral("4");
    m_numerator = QStringLiteral("1");
    m_denominator = QStringLiteral("7");
}
fractioni::~fractioni() = default;

void fractioni::setNumeratorvalue(const QString &value) { m_numerator = value; }
void fractioni::setDenominatorvalue(const QString &value) { m_denominator = value; }
void fractioni::setWholepartvalue(const QString &value) { m_wholepart = value; }
void fractioni::setForcesign(bool value) { m_forcesign = value; }
void fractioni::setAutoreplace(bool value) { m_autoreplace = value; }
void fractioni::setFracType(fractiontype value) { m_fractype = value; }
void fractioni::setFractionslash(bool value) { m_fractionslash = value; }
void fractioni::setBackcolor(quint32 value) { m_backcolor = value; }
void fractioni::setUserresizeable(bool value) { m_userresizeable = value; }
void fractioni::setBorderstyle(fracBorderstyle value) { m_borderstyle = value; }
void fractioni::setNegforecolor(quint32 value) { m_negforecolor = value; }
void fractioni::setPosforecolor(quint32 value) { m_posforecolor = value; }
void fractioni::setWholepartbackcolor(quint32 value) { m_wholepartbackcolor = value; }
void fractioni::setNumeratorbackcolor(quint32 value) { m_numeratorbackcolor = value; }
void fractioni::setDenominatorbackcolor(quint32 value) { m_denominatorbackcolor = value; }
void fractioni::setFont(const QFont &value)
{
    m_font = value;
    // The control's Font property shadows QWidget::setFont, so the widget's own font is set
    // explicitly here.
    QWidget::setFont(value);
}
void fractioni::setFracpartvisible(bool value) { m_fracpartvisible = value; }
void fractioni::setWholeallowedchars(const QVariant &value) { m_wholeallowedchars = value; }
void fractioni::setNumerallowedchars(const QVariant &value) { m_numerallowedchars = value; }
void fractioni::setDenomallowedchars(const QVariant &value) { m_denomallowedchars = value; }
void fractioni::setWholepartLocked(bool value) { m_wholepartlocked = value; }
void fractioni::setNumeratorLocked(bool value) { m_numeratorlocked = value; }
void fractioni::setDenominatorLocked(bool value) { m_denominatorlocked = value; }

void fractioni::fracsize(float, float) {}
fractioni *fractioni::changesign() { return this; }
fractioni *fractioni::loadfraction(QStringList &) { return this; }
QString fractioni::getsign() const { return QStringLiteral("0"); }
fractioni *fractioni::clearfraction() { return this; }
void fractioni::Refreshfraction() {}
bool fractioni::wholecharallowed(const QString &) const { return false; }

void fractioni::InitProperties() {}
void fractioni::ReadProperties(const propertybag &) {}
void fractioni::WriteProperties(propertybag &) const {}

QSize fractioni::sizeHint() const { return {40, 40}; }
QSize fractioni::minimumSizeHint() const { return {1, 1}; }

QStringList fractioni::fractiontoarray(const fractioni *control)
{
    return {control->Wholepartvalue(), control->Numeratorvalue(), control->Denominatorvalue()};
}
void fractioni::resizeprocedure() {}

void fractioni::paintEvent(QPaintEvent *event) { QWidget::paintEvent(event); }
void fractioni::resizeEvent(QResizeEvent *event) { QWidget::resizeEvent(event); }
void fractioni::showEvent(QShowEvent *event) { QWidget::showEvent(event); }
bool fractioni::eventFilter(QObject *watched, QEvent *event) { return QWidget::eventFilter(watched, event); }

} // namespace kelfractionint
