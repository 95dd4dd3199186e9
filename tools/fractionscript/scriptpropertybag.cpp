#include "scriptpropertybag.h"

#include "scripthost.h"

namespace kelfractionint {

scriptpropertybag::scriptpropertybag(scripthost *host)
    : QObject(host)
    , m_host(host)
{
}

void scriptpropertybag::WriteProperty(const QString &name, const QJSValue &value, const QJSValue &defaultvalue)
{
    if (name.isEmpty()) {
        m_host->throwautomation(5, QStringLiteral("Invalid procedure call or argument"),
                                QStringLiteral("WriteProperty: the name must not be empty"));
        return;
    }
    m_bag.writeproperty(name, m_host->fromscript(value), m_host->fromscript(defaultvalue));
}

QJSValue scriptpropertybag::ReadProperty(const QString &name, const QJSValue &defaultvalue)
{
    return m_host->toscript(m_bag.readproperty(name, m_host->fromscript(defaultvalue)));
}

QStringList scriptpropertybag::keys() const
{
    return m_bag.keys();
}

} // namespace kelfractionint
