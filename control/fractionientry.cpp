// Fractions as people type, paste and copy them: "1 2/3" typed moves from part to part, a pasted
// fraction loads all three parts, and copying with nothing selected copies the whole value.
#include "fractioni.h"

#include "fractioniguard.h"
#include "modfracglobal.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHash>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>

#include <array>
#include <memory>

namespace kelfractionint {

namespace {

// The record a text stands for when it is a fraction with a fraction part, read without a
// message: a text that is none is simply not a fraction.
std::optional<QStringList> fractionof(const QString &text)
{
    const modfracglobal::scopedmessagesink quiet([](const std::string &) {});
    const modfracglobal::FractionResult record = modfracglobal::strparsefraction(text.toStdString());
    if (!record)
        return std::nullopt;
    return QStringList{QString::fromStdString((*record)[0]), QString::fromStdString((*record)[1]),
                       QString::fromStdString((*record)[2])};
}

} // namespace

QAction *fractioni::pasteaction(const QMenu *menu)
{
    // Named "edit-paste" in newer Qt; before, known by the Paste shortcut its text carries.
    const QString shortcut = QLatin1Char('\t') + QKeySequence(QKeySequence::Paste).toString(QKeySequence::NativeText);
    for (QAction *action : menu->actions()) {
        if (action->objectName() == QLatin1String("edit-paste") || action->text().endsWith(shortcut))
            return action;
    }
    return nullptr;
}

QString fractioni::fractiontext() const
{
    return const_cast<fractioni *>(this)->guarded([&] {
        return QString::fromStdString(modfracglobal::strformatfraction(
            {m_wholepart.toStdString(), m_numerator.toStdString(), m_denominator.toStdString()}));
    });
}

bool fractioni::loadfractiontext(const QString &text)
{
    return guarded([&]() -> bool {
        std::optional<QStringList> record = fractionof(text);
        if (!record)
            return false;
        try {
            loadfraction(*record);
        } catch (const modfracglobal::automationerror &) {
            // A part the control refuses keeps its value, as loadfraction leaves it.
            return false;
        }
        return true;
    });
}

bool fractioni::typedmove(QLineEdit *field, const QKeyEvent *key)
{
    if (m_fractype != fracnumeric || !typedcharacter(key))
        return false;
    QLineEdit *target = nullptr;
    if (field == wholepart && key->text() == QLatin1String(" ")) {
        const std::string whole = field->text().toStdString();
        if (whole.empty() || modfracglobal::hasdecimalsep(whole) || modfracglobal::haspercentsign(whole)
            || !m_fracpartvisible)
            return false;
        numerator->setVisible(true);
        denominator->setVisible(true);
        target = numerator;
    } else if (field == numerator && key->text() == QLatin1String("/")) {
        target = denominator;
    } else {
        return false;
    }
    target->setFocus(Qt::OtherFocusReason);
    // What is typed next replaces the part: a cleared control's denominator "1" becomes "3".
    target->selectAll();
    m_movedbykey = key->key();
    return true;
}

bool fractioni::pastefraction(QLineEdit *field)
{
    const QString pasted = QGuiApplication::clipboard()->text();
    // Pasted as the text it is, it is not cut short by the field.
    longenough(field, field->text().size() + pasted.size());
    if (m_fractype != fracnumeric || field->isReadOnly())
        return false;
    std::optional<QStringList> record = fractionof(pasted);
    if (!record || (record->at(1).isEmpty() && record->at(2).isEmpty()))
        return false;
    // A fraction that would change a locked part is pasted as the text it is.
    const std::array<std::pair<bool, const QString *>, 3> parts{
        {{m_wholepartlocked, &m_wholepart}, {m_numeratorlocked, &m_numerator}, {m_denominatorlocked, &m_denominator}}};
    for (int i = 0; i < 3; ++i) {
        if (parts[i].first && record->at(i) != *parts[i].second)
            return false;
    }
    try {
        loadfraction(*record);
    } catch (const modfracglobal::automationerror &) {
        // A part the control refuses keeps its value, as when typed.
    }
    return true;
}

bool fractioni::entrykey(QLineEdit *field, const QKeyEvent *key)
{
    if (isstandardkey(key, QKeySequence::Paste))
        return pastefraction(field);
    if (isstandardkey(key, QKeySequence::Copy) && !field->hasSelectedText()) {
        QGuiApplication::clipboard()->setText(fractiontext());
        return true;
    }
    return typedmove(field, key);
}

bool fractioni::answeredshortcut(QLineEdit *field, QKeyEvent *key)
{
    // Before a key press reaches a field, the window's shortcuts ask the field whether it takes
    // the key itself, and a line edit answers from some fifteen lookups of the platform's key
    // bindings. Its answer depends on nothing but the key, its modifiers and text, whether the
    // field is read-only and whether the question came accepted: the answers it gave are kept
    // and given again in its place.
    if (key->text().size() > 1)
        return false;
    const quint64 asked = quint64(quint32(key->key()) | quint32(key->modifiers()))
                        | quint64(key->text().isEmpty() ? 0 : key->text().at(0).unicode()) << 32
                        | quint64(!key->text().isEmpty()) << 48 | quint64(field->isReadOnly()) << 49
                        | quint64(key->isAccepted()) << 50;
    struct answer
    {
        bool handled = false;
        bool accepted = false;
    };
    static QHash<quint64, answer> answers;
    const auto known = answers.constFind(asked);
    if (known == answers.constEnd()) {
        // The field answers a copy of the question once; the key itself goes on to the field.
        const std::unique_ptr<QKeyEvent> copy(key->clone());
        answer given;
        given.handled = field->QLineEdit::event(copy.get());
        given.accepted = copy->isAccepted();
        // Made-up key codes must not grow the answers without end.
        if (answers.size() >= 1024)
            answers.clear();
        answers.insert(asked, given);
        return false;
    }
    if (!known->handled)
        return false;
    key->setAccepted(known->accepted);
    return true;
}

bool fractioni::entrymenu(QLineEdit *field, const QContextMenuEvent *event)
{
    // The field's own menu, with Paste loading a fraction as the keys do.
    QMenu *menu = field->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (QAction *paste = pasteaction(menu)) {
        disconnect(paste, &QAction::triggered, nullptr, nullptr);
        connect(paste, &QAction::triggered, field, [this, field] {
            bool pasted = true;
            if (eventguarded([&] { pasted = pastefraction(field); }) && !pasted)
                field->paste();
        });
    }
    menu->popup(event->globalPos());
    return true;
}

} // namespace kelfractionint
