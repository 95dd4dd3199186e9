#include "fractionvalues.h"

#include <QLabel>
#include <QLineEdit>

namespace kelfractionint {

namespace {

constexpr int columnleft = 90;
constexpr int columnwidth = 2700;
constexpr int labelheight = 240;
constexpr int boxheight = 330;

} // namespace

fractionvalues::fractionvalues(QWidget *parent)
    : propertypage(parent)
{
    setObjectName(QStringLiteral("fractionvalues"));
    setWindowTitle(QStringLiteral("fractionvalues"));
    sizetwips(5925, 3495);

    const auto addpair = [this](const char *labelname, const char *caption, const char *boxname, int labeltop,
                                int boxtop, QLabel *&label, QLineEdit *&box) {
        label = new QLabel(QString::fromLatin1(caption), this);
        label->setObjectName(QString::fromLatin1(labelname));
        placetwips(label, columnleft, labeltop, columnwidth, labelheight);
        box = new QLineEdit(this);
        box->setObjectName(QString::fromLatin1(boxname));
        placetwips(box, columnleft, boxtop, columnwidth, boxheight);
        label->setBuddy(box);
        // Any change of a box, typed or loaded, enables Apply.
        connect(box, &QLineEdit::textChanged, this, [this] { setChanged(true); });
    };
    addpair("lblnumeratorvalue", "numeratorvalue:", "txtnumeratorvalue", 120, 370, lblnumeratorvalue,
            txtnumeratorvalue);
    addpair("lbldenominatorvalue", "denominatorvalue:", "txtdenominatorvalue", 770, 1020, lbldenominatorvalue,
            txtdenominatorvalue);
    addpair("lblwholepartvalue", "wholepartvalue:", "txtwholepartvalue", 1420, 1670, lblwholepartvalue,
            txtwholepartvalue);

    // Labels take no focus; the boxes follow the column from top to bottom.
    setTabOrder(txtnumeratorvalue, txtdenominatorvalue);
    setTabOrder(txtdenominatorvalue, txtwholepartvalue);
}

fractionvalues::~fractionvalues() = default;

void fractionvalues::SelectionChanged()
{
    QObject *control = selectedcontrol(0);
    txtwholepartvalue->setText(readproperty(control, "Wholepartvalue").toString());
    txtdenominatorvalue->setText(readproperty(control, "Denominatorvalue").toString());
    txtnumeratorvalue->setText(readproperty(control, "Numeratorvalue").toString());
    // Loading fills the boxes, which counts as a change even where a text stays the same;
    // hosts rely on Apply being available right after a selection.
    setChanged(true);
}

void fractionvalues::ApplyChanges()
{
    QObject *control = selectedcontrol(0);
    write(control, "Wholepartvalue", txtwholepartvalue->text());
    write(control, "Denominatorvalue", txtdenominatorvalue->text());
    write(control, "Numeratorvalue", txtnumeratorvalue->text());
}

} // namespace kelfractionint
