#pragma once

#include <QAbstractTableModel>
#include <QWidget>

#include <cstdint>
#include <vector>

class QLabel;
class QTableView;

namespace kelfractionint {

/*!
 * A cut list of measurements in inches: each row a fraction (edited in place), its decimal as the
 * engine writes it, and the running sum to the nearest 64th. The rows are plain numbers; texts
 * are made only for the rows a view shows.
 */
class measurementmodel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit measurementmodel(int rows, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /*! The sum of all rows, as a fraction text to the nearest 64th. */
    QString totaltext() const;

Q_SIGNALS:
    void totalchanged(const QString &text);

private:
    struct measurement
    {
        bool negative;
        std::int32_t whole;
        std::int32_t numerator;
        std::int32_t denominator;
    };
    QStringList record(int row) const;
    double value(int row) const;
    void sumfrom(int row);

    std::vector<measurement> m_rows;
    std::vector<double> m_sums;
};

/*! A page with the measurements in a table whose fractions a fractiondelegate shows and edits,
 *  and their total. */
class measurementspage : public QWidget
{
    Q_OBJECT

public:
    explicit measurementspage(int rows = 100000, QWidget *parent = nullptr);
    QTableView *table() const { return m_table; }
    measurementmodel *model() const { return m_model; }

private:
    measurementmodel *m_model;
    QTableView *m_table;
    QLabel *m_total;
};

} // namespace kelfractionint
