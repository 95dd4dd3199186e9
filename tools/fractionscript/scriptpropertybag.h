#pragma once

#include "propertybag.h"

#include <QJSValue>
#include <QObject>
#include <QStringList>

namespace kelfractionint {

class scripthost;

/*!
 * An in-memory property bag for scripts: WriteProperty(name, value, default) leaves out a value
 * equal to its default, ReadProperty(name, default) gives the default for an absent key, keys()
 * lists the keys in the order written. A control saves into it with WriteProperties(bag) and is
 * restored from it by createfraction(bag) or ReadProperties(bag).
 */
class scriptpropertybag : public QObject
{
    Q_OBJECT

public:
    explicit scriptpropertybag(scripthost *host);

    Q_INVOKABLE void WriteProperty(const QString &name, const QJSValue &value,
                                   const QJSValue &defaultvalue = QJSValue());
    Q_INVOKABLE QJSValue ReadProperty(const QString &name, const QJSValue &defaultvalue = QJSValue());
    Q_INVOKABLE QStringList keys() const;

    memorypropertybag &bag() { return m_bag; }
    const memorypropertybag &bag() const { return m_bag; }

private:
    scripthost *m_host;
    memorypropertybag m_bag;
};

} // namespace kelfractionint
