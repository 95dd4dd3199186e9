#include "propertybag.h"

#include <QFont>
#include <QSettings>

#include <algorithm>

namespace kelfractionint {

propertybag::~propertybag() = default;

QVariant propertybag::readproperty(const QString &name, const QVariant &defaultvalue) const
{
    QVariant value;
    if (!load(name, value))
        return defaultvalue;
    return value;
}

void propertybag::writeproperty(const QString &name, const QVariant &value, const QVariant &defaultvalue)
{
    // A value equal to its default is left out, so that a later change of the default reaches
    // every bag that never differed from it.
    if (defaultvalue.isValid() && value == defaultvalue)
        remove(name);
    else
        store(name, value);
}

QStringList memorypropertybag::keys() const
{
    QStringList names;
    names.reserve(qsizetype(m_entries.size()));
    for (const auto &entry : m_entries)
        names.append(entry.first);
    return names;
}

bool memorypropertybag::load(const QString &name, QVariant &value) const
{
    const auto it = std::find_if(m_entries.begin(), m_entries.end(),
                                 [&](const auto &entry) { return entry.first == name; });
    if (it == m_entries.end())
        return false;
    value = it->second;
    return true;
}

void memorypropertybag::store(const QString &name, const QVariant &value)
{
    const auto it = std::find_if(m_entries.begin(), m_entries.end(),
                                 [&](const auto &entry) { return entry.first == name; });
    if (it == m_entries.end())
        m_entries.emplace_back(name, value);
    else
        it->second = value;
}

void memorypropertybag::remove(const QString &name)
{
    std::erase_if(m_entries, [&](const auto &entry) { return entry.first == name; });
}

settingspropertybag::settingspropertybag(QSettings &settings, const QString &group)
    : m_settings(settings), m_group(group)
{
}

QString settingspropertybag::keypath(const QString &name) const
{
    return m_group.isEmpty() ? name : m_group + QLatin1Char('/') + name;
}

QStringList settingspropertybag::keys() const
{
    if (m_group.isEmpty())
        return m_settings.childKeys();
    m_settings.beginGroup(m_group);
    const QStringList names = m_settings.childKeys();
    m_settings.endGroup();
    return names;
}

bool settingspropertybag::load(const QString &name, QVariant &value) const
{
    const QString path = keypath(name);
    if (!m_settings.contains(path))
        return false;
    value = m_settings.value(path);
    // A damaged entry (a serialized value whose data cannot be read) comes back as a null
    // string: it counts as absent, so the key's default applies.
    if (!value.isValid() || (value.typeId() == QMetaType::QString && value.toString().isNull()))
        return false;
    return true;
}

void settingspropertybag::store(const QString &name, const QVariant &value)
{
    // Qt cannot serialize a font without a family (it crashes): such a font is never written.
    if (value.typeId() == QMetaType::QFont && value.value<QFont>().family().isEmpty()) {
        m_settings.remove(keypath(name));
        return;
    }
    m_settings.setValue(keypath(name), value);
}

void settingspropertybag::remove(const QString &name)
{
    m_settings.remove(keypath(name));
}

} // namespace kelfractionint
