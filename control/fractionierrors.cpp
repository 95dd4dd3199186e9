// The error record of the control and its reporting to the caller of the failing member.
#include "fractioni.h"

#include "fractionidispatch.h"
#include "fractioniguard.h"

#include <QJSEngine>
#include <QJSValue>

namespace kelfractionint {

namespace calls {

state &current()
{
    static state shared;
    return shared;
}

} // namespace calls

automationcall::automationcall()
{
    ++calls::current().automation;
}

automationcall::~automationcall()
{
    --calls::current().automation;
}

void fractioni::clearlasterror()
{
    m_errornumber = 0;
    m_errordescription.clear();
}

void fractioni::reportfailure(int number, const QString &description)
{
    m_errornumber = number;
    m_errordescription = description;
    // A script engine that reached the member through newQObject gets a script exception; it
    // is thrown only while a script runs, as the engine keeps it for the next evaluation
    // otherwise. Late-bound callers that raise the error themselves are left to do so.
    if (calls::current().automation == 0) {
        if (QJSEngine *engine = qjsEngine(this)) {
            QJSValue error = engine->newErrorObject(QJSValue::GenericError, description);
            if (!error.property(QStringLiteral("stack")).toString().isEmpty()) {
                error.setProperty(QStringLiteral("number"), number);
                error.setProperty(QStringLiteral("description"), description);
                engine->throwError(error);
            }
        }
    }
    emitsafely([&] { Q_EMIT errorreported(number, description); });
}

} // namespace kelfractionint
