// Text entry: allowed characters, locks, validation and keyboard navigation of the fields.
#include "fractioni.h"

#include "fractioniguard.h"
#include "modfracglobal.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QHash>
#include <QLineEdit>
#include <QMimeData>
#include <QSet>

#include <bitset>
#include <vector>

namespace kelfractionint {

namespace {

bool isnumeric(const QString &text)
{
    try {
        return modfracglobal::isnumerictext(text.toStdString());
    } catch (const modfracglobal::automationerror &) {
        return false;
    }
}

} // namespace

QStringList fractioni::defaultallowedchars()
{
    static const QStringList chars = [] {
        QStringList list;
        list.reserve(97);
        for (char16_t code = 32; code <= 127; ++code)
            list.append(QString(QChar(code)));
        list.append(QString(QChar(char16_t(8))));
        return list;
    }();
    return chars;
}

const QSet<QString> &fractioni::membersof(const QVariant &set) const
{
    if (&set == &m_wholeallowedchars)
        return m_wholemembers;
    if (&set == &m_numerallowedchars)
        return m_numermembers;
    return m_denommembers;
}

bool fractioni::charinset(const QVariant &set, const QString &ch) const
{
    // The ordered array is what hosts read; membership is looked up in its hashed twin.
    return membersof(set).contains(ch);
}

bool fractioni::allcharsallowed(const QVariant &set, const QString &text) const
{
    if (!set.isValid())
        return false;
    const QSet<QString> &members = membersof(set);
    // A long text repeats its characters: each distinct one is looked up once.
    std::vector<signed char> known(text.size() > 64 ? 0x10000 : 0, -1);
    for (const QChar c : text) {
        signed char *seen = known.empty() ? nullptr : &known[c.unicode()];
        if (!seen || *seen < 0) {
            const bool allowed = members.contains(QString(c));
            if (seen)
                *seen = allowed;
            if (!allowed)
                return false;
        } else if (*seen == 0) {
            return false;
        }
    }
    return true;
}

bool fractioni::singlecharsonly(const QVariant &candidate)
{
    if (!candidate.canConvert<QStringList>())
        return false;
    const QStringList list = candidate.toStringList();
    if (list.isEmpty())
        return false;
    return std::all_of(list.begin(), list.end(), [](const QString &s) { return s.size() <= 1; });
}

QStringList fractioni::uniquechars(const QStringList &candidate)
{
    // Each distinct element is kept once, at its lowest index, walking from the highest index
    // down, so the first element always comes last; hosts rely on this order. The lowest index of
    // each element is found first, in one pass.
    QHash<QString, qsizetype> lowest;
    lowest.reserve(candidate.size());
    for (qsizetype i = 0; i < candidate.size(); ++i)
        lowest.insert(candidate.at(i), std::min(i, lowest.value(candidate.at(i), i)));
    QStringList result;
    result.reserve(lowest.size());
    for (qsizetype i = candidate.size() - 1; i >= 0; --i) {
        if (lowest.value(candidate.at(i)) == i)
            result.append(candidate.at(i));
    }
    return result;
}

bool fractioni::setallowedchars(QVariant &set, const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return false;
    // A single string is not an array of strings: it is ignored like any other foreign value.
    if (value.typeId() == QMetaType::QString || !singlecharsonly(value))
        return false;
    const QStringList unique = uniquechars(value.toStringList());
    QSet<QString> &members = &set == &m_wholeallowedchars ? m_wholemembers
                           : &set == &m_numerallowedchars ? m_numermembers
                                                          : m_denommembers;
    members = QSet<QString>(unique.begin(), unique.end());
    set = QVariant(unique);
    return true;
}

void fractioni::setWholeallowedchars(const QVariant &value)
{
    guarded([&] {
        if (setallowedchars(m_wholeallowedchars, value))
            deliver([&] { Q_EMIT propertychanged(QStringLiteral("Wholeallowedchars")); });
    });
}

void fractioni::setNumerallowedchars(const QVariant &value)
{
    guarded([&] {
        if (setallowedchars(m_numerallowedchars, value))
            deliver([&] { Q_EMIT propertychanged(QStringLiteral("Numerallowedchars")); });
    });
}

void fractioni::setDenomallowedchars(const QVariant &value)
{
    guarded([&] {
        if (setallowedchars(m_denomallowedchars, value))
            deliver([&] { Q_EMIT propertychanged(QStringLiteral("Denomallowedchars")); });
    });
}

bool fractioni::wholecharallowed(const QString &testchar) const
{
    return charinset(m_wholeallowedchars, testchar);
}

void fractioni::setWholepartLocked(bool value)
{
    guarded([&] {
        wholepart->setReadOnly(value);
        m_wholepartlocked = value;
        deliver([&] { Q_EMIT propertychanged(QStringLiteral("WholepartLocked")); });
        wholepart->update();
    });
}

void fractioni::setNumeratorLocked(bool value)
{
    guarded([&] {
        numerator->setReadOnly(value);
        m_numeratorlocked = value;
        deliver([&] { Q_EMIT propertychanged(QStringLiteral("NumeratorLocked")); });
        numerator->update();
    });
}

void fractioni::setDenominatorLocked(bool value)
{
    guarded([&] {
        denominator->setReadOnly(value);
        m_denominatorlocked = value;
        deliver([&] { Q_EMIT propertychanged(QStringLiteral("DenominatorLocked")); });
        denominator->update();
    });
}

bool fractioni::validwholetext(const QString &text) const
{
    switch (m_fractype) {
    case fracAlgebraic:
        return allcharsallowed(m_wholeallowedchars, text);
    case fracnumeric:
        break;
    default:
        return false;
    }
    if (text.isEmpty() || text == QLatin1String("+") || text == QLatin1String("-"))
        return true;
    const QChar last = text.back();
    if (last != QLatin1Char('-') && last != QLatin1Char('+') && isnumeric(text))
        return true;
    return last == QLatin1Char('%') && isnumeric(text.chopped(1));
}

bool fractioni::validfractionpart(const QVariant &set, const QString &text) const
{
    switch (m_fractype) {
    case fracAlgebraic:
        return allcharsallowed(set, text);
    case fracnumeric:
        // Signs belong to the whole part only.
        return text.isEmpty()
            || (!text.contains(QLatin1Char('+')) && !text.contains(QLatin1Char('-')) && isnumeric(text));
    default:
        return false;
    }
}

bool fractioni::validnumertext(const QString &text) const
{
    return validfractionpart(m_numerallowedchars, text);
}

bool fractioni::validdenomtext(const QString &text) const
{
    return validfractionpart(m_denomallowedchars, text);
}

bool fractioni::validfieldtext(const QLineEdit *field, const QString &text) const
{
    // The value setters hand over text already trimmed of blanks.
    const QString &trimmed = text;
    if (field == wholepart) {
        if (validwholetext(trimmed))
            return true;
        // Only the unlocked whole part raises, and only in run mode; hosts rely on both.
        if (usermode() && !m_wholepartlocked)
            throw modfracglobal::automationerror(modfracglobal::errnum::invalidproperty);
        return false;
    }
    if (field == numerator)
        return validnumertext(trimmed);
    if (field == denominator)
        return validdenomtext(trimmed);
    return false;
}

void fractioni::fieldedited(QLineEdit *field, const QString &text)
{
    const valuebatch batch(this);
    try {
        if (field == wholepart)
            setWholepartvalue(text);
        else if (field == numerator)
            setNumeratorvalue(text);
        else
            setDenominatorvalue(text);
    } catch (const modfracglobal::automationerror &) {
        // A refused edit: the value stays, and the field shows it again.
        field->setText(field == wholepart ? m_wholepart : field == numerator ? m_numerator : m_denominator);
    }
    try {
        resizeprocedure();
    } catch (const modfracglobal::automationerror &) {
    }
    update();
}

void fractioni::navigatefields(QLineEdit *field, int key)
{
    const QString name = field->objectName();
    auto plainwhole = [this] {
        const std::string whole = m_wholepart.toStdString();
        return !modfracglobal::hasdecimalsep(whole) && !modfracglobal::haspercentsign(whole);
    };
    auto showfractionpart = [this] {
        numerator->setVisible(true);
        denominator->setVisible(true);
    };

    // With Shift an arrow key selects within its field and never leaves it.
    switch (m_keyselects ? 0 : key) {
    case 0:
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
    case Qt::Key_Home:
    case Qt::Key_End:
        break;
    case Qt::Key_Right:
        if (name == QLatin1String("wholepart")) {
            const int length = int(field->text().size());
            if (field->cursorPosition() == length && lastselstart != length - 1 && plainwhole()
                && m_fracpartvisible) {
                if (numerator->isHidden())
                    showfractionpart();
                numerator->setFocus(Qt::OtherFocusReason);
            }
            // The whole part is hidden when the user leaves it empty with Right.
            wholepart->setVisible(!m_wholepart.isEmpty());
        }
        break;
    case Qt::Key_Left:
        if (name == QLatin1String("numerator") || name == QLatin1String("denominator")) {
            if (field->cursorPosition() == 0 && lastselstart == 0) {
                if (wholepart->isHidden())
                    wholepart->setVisible(true);
                wholepart->setFocus(Qt::OtherFocusReason);
            }
        }
        break;
    case Qt::Key_Up:
        if (name == QLatin1String("wholepart") || name == QLatin1String("denominator")) {
            if (numerator->isHidden()) {
                if (!m_fracpartvisible)
                    break;
                showfractionpart();
                update();
            }
            numerator->setFocus(Qt::OtherFocusReason);
        }
        break;
    case Qt::Key_Down:
        if (name == QLatin1String("wholepart") || name == QLatin1String("numerator")) {
            if (!plainwhole())
                break;
            if (numerator->isHidden()) {
                if (!m_fracpartvisible)
                    break;
                showfractionpart();
            }
            denominator->setFocus(Qt::OtherFocusReason);
        }
        break;
    default:
        // After a key that types or edits, the caret stands at the end of the text; a released
        // modifier or a key that only selects (Ctrl+A, Tab into the field) keeps the selection,
        // so that what is typed next replaces it. A caret already there is not moved.
        if (m_keyedits && (field->hasSelectedText() || field->cursorPosition() != int(field->text().size()))) {
            field->setCursorPosition(0);
            field->setCursorPosition(int(field->text().size()));
        }
        break;
    }
    try {
        resizeprocedure();
    } catch (const modfracglobal::automationerror &) {
    }
    update();
}

namespace {

bool selectionkey(const QKeyEvent *key)
{
    switch (key->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return key->modifiers() & Qt::ShiftModifier;
    default:
        return false;
    }
}

} // namespace

// A key that changes text: a printable character, or an editing shortcut of the clipboard and
// the undo history. Modifiers, Tab, Escape and Ctrl+A change nothing.
bool fractioni::editingkey(const QKeyEvent *key)
{
    static const QKeySequence::StandardKey editing[] = {QKeySequence::Cut, QKeySequence::Paste, QKeySequence::Undo,
                                                        QKeySequence::Redo};
    for (const QKeySequence::StandardKey standard : editing) {
        if (isstandardkey(key, standard))
            return true;
    }
    return !key->text().isEmpty() && key->text().at(0).isPrint()
        && !(key->modifiers() & (Qt::ControlModifier | Qt::MetaModifier));
}

bool fractioni::refusedkey(QLineEdit *field, const QKeyEvent *key)
{
    // A typed character that the part cannot hold never appears in its field: the value gets the
    // text it would have made, with the same assignment and events as when the field showed it,
    // but the field's text, and so what a screen reader echoes, does not change.
    if (field->isReadOnly() || !typedcharacter(key) || !key->text().at(0).isPrint())
        return false;
    QString text = field->text();
    const int at = field->hasSelectedText() ? field->selectionStart() : field->cursorPosition();
    text.replace(at, field->selectedText().size(), key->text());
    bool valid = false;
    try {
        valid = text.trimmed() == text && validfieldtext(field, text);
    } catch (const modfracglobal::automationerror &) {
    }
    if (valid)
        return false;
    const QStringList before{m_wholepart, m_numerator, m_denominator};
    fieldedited(field, text);
    if (before == QStringList{m_wholepart, m_numerator, m_denominator})
        announcerefusal(field, key->text());
    return true;
}

void fractioni::updatefocusproxy()
{
    QWidget *first = nullptr;
    for (QLineEdit *field : {wholepart, numerator, denominator}) {
        if (!field->isHidden()) {
            first = field;
            break;
        }
    }
    if (focusProxy() != first)
        setFocusProxy(first);
}

bool fractioni::focusNextPrevChild(bool next)
{
    // A field hidden while it has the focus (Backspace over the last digit of the numerator)
    // hands it to another part of this control, never to the next control on the form.
    QWidget *focus = QApplication::focusWidget();
    const std::array<QLineEdit *, 3> order = focus == wholepart   ? std::array{numerator, denominator, wholepart}
                                           : focus == numerator ? std::array{wholepart, denominator, numerator}
                                                                : std::array{numerator, wholepart, denominator};
    if (!focus || !focus->isHidden() || (focus != wholepart && focus != numerator && focus != denominator))
        return QWidget::focusNextPrevChild(next);
    updatefocusproxy();
    for (QLineEdit *field : order) {
        if (!field->isHidden()) {
            field->setFocus(Qt::OtherFocusReason);
            return true;
        }
    }
    setFocus(Qt::OtherFocusReason);
    return true;
}

// Only typed characters meet the whole part's set: keys that edit or move (Delete, which X11
// sends with the text "\x7f", the clipboard, undo and selection shortcuts, Tab) keep working.
// Backspace and Enter count as typed, as they did for the original field.
bool fractioni::typedcharacter(const QKeyEvent *key)
{
    if (key->text().isEmpty() || (key->modifiers() & (Qt::ControlModifier | Qt::MetaModifier)))
        return false;
    switch (key->key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Delete:
    case Qt::Key_Insert:
        return false;
    default:
        break;
    }
    static const QKeySequence::StandardKey editing[] = {
        QKeySequence::Copy,      QKeySequence::Cut,  QKeySequence::Paste, QKeySequence::Undo,
        QKeySequence::Redo,      QKeySequence::SelectAll, QKeySequence::Delete,
    };
    for (const QKeySequence::StandardKey standard : editing) {
        if (isstandardkey(key, standard))
            return false;
    }
    return true;
}

bool fractioni::isstandardkey(const QKeyEvent *key, QKeySequence::StandardKey standard)
{
    // As QKeyEvent::matches, which asks the platform for the key bindings on every call: each
    // answer is kept per key and modifiers. The keypad and group switch modifiers make no
    // difference.
    const int searchkey = int((key->modifiers() | key->key()) & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier));
    if (searchkey == 0 || standard < 0 || standard >= 128)
        return false;
    struct answers
    {
        int key = 0;
        std::bitset<128> known, matched;
    };
    static QHash<int, answers> kept;
    // One key event asks several questions: its answers are looked up once.
    static answers last;
    if (last.key != searchkey) {
        const auto found = kept.constFind(searchkey);
        last = found != kept.constEnd() ? *found : answers{searchkey, {}, {}};
    }
    if (!last.known.test(standard)) {
        bool matched = false;
        for (const QKeySequence &binding : QKeySequence::keyBindings(standard))
            matched = matched || (binding.count() == 1 && binding[0].toCombined() == searchkey);
        last.known.set(standard);
        last.matched.set(standard, matched);
        // Made-up key codes must not grow the answers without end.
        if (kept.size() >= 1024 && !kept.contains(searchkey))
            kept.clear();
        kept.insert(searchkey, last);
    }
    return last.matched.test(standard);
}

