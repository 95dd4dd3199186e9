#include "measurements.h"

#include "fractiondelegate.h"
#include "modfracglobal.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QVBoxLayout>

#include <random>

namespace kelfractionint {

namespace {

QStringList totext(const modfracglobal::FractionResult &record)
{
    if (!record)
        return {};
    return {QString::fromStdString((*record)[0]), QString::fromStdString((*record)[1]),
            QString::fromStdString((*record)[2])};
}

// A value to the nearest 64th, written as people write it.
QString sixtyfourths(double value)
{
    const modfracglobal::scopedmessagesink quiet([](const std::string &) {});
    const std::string decimal = modfracglobal::doubletotext(value);
    const modfracglobal::FractionResult nearest = modfracglobal::strapproximate({decimal, "", ""}, 64);
    return nearest ? QString::fromStdString(modfracglobal::strformatfraction(*nearest)) : QString();
}

} // namespace

measurementmodel::measurementmodel(int rows, QObject *parent) : QAbstractTableModel(parent)
{
    // Lengths of a cut list: up to 96 inches, in halves to 64ths.
    std::mt19937 random(20261122);
    m_rows.reserve(std::size_t(rows));
    for (int i = 0; i < rows; ++i) {
        const std::int32_t denominator = std::int32_t(2) << (random() % 6);
        m_rows.push_back({false, std::int32_t(random() % 96), std::int32_t(random() % std::uint32_t(denominator)), denominator});
    }
    m_sums.resize(m_rows.size());
    sumfrom(0);
}

int measurementmodel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int measurementmodel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 3;
}

QStringList measurementmodel::record(int row) const
{
    const measurement &m = m_rows[std::size_t(row)];
    return {QString::fromStdString((m.negative ? "-" : "") + modfracglobal::parttext(m.whole)),
            QString::fromStdString(modfracglobal::parttext(m.numerator)), QString::number(m.denominator)};
}

double measurementmodel::value(int row) const
{
    const measurement &m = m_rows[std::size_t(row)];
    const double magnitude = double(m.whole) + double(m.numerator) / double(m.denominator);
    return m.negative ? -magnitude : magnitude;
}

void measurementmodel::sumfrom(int row)
{
    double sum = row > 0 ? m_sums[std::size_t(row - 1)] : 0.0;
    for (std::size_t i = std::size_t(row); i < m_rows.size(); ++i)
        m_sums[i] = sum += value(int(i));
}

QVariant measurementmodel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    switch (index.column()) {
    case 0:
        if (role == Qt::EditRole)
            return record(index.row());
        return QString::fromStdString(modfracglobal::strformatfraction(
            {record(index.row()).at(0).toStdString(), record(index.row()).at(1).toStdString(),
             record(index.row()).at(2).toStdString()}));
    case 1: {
        const modfracglobal::scopedmessagesink quiet([](const std::string &) {});
        const QStringList parts = record(index.row());
        const QStringList decimal = totext(modfracglobal::strfractodecimal(
            {parts.at(0).toStdString(), parts.at(1).toStdString(), parts.at(2).toStdString()}, 4));
        return decimal.isEmpty() ? QVariant() : QVariant(decimal.at(0));
    }
    default:
        return sixtyfourths(m_sums[std::size_t(index.row())]);
    }
}

bool measurementmodel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() != 0 || role != Qt::EditRole)
        return false;
    const QStringList parts = value.toStringList();
    if (parts.size() != 3)
        return false;
    // Stored as a mixed number with its sign in the whole part; what does not read is refused.
    const modfracglobal::scopedmessagesink quiet([](const std::string &) {});
    const bool whole = parts.at(1).isEmpty() && parts.at(2).isEmpty();
    const modfracglobal::FractionText text{parts.at(0).toStdString(), parts.at(1).toStdString(),
                                           whole ? std::string(1, '1') : parts.at(2).toStdString()};
    const modfracglobal::FractionResult mixed = modfracglobal::strfractomixed(text);
    if (!mixed)
        return false;
    const bool negative = !(*mixed)[0].empty() && (*mixed)[0].front() == '-';
    const std::int32_t wholepart = modfracglobal::partvalue((*mixed)[0]);
    const std::int32_t numerator = modfracglobal::partvalue((*mixed)[1]);
    const std::int32_t denominator = modfracglobal::partvalue((*mixed)[2]);
    if (denominator <= 0)
        return false;
    m_rows[std::size_t(index.row())] = {negative && (wholepart != 0 || numerator != 0), wholepart, numerator, denominator};
    sumfrom(index.row());
    Q_EMIT dataChanged(index, this->index(index.row(), 1));
    Q_EMIT dataChanged(this->index(index.row(), 2), this->index(rowCount() - 1, 2));
    Q_EMIT totalchanged(totaltext());
    return true;
}

Qt::ItemFlags measurementmodel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (index.column() == 0)
        flags |= Qt::ItemIsEditable;
    return flags;
}

QVariant measurementmodel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case 0:
        return tr("Length (in)");
    case 1:
        return tr("Decimal");
    default:
        return tr("Running sum");
    }
}

QString measurementmodel::totaltext() const
{
    return m_sums.empty() ? QStringLiteral("0") : sixtyfourths(m_sums.back());
}

measurementspage::measurementspage(int rows, QWidget *parent)
    : QWidget(parent), m_model(new measurementmodel(rows, this)), m_table(new QTableView(this)), m_total(new QLabel(this))
{
    setObjectName(QStringLiteral("measurementspage"));
    setWindowTitle(tr("Cut list"));
    m_table->setObjectName(QStringLiteral("measurements"));
    m_table->setAccessibleName(tr("Measurements"));
    m_table->setModel(m_model);
    auto *delegate = new fractiondelegate(m_table);
    m_table->setItemDelegateForColumn(0, delegate);
    m_table->setItemDelegateForColumn(2, delegate);
    // Rows of one height, from the fractions' own measure: no row is measured one by one.
    const QSize cell = delegate->sizeHint(QStyleOptionViewItem(), m_model->index(0, 0));
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(cell.height() + 4);
    m_table->horizontalHeader()->setDefaultSectionSize(140);
    m_total->setObjectName(QStringLiteral("total"));
    m_total->setText(tr("Total: %1 in").arg(m_model->totaltext()));
    connect(m_model, &measurementmodel::totalchanged, m_total,
            [this](const QString &text) { m_total->setText(tr("Total: %1 in").arg(text)); });
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_table);
    layout->addWidget(m_total);
}

} // namespace kelfractionint
