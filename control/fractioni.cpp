#include "fractioni.h"

#include "ambient.h"
#include "fractioniguard.h"
#include "modfracglobal.h"
#include "propertybag.h"
#include "twips.h"

#include <QAccessible>
#include <QFontInfo>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionSizeGrip>

#include <cmath>
#include <limits>

namespace kelfractionint {

// The parts see their events through the control first, as an installed event filter would,
// without the filter list that each filtered object would hold.
template <typename Base>
class fractioni::part : public Base
{
public:
    explicit part(fractioni *control) : Base(control), m_control(control) {}
    void detach() { m_control = nullptr; }

protected:
    bool event(QEvent *event) override
    {
        if (m_control && m_control->eventFilter(this, event))
            return true;
        return Base::event(event);
    }

private:
    fractioni *m_control;
};

namespace {

// The resize grip in the bottom-right corner, painted as the style's size grip.
class gripwidget : public QWidget
{
public:
    explicit gripwidget(QWidget *parent) : QWidget(parent)
    {
        // The grip keeps a font of its own: its size follows that font's "o", not the value's.
        QFont gripfont = font();
        gripfont.setPointSizeF(18);
        setFont(gripfont);
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        // Most controls never show their grip: its cursor is set when it is first shown.
        if (!testAttribute(Qt::WA_SetCursor))
            setCursor(Qt::SizeFDiagCursor);
        QWidget::showEvent(event);
    }

    void changeEvent(QEvent *event) override
    {
        QWidget::changeEvent(event);
        // The grip's size follows its font, which a style sheet may change at any time (once
        // the grip is in place: it gets its name last).
        auto *control = qobject_cast<fractioni *>(parentWidget());
        if (event->type() == QEvent::FontChange && control && objectName() == QLatin1String("lblgrip"))
            control->Refreshfraction();
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QStyleOptionSizeGrip option;
        option.initFrom(this);
        option.corner = Qt::BottomRightCorner;
        style()->drawControl(QStyle::CE_SizeGrip, &option, &painter, this);
    }
};

// Every handler of the lifecycle runs under an error handler of its own: a failing step never
// reaches the container, and the next step runs.
template <typename F>
void absorb(F &&step)
{
    try {
        step();
    } catch (const std::exception &) {
    }
}

void mismatch()
{
    throw modfracglobal::automationerror(modfracglobal::errnum::typemismatch);
}

bool isnumbertype(const QVariant &v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

// The conversions of the host: what a property-bag value of a foreign type becomes, or error 13.
double bagdouble(const QVariant &v)
{
    bool ok = false;
    double value = 0;
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? -1 : 0;
    if (isnumbertype(v))
        value = v.toDouble(&ok);
    else if (v.typeId() == QMetaType::QString || v.typeId() == QMetaType::QByteArray)
        value = v.toString().trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        mismatch();
    return value;
}

qint64 baglong(const QVariant &v, qint64 low, qint64 high)
{
    const double value = std::nearbyint(bagdouble(v));
    if (value < double(low) || value > double(high))
        throw modfracglobal::automationerror(modfracglobal::errnum::overflow);
    return qint64(value);
}

quint32 bagcolor(const QVariant &v)
{
    // Colours come as unsigned or as signed 32-bit values (system colours are negative).
    return quint32(qint64(baglong(v, std::numeric_limits<qint32>::min(), std::numeric_limits<quint32>::max())));
}

bool bagbool(const QVariant &v)
{
    if (v.typeId() == QMetaType::Bool)
        return v.toBool();
    if (v.typeId() == QMetaType::QString) {
        const QString text = v.toString().trimmed().toLower();
        if (text == QLatin1String("true"))
            return true;
        if (text == QLatin1String("false"))
            return false;
    }
    return bagdouble(v) != 0;
}

QString bagstring(const QVariant &v)
{
    if (v.typeId() == QMetaType::QString)
        return v.toString();
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    // A number becomes text by the host's rules: the locale's decimal separator, at most 15 digits.
    if (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float)
        return QString::fromStdString(modfracglobal::doubletotext(v.toDouble()));
    if (isnumbertype(v))
        return v.toString();
    mismatch();
    return {};
}

QFont bagfont(const QVariant &v)
{
    if (v.typeId() == QMetaType::QFont)
        return v.value<QFont>();
    QFont font;
    if (v.typeId() == QMetaType::QString && font.fromString(v.toString()))
        return font;
    // Nothing stored, or no font: the object variable is not set.
    throw modfracglobal::automationerror(modfracglobal::errnum::objectnotset);
}

} // namespace

fractioni::fractioni(QWidget *parent) : QWidget(parent)
{
    initialize(nullptr);
}

fractioni::fractioni(const propertybag &bag, QWidget *parent) : QWidget(parent)
{
    initialize(&bag);
}

void fractioni::initialize(const propertybag *bag)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_OpaquePaintEvent);
    static const bool factoryinstalled = [] {
        QAccessible::installFactory(accessiblefactory);
        return true;
    }();
    Q_UNUSED(factoryinstalled);

