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
    const QVariant stored = m_host->fromscript(value);
    const QVariant unstored = m_host->fromscript(defaultvalue);
    if (m_host->engine().hasError())
        return;
    m_bag.writeproperty(name, stored, unstored);
}

QJSValue scriptpropertybag::ReadProperty(const QString &name, const QJSValue &defaultvalue)
{
    const QVariant unstored = m_host->fromscript(defaultvalue);
    if (m_host->engine().hasError())
        return {};
    return m_host->toscript(m_bag.readproperty(name, unstored));
}

QStringList scriptpropertybag::keys() const
{
    return m_bag.keys();
}

} // namespace kelfractionint
