#pragma once

#include "fractionpages_export.h"
#include "propertypage.h"

class QCheckBox;

namespace kelfractionint {

/*!
 * The appearance page: eight check boxes, each captioned with the Boolean option it stands for
 * (Borderstyle ticked means borderstylefixed). Loading shows the last selected control; Apply
 * writes every selected control. Loading counts as a change.
 */
class FRACTIONPAGES_EXPORT fractionappearance : public propertypage
{
    Q_OBJECT

public:
    explicit fractionappearance(QWidget *parent = nullptr);
    ~fractionappearance() override;

    void SelectionChanged() override;
    /*! Writes the eight options to each selected control in turn; a property that raises stops
     *  there and passes the error on, leaving the remaining controls untouched. */
    void ApplyChanges() override;

private:
    struct option
    {
        QCheckBox *box;
        const char *property;
    };
    void setcheck(QCheckBox *box, int value);
    void loadflags(const QObject *control, const QList<option> &order);
    /*! The seven Boolean options in the order in which each control is read and written. */
    QList<option> flagsinorder() const;

    QCheckBox *chkfractionslash;
    QCheckBox *chkuserresizeable;
    QCheckBox *chkborderstyle;
    QCheckBox *chkWholepartLocked;
    QCheckBox *chkforcesign;
    QCheckBox *chkautoreplace;
    QCheckBox *Chknumeratorlocked;
    QCheckBox *ChkdenominatorLocked;
};

} // namespace kelfractionint
