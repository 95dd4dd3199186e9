// Every digit whole: at every size, with slash or bar, border or none, each field's ink in the
// control's picture is the whole ink of its text drawn alone, clear of the separator and edges.
#include "fractioni.h"
#include "testsupport.h"

#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QTest>

using kelfractionint::fractioni;

namespace {

struct inkrows
{
    int first = -1;
    int count = 0;
};

bool inked(const QImage &image, int x, int y)
{
    return qGray(image.pixel(x, y)) < 235;
}

// The first block of rows with ink in columns [left, right), going down from \a from or up.
inkrows block(const QImage &image, int left, int right, int from, int to, int step)
{
    inkrows rows;
    for (int y = from; y != to; y += step) {
        bool any = false;
        for (int x = left; x < right && !any; ++x)
            any = inked(image, x, y);
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

} // namespace

class tst_fractioniink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); }
    void everydigitwhole_data();
    void everydigitwhole();
};

void tst_fractioniink::everydigitwhole_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<bool>("slash");
    QTest::addColumn<int>("border");
    QTest::addColumn<QStringList>("record");
    const QList<QStringList> records{{"4", "1", "7"},         {"-12", "3", "145"}, {"", "12345", "6"},
                                     {"-", "35", "89"},       {"2", "12", "5"},    {"9", "69", "38"}};
    for (int points : {8, 9, 10, 12, 16, 24, 28, 40}) {
        for (int border : {0, 1}) {
            for (bool slash : {true, false}) {
                for (const QStringList &record : records) {
                    QTest::addRow("%d pt %s border %d %s", points, slash ? "slash" : "bar", border,
                                  qPrintable(record.join(QLatin1Char(' '))))
                        << points << slash << border << record;
                }
            }
        }
    }
}

void tst_fractioniink::everydigitwhole()
{
    QFETCH(int, points);
    QFETCH(bool, slash);
    QFETCH(int, border);
    QFETCH(QStringList, record);
    QWidget window;
    auto *control = new fractioni(&window);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    // Black on white, as the reference is drawn: antialiasing over another colour inks more pixels.
    control->setNegforecolor(0);
    control->setBackcolor(0xFFFFFF);
    control->setWholepartbackcolor(0xFFFFFF);
    control->setNumeratorbackcolor(0xFFFFFF);
    control->setDenominatorbackcolor(0xFFFFFF);
    control->setFractionslash(slash);
    control->setBorderstyle(fractioni::fracBorderstyle(border));
    QFont font = control->Font();
    font.setPointSize(points);
    control->setFont(font);
    control->loadfraction(record);
    control->Refreshfraction();
    // No field's caret in the picture.
    if (QWidget *focused = QApplication::focusWidget())
        focused->clearFocus();

    const QImage picture = control->Picture().toImage();
    const qreal dpr = picture.devicePixelRatio();
    QCOMPARE(picture.size(), control->size() * dpr);
    const int edge = int(border * dpr);
    const int height = picture.height();
    for (const char *name : {"wholepart", "numerator", "denominator"}) {
        const auto *field = control->findChild<QLineEdit *>(QLatin1String(name));
        if (field->isHidden() || field->text().isEmpty())
            continue;
        // The columns of this field's text that no other field's text shares (with a border the
        // whole part and the fraction overlap by a gap).
        const QFontMetrics metrics(field->font());
        const auto *whole = control->findChild<QLineEdit *>(QStringLiteral("wholepart"));
        const auto *numer = control->findChild<QLineEdit *>(QStringLiteral("numerator"));
        const auto *denom = control->findChild<QLineEdit *>(QStringLiteral("denominator"));
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
        const bool fromtop = qstrcmp(name, "denominator") != 0;
        const inkrows ink = fromtop ? block(picture, left, right, edge, height - edge, 1)
                                    : block(picture, left, right, height - 1 - edge, edge - 1, -1);
        const int origin = int(field->x() * dpr);
        const int alone = referenceheight(field, left - origin, right - origin);
        QVERIFY2(ink.count == alone, qPrintable(QStringLiteral("%1 \"%2\": %3 rows of ink, %4 when drawn alone")
                                                    .arg(QLatin1String(name), field->text())
                                                    .arg(ink.count)
                                                    .arg(alone)));
    }
}

QTEST_MAIN(tst_fractioniink)
#include "tst_fractioniink.moc"
