#pragma once

#include "fractionplatform_export.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <vector>

class QSettings;

namespace kelfractionint {

/*!
 * Where a control keeps its design-time settings between sessions. A key is read with the default
 * that stands for "absent" and written with the default that is not stored: writing a value equal
 * to its default removes the key, so a bag holds only what differs from the defaults.
 */
class FRACTIONPLATFORM_EXPORT propertybag
{
public:
    virtual ~propertybag();

    /*! The value stored under \a name, or \a defaultvalue when the key is absent. */
    QVariant readproperty(const QString &name, const QVariant &defaultvalue = {}) const;
    /*! Stores \a value under \a name, or removes the key when \a value equals \a defaultvalue. */
    void writeproperty(const QString &name, const QVariant &value, const QVariant &defaultvalue = {});

    /*! The keys held, in the order in which they were first written. */
    virtual QStringList keys() const = 0;
    /*! True when the bag holds \a name. */
    bool contains(const QString &name) const { return keys().contains(name); }

protected:
    virtual bool load(const QString &name, QVariant &value) const = 0;
    virtual void store(const QString &name, const QVariant &value) = 0;
    virtual void remove(const QString &name) = 0;
};

/*! A bag in memory; keys keep the order in which they were first written. */
class FRACTIONPLATFORM_EXPORT memorypropertybag : public propertybag
{
public:
    QStringList keys() const override;
    /*! Stores \a value as it is, bypassing the default rule (for restoring foreign bags). */
    void setraw(const QString &name, const QVariant &value) { store(name, value); }
    void clear() { m_entries.clear(); }

protected:
    bool load(const QString &name, QVariant &value) const override;
    void store(const QString &name, const QVariant &value) override;
    void remove(const QString &name) override;

private:
    std::vector<std::pair<QString, QVariant>> m_entries;
};

/*! A bag on a QSettings group; the settings object must outlive the bag. */
class FRACTIONPLATFORM_EXPORT settingspropertybag : public propertybag
{
public:
    /*! A bag on \a settings under \a group (the settings' root for an empty group). */
    explicit settingspropertybag(QSettings &settings, const QString &group = {});

    QStringList keys() const override;

protected:
    bool load(const QString &name, QVariant &value) const override;
    void store(const QString &name, const QVariant &value) override;
    void remove(const QString &name) override;

private:
    QString keypath(const QString &name) const;

    QSettings &m_settings;
    QString m_group;
};

} // namespace kelfractionint
