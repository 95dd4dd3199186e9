// Layout of the fraction control: field sizes and positions and the control's own size against
// the layout formulas (computed in twips, applied in pixels), its size in a Qt layout, the
// separator as painted, and every digit whole: at every size, with slash or bar, border or none,
// each field's ink in the control's picture is the whole ink of its text drawn alone.
#include "messageboxsink.h"
#include "testsupport.h"
#include "twips.h"

#include <QGridLayout>
#include <QImage>
#include <QLabel>

#include <cmath>

using kelfractionint::fractioni;
using testsupport::field;
using step = std::function<void(fractioni &)>;
struct drawn { int points; bool slash; int border; QStringList record; };
Q_DECLARE_METATYPE(step)
Q_DECLARE_METATYPE(drawn)

namespace {

struct inkrows { int first = -1, count = 0; };

// The first block of rows with ink in columns [left, right), going down from \a from or up.
inkrows block(const QImage &image, int left, int right, int from, int to, int step)
{
    inkrows rows;
    for (int y = from; y != to; y += step) {
        bool any = false;
        for (int x = left; x < right && !any; ++x)
            any = qGray(image.pixel(x, y)) < 235;
        if (any) {
            rows.first = rows.first < 0 ? y : rows.first;
            ++rows.count;
        } else if (rows.count > 0) {
            break;
        }
    }
    return rows;
}

// The height in device pixels of the ink of \a field's text drawn alone, in a field of its own
// of the same height and margins, in the same device columns [left, right) of the field.
int referenceheight(const QLineEdit *field, int left, int right)
{
    QLineEdit alone;
    alone.setFrame(false);
    alone.setFont(field->font());
    alone.setText(field->text());
    alone.setTextMargins(field->textMargins());
    alone.resize(QFontMetrics(field->font()).horizontalAdvance(field->text()) + 20, field->height());
    QPalette palette = alone.palette();
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    alone.setPalette(palette);
    const QImage image = alone.grab().toImage();
    return block(image, std::max(0, left), std::min(image.width(), right), 0, image.height(), 1).count;
}

int px(double pixels) { return int(std::lround(pixels)); }

} // namespace