    // Initialize. The control's font and palette are in place before its parts are made, which
    // inherit them rather than receive them through a change each.
    m_zoomingstart = !bag;
    absorb([this] {
        m_startratio = devicePixelRatioF();
        m_tpx = twipsperpixelx(this);
        m_tpy = twipsperpixely(this);
        lastwidth = twipwidth();
        lastheight = twipheight();
        gapx = 2 * m_tpx;
        gapy = 2 * m_tpy;
        const QFont initial = QWidget::font();
        setcontrolfont(this, initial, initial.pointSizeF() > 0 ? initial.pointSizeF() : QFontInfo(initial).pointSizeF());
        m_wholeallowedchars = defaultallowedchars();
        m_numerallowedchars = defaultallowedchars();
        m_denomallowedchars = defaultallowedchars();
        static const QSet<QString> defaultmembers = [] {
            const QStringList chars = defaultallowedchars();
            return QSet<QString>(chars.begin(), chars.end());
        }();
        m_wholemembers = m_numermembers = m_denommembers = defaultmembers;
        startingup = true;
    });
    showforecolor();
    if (m_zoomingstart) {
        absorb([this] {
            const QFont zoomed = startzoomfont();
            m_adoptingfont = true;
            QWidget::setFont(drawnfont(zoomed));
            m_adoptingfont = false;
        });
        m_zoomingstart = false;
    }
    const std::array<std::pair<QLineEdit **, QString>, 3> fields{{
        {&wholepart, QStringLiteral("wholepart")},
        {&numerator, QStringLiteral("numerator")},
        {&denominator, QStringLiteral("denominator")},
    }};
    for (const auto &[member, name] : fields) {
        auto *field = new part<QLineEdit>(this);
        field->setObjectName(name);
        field->setFrame(false);
        // The field is exactly as wide as its text: the line edit's own inner margin is taken
        // back, and one pixel more on the right leaves room for the caret.
        field->setTextMargins(-2, 0, -3, 0);
        // Its size comes from the layout: shown before that, it is not sized to its own hint.
        field->resize(0, 0);
        *member = field;
    }
    lblgrip = new part<gripwidget>(this);
    lblgrip->setObjectName(QStringLiteral("lblgrip"));
    lblgrip->hide();

    // The fields receive the new control's value once its font is final: a text laid out in the
    // font of the start would be laid out again for the zoom to the initial size.
    // A restored control starts from the empty value and takes only what its bag holds.
    m_fieldtextsdeferred = true;
    eventguarded([&] {
        if (bag)
            ReadProperties(*bag);
        else
            InitProperties();
    });
    m_fieldtextsdeferred = false;
    if (m_startfont) {
        // The zoom found the font it was made in already, or did not take place: the control is
        // in its own font either way.
        m_startfont.reset();
        fontchanged();
    }
    setfieldtext(wholepart, m_wholepart);
    setfieldtext(numerator, m_numerator);
    setfieldtext(denominator, m_denominator);
    // The layout saw empty fields; with texts of equal length (or none) it stands as it is.
    absorb([this, bag] {
        if (!bag && m_lastlayout && m_numerator.size() == m_denominator.size())
            m_lastlayout = currentlayoutstate();
        else
            resizeprocedure();
    });
    // The control takes the focus for its first part shown: setFocus, a label's buddy and the
    // tab order reach the fields; the control itself is never a stop of the tab chain.
    setFocusPolicy(Qt::TabFocus);
    updatefocusproxy();
    m_startratio = 0;
}

