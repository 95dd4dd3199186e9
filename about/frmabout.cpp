#include "frmabout.h"

#include "aboutversion.h"
#include "resstrings.h"
#include "sysinfo.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace kelfractionint {

namespace {

QPixmap fractionicon(int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(0xFF, 0xFF, 0xFF));
    painter.setPen(QPen(QColor(0x30, 0x30, 0x30), 1));
    painter.drawRoundedRect(QRectF(0.5, 0.5, size - 1, size - 1), 4, 4);
    QFont font = painter.font();
    font.setPixelSize(size * 3 / 8);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRect(0, 0, size, size / 2), Qt::AlignCenter, QStringLiteral("1"));
    painter.drawText(QRect(0, size / 2, size, size / 2), Qt::AlignCenter, QStringLiteral("7"));
    painter.drawLine(QPointF(size * 0.25, size * 0.5), QPointF(size * 0.75, size * 0.5));
    return pixmap;
}

QFrame *separatorline(QWidget *parent)
{
    auto *line = new QFrame(parent);
    line->setObjectName(QStringLiteral("Line1"));
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

} // namespace

frmAbout::frmAbout(QWidget *parent)
    : QDialog(parent)
    , picIcon(new QLabel(this))
    , lblTitle(new QLabel(QStringLiteral("Application Title"), this))
    , lblVersion(new QLabel(QStringLiteral("Version"), this))
    , lblDescription(new QLabel(QStringLiteral("App Description"), this))
    , cmdOK(new QPushButton(QStringLiteral("OK"), this))
    , cmdSysInfo(new QPushButton(QStringLiteral("&System Info..."), this))
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About MyApp"));
    picIcon->setObjectName(QStringLiteral("picIcon"));
    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblDescription->setObjectName(QStringLiteral("lblDescription"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdSysInfo->setObjectName(QStringLiteral("cmdSysInfo"));

    picIcon->setPixmap(fractionicon(32));
    picIcon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    picIcon->setAccessibleName(tr("Icon"));
    QFont titlefont = lblTitle->font();
    titlefont.setPointSizeF(titlefont.pointSizeF() * 1.5);
    titlefont.setBold(true);
    lblTitle->setFont(titlefont);
    lblDescription->setWordWrap(true);
    lblDescription->setTextFormat(Qt::PlainText);
    lblDescription->setMinimumWidth(320);
    cmdOK->setDefault(true);

    auto *text = new QVBoxLayout;
    text->addWidget(lblTitle);
    text->addWidget(lblVersion);
    text->addWidget(lblDescription, 1);
    auto *top = new QHBoxLayout;
    top->addWidget(picIcon, 0, Qt::AlignTop);
    top->addLayout(text, 1);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdSysInfo);
    auto *bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addLayout(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    // Two lines, one sunken over one raised, make the etched separator.
    auto *lines = new QVBoxLayout;
    lines->setSpacing(0);
    lines->addWidget(separatorline(this));
    QFrame *lower = separatorline(this);
    lower->setFrameShadow(QFrame::Raised);
    lines->addWidget(lower);
    layout->addLayout(lines);
    layout->addLayout(bottom);

    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdSysInfo, &QPushButton::clicked, this, [] { sysinfo::startsysinfo(); });
    Form_Load();
}

frmAbout::~frmAbout() = default;

QString frmAbout::apptitle()
{
    return QStringLiteral(KEL_ABOUT_TITLE);
}

QString frmAbout::appversion()
{
    return QStringLiteral("%1.%2.%3")
        .arg(KEL_ABOUT_VERSION_MAJOR)
        .arg(KEL_ABOUT_VERSION_MINOR)
        .arg(KEL_ABOUT_VERSION_PATCH);
}

QString frmAbout::description()
{
    using resstrings::loadresstring;
    return loadresstring(102) + QStringLiteral("\r\n\n\r") + loadresstring(104) + QStringLiteral("\r\n")
        + loadresstring(4);
}

void frmAbout::Form_Load()
{
    setWindowTitle(QStringLiteral("About ") + apptitle());
    lblVersion->setText(QStringLiteral("Version ") + appversion());
    lblTitle->setText(apptitle());
    lblDescription->setText(description());
}

} // namespace kelfractionint
