// How every member of fractioni meets its caller: errors raised inside the control travel as
// modfracglobal::automationerror up to the outermost member call, which records and reports them;
// no exception leaves a member. Included by the control's sources only.
#pragma once

#include "fractioni.h"

#include "automationerror.h"

#include <QPointer>

#include <new>
#include <optional>

namespace kelfractionint {

namespace calls {

// A handler deleted the control whose member was running: unwinds to that member's outermost
// frame, which then touches nothing of the control.
struct controlgone
{
};

// Shared by all controls: an operation of one control loads its result into another, and such
// nested calls pass their errors on to the caller's outermost member. Handlers of the control's
// signals are outside callers: while a signal is delivered the nesting starts again from zero.
struct state
{
    int depth = 0;       // member calls in progress since the outermost one
    int emitdepth = 0;   // signals being delivered within each other
    bool overflowed = false;
    int automation = 0;  // late-bound callers that turn the record into their own errors
};
state &current();

// Handlers that change the value raise signals within each other at most this deep; deeper
// deliveries are dropped and the outermost call fails with 28 "Out of stack space".
inline constexpr int maxemitdepth = 100;

} // namespace calls

class fractioni::callscope
{
public:
    callscope(fractioni *control, bool clearsrecord)
        : m_outermost(calls::current().depth++ == 0)
    {
        if (m_outermost && clearsrecord)
            control->clearlasterror();
        // A call from outside every handler starts without a stopped recursion.
        if (m_outermost && calls::current().emitdepth == 0)
            calls::current().overflowed = false;
    }
    ~callscope() { --calls::current().depth; }
    callscope(const callscope &) = delete;
    callscope &operator=(const callscope &) = delete;

    bool outermost() const { return m_outermost; }
    // At the outermost call of all: a recursion of handlers that was stopped.
    bool stoppedrecursion() const
    {
        calls::state &state = calls::current();
        if (!state.overflowed || state.emitdepth > 0)
            return false;
        state.overflowed = false;
        return true;
    }

private:
    bool m_outermost;
};

template <typename F>
fractioni::outcome fractioni::runguarded(F &&body, bool clearsrecord)
{
    std::optional<modfracglobal::automationerror> error;
    {
        callscope scope(this, clearsrecord);
        try {
            body();
        } catch (const modfracglobal::automationerror &failure) {
            if (!scope.outermost())
                throw;
            error = failure;
        } catch (const calls::controlgone &) {
            if (!scope.outermost())
                throw;
            scope.stoppedrecursion();
            return outcome::gone;
        } catch (const std::bad_alloc &) {
            if (!scope.outermost())
                throw;
            error.emplace(modfracglobal::errnum::outofmemory);
        } catch (...) {
            // Whatever a handler threw through the control ends here too.
            if (!scope.outermost())
                throw;
            error.emplace(51, "Internal error");
        }
        if (scope.outermost() && scope.stoppedrecursion() && !error)
            error.emplace(modfracglobal::errnum::outofstack);
    }
    if (!error)
        return outcome::done;
    reportfailure(error->number(), QString::fromStdString(error->description()));
    return outcome::failed;
}

template <typename F>
auto fractioni::guarded(F &&body) -> std::invoke_result_t<F>
{
    using R = std::invoke_result_t<F>;
    if constexpr (std::is_void_v<R>) {
        runguarded(body, true);
    } else {
        R result{};
        if (runguarded([&] { result = body(); }, true) != outcome::done)
            return R{};
        return result;
    }
}

template <typename R, typename F>
R fractioni::guarded(R fallback, F &&body)
{
    R result = fallback;
    if (runguarded([&] { result = body(); }, true) == outcome::gone)
        return R{};
    return result;
}

template <typename F>
bool fractioni::eventguarded(F &&body)
{
    return runguarded(body, false) != outcome::gone;
}

template <typename F>
bool fractioni::emitsafely(F &&emission)
{
    calls::state &state = calls::current();
    // Once handlers went too deep, nothing more is delivered until the outermost call ends:
    // each level may raise several signals, and each would start the descent again.
    if (state.overflowed || state.emitdepth >= calls::maxemitdepth) {
        state.overflowed = true;
        return true;
    }
    QPointer<fractioni> self(this);
    // The handlers' own calls are outermost calls with records of their own; the record of the
    // call in progress is what its caller reads afterwards.
    struct restore
    {
        calls::state &state;
        QPointer<fractioni> &self;
        calls::state saved;
        int number;
        QString description;
        bool reapplying;
        ~restore()
        {
            state.depth = saved.depth;
            state.automation = saved.automation;
            --state.emitdepth;
            if (self) {
                self->m_errornumber = number;
                self->m_errordescription = description;
                self->m_reapplying = reapplying;
            }
        }
    } restorer{state, self, state, m_errornumber, m_errordescription, m_reapplying};
    // A handler's assignment meets the acceptance rules even while a refused text is re-applied.
    m_reapplying = false;
    state.depth = 0;
    state.automation = 0;
    ++state.emitdepth;
    emission();
    return !self.isNull();
}

template <typename F>
void fractioni::deliver(F &&emission)
{
    if (!emitsafely(emission))
        throw calls::controlgone();
}

} // namespace kelfractionint