fractioni::~fractioni()
{
    for (QLineEdit *field : {wholepart, numerator, denominator})
        static_cast<part<QLineEdit> *>(field)->detach();
    static_cast<part<gripwidget> *>(lblgrip)->detach();
    // Deleted by a handler of one of its signals: a field may be in the middle of its own event
    // (a keystroke, a paste, a click), so the fields leave with the event loop instead.
    if (calls::current().emitdepth > 0) {
        for (QWidget *child : std::initializer_list<QWidget *>{wholepart, numerator, denominator, lblgrip}) {
            child->hide();
            child->setParent(nullptr);
            child->deleteLater();
        }
    }
}

void fractioni::InitProperties()
{
    guarded([&] { initproperties(); });
}

void fractioni::initproperties()
{
    // The layout is computed once the font is known rather than after each assignment; the
    // font assignment below lays the control out with the values assigned so far.
    m_initializing = true;
    absorb([this] { setWholepartvalue(QStringLiteral("4")); });
    absorb([this] { setNumeratorvalue(QStringLiteral("1")); });
    absorb([this] { setDenominatorvalue(QStringLiteral("7")); });
    absorb([this] { setUserresizeable(false); });
    absorb([this] { setAutoreplace(false); });
    absorb([this] { setForcesign(false); });
    absorb([this] { setBorderstyle(borderstylenone); });
    absorb([this] { setNegforecolor(0x0000FF); });
    absorb([this] { setPosforecolor(0); });
    absorb([this] { setFractionslash(true); });
    const quint32 back = ambient::backcolor(this);
    absorb([&] { setBackcolor(back); });
    absorb([&] { setWholepartbackcolor(back); });
    absorb([&] { setNumeratorbackcolor(back); });
    absorb([&] { setDenominatorbackcolor(back); });
    absorb([this] { setFracpartvisible(true); });
    absorb([this] { setWholepartLocked(false); });
    absorb([this] { setNumeratorLocked(false); });
    absorb([this] { setDenominatorLocked(false); });
    absorb([this] { setFracType(fracnumeric); });
    m_initializing = false;
    absorb([this] { setFont(ambient::font(this)); });
    m_fontisambient = true;
    // Width and height in one step: the end state is that of setting one after the other.
    absorb([this] { settwipsize(600, 600); });
}

void fractioni::ReadProperties(const propertybag &bag)
{
    // The steps' errors are absorbed one by one: each step is a nested call of this one.
    guarded([&] { readproperties(bag); });
}

