// Fractions in item views, painted by the control's rules and edited in a fraction control.
#include "fractiondelegate.h"

#include "fractioni.h"
#include "fractionipaint.h"
#include "modfracglobal.h"
#include "olecolor.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include <algorithm>

namespace kelfractionint {

namespace {

// Where a delegate's editor keeps its fields: Enter, Escape and Tab in any of them end the edit.
constexpr char editorproperty[] = "kelfractionint_delegateeditor";
// The value an editor was given, when it holds the cell's value exactly.
constexpr char loadedproperty[] = "kelfractionint_loadedvalue";

QStringList valueof(const fractioni &control)
{
    return {control.Wholepartvalue(), control.Numeratorvalue(), control.Denominatorvalue()};
}

// Whether the control shows the record's parts, which loadfraction has trimmed: a whole part may
// lose or gain its "+", and a denominator goes with an empty numerator.
bool heldexactly(const QStringList &record, const QStringList &loaded)
{
    const auto unsigned_ = [](const QString &text) {
        return text.startsWith(QLatin1Char('+')) ? text.mid(1) : text;
    };
    if (unsigned_(record.at(0)) != unsigned_(loaded.at(0)) || record.at(1) != loaded.at(1))
        return false;
    return loaded.at(1).isEmpty() || record.at(2) == loaded.at(2);
}

constexpr char closingproperty[] = "kelfractionint_editorclosing";

// The fraction control inside an editor, which is a frame filling the cell.
fractioni *editorcontrol(QWidget *editor)
{
    if (auto *control = qobject_cast<fractioni *>(editor))
        return control;
    return editor && editor->property(editorproperty).isValid() ? editor->findChild<fractioni *>() : nullptr;
}

// The colour a view paints a cell's background in.
QColor cellbackground(const QStyleOptionViewItem &option)
{
    if (option.backgroundBrush.style() != Qt::NoBrush)
        return option.backgroundBrush.color();
    return option.palette.color(option.features.testFlag(QStyleOptionViewItem::Alternate) ? QPalette::AlternateBase
                                                                                         : QPalette::Base);
}

} // namespace

fractiondelegate::fractiondelegate(QObject *parent) : QStyledItemDelegate(parent)
{
}

std::optional<QStringList> fractiondelegate::fractionof(const QModelIndex &index)
{
    const QVariant edit = index.data(Qt::EditRole);
    // Script and Python models hand a record over as a list of three strings.
    const bool textlist = edit.typeId() == QMetaType::QVariantList
                          && std::ranges::all_of(edit.toList(), [](const QVariant &part) {
                                 return part.typeId() == QMetaType::QString;
                             });
    if (edit.typeId() == QMetaType::QStringList || textlist) {
        const QStringList parts = edit.toStringList();
        if (parts.size() == 3)
            return parts;
    }
    const QVariant display = index.data(Qt::DisplayRole);
    if (display.typeId() != QMetaType::QString)
        return std::nullopt;
    // Read quietly: a cell that holds no fraction is shown as its text, without a message.
    const modfracglobal::scopedmessagesink quiet([](const std::string &) {});
    const modfracglobal::FractionResult record = modfracglobal::strparsefraction(display.toString().toStdString());
    if (!record)
        return std::nullopt;
    return QStringList{QString::fromStdString((*record)[0]), QString::fromStdString((*record)[1]),
                       QString::fromStdString((*record)[2])};
}

void fractiondelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const std::optional<QStringList> record = fractionof(index);
    if (!record) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text.clear();
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    // Background, selection and focus as the view draws any cell.
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    // A very long part is measured and drawn as far as a cell can show it.
    const QString whole = fractionpaint::visibletext(item.font, record->at(0));
    const QString numer = fractionpaint::visibletext(item.font, record->at(1));
    const QString denom = numer.isEmpty() ? QString() : fractionpaint::visibletext(item.font, record->at(2));
    const qreal dpr = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    const fractionpaint::fractionparts parts =
        fractionpaint::arrange(item.font, whole, numer, denom, m_fractionslash, dpr);
    // Centred in the cell vertically, on the side where a cell's text begins.
    const int left = option.direction == Qt::RightToLeft ? option.rect.right() - 1 - parts.size.width()
                                                         : option.rect.left() + 2;
    const QPoint origin(left, option.rect.top() + (option.rect.height() - parts.size.height()) / 2);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QColor sign = olecolor::toqcolor(whole.startsWith(QLatin1Char('-')) ? m_negforecolor : m_posforecolor,
                                           option.palette);
    const QColor color = selected ? option.palette.color(QPalette::HighlightedText) : sign;

    painter->save();
    // Numbers read left to right in any language: "-4" stays "-4".
    painter->setLayoutDirection(Qt::LeftToRight);
    painter->setClipRect(option.rect);
    painter->setFont(item.font);
    painter->setPen(color);
    const double ascent = parts.ascent;
    if (!whole.isEmpty())
        fractionpaint::drawtext(painter, QPointF(origin.x() + parts.whole.left(), origin.y() + parts.whole.top() + ascent),
                                whole);
    if (!numer.isEmpty()) {
        const QRect n = parts.numerator.translated(origin);
        const QRect d = parts.denominator.translated(origin);
        fractionpaint::drawtext(painter, QPointF(n.left(), n.top() + ascent), numer);
        fractionpaint::drawtext(painter, QPointF(d.left(), d.top() - parts.denominatorlift + ascent), denom);
        if (!parts.separator.isNull()) {
            fractionpaint::drawseparator(painter, parts.separator.translated(origin), color, parts.penwidth,
                                         m_fractionslash);
        }
    }
    painter->restore();
}

