// What assistive technologies see of the control: a group named by its label, holding the fields
// shown, each named by the label and its part ("Amount, numerator") and described by the whole
// value in words ("minus one and two thirds"). Accessible objects exist only once an assistive
// technology asks for them.
#include "fractioni.h"

#include "modfracglobal.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMetaObject>
#include <QRegularExpression>

#include <limits>

namespace kelfractionint {

namespace {

QString partname(const QObject *field)
{
    const QString name = field->objectName();
    if (name == QLatin1String("wholepart"))
        return fractioni::tr("whole part");
    if (name == QLatin1String("numerator"))
        return fractioni::tr("numerator");
    return fractioni::tr("denominator");
}

// The fields shown, in reading order; hidden fields and the grip are left out.
QList<QLineEdit *> shownfields(const QWidget *control)
{
    QList<QLineEdit *> shown;
    for (const char *name : {"wholepart", "numerator", "denominator"}) {
        auto *field = control->findChild<QLineEdit *>(QLatin1String(name), Qt::FindDirectChildrenOnly);
        if (field && !field->isHidden())
            shown.append(field);
    }
    return shown;
}

// The value as a number, for the value interface; an invalid variant for text that is none.
QVariant numericvalue(const QStringList &parts)
{
    bool ok = true;
    QString whole = parts.at(0);
    const bool negative = whole.startsWith(QLatin1Char('-'));
    if (negative || whole.startsWith(QLatin1Char('+')))
        whole.remove(0, 1);
    double value = whole.isEmpty() ? 0.0 : whole.toDouble(&ok);
    if (!ok)
        return {};
    if (!parts.at(1).isEmpty() && !parts.at(2).isEmpty()) {
        bool nok = false;
        bool dok = false;
        const double n = parts.at(1).toDouble(&nok);
        const double d = parts.at(2).toDouble(&dok);
        if (!nok || !dok || d == 0)
            return {};
        value += n / d;
    }
    return negative ? -value : value;
}

} // namespace

QString fractioni::spokenvalue() const
{
    return QString::fromStdString(
        modfracglobal::strspeakfraction({m_wholepart.toStdString(), m_numerator.toStdString(), m_denominator.toStdString()}));
}

QString fractioni::accessiblelabel() const
{
    if (!accessibleName().isEmpty())
        return accessibleName();
    // The text of the label whose buddy this control is, without its mnemonic and colon.
    if (const QWidget *parent = parentWidget()) {
        for (const QLabel *label : parent->findChildren<QLabel *>(Qt::FindDirectChildrenOnly)) {
            if (label->buddy() == this) {
                QString text = label->text().remove(QRegularExpression(QStringLiteral("&(?!&)"))).trimmed();
                if (text.endsWith(QLatin1Char(':')))
                    text.chop(1);
                if (!text.isEmpty())
                    return text;
            }
        }
    }
    return tr("fraction");
}

void fractioni::updateaccessibility()
{
    // Announcing a change creates the accessible objects; without a screen reader nobody asks.
    // One announcement per completed change: a change made of several assignments (clearing
    // the numerator sets the denominator first) is spoken once, as it ends.
    if (!QAccessible::isActive() || m_announcepending)
        return;
    m_announcepending = true;
    QMetaObject::invokeMethod(this, &fractioni::announcevalue, Qt::QueuedConnection);
}

void fractioni::announcevalue()
{
    m_announcepending = false;
    const QString words = spokenvalue();
    if (words == m_announcedwords)
        return;
    m_announcedwords = words;
    QAccessibleEvent described(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&described);
    QAccessibleValueChangeEvent value(this, numericvalue({m_wholepart, m_numerator, m_denominator}));
    QAccessible::updateAccessibility(&value);
    // A screen reader speaks a new description of the object that has the focus.
    QWidget *focus = focusWidget();
    if (!focus || (focus != wholepart && focus != numerator && focus != denominator) || !focus->hasFocus())
        return;
    QAccessibleEvent field(focus, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&field);
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
    // This Qt's bridge sends the change without the new text, and screen readers speak only what
    // the event carries: a notification shown beside the focused part says the words.
    announce(words);
#endif
}

void fractioni::announce(const QString &text)
{
    if (!QAccessible::isActive())
        return;
    if (!m_announcer) {
        m_announcer = new QObject(this);
        m_announcer->setObjectName(QStringLiteral("announcement"));
    }
    m_announcement = text;
    QAccessibleEvent shown(m_announcer, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

void fractioni::announcerefusal(const QLineEdit *field, const QString &typed)
{
    // What the part takes, rather than the echo of a character that never appears in it.
    if (m_fractype == fracnumeric && field != wholepart)
        announce(tr("%1 takes digits only").arg(partname(field)));
    else
        announce(tr("%1 does not take %2").arg(partname(field), typed == QLatin1String(" ") ? tr("space") : typed));
}

// The control: a group named by its label, described by the value in words, with the value as a
// number and its fields shown as children.
class fractioni::accessibleinterface : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit accessibleinterface(fractioni *control) : QAccessibleWidget(control, QAccessible::Grouping) {}

    fractioni *control() const { return static_cast<fractioni *>(widget()); }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text t) const override
    {
        switch (t) {
        case QAccessible::Name:
            return control()->accessiblelabel();
        case QAccessible::Description:
            return control()->accessibleDescription().isEmpty() ? control()->spokenvalue()
                                                                 : control()->accessibleDescription();
        case QAccessible::Value:
            return control()->fractiontext();
        default:
            return QAccessibleWidget::text(t);
        }
    }

    QAccessible::State state() const override
    {
        // Qt counts the focus of a focus proxy as the control's own: only the field has it.
        QAccessible::State s = QAccessibleWidget::state();
        s.focused = QApplication::focusWidget() == widget();
        return s;
    }

    int childCount() const override { return int(shownfields(widget()).size()); }
    QAccessibleInterface *child(int index) const override
    {
        const QList<QLineEdit *> shown = shownfields(widget());
        return index >= 0 && index < shown.size() ? QAccessible::queryAccessibleInterface(shown.at(index)) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child ? int(shownfields(widget()).indexOf(qobject_cast<QLineEdit *>(child->object()))) : -1;
    }

    QVariant currentValue() const override
    {
        return numericvalue({control()->Wholepartvalue(), control()->Numeratorvalue(), control()->Denominatorvalue()});
    }
    // The value is set through the fields, which speak what they take.
    void setCurrentValue(const QVariant &) override {}
    QVariant maximumValue() const override { return double(std::numeric_limits<qint32>::max()); }
    QVariant minimumValue() const override { return -double(std::numeric_limits<qint32>::max()); }
    QVariant minimumStepSize() const override { return 0.0; }
};

// A field: an editable text named by the control's label and its part and described by the whole
// value in words. Its text interface reports one attribute run over the whole text and treats
// the text between blanks as a word, so that a screen reader reads a one-digit part whole and
// never loops over a lone sign; a leading minus is given as the minus sign, which speech says.
class fractioni::accessiblefield : public QAccessibleWidget,
                                   public QAccessibleTextInterface,
                                   public QAccessibleEditableTextInterface
{
public:
    explicit accessiblefield(QLineEdit *field) : QAccessibleWidget(field, QAccessible::EditableText) {}

    QLineEdit *field() const { return static_cast<QLineEdit *>(widget()); }
    fractioni *control() const { return static_cast<fractioni *>(widget()->parentWidget()); }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface *>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text t) const override
    {
        switch (t) {
        case QAccessible::Name:
            return control()->accessiblelabel() + QStringLiteral(", ") + partname(field());
        case QAccessible::Description:
            return control()->spokenvalue();
        case QAccessible::Value:
            return shown();
        default:
            return QAccessibleWidget::text(t);
        }
    }

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        s.editable = !field()->isReadOnly();
        s.readOnly = field()->isReadOnly();
        s.selectableText = true;
        return s;
    }

    // Text
    QString shown() const
    {
        QString text = field()->text();
        if (text.startsWith(QLatin1Char('-')))
            text[0] = QChar(0x2212);
        return text;
    }
    int characterCount() const override { return int(field()->text().size()); }
    QString text(int start, int end) const override { return shown().mid(start, end - start); }
    int cursorPosition() const override { return field()->cursorPosition(); }
    void setCursorPosition(int position) override { field()->setCursorPosition(position); }
    int selectionCount() const override { return field()->hasSelectedText() ? 1 : 0; }
    void selection(int index, int *start, int *end) const override
    {
        *start = *end = 0;
        if (index == 0 && field()->hasSelectedText()) {
            *start = field()->selectionStart();
            *end = *start + int(field()->selectedText().size());
        }
    }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int) override { field()->deselect(); }
    void setSelection(int, int start, int end) override { field()->setSelection(start, end - start); }
    QString attributes(int offset, int *start, int *end) const override
    {
        // One run over the whole text: an empty run makes screen readers drop the last character.
        *start = 0;
        *end = characterCount();
        Q_UNUSED(offset);
        return QString();
    }
    QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const override
    {
        return piece(offset, boundary, start, end);
    }
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const override
    {
        int s = 0;
        int e = 0;
        piece(offset, boundary, &s, &e);
        return s > 0 ? piece(s - 1, boundary, start, end) : none(start, end);
    }
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const override
    {
        int s = 0;
        int e = 0;
        piece(offset, boundary, &s, &e);
        return e > offset && e < characterCount() ? piece(e, boundary, start, end) : none(start, end);
    }
    QRect characterRect(int offset) const override
    {
        const QFontMetrics metrics = field()->fontMetrics();
        const QString text = field()->text();
        const QRect box = field()->contentsRect();
        const int x = box.left() + metrics.horizontalAdvance(text.left(offset));
        const QRect local(x, box.top(), metrics.horizontalAdvance(text.mid(offset, 1)), box.height());
        return QRect(field()->mapToGlobal(local.topLeft()), local.size());
    }
    int offsetAtPoint(const QPoint &point) const override
    {
        const QPoint local = field()->mapFromGlobal(point);
        return field()->rect().contains(local) ? field()->cursorPositionAt(local) : -1;
    }
    void scrollToSubstring(int, int) override {}

    // Editing through an assistive technology counts as typing: the value follows the field.
    void deleteText(int start, int end) override
    {
        control()->watchedits(field());
        field()->setSelection(start, end - start);
        field()->del();
    }
    void insertText(int offset, const QString &text) override
    {
        control()->watchedits(field());
        control()->longenough(field(), field()->text().size() + text.size());
        field()->setCursorPosition(offset);
        field()->insert(text);
    }
    void replaceText(int start, int end, const QString &text) override
    {
        control()->watchedits(field());
        control()->longenough(field(), field()->text().size() + text.size());
        field()->setSelection(start, end - start);
        field()->insert(text);
    }

