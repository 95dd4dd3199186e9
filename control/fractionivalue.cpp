// The control's value: the three value properties, the sign, loading and clearing.
#include "fractioni.h"

#include "ambient.h"
#include "fractioniguard.h"
#include "modfracglobal.h"
#include "twips.h"

#include <QLineEdit>

#include <limits>

namespace kelfractionint {

namespace {

// Leading and trailing blanks only: other white space is part of the text and fails validation.
QString trimblanks(const QString &text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text.at(first) == QLatin1Char(' '))
        ++first;
    while (last > first && text.at(last - 1) == QLatin1Char(' '))
        --last;
    return text.mid(first, last - first);
}

} // namespace

void fractioni::longenough(QLineEdit *field, qsizetype length)
{
    // A value the control accepts is never cut short by its field. The field's limit is lifted
    // when a longer text comes, or when the user may type: lifting it lays the text out again.
    if (length > field->maxLength())
        field->setMaxLength(std::numeric_limits<int>::max());
}

void fractioni::setfieldtext(QLineEdit *field, const QString &text)
{
    // While the control is created its fields stay empty (see the constructor).
    if (m_fieldtextsdeferred)
        return;
    // Re-setting equal text would reset the caret and the undo history of the user's edit.
    if (field->text() != text) {
        longenough(field, text.size());
        field->setText(text);
    }
}

void fractioni::reapply(void (fractioni::*setter)(const QString &), QString stored)
{
    // A refused text re-applies what was there through a full nested assignment that skips the
    // acceptance test, so that it completes even when the current rules would refuse the stored
    // text too (a FracType outside the enumeration refuses everything).
    const bool outer = m_reapplying;
    m_reapplying = true;
    try {
        (this->*setter)(stored);
    } catch (const calls::controlgone &) {
        throw;
    } catch (...) {
        m_reapplying = outer;
        throw;
    }
    m_reapplying = outer;
}

void fractioni::raisevaluechanged(QString oldsign, QString oldwhole, QString oldnumer, QString olddenom,
                                  QString newsign)
{
    // Every listener gets texts of its own, taken at this moment: a listener that assigns the
    // value must not change what the next listener, or its own arguments, read.
    QString newwhole = m_wholepart;
    QString newnumer = m_numerator;
    QString newdenom = m_denominator;
    deliver([&] {
        Q_EMIT fractionvaluechanged(oldsign, oldwhole, oldnumer, olddenom, newsign, newwhole, newnumer, newdenom);
    });
}

QStringList fractioni::fractiontoarray(const fractioni *control)
{
    return {control->Wholepartvalue(), control->Numeratorvalue(), control->Denominatorvalue()};
}

bool fractioni::usermode() const
{
    return ambient::usermode(this);
}

void fractioni::closingsteps(const QString &name)
{
    deliver([&] { Q_EMIT propertychanged(name); });
    resizeprocedure();
    update();
}

void fractioni::setforecolors(quint32 olecolor)
{
    m_shownforecolor = olecolor;
    showforecolor();
}

QString fractioni::getsign() const
{
    if (m_wholepart.isEmpty() && m_numerator.isEmpty())
        return QStringLiteral("0");
    if (m_wholepart.isEmpty())
        return QStringLiteral("+");
    return m_wholepart.startsWith(QLatin1Char('-')) ? QStringLiteral("-") : QStringLiteral("+");
}

void fractioni::setWholepartvalue(const QString &value)
{
    const valuebatch batch(this);
    guarded([&] {
        const QString oldsign = getsign();
        const QString oldwhole = m_wholepart;
        QString text = trimblanks(value);
        if (!m_reapplying && !validfieldtext(wholepart, text)) {
            reapply(&fractioni::setWholepartvalue, m_wholepart);
            closingsteps(QStringLiteral("Wholepartvalue"));
            raisevaluechanged(oldsign, oldwhole, m_numerator, m_denominator, getsign());
            return;
        }

        if (!text.isEmpty()) {
            if (text.startsWith(QLatin1Char('-'))) {
                setforecolors(m_negforecolor);
            } else if (text.startsWith(QLatin1Char('+'))) {
                setforecolors(m_posforecolor);
                // A lone "+" becomes empty while the field stays visible; hosts rely on it.
                if (!m_forcesign)
                    text.remove(0, 1);
            } else {
                setforecolors(m_posforecolor);
                if (m_forcesign)
                    text.prepend(QLatin1Char('+'));
            }
            wholepart->setVisible(true);
        } else {
            if (m_shownforecolor == m_negforecolor)
                setforecolors(m_posforecolor);
            if (m_forcesign)
                text = QStringLiteral("+");
            // Hidden even when it now holds "+"; hosts rely on it.
            wholepart->setVisible(false);
        }

        m_wholepart = text;
        setfieldtext(wholepart, text);
        closingsteps(QStringLiteral("Wholepartvalue"));
        updateaccessibility();
        raisevaluechanged(oldsign, oldwhole, m_numerator, m_denominator, getsign());
    });
}

