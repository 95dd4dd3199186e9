// What screen readers say of the fractions in an item view.
#include "fractionspeechmodel.h"

#include "fractiondelegate.h"
#include "modfracglobal.h"

namespace kelfractionint {

fractionspeechmodel::fractionspeechmodel(QAbstractItemModel *source, QObject *parent) : QIdentityProxyModel(parent)
{
    setSourceModel(source);
}

QVariant fractionspeechmodel::data(const QModelIndex &index, int role) const
{
    QVariant value = QIdentityProxyModel::data(index, role);
    if (role != Qt::AccessibleTextRole || value.isValid())
        return value;
    const std::optional<QStringList> record = fractiondelegate::fractionof(index);
    if (!record)
        return value;
    return QString::fromStdString(modfracglobal::strspeakfraction(
        {record->at(0).toStdString(), record->at(1).toStdString(), record->at(2).toStdString()}));
}

} // namespace kelfractionint
