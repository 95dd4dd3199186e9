#pragma once

#include "modfracglobal_export.h"

#include <functional>
#include <string>

namespace modfracglobal {

/*!
 * Where the component shows its message boxes (an engine error's description, a design-time
 * message). A host setting: an application installs one that opens a modal message box, tests and
 * script hosts install one that captures the texts. With no sink installed the text goes to
 * standard error. The engine calls the sink from inside its routines, on the caller's thread;
 * an exception thrown by the sink passes through to the routine's caller.
 */
using messagesink = std::function<void(const std::string &text)>;

/*! Installs \a sink (an empty function restores the default) and returns the previous one. */
MODFRACGLOBAL_EXPORT messagesink setmessagesink(messagesink sink);

/*! Shows \a text through the installed sink. */
MODFRACGLOBAL_EXPORT void showmessage(const std::string &text);

/*! Installs a sink for the lifetime of the object and restores the previous one afterwards:
 *  the usual way for a test or a script run to capture the messages it causes. */
class MODFRACGLOBAL_EXPORT scopedmessagesink
{
public:
    explicit scopedmessagesink(messagesink sink);
    ~scopedmessagesink();
    scopedmessagesink(const scopedmessagesink &) = delete;
    scopedmessagesink &operator=(const scopedmessagesink &) = delete;

private:
    messagesink m_previous;
};

} // namespace modfracglobal
