#pragma once

#include "fractioni_export.h"

#include <QFont>
#include <QKeySequence>
#include <QList>
#include <QPixmap>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <array>
#include <optional>
#include <type_traits>

class QAction;
class QContextMenuEvent;
class QMenu;
class QKeyEvent;
class QMouseEvent;
class QLineEdit;
class QPainter;
class QAccessibleInterface;

namespace kelfractionint {

class propertybag;

/*!
 * A control that shows, edits and computes exactly with one fraction: a whole part carrying the
 * sign, a numerator and a denominator, each held as text and shown in a frameless field of its
 * own (`wholepart`, `numerator`, `denominator`), with a slash or a bar drawn between numerator and
 * denominator and a grip (`lblgrip`) for resizing at run time. Layout is computed in twips and
 * applied in pixels.
 *
 * No member raises a C++ exception. A member that fails changes nothing it has not already
 * changed by the documented steps, records its automation error (lasterrornumber(),
 * lasterrordescription()), emits errorreported() and returns. Each outermost call of a setter,
 * invokable or slot clears the record first; getters leave it alone. A script engine that calls
 * a member through newQObject gets the error as a script exception with a `number` property.
 */
class FRACTIONI_EXPORT fractioni : public QWidget
{
    Q_OBJECT
    // Persisted properties in the order a restore assigns them: form loaders and designers
    // follow this order, so each value meets the acceptance rules of the saved type.
    Q_PROPERTY(fractiontype FracType READ FracType WRITE setFracType)
    Q_PROPERTY(QString Wholepartvalue READ Wholepartvalue WRITE setWholepartvalue)
    Q_PROPERTY(QString Numeratorvalue READ Numeratorvalue WRITE setNumeratorvalue)
    Q_PROPERTY(QString Denominatorvalue READ Denominatorvalue WRITE setDenominatorvalue)
    Q_PROPERTY(quint32 Backcolor READ Backcolor WRITE setBackcolor)
    Q_PROPERTY(quint32 Wholepartbackcolor READ Wholepartbackcolor WRITE setWholepartbackcolor)
    Q_PROPERTY(quint32 Numeratorbackcolor READ Numeratorbackcolor WRITE setNumeratorbackcolor)
    Q_PROPERTY(quint32 Denominatorbackcolor READ Denominatorbackcolor WRITE setDenominatorbackcolor)
    Q_PROPERTY(bool Fractionslash READ Fractionslash WRITE setFractionslash)
    Q_PROPERTY(quint32 Negforecolor READ Negforecolor WRITE setNegforecolor)
    Q_PROPERTY(quint32 Posforecolor READ Posforecolor WRITE setPosforecolor)
    Q_PROPERTY(bool Userresizeable READ Userresizeable WRITE setUserresizeable)
    Q_PROPERTY(bool Autoreplace READ Autoreplace WRITE setAutoreplace)
    Q_PROPERTY(bool Forcesign READ Forcesign WRITE setForcesign)
    Q_PROPERTY(fracBorderstyle Borderstyle READ Borderstyle WRITE setBorderstyle)
    Q_PROPERTY(QFont Font READ Font WRITE setFont)
    Q_PROPERTY(bool Fracpartvisible READ Fracpartvisible WRITE setFracpartvisible)
    Q_PROPERTY(bool WholepartLocked READ WholepartLocked WRITE setWholepartLocked)
    Q_PROPERTY(bool NumeratorLocked READ NumeratorLocked WRITE setNumeratorLocked)
    Q_PROPERTY(bool DenominatorLocked READ DenominatorLocked WRITE setDenominatorLocked)
    Q_PROPERTY(qint32 Numerdenomgcd READ Numerdenomgcd)
    Q_PROPERTY(QObject *Container READ Container WRITE setContainer DESIGNABLE false STORED false)
    Q_PROPERTY(qint32 hWnd READ hWnd DESIGNABLE false STORED false)
    Q_PROPERTY(QPixmap Picture READ Picture DESIGNABLE false STORED false)
    Q_PROPERTY(QVariant Wholeallowedchars READ Wholeallowedchars WRITE setWholeallowedchars DESIGNABLE false STORED false)
    Q_PROPERTY(QVariant Numerallowedchars READ Numerallowedchars WRITE setNumerallowedchars DESIGNABLE false STORED false)
    Q_PROPERTY(QVariant Denomallowedchars READ Denomallowedchars WRITE setDenomallowedchars DESIGNABLE false STORED false)
    // The value for Qt's own bindings (QDataWidgetMapper, item delegates, QML); not persisted.
    Q_PROPERTY(QString value READ value WRITE setValue NOTIFY valueChanged USER true DESIGNABLE false STORED false)

public:
    /*! Border of the control: none, or a fixed single line. Values outside the list are kept. */
    enum fracBorderstyle : int { borderstylenone = 0, borderstylefixed = 1 };
    Q_ENUM(fracBorderstyle)
    /*! Which texts the three parts accept: numbers, or the characters of each part's set. */
    enum fractiontype : int { fracnumeric = 0, fracAlgebraic = 1 };
    Q_ENUM(fractiontype)

