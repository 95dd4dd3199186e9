#pragma once

#include "fractionplatform_export.h"

#include <QString>
#include <QStringList>

namespace kelfractionint {

/*! Routes the component's messages to a modal QMessageBox (the application's way). Returns
 *  nothing; the engine's previous sink is replaced. */
FRACTIONPLATFORM_EXPORT void installmessageboxsink();

/*!
 * Captures the component's messages instead of showing them, for tests and script hosts. The
 * previous sink comes back when the capture ends.
 */
class FRACTIONPLATFORM_EXPORT messagecapture
{
public:
    messagecapture();
    ~messagecapture();
    messagecapture(const messagecapture &) = delete;
    messagecapture &operator=(const messagecapture &) = delete;

    /*! The texts shown since the capture began (or since the last take()). */
    QStringList messages() const;
    /*! Returns the texts and forgets them. */
    QStringList take();

private:
    struct state;
    state *m_state;
};

} // namespace kelfractionint
