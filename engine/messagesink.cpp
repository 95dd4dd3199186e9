#include "messagesink.h"

#include <cstdio>
#include <utility>

namespace modfracglobal {

namespace {

messagesink &installedsink()
{
    static messagesink sink;
    return sink;
}

} // namespace

messagesink setmessagesink(messagesink sink)
{
    return std::exchange(installedsink(), std::move(sink));
}

void showmessage(const std::string &text)
{
    // Copy first: a sink may install another sink while it runs.
    const messagesink sink = installedsink();
    if (sink) {
        sink(text);
        return;
    }
    std::fputs(text.c_str(), stderr);
    std::fputc('\n', stderr);
    std::fflush(stderr);
}

scopedmessagesink::scopedmessagesink(messagesink sink)
    : m_previous(setmessagesink(std::move(sink)))
{
}

scopedmessagesink::~scopedmessagesink()
{
    setmessagesink(std::move(m_previous));
}

} // namespace modfracglobal