    /*! A new control, showing 4 1/7 with the container's colours and font. */
    explicit fractioni(QWidget *parent = nullptr);
    /*! A control restored from \a bag: it starts from the empty value and white backgrounds and
     *  takes what the bag holds, as ReadProperties does; the values of a new control are never
     *  assigned. */
    explicit fractioni(const propertybag &bag, QWidget *parent = nullptr);
    ~fractioni() override;

    // Value (the sign is the first character of the whole part)
    QString Numeratorvalue() const { return m_numerator; }
    QString Denominatorvalue() const { return m_denominator; }
    QString Wholepartvalue() const { return m_wholepart; }
    bool Forcesign() const { return m_forcesign; }
    bool Autoreplace() const { return m_autoreplace; }
    fractiontype FracType() const { return m_fractype; }
    /*! The gcd of numerator and denominator, or -1 when either is empty. Parts that are no
     *  numbers read as -1 here; a late-bound Get fails with the conversion's error in run mode. */
    qint32 Numerdenomgcd() const;

    // Appearance
    bool Fractionslash() const { return m_fractionslash; }
    quint32 Backcolor() const { return m_backcolor; }
    bool Userresizeable() const { return m_userresizeable; }
    fracBorderstyle Borderstyle() const { return m_borderstyle; }
    quint32 Negforecolor() const { return m_negforecolor; }
    quint32 Posforecolor() const { return m_posforecolor; }
    quint32 Wholepartbackcolor() const { return m_wholepartbackcolor; }
    quint32 Numeratorbackcolor() const { return m_numeratorbackcolor; }
    quint32 Denominatorbackcolor() const { return m_denominatorbackcolor; }
    QFont Font() const { return m_font; }
    bool Fracpartvisible() const { return m_fracpartvisible; }

    /*! The value as people write it ("-1 2/3", "2/3", "-3"), or an empty text when the value is
     *  empty. */
    QString value() const;

    // Window
    /*! Reads as nothing. A late-bound Get (by dispatch id or from the script host) fails with
     *  error 91 (object variable not set) in run mode, also after a Set. */
    QObject *Container() const;
    /*! The native window id, truncated to 32 bits. */
    qint32 hWnd() const;
    /*! A picture of the control's whole area, border and grip included, as it is now. */
    QPixmap Picture() const;

    // Text entry
    QVariant Wholeallowedchars() const { return m_wholeallowedchars; }
    QVariant Numerallowedchars() const { return m_numerallowedchars; }
    QVariant Denomallowedchars() const { return m_denomallowedchars; }
    bool WholepartLocked() const { return m_wholepartlocked; }
    bool NumeratorLocked() const { return m_numeratorlocked; }
    bool DenominatorLocked() const { return m_denominatorlocked; }

    /*! Sets the numerator. Text that is no number (or outside the set in algebraic mode) is
     *  refused silently: the current value is applied again. An empty numerator sets the
     *  denominator to "1" first and hides the fraction part. */
    void setNumeratorvalue(const QString &value);
    /*! Sets the denominator; refused texts are handled as for the numerator. Empty while the
     *  numerator is empty. */
    void setDenominatorvalue(const QString &value);
    /*! Sets the whole part with its sign. A refused text fails with 380 in run mode while the whole
     *  part is not locked, otherwise the current value is applied again. */
    void setWholepartvalue(const QString &value);
    /*! Shows a "+" for positive values. Fails with 380 in run mode (a message at design time) when set
     *  while the whole part is locked. */
    void setForcesign(bool value);
    void setAutoreplace(bool value);
    /*! Stored as given; a value outside the enumeration refuses every text. */
    void setFracType(fractiontype value);