private:
    static QString none(int *start, int *end)
    {
        *start = *end = -1;
        return QString();
    }

    // The piece of text holding \a offset: one character, or the run of the text between blanks
    // (with the blanks after it) for words, or the whole text for lines and larger boundaries.
    QString piece(int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const
    {
        const QString text = shown();
        const int length = int(text.size());
        if (length == 0 || offset < 0 || offset > length)
            return none(start, end);
        offset = std::min(offset, length - 1);
        switch (boundary) {
        case QAccessible::CharBoundary:
            *start = offset;
            *end = offset + 1;
            break;
        case QAccessible::WordBoundary: {
            int s = offset;
            while (s > 0 && text.at(s).isSpace())
                --s;
            while (s > 0 && !text.at(s - 1).isSpace())
                --s;
            int e = offset;
            while (e < length && !text.at(e).isSpace())
                ++e;
            while (e < length && text.at(e).isSpace())
                ++e;
            *start = s;
            *end = e;
            break;
        }
        default:
            *start = 0;
            *end = length;
            break;
        }
        return text.mid(*start, *end - *start);
    }
};

// The notification that says a new value: no child of the control, found only by the events
// that show it.
class fractioni::accessibleannouncement : public QAccessibleObject
{
public:
    explicit accessibleannouncement(QObject *announcer) : QAccessibleObject(announcer) {}

