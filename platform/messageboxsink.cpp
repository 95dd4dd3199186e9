#include "messageboxsink.h"

#include "messagesink.h"

#include <QApplication>
#include <QMessageBox>

#include <memory>

namespace kelfractionint {

void installmessageboxsink()
{
    modfracglobal::setmessagesink([](const std::string &text) {
        // The box carries the text alone, with the application's name as its title, as hosts
        // show it; it is modal to whichever window is active.
        QMessageBox box(QApplication::activeWindow());
        box.setWindowTitle(QApplication::applicationDisplayName());
        box.setText(QString::fromStdString(text));
        box.setStandardButtons(QMessageBox::Ok);
        box.exec();
    });
}

struct messagecapture::state
{
    std::shared_ptr<QStringList> texts = std::make_shared<QStringList>();
    modfracglobal::messagesink previous;
};

messagecapture::messagecapture() : m_state(new state)
{
    auto texts = m_state->texts;
    m_state->previous = modfracglobal::setmessagesink(
        [texts](const std::string &text) { texts->append(QString::fromStdString(text)); });
}

messagecapture::~messagecapture()
{
    modfracglobal::setmessagesink(std::move(m_state->previous));
    delete m_state;
}

QStringList messagecapture::messages() const
{
    return *m_state->texts;
}

QStringList messagecapture::take()
{
    QStringList texts = *m_state->texts;
    m_state->texts->clear();
    return texts;
}

} // namespace kelfractionint
