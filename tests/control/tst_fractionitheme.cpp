// The control in an application built the way real ones are: a dark theme, an application font,
// style sheets, right to left, Qt's bindings and item views.
#include "fractiondelegate.h"
#include "olecolor.h"
#include "testsupport.h"

#include <QDataWidgetMapper>
#include <QHBoxLayout>
#include <QPainter>
#include <QStandardItemModel>
#include <QTableView>

#include <cmath>

using kelfractionint::fractiondelegate;
using kelfractionint::fractioni;
using testsupport::rec;
namespace olecolor = kelfractionint::olecolor;
using action = std::function<void(fractioni &)>;
Q_DECLARE_METATYPE(action)

namespace {

// The pixels clearly apart from the corner's colour, their box and the strongest of them.
struct inked
{
    QList<QPoint> points;
    QRect box;
    QColor strongest;
    explicit inked(const QImage &image)
    {
        const QColor back = strongest = image.pixelColor(0, 0);
        const auto distance = [](const QColor &a, const QColor &b) {
            return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
        };
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (const QColor c = image.pixelColor(x, y); distance(c, back) > 96) {
                    points << QPoint(x, y);
                    box |= QRect(x, y, 1, 1);
                    strongest = distance(c, back) > distance(strongest, back) ? c : strongest;
                }
    }
};

} // namespace