    void setFractionslash(bool value);
    void setBackcolor(quint32 value);
    void setUserresizeable(bool value);
    /*! Fails with 6 (overflow), changing nothing, for a value whose border the layout cannot
     *  hold in 16 bits (beyond +-16382). */
    void setBorderstyle(fracBorderstyle value);
    void setNegforecolor(quint32 value);
    void setPosforecolor(quint32 value);
    void setWholepartbackcolor(quint32 value);
    void setNumeratorbackcolor(quint32 value);
    void setDenominatorbackcolor(quint32 value);
    /*! The control's font (bold, italic, family and size are taken). Hides QWidget::setFont. */
    void setFont(const QFont &value);
    /*! Hiding the fraction part clears numerator and denominator first. */
    void setFracpartvisible(bool value);

    /*! Re-parents the control into \a value when it is a widget. */
    void setContainer(QObject *value);

    /*! Takes an array of one-character strings (a QStringList in a QVariant); an invalid value, an
     *  empty list or an element longer than one character leaves the set unchanged. Repeats are
     *  dropped, keeping the order described for the allowed sets. */
    void setWholeallowedchars(const QVariant &value);
    void setNumerallowedchars(const QVariant &value);
    void setDenomallowedchars(const QVariant &value);
    void setWholepartLocked(bool value);
    void setNumeratorLocked(bool value);
    void setDenominatorLocked(bool value);
    /*! Loads a fraction as people write it, as loadfractiontext does; an empty text empties the
     *  value. Any other text changes nothing. */
    void setValue(const QString &text);

    /*! Resizes the control to \a fracwidth x \a fracheight twips when both are positive. */
    Q_INVOKABLE void fracsize(float fracwidth, float fracheight);
    /*! Negates the value through the whole part's sign; returns the control. */
    Q_INVOKABLE kelfractionint::fractioni *changesign();
    /*! Loads a record (whole part, numerator, denominator): the caller's list receives the trimmed
     *  texts. Fails with 9 for fewer than three elements. Returns the control. */
    kelfractionint::fractioni *loadfraction(QStringList &strarr);
    /*! The same for late-bound callers (scripts, QMetaObject::invokeMethod), which pass the record
     *  by value: script engines cannot bind a non-const reference. */
    Q_INVOKABLE kelfractionint::fractioni *loadfraction(const QStringList &strarr);
    /*! "0" for an empty value, otherwise "+" or "-". */
    Q_INVOKABLE QString getsign() const;
    Q_INVOKABLE QStringList reduce();
    Q_INVOKABLE QStringList fractomixed();
    Q_INVOKABLE QStringList expand(qint32 lngexpander);
    Q_INVOKABLE QStringList mixedtofrac();
    /*! The sum of the controls in \a objfracs (a list of controls, or an object with `Count` and
     *  indexed items), improper and unreduced. */
    Q_INVOKABLE QStringList addfractions(const QVariant &objfracs);
    QStringList addfractions(const QList<kelfractionint::fractioni *> &objfracs);
    Q_INVOKABLE QStringList invert();
    Q_INVOKABLE QStringList multiplyfractions(const QVariant &objfracs);
    QStringList multiplyfractions(const QList<kelfractionint::fractioni *> &objfracs);
    /*! Fails with 11 when the divisor is empty. */
    Q_INVOKABLE QStringList dividefractions(kelfractionint::fractioni *dividend, kelfractionint::fractioni *divisor);
    Q_INVOKABLE QStringList fractodecimal(qint32 noofdecimals);
    Q_INVOKABLE QStringList decimaltofrac();
    Q_INVOKABLE QStringList fractopercent(qint32 noofdecimals);
    Q_INVOKABLE QStringList percenttofrac();
    /*! The nearest fraction whose denominator lies between 1 and \a maxdenominator, reduced and
     *  mixed; loaded into the control when Autoreplace is True, like the other conversions. */
    Q_INVOKABLE QStringList approximate(qint32 maxdenominator);
    /*! The value as people write it: "-1 2/3", "2/3", "-2/3", "3", and "0" when empty. */
    Q_INVOKABLE QString fractiontext() const;
    /*! Loads a fraction written as people write it ("1 2/3", "-2/3", "1⅔", "3") as loadfraction
     *  does, and returns true; for any other text returns false and changes nothing. Fails
     *  never: where the control refuses a part, that part keeps its value and it returns false. */
    Q_INVOKABLE bool loadfractiontext(const QString &text);
    /*! Empties the value (whole part, denominator, numerator in that order); returns the control. */
    Q_INVOKABLE kelfractionint::fractioni *clearfraction();
    Q_INVOKABLE QStringList subtractfractions(kelfractionint::fractioni *minuend, kelfractionint::fractioni *minutor);
    Q_INVOKABLE QStringList addtwofractions(kelfractionint::fractioni *frac1, kelfractionint::fractioni *frac2);
    Q_INVOKABLE QStringList multiplytwofractions(kelfractionint::fractioni *frac1, kelfractionint::fractioni *frac2);
    Q_INVOKABLE kelfractionint::fractioni *addintofraction(kelfractionint::fractioni *resultfrac, kelfractionint::fractioni *addendfrac);
    Q_INVOKABLE kelfractionint::fractioni *subtractintofraction(kelfractionint::fractioni *resultfrac, kelfractionint::fractioni *minutorfrac);
    Q_INVOKABLE kelfractionint::fractioni *divideintofraction(kelfractionint::fractioni *resultfrac, kelfractionint::fractioni *divisorfrac);
    Q_INVOKABLE kelfractionint::fractioni *multiplyintofraction(kelfractionint::fractioni *resultfrac, kelfractionint::fractioni *multiplierfrac);
    /*! Repaints the fields and lays the control out again. */
    Q_INVOKABLE void Refreshfraction();
    /*! True when \a testchar equals an element of Wholeallowedchars exactly. */
    Q_INVOKABLE bool wholecharallowed(const QString &testchar) const;