bool fractioni::eventFilter(QObject *watched, QEvent *event)
{
    bool consumed = false;
    // A handler that deleted the control ends the event here.
    if (!eventguarded([&] { consumed = filterevent(watched, event); }))
        return true;
    return consumed;
}

void fractioni::watchedits(QLineEdit *field, const QEvent *event)
{
    // A field is edited through its events (keys, input methods, the mouse, its menu, a drop)
    // or an assistive technology: it is watched for edits from the first of them on, so that a
    // field nobody touches costs no connection. What an event brings may not be cut short by
    // the field's length limit.
    qsizetype incoming = 0;
    switch (event->type()) {
    case QEvent::KeyPress:
        incoming = static_cast<const QKeyEvent *>(event)->text().size();
        break;
    case QEvent::InputMethod:
        incoming = static_cast<const QInputMethodEvent *>(event)->commitString().size();
        break;
    case QEvent::MouseButtonRelease:
        if (static_cast<const QMouseEvent *>(event)->button() == Qt::MiddleButton)
            incoming = QGuiApplication::clipboard()->text(QClipboard::Selection).size();
        break;
    case QEvent::Drop:
        if (const QMimeData *data = static_cast<const QDropEvent *>(event)->mimeData())
            incoming = data->text().size();
        break;
    case QEvent::FocusIn:
    case QEvent::MouseButtonPress:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
        break;
    default:
        return;
    }
    watchedits(field);
    longenough(field, field->text().size() + incoming);
}