class tst_fractionitheme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testsupport::pinlocale(); }

    // A control given each setting, and one made alone under it and put into the form's layout,
    // against a control on a plain form with the same font: the same digits (whole, as the layout
    // test shows there), on the form's colour, in the sign's colour, readable.
    void looks_data()
    {
        QTest::addColumn<action>("setting");
        QTest::newRow("dark palette") << action([](fractioni &) { QApplication::setPalette(QPalette(QColor(40, 40, 40), QColor(40, 40, 40))); });
        QTest::newRow("line edit style sheet") << action([](fractioni &) {
            qApp->setStyleSheet("QLineEdit { border: 1px solid gray; padding: 2px; color: green; background: white }");
        });
        for (int points : {8, 20})
            QTest::addRow("%d pt application font", points) << action([points](fractioni &) { QApplication::setFont(QFont("Sans", points)); });
        QTest::newRow("right to left") << action([](fractioni &) { QApplication::setLayoutDirection(Qt::RightToLeft); });
        QTest::newRow("QWidget::setFont") << action([](fractioni &c) { static_cast<QWidget &>(c).setFont(QFont("Sans", 22)); });
        QTest::newRow("form's style sheet font") << action([](fractioni &c) { c.parentWidget()->setStyleSheet("font-size: 24pt"); });
    }

    void looks()
    {
        QFETCH(action, setting);
        const QFont appfont = QApplication::font();
        const QPalette apppalette = QApplication::palette();
        const auto reset = [&] {
            qApp->setStyleSheet({});
            QApplication::setFont(appfont);
            QApplication::setPalette(apppalette);
            QApplication::setLayoutDirection(Qt::LeftToRight);
        };
        const auto restore = qScopeGuard(reset);
        for (const QStringList &record : {rec("-4 5 6"), rec("12 3 145")}) {
            QList<std::pair<QImage, QFont>> pictures;
            for (int plain = 0; plain <= 2; ++plain) {
                QWidget form;
                auto *control = new fractioni(&form);
                if (plain)
                    control->setFont(pictures.at(plain - 1).second);
                else
                    setting(*control);
                const QList<fractioni *> controls = plain ? QList{control} : QList{control, new fractioni};
                (new QHBoxLayout(&form))->addWidget(controls.last());
                for (fractioni *each : controls) {
                    each->setPosforecolor(olecolor::windowtext);
                    each->loadfraction(record);
                }
                form.show();
                QApplication::processEvents();
                // No caret in the pictures: it blinks.
                if (QWidget *focused = QApplication::focusWidget())
                    focused->clearFocus();
                for (fractioni *each : controls) {
                    pictures.append({each->Picture().toImage(), each->Font()});
                    const inked ink(pictures.last().first);
                    const QColor back = form.palette().color(QPalette::Window);
                    QCOMPARE(pictures.last().first.pixelColor(0, 0), back);
                    QCOMPARE(ink.strongest, olecolor::toqcolor(record[0] == "-4" ? 255 : olecolor::windowtext, form.palette()));
                    const auto luminance = [](const QColor &c) { return 0.2126 * c.redF() * c.redF() + 0.7152 * c.greenF() * c.greenF() + 0.0722 * c.blueF() * c.blueF() + 0.05; };
                    QVERIFY(std::max(luminance(ink.strongest), luminance(back)) >= 3 * std::min(luminance(ink.strongest), luminance(back)));
                }
                if (!plain)
                    reset();
            }
            for (int themed : {0, 1}) {
                const QImage &picture = pictures.at(themed).first, &reference = pictures.at(themed + 2).first;
                const inked a(picture), b(reference);
                QCOMPARE(picture.size(), reference.size());
                // Antialiased edges ink differently on another background; the digits stay.
                QVERIFY(picture.pixelColor(0, 0) != reference.pixelColor(0, 0) || a.points == b.points);
                QVERIFY(std::abs(a.points.size() - b.points.size()) <= b.points.size() / 10 && a.box == b.box);
            }
        }
    }

    // What a repaint shows is what drawing the control shows, while the sign's colour changes and
    // the separator stays where it was: separators drawn once and copied look drawn each time.
    void screen()
    {
        for (bool slash : {true, false}) {
            testsupport::form form;
            QVERIFY(form.show());
            form.control->setFractionslash(slash);
            form.field("wholepart")->clearFocus();
            for (const QStringList &record : {rec("-4 1 7"), rec("4 1 7"), rec("-4 1 7")}) {
                form.control->loadfraction(record);
                const QImage shown = testsupport::onscreen(form.control);
                QVERIFY(!shown.isNull());
                // Into an image the separator cannot be copied to: drawn as a line every time.
                QImage drawn(shown.size(), QImage::Format_ARGB32);
                drawn.setDevicePixelRatio(shown.devicePixelRatio());
                form.control->render(&drawn);
                QCOMPARE(shown, drawn.convertToFormat(QImage::Format_RGB32));
            }
        }
    }

    void valuechanged_data()
    {
        QTest::addColumn<action>("act");
        QTest::addColumn<QStringList>("changes");
        const auto row = [](const char *name, action act, const QStringList &changes) { QTest::newRow(name) << act << changes; };
        row("the same value again", [](fractioni &c) { c.setNumeratorvalue("1"); }, {});
        row("a change of sign", [](fractioni &c) { c.changesign(); }, {"-4 1/7"});
        row("a conversion that replaces", [](fractioni &c) { c.setAutoreplace(true); c.mixedtofrac(); }, {"29/7"});
        row("a listener changing the value again", [](fractioni &c) {
            QObject::connect(&c, &fractioni::fractionvaluechanged, &c, [&c] { c.setDenominatorvalue("9"); }, Qt::SingleShotConnection);
            c.setNumeratorvalue("5");
        }, {"4 5/9"});
        row("typing a digit", [](fractioni &c) { QTest::keyClicks(testsupport::field(&c, "numerator"), "3"); }, {"4 13/7"});
        row("the property", [](fractioni &c) { c.setProperty("value", "2/3"); c.setValue("no fraction"); }, {"2/3"});
    }

    void valuechanged()
    {
        QFETCH(action, act);
        QFETCH(QStringList, changes);
        fractioni control;
        QSignalSpy spy(&control, &fractioni::valueChanged);
        act(control);
        QCOMPARE(testsupport::events(spy), QList<QStringList>(changes.cbegin(), changes.cend()));
    }

    // QDataWidgetMapper binds a column; the edit ends on Enter and when the focus leaves the control.
    void mapper()
    {
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), QStringLiteral("-1 2/3"));
        testsupport::form form;
        auto *other = new QLineEdit(&form.window);
        QDataWidgetMapper mapper;
        mapper.setModel(&model);
        mapper.addMapping(form.control, 0);
        mapper.toFirst();
        QVERIFY(form.show());
        QSignalSpy finished(form.control, &fractioni::editingFinished);
        form.field("numerator")->setFocus();
        form.field("denominator")->setFocus();
        QTest::keyClick(form.field("denominator"), Qt::Key_Enter);
        form.control->setNumeratorvalue("1");
        other->setFocus();
        QCOMPARE(finished.count(), 2);
        QCOMPARE(model.data(model.index(0, 0)).toString(), QStringLiteral("-1 1/3"));
    }

    // The editor covers its cell in the cell's colour and gives the cell back in its own form. A
    // cell is painted in its sign's colour, with a bar (one row of ink across the fraction) or a
    // slash, and a right-to-left view shows "-1 12/35" as numbers are written, at the cell's right;
    // a text that is no fraction is painted as it stands.
    void delegate_data()
    {
        QTest::addColumn<QVariant>("held");
        QTest::addColumn<QVariant>("written");
        QTest::addColumn<bool>("slash");
        QTest::newRow("negative text, bar") << QVariant(QStringLiteral("-1 12/35")) << QVariant(QStringLiteral("-2 1/4")) << false;
        QTest::newRow("three texts, slash") << QVariant(rec("4 12 35")) << QVariant(rec("-2 1 4")) << true;
    }

    void delegate()
    {
        QFETCH(QVariant, held);
        QFETCH(QVariant, written);
        QFETCH(bool, slash);
        QTest::failOnWarning(QRegularExpression(QStringLiteral("editor")));
        QStandardItemModel model(2, 1);
        model.setData(model.index(0, 0), held);
        model.setData(model.index(1, 0), QStringLiteral("1.5 in"));
        QTableView view;
        auto *delegate = new fractiondelegate(&view);
        delegate->setFractionslash(slash);
        view.setItemDelegate(delegate);
        view.setModel(&model);
        QImage cells[3]; // left to right, right to left, and the text that is no fraction
        for (int i = 0; i < 3; ++i) {
            QStyleOptionViewItem option;
            option.rect = QRect(0, 0, 160, 40);
            option.direction = i == 1 ? Qt::RightToLeft : Qt::LeftToRight;
            option.palette.setColor(QPalette::Text, Qt::black);
            cells[i] = QImage(option.rect.size(), QImage::Format_RGB32);
            cells[i].fill(Qt::white);
            QPainter painter(&cells[i]);
            painter.setLayoutDirection(option.direction);
            delegate->paint(&painter, option, model.index(i / 2, 0));
        }
        const inked ink(cells[0]), mirrored(cells[1]), text(cells[2]);
        QVERIFY(mirrored.box.left() > ink.box.right());
        QCOMPARE(cells[1].copy(mirrored.box), cells[0].copy(ink.box));
        // Red ink for the negative text (the three texts are positive); the longest run of ink in a row.
        QCOMPARE(ink.strongest.red() - ink.strongest.green() > 100, held.toString().startsWith(u'-'));
        int widest = 0, run = 0;
        for (qsizetype i = 0; i < ink.points.size(); ++i)
            widest = std::max(widest, run = i > 0 && ink.points[i] == ink.points[i - 1] + QPoint(1, 0) ? run + 1 : 1);
        QCOMPARE(widest > view.fontMetrics().horizontalAdvance(QStringLiteral("3")) + 2, !slash);
        QVERIFY(!fractiondelegate::fractionof(model.index(1, 0)) && text.points.size() > 10);

        QVERIFY(testsupport::shown(&view, true));
        view.edit(model.index(0, 0));
        auto *editor = view.findChild<fractioni *>();
        QCOMPARE(editor->parentWidget()->geometry(), view.visualRect(model.index(0, 0)));
        QCOMPARE(editor->parentWidget()->palette().color(QPalette::Window), view.palette().color(QPalette::Base));
        editor->loadfraction(rec("-2 1 4"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(model.data(model.index(0, 0), Qt::EditRole), written);
    }
};

QTEST_MAIN(tst_fractionitheme)
#include "tst_fractionitheme.moc"
