#include "propertypagedialog.h"

#include "propertypage.h"

#include "automationerror.h"
#include "messagesink.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace kelfractionint {

propertypagedialog::propertypagedialog(QWidget *parent)
    : QDialog(parent)
    , m_tabs(new QTabWidget(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply, this))
{
    setObjectName(QStringLiteral("propertypagedialog"));
    setWindowTitle(tr("Property Pages"));
    m_tabs->setObjectName(QStringLiteral("pages"));
    m_buttons->setObjectName(QStringLiteral("buttons"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addWidget(m_buttons);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &propertypagedialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &propertypagedialog::reject);
    connect(applybutton(), &QPushButton::clicked, this, &propertypagedialog::apply);
    updateapply();
}

propertypagedialog::~propertypagedialog() = default;

namespace {

// Hands \a page the selection; a control that cannot be read is reported, not raised, since
// the dialog has no caller to pass the error to.
void loadpage(propertypage *page, const QList<QObject *> &controls)
{
    try {
        page->setSelectedControls(controls);
    } catch (const modfracglobal::automationerror &error) {
        modfracglobal::showmessage(error.description());
    }
}

} // namespace

void propertypagedialog::addpage(propertypage *page)
{
    m_pages.append(page);
    m_tabs->addTab(page, page->windowTitle());
    connect(page, &propertypage::Changedchanged, this, &propertypagedialog::updateapply);
    if (!m_selection.isEmpty())
        loadpage(page, m_selection);
    updateapply();
}

QList<propertypage *> propertypagedialog::pages() const
{
    return m_pages;
}

void propertypagedialog::setcurrentpage(int index)
{
    m_tabs->setCurrentIndex(index);
}

void propertypagedialog::setSelectedControls(const QList<QObject *> &controls)
{
    m_selection = controls;
    for (propertypage *page : std::as_const(m_pages))
        loadpage(page, controls);
}

bool propertypagedialog::apply()
{
    for (propertypage *page : std::as_const(m_pages)) {
        if (!page->Changed())
            continue;
        try {
            page->ApplyChanges();
        } catch (const modfracglobal::automationerror &error) {
            m_tabs->setCurrentWidget(page);
            modfracglobal::showmessage(error.description());
            return false;
        }
        page->setChanged(false);
    }
    return true;
}

QPushButton *propertypagedialog::applybutton() const
{
    return m_buttons->button(QDialogButtonBox::Apply);
}

void propertypagedialog::accept()
{
    if (apply())
        QDialog::accept();
}

void propertypagedialog::updateapply()
{
    bool changed = false;
    for (const propertypage *page : std::as_const(m_pages))
        changed = changed || page->Changed();
    applybutton()->setEnabled(changed);
}

} // namespace kelfractionint