    /*! The automation error number of the last failing member call (0 if it succeeded), as
     *  automation callers receive it: 380 "Invalid property value", 6, 9, 11, 13, 28, 91, ... */
    int lasterrornumber() const { return m_errornumber; }
    /*! The standard description of that error ("Invalid property value", ...), empty if none. */
    QString lasterrordescription() const { return m_errordescription; }
    /*! Forgets the recorded error, for callers that check several calls at once. */
    void clearlasterror();

    /*! \a color (an OLE colour) as the control shows it: a system colour is read from the
     *  palette the control is painted with. */
    QColor systemcolor(quint32 color) const;

    // Lifecycle with the container
    /*! Assigns the values of a new control (4 1/7, the container's colours and font, 600 x 600
     *  twips). The constructor without a bag runs it. */
    void InitProperties();
    /*! Restores the persisted properties from \a bag; errors are absorbed. */
    void ReadProperties(const propertybag &bag);
    /*! Saves the persisted properties into \a bag, leaving out values equal to the defaults. */
    void WriteProperties(propertybag &bag) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void fractionvaluechanged(const QString &oldsign, const QString &oldwhole, const QString &oldnumer,
                              const QString &olddenom, const QString &newsign, const QString &newwhole,
                              const QString &newnumer, const QString &newdenom);
    void wholepartclick();
    void denominatorclick();
    void numeratorclick();
    void separatorclick();
    void insidenotcontentclick();
    void MouseDown(qint16 Button, qint16 Shift, float X, float Y);
    /*! A persisted property changed (the container's property-change notification). */
    void propertychanged(const QString &name);
    /*! A member call failed with the automation error \a number ("Invalid property value", ...);
     *  emitted once for the outermost call, after the error was recorded. */
    void errorreported(int number, const QString &description);
    /*! The value changed: raised once when a change is complete (a keystroke, an assignment, an
     *  operation, a load), never for a change that leaves the value as it was. */
    void valueChanged(const QString &value);
    /*! The user has finished editing: the focus left the control, or Enter was pressed. */
    void editingFinished();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    friend struct dispatchaccess;
    void initialize(const propertybag *bag);
    void initproperties();
    void readproperties(const propertybag &bag);

    // Error handling at the boundary (fractionierrors.cpp, fractioniguard.h)
    class callscope;
    template <typename Base>
    class part;
    enum class outcome { done, failed, gone };
    template <typename F>
    outcome runguarded(F &&body, bool clearsrecord);
    template <typename F>
    auto guarded(F &&body) -> std::invoke_result_t<F>;
    template <typename R, typename F>
    R guarded(R fallback, F &&body);
    template <typename F>
    bool eventguarded(F &&body);
    template <typename F>
    bool emitsafely(F &&emission);
    template <typename F>
    void deliver(F &&emission);
    void reportfailure(int number, const QString &description);
    qint32 checkednumerdenomgcd() const;