void fractioni::readproperties(const propertybag &bag)
{
    const valuebatch batch(this);
    auto read = [&bag](const char *key, const QVariant &defaultvalue) {
        return bag.readproperty(QLatin1String(key), defaultvalue);
    };
    const qint64 int32min = std::numeric_limits<qint32>::min();
    const qint64 int32max = std::numeric_limits<qint32>::max();
    absorb([&] { setFracType(fractiontype(baglong(read("FracType", 0), int32min, int32max))); });
    absorb([&] { setWholepartvalue(bagstring(read("Wholepartvalue", QStringLiteral("4")))); });
    absorb([&] { setNumeratorvalue(bagstring(read("Numeratorvalue", QStringLiteral("1")))); });
    absorb([&] { setDenominatorvalue(bagstring(read("Denominatorvalue", QStringLiteral("7")))); });
    absorb([&] { settwipsize(bagdouble(read("Width", 600)), twipheight()); });
    absorb([&] { settwipsize(twipwidth(), bagdouble(read("Height", 600))); });
    absorb([&] { setBackcolor(bagcolor(read("Backcolor", 0xFFFFFF))); });
    absorb([&] { setWholepartbackcolor(bagcolor(read("Wholepartbackcolor", 0xFFFFFF))); });
    absorb([&] { setNumeratorbackcolor(bagcolor(read("Numeratorbackcolor", 0xFFFFFF))); });
    absorb([&] { setDenominatorbackcolor(bagcolor(read("Denominatorbackcolor", 0xFFFFFF))); });
    absorb([&] { setFractionslash(bagbool(read("Fractionslash", true))); });
    absorb([&] { setNegforecolor(bagcolor(read("Negforecolor", 255))); });
    absorb([&] { setPosforecolor(bagcolor(read("Posforecolor", 0))); });
    absorb([&] { setUserresizeable(bagbool(read("Userresizeable", false))); });
    absorb([&] { setAutoreplace(bagbool(read("Autoreplace", false))); });
    absorb([&] { setForcesign(bagbool(read("Forcesign", false))); });
    absorb([&] { setBorderstyle(fracBorderstyle(baglong(read("Borderstyle", 0), int32min, int32max))); });
    absorb([&] { setFont(bagfont(read("Font", QVariant()))); });
    absorb([&] { setFracpartvisible(bagbool(read("Fracpartvisible", true))); });
    absorb([&] { setWholepartLocked(bagbool(read("WholepartLocked", false))); });
    absorb([&] { setNumeratorLocked(bagbool(read("NumeratorLocked", false))); });
    absorb([&] { setDenominatorLocked(bagbool(read("DenominatorLocked", false))); });
}

void fractioni::WriteProperties(propertybag &bag) const
{
    auto write = [&bag](const char *key, const QVariant &value, const QVariant &defaultvalue) {
        absorb([&] { bag.writeproperty(QLatin1String(key), value, defaultvalue); });
    };
    write("Wholepartvalue", Wholepartvalue(), QStringLiteral("4"));
    write("Numeratorvalue", Numeratorvalue(), QStringLiteral("1"));
    write("Denominatorvalue", Denominatorvalue(), QStringLiteral("7"));
    write("Width", float(twipwidth()), qint16(600));
    write("Height", float(twipheight()), qint16(600));
    write("Fractionslash", Fractionslash(), true);
    write("Backcolor", qint32(Backcolor()), 0xFFFFFF);
    write("Wholepartbackcolor", qint32(Wholepartbackcolor()), 0xFFFFFF);
    write("Numeratorbackcolor", qint32(Numeratorbackcolor()), 0xFFFFFF);
    write("Denominatorbackcolor", qint32(Denominatorbackcolor()), 0xFFFFFF);
    write("Negforecolor", qint32(Negforecolor()), 255);
    write("Posforecolor", qint32(Posforecolor()), 0);
    write("Userresizeable", Userresizeable(), false);
    write("Autoreplace", Autoreplace(), false);
    write("Forcesign", Forcesign(), false);
    write("Borderstyle", qint32(Borderstyle()), 0);
    write("Font", Font(), QVariant());
    write("Fracpartvisible", Fracpartvisible(), true);
    write("WholepartLocked", WholepartLocked(), false);
    write("NumeratorLocked", NumeratorLocked(), false);
    write("DenominatorLocked", DenominatorLocked(), false);
    write("FracType", qint32(FracType()), 0);
}

QSize fractioni::sizeHint() const
{
    // The size that the resize procedure last gave the control: a layout places it at the size it
    // computes for its content, never at one the layout remembered.
    if (!m_hintedsize.isEmpty())
        return m_hintedsize;
    return size().isEmpty() ? QSize(40, 40) : size();
}

QSize fractioni::minimumSizeHint() const
{
    return sizeHint();
}

} // namespace kelfractionint