class tst_fractionilayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); }

    void geometry_data()
    {
        QTest::addColumn<QStringList>("record");
        QTest::addColumn<int>("frame"); // 0 none, 1 a border, 2 a border and the grip

        // A record without numerator and denominator hides the fraction part.
        QTest::newRow("narrower numerator shifts the numerator") << QStringList{"3", "1", "12"} << 0;
        QTest::newRow("wider numerator shifts the denominator") << QStringList{"-2", "123", "4"} << 1;
        QTest::newRow("equal lengths give no shift") << QStringList{"2", "11", "88"} << 0;
        QTest::newRow("hidden whole part centres the fraction") << QStringList{"", "1", "12"} << 0;
        QTest::newRow("hidden whole part with border") << QStringList{"", "123", "4"} << 1;
        QTest::newRow("hidden fraction part") << QStringList{"15", "", ""} << 0;
        QTest::newRow("grip counts in the width") << QStringList{"4", "1", "7"} << 2;
    }

    void geometry()
    {
        QFETCH(QStringList, record);
        QFETCH(int, frame);

        testsupport::form s;
        QVERIFY(s.show());
        fractioni &c = *s.control;
        c.setBorderstyle(fractioni::fracBorderstyle(frame > 0));
        c.setUserresizeable(frame == 2);
        c.setFracpartvisible(!record.at(1).isEmpty());
        c.loadfraction(record);
        c.Refreshfraction();

        QLineEdit *whole = s.field("wholepart"), *numer = s.field("numerator"), *denom = s.field("denominator");
        QWidget *lblgrip = field<QWidget>(&c, "lblgrip");

        // Sizes: each field exactly as large as its text, the two fraction fields share the wider width.
        const QFontMetricsF metrics(whole->font());
        QCOMPARE(whole->width(), px(metrics.horizontalAdvance(c.Wholepartvalue())));
        QCOMPARE(whole->height(), px(metrics.height()));
        const double fracwidth = std::max(metrics.horizontalAdvance(c.Numeratorvalue()),
                                          metrics.horizontalAdvance(c.Denominatorvalue()));
        QCOMPARE(numer->width(), px(fracwidth));
        QCOMPARE(denom->width(), px(fracwidth));

        // The control: gaps of two pixels, the visible children and the centring offset.
        const double gap = 2, B = frame > 0;
        const double d = c.Numeratorvalue().size() == c.Denominatorvalue().size() ? 0
            : (metrics.horizontalAdvance(c.Numeratorvalue()) - metrics.horizontalAdvance(c.Denominatorvalue())) / 2;
        const double width = (2 * B + 3) * gap + (numer->isHidden() ? 0 : numer->width())
                           + (whole->isHidden() ? 0 : whole->width()) + (lblgrip->isHidden() ? 0 : lblgrip->width()) + std::abs(d);
        QCOMPARE(c.width(), px(width));
        QCOMPARE(c.height(), px(2 * B * gap + 2 * whole->height()));

        // Positions, which painting restores whatever moved the fields.
        numer->move(0, 0);
        denom->move(0, 0);
        c.repaint();
        const double W = c.width(), H = c.height();
        QCOMPARE(whole->pos(), QPoint(px((B + 1) * gap), px(H / 4)));
        if (!whole->isHidden()) {
            const double left = gap + whole->width();
            QCOMPARE(numer->pos(), QPoint(px(d >= 0 ? left : left - d), px(H / 8)));
            QCOMPARE(denom->pos(), QPoint(px(d >= 0 ? left + d : left), px(5 * H / 8)));
        } else {
            const double centre = (W - numer->width()) / 2;
            QCOMPARE(numer->x(), px(d >= 0 ? centre : centre - d));
            QCOMPARE(denom->x(), px(d >= 0 ? centre + d : centre));
            QCOMPARE(numer->y(), px(whole->y() - numer->height() / 2.0));
            QCOMPARE(denom->y(), px(whole->y() + whole->height() - denom->height() / 2.0));
        }
        QCOMPARE(lblgrip->pos(), QPoint(px(W - lblgrip->width() - B * gap), px(H - lblgrip->height() - B * gap)));
    }

    void emptycontrol()
    {
        testsupport::form s;
        QVERIFY(s.show());
        s.control->clearfraction();
        QCOMPARE(s.control->width(), kelfractionint::twipstopixels(600, kelfractionint::twipsperpixelx(s.control)));
        QTRY_VERIFY(s.field("wholepart")->hasFocus()); // shown, with the focus
    }

    void inlayout_data()
    {
        QTest::addColumn<step>("change");
        QTest::newRow("enlarged font") << step([](fractioni &c) { c.setFont(QFont(c.Font().family(), 2 * c.Font().pointSize())); });
        QTest::newRow("grown value") << step([](fractioni &c) { c.loadfraction(QStringList{"-1234", "56", "789"}); });
    }

    // A control in a grid cell at first wider than itself gets the size that it computed for
    // itself, also after it has grown, and the layout's stale size never reaches it as a zoom.
    void inlayout()
    {
        QFETCH(step, change);
        QWidget window;
        auto *control = new fractioni(&window);
        auto *layout = new QGridLayout(&window);
        layout->addWidget(new QLabel(QStringLiteral("x ="), &window), 0, 0);
        layout->addWidget(control, 0, 1);
        layout->addWidget(new QLabel(QStringLiteral("below"), &window), 1, 1);
        QVERIFY(testsupport::shown(&window));
        const QSize before = control->size();

        // The same change on a shown control of its own, outside any layout, gives the size to expect.
        fractioni reference;
        QVERIFY(testsupport::shown(&reference));
        change(*control);
        change(reference);
        QVERIFY(reference.width() > before.width());
        QTRY_COMPARE(control->size(), reference.size());
        // A second round of the layout changes nothing.
        layout->activate();
        QCoreApplication::processEvents();
        QCOMPARE(control->size(), reference.size());
        QCOMPARE(control->Font(), reference.Font());
    }

    void separator_data()
    {
        QTest::addColumn<bool>("slash");
        QTest::addColumn<QStringList>("record");

        QTest::newRow("bar under 3") << false << QStringList{"", "3", "8"};
        QTest::newRow("bar under a narrower numerator") << false << QStringList{"-1", "1", "16"};
        QTest::newRow("slash") << true << QStringList{"2", "3", "8"};
        QTest::newRow("slash under a wider numerator") << true << QStringList{"", "125", "8"};
    }

    void separator()
    {
        QFETCH(bool, slash);
        QFETCH(QStringList, record);

        testsupport::form s;
        QVERIFY(s.show());
        fractioni &c = *s.control;
        c.setBackcolor(0xFFFFFF);
        c.setPosforecolor(0x00C000);
        c.setNegforecolor(0x00C000);
        c.setFractionslash(slash);
        c.setFont(QFont(c.Font().family(), 28));
        c.loadfraction(record);
        c.Refreshfraction();

        const QImage image = c.grab().toImage();
        QLineEdit *numer = s.field("numerator");
        QLineEdit *denom = s.field("denominator");
        const QFontMetrics metrics(numer->font());
        const int top = numer->y() + metrics.ascent() + 1;
        const int bottom = denom->y() + metrics.ascent() - metrics.capHeight() - denom->textMargins().bottom() - 1;
        const int left = std::min(numer->x(), denom->x());
        const int right = std::max(numer->x(), denom->x()) + numer->width();
        auto inked = [&image](int x, int y) {
            const QColor pixel = image.pixelColor(x, y);
            return pixel.green() - std::max(pixel.red(), pixel.blue()) > 60;
        };
        QList<int> rows;
        QList<double> centres;
        for (int y = top; y <= bottom; ++y) {
            int count = 0;
            double sum = 0;
            for (int x = left; x < right; ++x)
                inked(x, y) && (++count, sum += x);
            if (count > 0)
                rows.append(count), centres.append(sum / count);
        }
        QVERIFY2(!rows.isEmpty(), "no separator between the fields");
        if (!slash) {
            // One bar of at most two rows across the field; the digits' antialiased edges may show.
            const auto across = std::count_if(rows.begin(), rows.end(), [&](int n) { return n >= numer->width() - 2; });
            QVERIFY(across >= 1 && across <= 2);
        } else {
            // Lower left to upper right: the ink moves left as the rows go down.
            QVERIFY(rows.size() >= 3);
            QVERIFY(centres.first() > centres.last());
        }
    }

    void everydigitwhole_data()
    {
        QTest::addColumn<drawn>("row");
        const QList<QStringList> records{{"4", "1", "7"},         {"-12", "3", "145"}, {"", "12345", "6"},
                                         {"-", "35", "89"},       {"2", "12", "5"},    {"9", "69", "38"}};
        for (int points : {8, 9, 10, 12, 16, 24, 28, 40}) {
            for (int border : {0, 1}) {
                for (bool slash : {true, false}) {
                    for (const QStringList &record : records) {
                        QTest::addRow("%d pt %s border %d %s", points, slash ? "slash" : "bar", border,
                                      qPrintable(record.join(QLatin1Char(' ')))) << drawn{points, slash, border, record};
                    }
                }
            }
        }
    }

    void everydigitwhole()
    {
        QFETCH(drawn, row);
        const auto &[points, slash, border, record] = row;
        QWidget window;
        window.resize(1000, 200);
        auto *control = new fractioni(&window);
        QVERIFY(testsupport::shown(&window));
        // Black on white, as the reference is drawn: antialiasing over another colour inks more pixels.
        control->setNegforecolor(0);
        for (const char *name : {"Backcolor", "Wholepartbackcolor", "Numeratorbackcolor", "Denominatorbackcolor"})
            control->setProperty(name, 0xFFFFFFu);
        control->setFractionslash(slash);
        control->setBorderstyle(fractioni::fracBorderstyle(border));
        control->setFont(QFont(control->Font().family(), points));
        control->loadfraction(record);
        control->Refreshfraction();
        // No field's caret in the picture.
        if (QWidget *focused = QApplication::focusWidget())
            focused->clearFocus();

        const QImage picture = control->Picture().toImage();
        const qreal dpr = picture.devicePixelRatio();
        const int edge = int(border * dpr);
        const QLineEdit *whole = field(control, "wholepart"), *numer = field(control, "numerator"),
                        *denom = field(control, "denominator");
        for (const QLineEdit *field : {whole, numer, denom}) {
            if (field->isHidden() || field->text().isEmpty())
                continue;
            // The columns of this field's text that no other field's text shares (with a border the
            // whole part and the fraction overlap by a gap).
            const QFontMetrics metrics(field->font());
            int left = field->x();
            int right = field->x() + std::min(metrics.horizontalAdvance(field->text()), field->width());
            if (field == whole && !numer->isHidden())
                right = std::min({right, numer->x(), denom->x()});
            else if (field != whole && !whole->isHidden())
                left = std::max(left, whole->x() + metrics.horizontalAdvance(whole->text()));
            // A device pixel off where two fields meet: at fractional advances a glyph may reach its
            // neighbour's first column.
            const bool sharedleft = field != whole && !whole->isHidden();
            const bool sharedright = field == whole && !numer->isHidden();
            left = std::max(edge, int(left * dpr) + (sharedleft ? 1 : 0));
            right = std::min(picture.width() - edge, int(right * dpr) - (sharedright ? 1 : 0));
            const bool fromtop = field != denom;
            const inkrows ink = fromtop ? block(picture, left, right, edge, picture.height() - edge, 1)
                                        : block(picture, left, right, picture.height() - 1 - edge, edge - 1, -1);
            const int origin = int(field->x() * dpr);
            const int alone = referenceheight(field, left - origin, right - origin);
            QVERIFY2(ink.count == alone, qPrintable(QStringLiteral("%1 \"%2\": %3 rows of ink, %4 when drawn alone")
                                                        .arg(field->objectName(), field->text()).arg(ink.count).arg(alone)));
        }
        // Without a border the last device row stays clear: a digit touching the edge looks cut off.
        for (int x = 0; border == 0 && x < picture.width(); ++x)
            QCOMPARE(picture.pixelColor(x, picture.height() - 1), QColor(Qt::white));
    }

private:
    kelfractionint::messagecapture m_messages;
};

QTEST_MAIN(tst_fractionilayout)
#include "tst_fractionilayout.moc"