    fractioni *control() const { return static_cast<fractioni *>(object()->parent()); }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(control()); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text t) const override
    {
        return t == QAccessible::Name ? control()->m_announcement : QString();
    }
    QAccessible::Role role() const override { return QAccessible::Notification; }
    QAccessible::State state() const override { return {}; }
    QRect rect() const override { return control()->rect().translated(control()->mapToGlobal(QPoint(0, 0))); }
};

QAccessibleInterface *fractioni::accessiblefactory(const QString &classname, QObject *object)
{
    Q_UNUSED(classname);
    if (object && object->objectName() == QLatin1String("announcement") && qobject_cast<fractioni *>(object->parent()))
        return new accessibleannouncement(object);
    if (!object || !object->isWidgetType())
        return nullptr;
    if (auto *control = qobject_cast<fractioni *>(object))
        return new accessibleinterface(control);
    // Any class of the field's hierarchy is asked first with the most derived one.
    auto *control = qobject_cast<fractioni *>(object->parent());
    auto *field = qobject_cast<QLineEdit *>(object);
    // Asked while the control makes its fields: they are known by name.
    const QString name = object->objectName();
    if (control && field
        && (name == QLatin1String("wholepart") || name == QLatin1String("numerator") || name == QLatin1String("denominator")))
        return new accessiblefield(field);
    return nullptr;
}

} // namespace kelfractionint