void fractioni::setNumeratorvalue(const QString &value)
{
    const valuebatch batch(this);
    guarded([&] {
        // Only the whole part's setter recomputes the sign: this event carries the sign read before
        // the change in both places, as hosts expect.
        const QString sign = getsign();
        const QString oldnumer = m_numerator;
        const QString text = trimblanks(value);
        if (!m_reapplying && !validfieldtext(numerator, text)) {
            reapply(&fractioni::setNumeratorvalue, m_numerator);
            closingsteps(QStringLiteral("Numeratorvalue"));
            raisevaluechanged(sign, m_wholepart, oldnumer, m_denominator, sign);
            return;
        }

        if (!text.isEmpty()) {
            numerator->setVisible(true);
            denominator->setVisible(true);
        } else {
            // Clearing the numerator leaves the denominator at "1"; hosts rely on it.
            setDenominatorvalue(QStringLiteral("1"));
            numerator->setVisible(false);
            denominator->setVisible(false);
        }

        m_numerator = text;
        setfieldtext(numerator, text);
        closingsteps(QStringLiteral("Numeratorvalue"));
        updateaccessibility();
        raisevaluechanged(sign, m_wholepart, oldnumer, m_denominator, sign);
    });
}

void fractioni::setDenominatorvalue(const QString &value)
{
    const valuebatch batch(this);
    guarded([&] {
        const QString sign = getsign();
        const QString olddenom = m_denominator;
        QString text = trimblanks(value);
        if (m_numerator.isEmpty())
            text.clear();
        if (!m_reapplying && !validfieldtext(denominator, text)) {
            reapply(&fractioni::setDenominatorvalue, m_denominator);
            closingsteps(QStringLiteral("Denominatorvalue"));
            raisevaluechanged(sign, m_wholepart, m_numerator, olddenom, sign);
            return;
        }

        m_denominator = text;
        setfieldtext(denominator, text);
        closingsteps(QStringLiteral("Denominatorvalue"));
        updateaccessibility();
        raisevaluechanged(sign, m_wholepart, m_numerator, olddenom, sign);
    });
}

fractioni *fractioni::changesign()
{
    const valuebatch batch(this);
    return guarded(this, [&]() -> fractioni * {
        if (m_wholepart.isEmpty() && m_numerator.isEmpty() && m_denominator.isEmpty())
            return this;
        const QString whole = m_wholepart;
        QString negated;
        if (whole.startsWith(QLatin1Char('-')))
            negated = whole.mid(1);
        else if (whole.startsWith(QLatin1Char('+')))
            negated = QLatin1Char('-') + whole.mid(1);
        else
            negated = QLatin1Char('-') + whole;
        try {
            setWholepartvalue(negated);
        } catch (const modfracglobal::automationerror &) {
            // Errors of the sign change are swallowed; the second event is raised regardless.
        }
        // The second event carries an empty old sign and the new values as old ones; listeners take
        // the meaningful old values from the first event. Hosts rely on this pair.
        raisevaluechanged(QString(), m_wholepart, m_numerator, m_denominator, getsign());
        return this;
    });
}

fractioni *fractioni::loadfraction(QStringList &strarr)
{
    const valuebatch batch(this);
    return guarded(this, [&]() -> fractioni * {
        const QString oldsign = getsign();
        const QString oldwhole = m_wholepart;
        const QString oldnumer = m_numerator;
        const QString olddenom = m_denominator;
        if (strarr.size() < 3)
            throw modfracglobal::automationerror(modfracglobal::errnum::subscript);
        for (int i = 0; i < 3; ++i)
            strarr[i] = trimblanks(strarr.at(i));

        setWholepartvalue(strarr.at(0));
        setNumeratorvalue(strarr.at(1));
        setDenominatorvalue(strarr.at(2));
        update();

        // The summary event is raised only while the whole part is locked; hosts rely on it.
        if (m_wholepartlocked) {
            raisevaluechanged(oldsign, oldwhole, oldnumer, olddenom, getsign());
        }
        return this;
    });
}

fractioni *fractioni::loadfraction(const QStringList &strarr)
{
    QStringList copy = strarr;
    return loadfraction(copy);
}

fractioni *fractioni::clearfraction()
{
    const valuebatch batch(this);
    return guarded(this, [&]() -> fractioni * {
        setWholepartvalue(QString());
        setDenominatorvalue(QString());
        setNumeratorvalue(QString());
        return this;
    });
}

void fractioni::setForcesign(bool value)
{
    const valuebatch batch(this);
    guarded([&] {
        if (!m_wholepartlocked) {
            m_forcesign = value;
            setWholepartvalue(m_wholepart);
        } else if (value) {
            if (!usermode()) {
                modfracglobal::showmessage("Usereditable and forcesign can't be True simultaneously");
            } else {
                throw modfracglobal::automationerror(modfracglobal::errnum::invalidproperty);
            }
        }
        closingsteps(QStringLiteral("Forcesign"));
    });
}

void fractioni::setAutoreplace(bool value)
{
    guarded([&] {
        m_autoreplace = value;
        closingsteps(QStringLiteral("Autoreplace"));
    });
}

void fractioni::setFracType(fractiontype value)
{
    guarded([&] {
        m_fractype = value;
        closingsteps(QStringLiteral("FracType"));
    });
}

} // namespace kelfractionint