void fractioni::watchedits(QLineEdit *field)
{
    const int bit = field == wholepart ? 1 : field == numerator ? 2 : 4;
    if (m_editswatched & bit)
        return;
    m_editswatched |= bit;
    connect(field, &QLineEdit::textEdited, this,
            [this, field](const QString &text) { eventguarded([&] { fieldedited(field, text); }); });
}

bool fractioni::filterevent(QObject *watched, QEvent *event)
{
    auto *field = qobject_cast<QLineEdit *>(watched);
    const bool isfield = field && (field == wholepart || field == numerator || field == denominator);
    if (isfield) {
        watchedits(field, event);
        if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
            updatefocusproxy();
        watchfield(field, event);
        if (event->type() == QEvent::ShortcutOverride)
            return answeredshortcut(field, static_cast<QKeyEvent *>(event));
        if (event->type() == QEvent::KeyPress) {
            const valuebatch batch(this);
            auto *key = static_cast<QKeyEvent *>(event);
            lastselstart = qint16(field->cursorPosition());
            if (entrykey(field, key))
                return true;
            if (field == wholepart && typedcharacter(key)) {
                for (const QChar c : key->text()) {
                    if (!charinset(m_wholeallowedchars, QString(c)))
                        return true;
                }
            }
            if (refusedkey(field, key))
                return true;
        } else if (event->type() == QEvent::KeyRelease) {
            auto *key = static_cast<QKeyEvent *>(event);
            if (m_movedbykey != 0 && key->key() == m_movedbykey) {
                // The key moved to this part and selected it: the caret stays as it was left.
                m_movedbykey = 0;
            } else if (!key->isAutoRepeat()) {
                m_keyedits = editingkey(key);
                m_keyselects = selectionkey(key);
                navigatefields(field, key->key());
                m_keyedits = true;
                m_keyselects = false;
            }
        } else if (event->type() == QEvent::ContextMenu) {
            return entrymenu(field, static_cast<QContextMenuEvent *>(event));
        }
    }
    if (event->type() >= QEvent::MouseButtonPress && event->type() <= QEvent::MouseMove
        && (isfield || watched == lblgrip)) {
        if (childmouseevent(watched, event))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace kelfractionint