    // Value helpers
    static QStringList fractiontoarray(const fractioni *control);
    void applywholepart(const QString &text);
    void raisevaluechanged(QString oldsign, QString oldwhole, QString oldnumer, QString olddenom, QString newsign);
    void setforecolors(quint32 olecolor);
    void showforecolor();
    void stylefields();
    void absorbfont(const QFont &font);
    void watchfield(QLineEdit *field, QEvent *event);
    void watchediting(QEvent *event);

    // Raises valueChanged once, when the outermost change of the value ends.
    class valuebatch
    {
    public:
        explicit valuebatch(fractioni *control);
        ~valuebatch();
        valuebatch(const valuebatch &) = delete;
        valuebatch &operator=(const valuebatch &) = delete;

    private:
        QPointer<fractioni> m_control;
        bool m_recorded = false;
    };
    bool validfieldtext(const QLineEdit *field, const QString &text) const;
    bool validwholetext(const QString &text) const;
    bool validnumertext(const QString &text) const;
    bool validdenomtext(const QString &text) const;
    bool validfractionpart(const QVariant &set, const QString &text) const;
    void reapply(void (fractioni::*setter)(const QString &), QString stored);
    void setfieldtext(QLineEdit *field, const QString &text);
    void longenough(QLineEdit *field, qsizetype length);
    bool allcharsallowed(const QVariant &set, const QString &text) const;
    bool charinset(const QVariant &set, const QString &ch) const;
    const QSet<QString> &membersof(const QVariant &set) const;
    static bool singlecharsonly(const QVariant &candidate);
    static QStringList uniquechars(const QStringList &candidate);
    static QStringList defaultallowedchars();
    bool setallowedchars(QVariant &set, const QVariant &value);
    void navigatefields(QLineEdit *field, int key);
    static bool typedcharacter(const QKeyEvent *key);
    static bool isstandardkey(const QKeyEvent *key, QKeySequence::StandardKey standard);
    static bool editingkey(const QKeyEvent *key);
    bool entrykey(QLineEdit *field, const QKeyEvent *key);
    bool answeredshortcut(QLineEdit *field, QKeyEvent *key);
    bool typedmove(QLineEdit *field, const QKeyEvent *key);
    bool pastefraction(QLineEdit *field);
    bool entrymenu(QLineEdit *field, const QContextMenuEvent *event);
    static QAction *pasteaction(const QMenu *menu);
    void fieldedited(QLineEdit *field, const QString &text);
    void watchedits(QLineEdit *field, const QEvent *event);
    void watchedits(QLineEdit *field);
    bool refusedkey(QLineEdit *field, const QKeyEvent *key);
    void updatefocusproxy();
    bool usermode() const;

    // Layout helpers (twips)
    struct layoutstate
    {
        QString whole, numer, denom, numertext, denomtext;
        QFont font;
        qint64 border = 0;
        QSize size;
        double lastheight = 0;
        int shown = 0;
        bool startingup = false;
        bool focused = false;
        double gripsize = 0;
        bool operator==(const layoutstate &) const = default;
    };
    layoutstate currentlayoutstate() const;
    void resizeprocedure();
    void sizecontrol(QWidget *child, double width, double height);
    void placecontrol(QWidget *child, double left, double top);
    std::size_t partindex(const QWidget *child) const;
    void applysizes();
    QFont builtfont(const QFont &source, double size) const;
    static QFont drawnfont(const QFont &font);
    void setcontrolfont(QWidget *control, const QFont &source, double size);
    QFont startzoomfont();
    const QFont &measuredfont(const QWidget *field) const;
    double centeroffset(const QString &numer, const QString &denom) const;
    double arrangefields();
    // What the fields' placement depends on and what it produced, as it was last done.
    struct arrangement
    {
        QSize size;
        qint64 border = 0;
        std::array<double, 4> units{};
        std::array<QRect, 4> places;
        bool wholehidden = false;
        QString numertext, denomtext;
        QFont wholefont, denomfont;
        qreal dpr = 0;
        bool operator==(const arrangement &) const = default;
    };
    arrangement currentarrangement() const;
    void liftdenominator();
    // What the denominator's lift was last measured from, and the lift.
    struct liftinputs
    {
        QFont font;
        QString text;
        int height = 0;
        int top = 0;
        int limit = 0;
        qreal dpr = 0;
        int lift = 0;
        bool known = false;
    };
    double textwidth(const QWidget *field, const QString &text) const;
    double textheight(const QWidget *field, const QString &text) const;
    qreal pixelratio() const;
    double twipwidth() const;
    double twipheight() const;
    void settwipsize(double width, double height);
    QRectF twiprect(const QWidget *child) const;
    void fontchanged();
    void closingsteps(const QString &name);
    void updateaccessibility();
    void announcevalue();
    void announce(const QString &text);
    void announcerefusal(const QLineEdit *field, const QString &typed);
    QString spokenvalue() const;
    QString accessiblelabel() const;
    static QAccessibleInterface *accessiblefactory(const QString &classname, QObject *object);
    class accessibleinterface;
    class accessiblefield;
    class accessibleannouncement;
    void paintseparator(QPainter &painter) const;

