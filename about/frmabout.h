#pragma once

#include "fractionabout_export.h"

#include <QDialog>

class QLabel;
class QPushButton;

namespace kelfractionint {

/*!
 * The component's About box: its title, version and a description crediting the maker, an OK
 * button that closes it and a button that starts the system's information tool.
 */
class FRACTIONABOUT_EXPORT frmAbout : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *parent = nullptr);
    ~frmAbout() override;

    /*! The component's title. */
    static QString apptitle();
    /*! The component's version as major.minor.revision. */
    static QString appversion();
    /*! The description: string 102, CR LF LF CR, string 104, CR LF, string 4. */
    static QString description();

private:
    void Form_Load();

    QLabel *picIcon;
    QLabel *lblTitle;
    QLabel *lblVersion;
    QLabel *lblDescription;
    QPushButton *cmdOK;
    QPushButton *cmdSysInfo;
};

} // namespace kelfractionint
