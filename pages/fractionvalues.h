#pragma once

#include "fractionpages_export.h"
#include "propertypage.h"

class QLabel;
class QLineEdit;

namespace kelfractionint {

/*!
 * The values page: the whole part, numerator and denominator of the first selected control as
 * text. Loading the boxes counts as a change, so Apply right after a selection writes the same
 * values back. Only the first selected control is read and written.
 */
class FRACTIONPAGES_EXPORT fractionvalues : public propertypage
{
    Q_OBJECT

public:
    explicit fractionvalues(QWidget *parent = nullptr);
    ~fractionvalues() override;

    /*! Loads the three boxes from the first selected control: whole part, denominator, numerator. */
    void SelectionChanged() override;
    /*! Writes Wholepartvalue, Denominatorvalue, Numeratorvalue of the first selected control, in
     *  that order; a property that raises stops the rest and passes the error on. */
    void ApplyChanges() override;

private:
    QLabel *lblnumeratorvalue;
    QLineEdit *txtnumeratorvalue;
    QLabel *lbldenominatorvalue;
    QLineEdit *txtdenominatorvalue;
    QLabel *lblwholepartvalue;
    QLineEdit *txtwholepartvalue;
};

} // namespace kelfractionint
