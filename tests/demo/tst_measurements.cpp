// Fractions in a table: the delegate's painting, editing through the keyboard, and a 100,000-row
// model that opens without touching every row.
#include "fractiondelegate.h"
#include "fractioni.h"
#include "hostnumbers.h"
#include "measurements.h"

#include <QApplication>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QSet>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>

using kelfractionint::fractiondelegate;
using kelfractionint::fractioni;

namespace {

// Counts the rows whose data a view asks for.
class rowcounter : public QIdentityProxyModel
{
public:
    QVariant data(const QModelIndex &index, int role) const override
    {
        rows.insert(index.row());
        return QIdentityProxyModel::data(index, role);
    }
    mutable QSet<int> rows;
};

// Pixels near \a color, and the longest horizontal run of dark or red ink.
std::pair<int, int> ink(const QImage &image, const QColor &color)
{
    int count = 0, widest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0, run = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            count += std::abs(pixel.red() - color.red()) + std::abs(pixel.green() - color.green())
                         + std::abs(pixel.blue() - color.blue()) < 60;
            run = qGray(pixel.rgb()) < 200 || (pixel.red() > 200 && pixel.green() < 80) ? run + 1 : 0;
            widest = std::max(widest, run);
        }
    }
    return {count, widest};
}

} // namespace

class tst_measurements : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale::c());
        modfracglobal::setnumberlocale({".", ","});
    }
    void painting_data();
    void painting();
    void editing_data();
    void editing();
    void largemodelopensquickly();
    void picture();
};

void tst_measurements::painting_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("slash");
    QTest::addColumn<bool>("fraction");
    QTest::addColumn<QColor>("color");
    QTest::newRow("three texts, slash") << QVariant(QStringList{"4", "1", "7"}) << true << true << QColor(Qt::black);
    QTest::newRow("negative text, bar") << QVariant(QStringLiteral("-1 12/35")) << false << true << QColor(Qt::red);
    QTest::newRow("text that is no fraction") << QVariant(QStringLiteral("1.5 in")) << true << false
                                              << QColor(Qt::black);
}

void tst_measurements::painting()
{
    QFETCH(QVariant, value);
    QFETCH(bool, slash);
    QFETCH(bool, fraction);
    QFETCH(QColor, color);
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), value, value.typeId() == QMetaType::QStringList ? Qt::EditRole : Qt::DisplayRole);
    fractiondelegate delegate;
    delegate.setFractionslash(slash);
    QCOMPARE(fractiondelegate::fractionof(model.index(0, 0)).has_value(), fraction);
    QStyleOptionViewItem option;
    option.rect = QRect(QPoint(0, 0), delegate.sizeHint(option, model.index(0, 0)) + QSize(10, 10));
    option.palette.setColor(QPalette::Text, Qt::black);
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        delegate.paint(&painter, option, model.index(0, 0));
    }
    const auto [count, widest] = ink(image, color);
    QVERIFY(count > 10);
    // The separator: a bar is one full row of ink across the fraction, a slash is not.
    if (fraction)
        QCOMPARE(widest > QFontMetrics(option.font).horizontalAdvance(QStringLiteral("3")) + 2, !slash);
}

void tst_measurements::editing_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("end");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("row");
    QTest::newRow("Enter commits") << "3 1/8" << int(Qt::Key_Return) << "3 1/8" << 0;
    QTest::newRow("Escape cancels") << "3 1/8" << int(Qt::Key_Escape) << "" << 0;
    QTest::newRow("Tab commits and moves on") << "5" << int(Qt::Key_Tab) << "5 2/4" << 0;
}

void tst_measurements::editing()
{
    QFETCH(QString, keys);
    QFETCH(int, end);
    QFETCH(QString, value);
    QFETCH(int, row);
    kelfractionint::measurementspage page(20);
    page.resize(500, 400);
    page.show();
    page.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    QTableView *table = page.table();
    const QModelIndex cell = page.model()->index(row, 0);
    const QString before = cell.data(Qt::DisplayRole).toString();
    table->setCurrentIndex(cell);
    table->setFocus();
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_F2);
    auto *editor = table->findChild<fractioni *>();
    QVERIFY(editor);
    // F2 puts the caret in the editor's first part; typing over it replaces part by part.
    QTRY_COMPARE(QApplication::focusWidget(), editor->findChild<QLineEdit *>(QStringLiteral("wholepart")));
    editor->findChild<QLineEdit *>(QStringLiteral("wholepart"))->selectAll();
    for (const QChar c : keys)
        QTest::keyClick(static_cast<QWidget *>(nullptr), c.toLatin1());
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key(end));
    QTRY_VERIFY(!table->findChild<fractioni *>() || !table->findChild<fractioni *>()->isVisible());
    QCOMPARE(cell.data(Qt::DisplayRole).toString(), value.isEmpty() ? before : value);
    if (end == Qt::Key_Tab)
        QCOMPARE(table->currentIndex(), page.model()->index(row, 1));
    if (!value.isEmpty())
        QVERIFY(page.findChild<QLabel *>(QStringLiteral("total"))->text().startsWith(QLatin1String("Total: ")));
}

void tst_measurements::largemodelopensquickly()
{
    kelfractionint::measurementmodel model(100000);
    rowcounter counter;
    counter.setSourceModel(&model);
    QTableView table;
    table.setItemDelegate(new fractiondelegate(&table));
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.setModel(&counter);
    table.resize(800, 600);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    // Only the rows on the screen are read.
    QVERIFY2(counter.rows.size() < 200, qPrintable(QString::number(counter.rows.size())));
    QCOMPARE(model.rowCount(), 100000);
}

void tst_measurements::picture()
{
    const QString dir = qEnvironmentVariable("KEL_PICTURE_DIR");
    if (dir.isEmpty())
        QSKIP("KEL_PICTURE_DIR names the folder for the picture");
    kelfractionint::measurementspage page;
    page.resize(520, 420);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    page.table()->selectRow(2);
    QVERIFY(page.grab().save(dir + QStringLiteral("/table.png")));
}

QTEST_MAIN(tst_measurements)
#include "tst_measurements.moc"
