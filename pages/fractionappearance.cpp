#include "fractionappearance.h"

#include <QCheckBox>

namespace kelfractionint {

namespace {

constexpr int borderstylefixed = 1;

// A Boolean property as a check box value: the property's value And 1.
int flagof(const QObject *control, const char *name)
{
    return propertypage::readproperty(control, name).toInt() & 1;
}

} // namespace

fractionappearance::fractionappearance(QWidget *parent)
    : propertypage(parent)
{
    setObjectName(QStringLiteral("fractionappearance"));
    setWindowTitle(QStringLiteral("fractionappearance"));
    sizetwips(5670, 3495);

    // Created in tab order, which is not the order on screen.
    const auto addbox = [this](const char *name, const char *caption, int left, int top, int width, int height) {
        auto *box = new QCheckBox(QString::fromLatin1(caption), this);
        box->setObjectName(QString::fromLatin1(name));
        box->setTristate(false);
        placetwips(box, left, top, width, height);
        connect(box, &QCheckBox::clicked, this, [this] { setChanged(true); });
        return box;
    };
    chkfractionslash = addbox("chkfractionslash", "Fractionslash", 90, 120, 1956, 285);
    chkuserresizeable = addbox("chkuserresizeable", "Userresizeable", 120, 770, 1860, 285);
    chkborderstyle = addbox("chkborderstyle", "Borderstyle", 120, 1440, 1812, 252);
    chkWholepartLocked = addbox("chkWholepartLocked", "WholepartLocked", 3240, 120, 2052, 372);
    chkforcesign = addbox("chkforcesign", "Forcesign", 120, 2640, 1812, 372);
    chkautoreplace = addbox("chkautoreplace", "Autoreplace", 120, 1920, 1692, 372);
    Chknumeratorlocked = addbox("Chknumeratorlocked", "NumeratorLocked", 3240, 720, 2052, 372);
    ChkdenominatorLocked = addbox("ChkdenominatorLocked", "DenominatorLocked", 3240, 1440, 2052, 372);

    const QList<QWidget *> order{chkfractionslash, chkuserresizeable,  chkborderstyle,     chkWholepartLocked,
                                 chkforcesign,     chkautoreplace,     Chknumeratorlocked, ChkdenominatorLocked};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order.at(i - 1), order.at(i));
}

fractionappearance::~fractionappearance() = default;

void fractionappearance::setcheck(QCheckBox *box, int value)
{
    box->setCheckState(value == 1 ? Qt::Checked : Qt::Unchecked);
    // Setting a box's value counts as its click, so a loaded page is a changed page; hosts rely
    // on Apply being available right after a selection.
    setChanged(true);
}

void fractionappearance::loadflags(const QObject *control, const QList<option> &order)
{
    for (const option &each : order)
        setcheck(each.box, flagof(control, each.property));
}

QList<fractionappearance::option> fractionappearance::flagsinorder() const
{
    return {{chkuserresizeable, "Userresizeable"},   {chkfractionslash, "Fractionslash"},
            {chkWholepartLocked, "WholepartLocked"}, {Chknumeratorlocked, "NumeratorLocked"},
            {ChkdenominatorLocked, "DenominatorLocked"}, {chkforcesign, "Forcesign"},
            {chkautoreplace, "Autoreplace"}};
}

void fractionappearance::SelectionChanged()
{
    loadflags(selectedcontrol(0), {{chkautoreplace, "Autoreplace"},
                                   {chkforcesign, "Forcesign"},
                                   {chkWholepartLocked, "WholepartLocked"},
                                   {Chknumeratorlocked, "NumeratorLocked"},
                                   {ChkdenominatorLocked, "DenominatorLocked"},
                                   {chkuserresizeable, "Userresizeable"},
                                   {chkfractionslash, "Fractionslash"}});

    // Every control in turn overwrites the boxes: a mixed selection shows its last control,
    // never a grey box. Hosts rely on that.
    const int count = selectedcount16();
    for (int i = 0; i < count; ++i) {
        QObject *control = selectedcontrol(i);
        loadflags(control, flagsinorder());
        setcheck(chkborderstyle, readproperty(control, "Borderstyle").toInt() == borderstylefixed ? 1 : 0);
    }
}

void fractionappearance::ApplyChanges()
{
    const int count = selectedcount16();
    for (int i = 0; i < count; ++i) {
        QObject *control = selectedcontrol(i);
        for (const option &each : flagsinorder())
            write(control, each.property, each.box->checkState() == Qt::Checked);
        write(control, "Borderstyle",
              static_cast<qint32>(chkborderstyle->checkState() == Qt::Checked ? borderstylefixed : 0));
    }
}

} // namespace kelfractionint