    // Keys and mouse on the fields and the grip, seen through eventFilter; true when consumed
    bool filterevent(QObject *watched, QEvent *event);
    void pressed(QMouseEvent *event);
    bool childmouseevent(QObject *watched, QEvent *event);

    // Child fields
    QLineEdit *wholepart = nullptr;
    QLineEdit *numerator = nullptr;
    QLineEdit *denominator = nullptr;
    QWidget *lblgrip = nullptr;

    // Value
    QString m_wholepart;
    QString m_numerator;
    QString m_denominator;
    bool m_forcesign = false;
    bool m_autoreplace = false;
    fractiontype m_fractype = fracnumeric;
    bool m_reapplying = false;
    int m_valuedepth = 0;
    QStringList m_valuebefore;

    // Appearance
    bool m_fractionslash = true;
    quint32 m_backcolor = 0xFFFFFF;
    bool m_userresizeable = false;
    fracBorderstyle m_borderstyle = borderstylenone;
    quint32 m_negforecolor = 0x0000FF;
    quint32 m_posforecolor = 0;
    quint32 m_wholepartbackcolor = 0xFFFFFF;
    quint32 m_numeratorbackcolor = 0xFFFFFF;
    quint32 m_denominatorbackcolor = 0xFFFFFF;
    QFont m_font;
    bool m_fontbuilt = false;
    bool m_fracpartvisible = true;
    quint32 m_shownforecolor = 0;
    bool m_styledfields = false;
    qint64 m_surfacekey = 0;
    QRgb m_surfaceink = 0;
    bool m_fontisambient = false;
    bool m_adoptingfont = false;

    // Text entry
    QVariant m_wholeallowedchars;
    QVariant m_numerallowedchars;
    QVariant m_denomallowedchars;
    QSet<QString> m_wholemembers;
    QSet<QString> m_numermembers;
    QSet<QString> m_denommembers;
    bool m_wholepartlocked = false;
    bool m_numeratorlocked = false;
    bool m_denominatorlocked = false;
    qint16 lastselstart = 0;
    int m_movedbykey = 0;
    bool m_keyedits = true;
    bool m_keyselects = false;
    bool m_announcepending = false;
    QString m_announcedwords;
    QObject *m_announcer = nullptr;
    QString m_announcement;
    bool m_fieldtextsdeferred = false;
    quint8 m_editswatched = 0;

    // Layout state, in twips
    double gapx = 30;
    double gapy = 30;
    double lastwidth = 0;
    double lastheight = 0;
    bool startingup = true;
    bool inresize = false;
    bool m_initializing = false;
    double m_tpx = 15;
    double m_tpy = 15;
    qreal m_startratio = 0;
    std::optional<QFont> m_startfont;
    bool m_zoomingstart = false;
    QSize m_hintedsize;
    std::optional<layoutstate> m_lastlayout;
    double m_separatoroffset = 0;
    arrangement m_arranged;
    liftinputs m_lastlift;
    // The parts' sizes that the layout computed and gives them where it places them (invalid: none).
    std::array<QSize, 4> m_pendingsizes;

    // The error of the last failing call
    int m_errornumber = 0;
    QString m_errordescription;

    // Window and grip drag
    QPointer<QObject> m_container;
    bool m_griptracking = false;
    QPoint m_gripstart;
    QSize m_gripstartsize;
    bool m_wholepartdoubleclick = false;
};

} // namespace kelfractionint
