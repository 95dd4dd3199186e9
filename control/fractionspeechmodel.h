#pragma once

#include "fractioni_export.h"

#include <QIdentityProxyModel>

namespace kelfractionint {

/*!
 * A model that adds to another what screen readers say of its fractions: a cell that
 * fractiondelegate shows as a fraction answers Qt::AccessibleTextRole with its value in words
 * ("minus two and one quarter"), unless the source model answers that role itself. Everything
 * else, editing included, passes through. Set it on the view in place of the source model.
 */
class FRACTIONI_EXPORT fractionspeechmodel : public QIdentityProxyModel
{
    Q_OBJECT

public:
    explicit fractionspeechmodel(QAbstractItemModel *source = nullptr, QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
};

} // namespace kelfractionint