QSize fractiondelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const std::optional<QStringList> record = fractionof(index);
    if (!record)
        return QStyledItemDelegate::sizeHint(option, index);
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString numer = fractionpaint::visibletext(item.font, record->at(1));
    const fractionpaint::fractionparts parts =
        fractionpaint::arrange(item.font, fractionpaint::visibletext(item.font, record->at(0)), numer,
                               numer.isEmpty() ? QString() : fractionpaint::visibletext(item.font, record->at(2)),
                               m_fractionslash, 1.0);
    return parts.size + QSize(4, 2);
}

QWidget *fractiondelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const
{
    if (!fractionof(index))
        return QStyledItemDelegate::createEditor(parent, option, index);
    // The editor fills the cell in the cell's colour; the control stands in it where the
    // fraction is painted.
    auto *editor = new QWidget(parent);
    editor->setProperty(editorproperty, true);
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QColor background = cellbackground(item);
    QPalette surface = editor->palette();
    surface.setColor(QPalette::Window, background);
    editor->setPalette(surface);
    editor->setAutoFillBackground(true);
    auto *control = new fractioni(editor);
    control->setFractionslash(m_fractionslash);
    control->setPosforecolor(m_posforecolor);
    control->setNegforecolor(m_negforecolor);
    control->setFont(item.font);
    const quint32 back = olecolor::fromqcolor(background);
    control->setBackcolor(back);
    control->setWholepartbackcolor(back);
    control->setNumeratorbackcolor(back);
    control->setDenominatorbackcolor(back);
    editor->setFocusProxy(control);
    for (QLineEdit *field : control->findChildren<QLineEdit *>()) {
        field->setProperty(editorproperty, QVariant::fromValue<QObject *>(editor));
        field->installEventFilter(const_cast<fractiondelegate *>(this));
    }
    return editor;
}

void fractiondelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    fractioni *control = editorcontrol(editor);
    const std::optional<QStringList> record = fractionof(index);
    if (!control || !record) {
        QStyledItemDelegate::setEditorData(editor, index);
        return;
    }
    const modfracglobal::scopedmessagesink quiet([](const std::string &) {});
    QStringList trimmed = *record;
    control->loadfraction(trimmed);
    // The cell is written back only when the user changed the value, and only when the editor
    // took the cell's value as it is: a part the control refuses leaves the cell alone.
    const QStringList loaded = valueof(*control);
    control->setProperty(loadedproperty, heldexactly(trimmed, loaded) ? QVariant(loaded) : QVariant());
    // F2 or a double-click puts the caret in the first part shown.
    for (const char *name : {"wholepart", "numerator", "denominator"}) {
        auto *field = control->findChild<QLineEdit *>(QLatin1String(name));
        if (field && !field->isHidden()) {
            control->setFocusProxy(field);
            break;
        }
    }
}

void fractiondelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    fractioni *control = editorcontrol(editor);
    if (!control) {
        QStyledItemDelegate::setModelData(editor, model, index);
        return;
    }
    const QVariant loaded = control->property(loadedproperty);
    const QStringList value = valueof(*control);
    if (!loaded.isValid() || loaded.toStringList() == value)
        return;
    // Written back in the form the cell holds: three texts stay three texts (a list of strings
    // from a script or Python stays such a list), a text stays text.
    const int held = index.data(Qt::EditRole).typeId();
    if (held == QMetaType::QVariantList)
        model->setData(index, QVariantList(value.cbegin(), value.cend()), Qt::EditRole);
    else if (held == QMetaType::QStringList)
        model->setData(index, value, Qt::EditRole);
    else
        model->setData(index, control->fractiontext(), Qt::EditRole);
}

void fractiondelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                            const QModelIndex &index) const
{
    fractioni *control = editorcontrol(editor);
    if (!control || control == editor) {
        QStyledItemDelegate::updateEditorGeometry(editor, option, index);
        return;
    }
    // The editor covers the cell; the control keeps the size it computes for its content and
    // stands where the fraction is painted.
    editor->setGeometry(option.rect);
    const int left = option.direction == Qt::RightToLeft ? option.rect.width() - 1 - control->width() : 0;
    control->move(left, (option.rect.height() - control->height()) / 2);
}

bool fractiondelegate::eventFilter(QObject *watched, QEvent *event)
{
    auto *editor = qobject_cast<QWidget *>(watched->property(editorproperty).value<QObject *>());
    if (!editor)
        return QStyledItemDelegate::eventFilter(watched, event);
    // The focus leaving a field is the editor's: it commits the editor, never the field, and
    // only while the edit is open (closing moves the focus too).
    if (event->type() != QEvent::KeyPress)
        return event->type() == QEvent::FocusOut && editor->isVisible() && !editor->property(closingproperty).toBool()
            && QStyledItemDelegate::eventFilter(editor, event);
    // The fields see the keys first: the edit ends here as in any Qt table, before the control
    // treats Enter as a character its whole part refuses.
    const auto end = [this, editor](bool commit, QAbstractItemDelegate::EndEditHint hint) {
        editor->setProperty(closingproperty, true);
        if (commit)
            Q_EMIT commitData(editor);
        Q_EMIT closeEditor(editor, hint);
        return true;
    };
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return end(true, QAbstractItemDelegate::SubmitModelCache);
    case Qt::Key_Escape:
        return end(false, QAbstractItemDelegate::RevertModelCache);
    case Qt::Key_Tab:
        return end(true, QAbstractItemDelegate::EditNextItem);
    case Qt::Key_Backtab:
        return end(true, QAbstractItemDelegate::EditPreviousItem);
    default:
        return false;
    }
}

} // namespace kelfractionint
