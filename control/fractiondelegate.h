#pragma once

#include "fractioni_export.h"
#include "olecolor.h"

#include <QStringList>
#include <QStyledItemDelegate>

#include <optional>

namespace kelfractionint {

/*!
 * Shows and edits fractions in item views as the fraction control does: the whole part, the
 * numerator over the denominator with a slash or a bar, coloured by sign. A cell's Qt::EditRole
 * holds the fraction as three texts (whole part with sign, numerator, denominator); otherwise its
 * Qt::DisplayRole text is read as people write fractions ("-1 2/3"). Anything else is shown as
 * plain text. The editor is a fractioni on the cell's background; Enter commits, Escape cancels,
 * Tab moves on, and the cell gets back the form it held (three texts, or a text). Painting and
 * editing never show a message; in a right-to-left view the fraction still reads "-4 5/6".
 */
class FRACTIONI_EXPORT fractiondelegate : public QStyledItemDelegate
{
    Q_OBJECT
    Q_PROPERTY(bool Fractionslash READ Fractionslash WRITE setFractionslash)
    Q_PROPERTY(quint32 Posforecolor READ Posforecolor WRITE setPosforecolor)
    Q_PROPERTY(quint32 Negforecolor READ Negforecolor WRITE setNegforecolor)

public:
    explicit fractiondelegate(QObject *parent = nullptr);

    bool Fractionslash() const { return m_fractionslash; }
    /*! OLE colours (0x00BBGGRR or system colours), as the control's; system colours are read from
     *  the view's palette, and positive text is the view's window text unless set. */
    quint32 Posforecolor() const { return m_posforecolor; }
    quint32 Negforecolor() const { return m_negforecolor; }
    void setFractionslash(bool value) { m_fractionslash = value; }
    void setPosforecolor(quint32 value) { m_posforecolor = value; }
    void setNegforecolor(quint32 value) { m_negforecolor = value; }

    /*! The fraction a cell holds, or nothing when it holds none. */
    static std::optional<QStringList> fractionof(const QModelIndex &index);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool m_fractionslash = true;
    quint32 m_posforecolor = olecolor::windowtext;
    quint32 m_negforecolor = 0x0000FF;
};

} // namespace kelfractionint
