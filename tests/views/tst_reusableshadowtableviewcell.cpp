#include "views/reusableshadowtableviewcell.h"

#include "resources/namedcolors.h"
#include "support/shots.h"
#include "views/cardshadow.h"
#include "views/roundedview.h"
#include "views/rowheights.h"
#include "views/viewgeometry.h"

#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace ravelin;
using namespace ravelin::test;

namespace {

QWidget *layer(const QWidget &cell, const QString &name)
{
    const QList<QWidget *> layers = cell.findChildren<QWidget *>(name);
    return layers.size() == 1 ? layers.constFirst() : nullptr;
}

} // namespace

// Rows measured, in order: (row, height).
using Measurements = QList<std::pair<int, int>>;

class tst_ReusableShadowTableViewCell : public QObject
{
    Q_OBJECT

private slots:
    void cellFollowsItsGeometryAndContent();
    void repeatedLayoutKeepsOneShadowOfEachKindUnderTheCard();
    void shadowLayersFollowTheCard();
    void imageShadowIsReplacedNotStacked();
    void settersSignalOnlyOnChange();
    void roundedViewPaintsTheCardAndSignalsChanges();
    void roundedBorder_data();
    void roundedBorder();
    void positionsFollowMeasurements_data();
    void positionsFollowMeasurements();
    void rowsComeAndGo();
    void cleanup() { NamedColors::setAppearance(Appearance::light); }
    void namedColours();
};

void tst_ReusableShadowTableViewCell::cellFollowsItsGeometryAndContent()
{
    ReusableShadowTableViewCell cell;
    cell.resize(320, 60);
    QCOMPARE(cell.fittedHeight(), int(ViewGeometry::defaultCellMinHeight));
    cell.resize(320, cell.fittedHeight());
    // A 2-pixel gap on every side, at any position.
    QCOMPARE(cell.cardFrame(), QRect(2, 2, 316, cell.height() - 4));
    QCOMPARE(ViewGeometry::cellFrame(QRectF(0, 100, 390, 75)), QRectF(2, 102, 386, 71));
    cell.show();
    QVERIFY(QTest::qWaitForWindowExposed(&cell));
    QCOMPARE(cell.contentView()->geometry(), cell.cardFrame());
    cell.hide();
    cell.setMinHeight(75);
    cell.resize(320, 60);
    QCOMPARE(cell.fittedHeight(), 75);

    // Tall content grows the cell.
    auto *layout = new QVBoxLayout(cell.contentView());
    layout->setContentsMargins(0, 0, 0, 0);
    auto *block = new QWidget(cell.contentView());
    block->setFixedHeight(150);
    layout->addWidget(block);
    QVERIFY(cell.fittedHeight(320) > 150);
    QCOMPARE(cell.sizeHint().height(), cell.fittedHeight(320));
}

void tst_ReusableShadowTableViewCell::repeatedLayoutKeepsOneShadowOfEachKindUnderTheCard()
{
    ReusableShadowTableViewCell cell;
    cell.resize(320, 100);
    cell.prepareForReuse();
    cell.resize(330, 110);
    cell.prepareForReuse();
    cell.show();
    QVERIFY(QTest::qWaitForWindowExposed(&cell));
    QWidget *dark = layer(cell, CardShadow::darkShadowName);
    QWidget *light = layer(cell, CardShadow::lightShadowName);
    QVERIFY(dark && light);
    // Children later in the list are drawn on top.
    const QObjectList children = cell.children();
    QVERIFY(children.indexOf(light) < children.indexOf(dark));
    QVERIFY(children.indexOf(dark) < children.indexOf(cell.contentView()));

    QWidget lonely;
    CardShadow::applyCardShadow(&lonely, 10, Qt::white);
    QVERIFY(lonely.findChildren<QWidget *>().isEmpty());
}

void tst_ReusableShadowTableViewCell::shadowLayersFollowTheCard()
{
    ReusableShadowTableViewCell cell;
    cell.resize(320, 100);
    auto *layout = new QVBoxLayout(cell.contentView());
    layout->addWidget(new QLabel(QStringLiteral("Pump station P-12"), cell.contentView()));
    cell.show();
    QVERIFY(QTest::qWaitForWindowExposed(&cell));
    const QRect before = layer(cell, CardShadow::darkShadowName)->geometry();
    QVERIFY(before.contains(cell.cardFrame()));
    QVERIFY(before != cell.cardFrame());
    // The layer reaches the same distance beyond the card on every side.
    QCOMPARE(before.center(), cell.cardFrame().center());
    grabShot(cell, QStringLiteral("shadowcell"));
    const QSize beyond = before.size() - cell.cardFrame().size();

    cell.resize(300, 140);
    QTRY_COMPARE_WITH_TIMEOUT(cell.contentView()->geometry(), cell.cardFrame(), 2000);
    const QRect after = layer(cell, CardShadow::darkShadowName)->geometry();
    QCOMPARE(after.size() - cell.cardFrame().size(), beyond);
    QCOMPARE(after.center(), cell.cardFrame().center());
}

void tst_ReusableShadowTableViewCell::imageShadowIsReplacedNotStacked()
{
    QWidget parent;
    auto *icon = new QLabel(&parent);
    icon->setGeometry(10, 10, 40, 40);
    CardShadow::applyImageShadow(icon, 20, Qt::gray);
    CardShadow::applyImageShadow(icon, 20, Qt::gray);
    QCOMPARE(parent.findChildren<QWidget *>(CardShadow::imageShadowName).size(), 1);

    // Another icon's shadow is its own.
    auto *other = new QLabel(&parent);
    other->setGeometry(60, 10, 40, 40);
    CardShadow::applyImageShadow(other, 20, Qt::gray);
    CardShadow::applyImageShadow(icon, 20, Qt::gray);
    QCOMPARE(parent.findChildren<QWidget *>(CardShadow::imageShadowName).size(), 2);

    delete icon;
    QTRY_COMPARE_WITH_TIMEOUT(parent.findChildren<QWidget *>(CardShadow::imageShadowName).size(), 1, 2000);
}

void tst_ReusableShadowTableViewCell::settersSignalOnlyOnChange()
{
    ReusableShadowTableViewCell cell;
    QSignalSpy spy(&cell, &ReusableShadowTableViewCell::appearanceChanged);
    cell.setMinHeight(75);
    cell.setMinHeight(75);
    cell.setCornerRadius(10);
    cell.setColor(Qt::yellow);
    cell.setColor(Qt::yellow);
    QCOMPARE(spy.count(), 2);
}

void tst_ReusableShadowTableViewCell::roundedViewPaintsTheCardAndSignalsChanges()
{
    RoundedView view;
    view.resize(100, 60);
    view.setCornerRadius(12);
    view.setBackgroundColor(Qt::red);
    QCOMPARE(view.customBackgroundColor(), QColor(Qt::red));
    QCOMPARE(view.backgroundColor().alpha(), 0);
    QVERIFY(!view.autoFillBackground());

    const QImage image = grabShot(view, QStringLiteral("roundedview-red"));
    QCOMPARE(image.pixelColor(50, 30), QColor(Qt::red));
    // The rounded corner stays clear.
    QVERIFY(image.pixelColor(0, 0) != QColor(Qt::red));

    // A palette's window colour becomes the card colour as well.
    QPalette palette = view.palette();
    palette.setColor(QPalette::Window, Qt::blue);
    view.setPalette(palette);
    QCOMPARE(view.customBackgroundColor(), QColor(Qt::blue));
    QCOMPARE(view.palette().color(QPalette::Window).alpha(), 0);
    QCOMPARE(view.backgroundColor().alpha(), 0);
    QCOMPARE(view.grab().toImage().pixelColor(50, 30), QColor(Qt::blue));

    // Setters signal only when they change something (black and blue are the current colours).
    QSignalSpy spy(&view, &RoundedView::appearanceChanged);
    view.setCornerRadius(8);
    view.setCornerRadius(8);
    view.setBorderWidth(1);
    view.setBorderWidth(1);
    view.setBorderColor(Qt::black);
    view.setCustomBackgroundColor(Qt::blue);
    view.setBackgroundColor(Qt::green);
    view.setBackgroundColor(Qt::green);
    QCOMPARE(spy.count(), 3);
    // The shadow takes the shadow colour.
    view.setShadowColor(QColor(10, 20, 30));
    QCOMPARE(qobject_cast<QGraphicsDropShadowEffect *>(view.graphicsEffect())->color().rgb(), QColor(10, 20, 30).rgb());
}

void tst_ReusableShadowTableViewCell::roundedBorder_data()
{
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<qreal>("cornerRadius");
    QTest::addColumn<qreal>("borderWidth");
    QTest::addColumn<QRectF>("expectedRect");
    QTest::addColumn<qreal>("expectedRadius");

    QTest::newRow("width 4, radius 10") << QRectF(0, 0, 200, 100) << 10.0 << 4.0 << QRectF(2, 2, 196, 96) << 8.0;
    QTest::newRow("no border") << QRectF(0, 0, 200, 100) << 10.0 << 0.0 << QRectF(0, 0, 200, 100) << 10.0;
    QTest::newRow("hairline") << QRectF(0, 0, 50, 50) << 6.0 << 1.0 << QRectF(0.5, 0.5, 49, 49) << 5.5;
    QTest::newRow("offset bounds") << QRectF(10, 20, 100, 40) << 12.0 << 6.0 << QRectF(13, 23, 94, 34) << 9.0;
    QTest::newRow("border wider than the corner") << QRectF(0, 0, 80, 40) << 1.0 << 8.0 << QRectF(4, 4, 72, 32) << 0.0;
}

void tst_ReusableShadowTableViewCell::roundedBorder()
{
    QFETCH(QRectF, bounds);
    QFETCH(qreal, cornerRadius);
    QFETCH(qreal, borderWidth);
    QFETCH(QRectF, expectedRect);
    QFETCH(qreal, expectedRadius);
    QCOMPARE(ViewGeometry::roundedBorder(bounds, cornerRadius, borderWidth),
             (RoundedBorder{expectedRect, expectedRadius, borderWidth}));
}

void tst_ReusableShadowTableViewCell::positionsFollowMeasurements_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<Measurements>("measured");

    QTest::newRow("none measured") << 5 << Measurements{};
    QTest::newRow("one taller") << 5 << Measurements{{2, 30}};
    QTest::newRow("several, one twice") << 37 << Measurements{{0, 3}, {36, 50}, {17, 11}, {17, 25}};
}

void tst_ReusableShadowTableViewCell::positionsFollowMeasurements()
{
    QFETCH(int, count);
    QFETCH(Measurements, measured);
    RowHeights heights;
    heights.reset(count, 10);
    QList<int> expected(count, 10);
    for (const auto &[row, height] : measured) {
        QCOMPARE(heights.setMeasured(row, height), height - expected.at(row));
        expected[row] = height;
    }
    // Every row's top, and the row at each of its first and last pixels.
    int top = 0;
    for (int row = 0; row < count; ++row) {
        QCOMPARE(heights.top(row), top);
        QCOMPARE(heights.rowAt(top), row);
        QCOMPARE(heights.rowAt(top + expected.at(row) - 1), row);
        top += expected.at(row);
    }
    QCOMPARE(heights.total(), top);
    QCOMPARE(heights.rowAt(top), -1);
    QCOMPARE(heights.rowAt(-1), -1);
}

void tst_ReusableShadowTableViewCell::rowsComeAndGo()
{
    RowHeights heights;
    heights.reset(4, 10);
    heights.setMeasured(1, 40);
    heights.setMeasured(3, 20);
    heights.insertRows(1, 2); // two new rows at the estimate before the tall one
    QCOMPARE(heights.count(), 6);
    QCOMPARE(heights.top(3), 30);
    QVERIFY(heights.isMeasured(3) && !heights.isMeasured(1));
    heights.removeRows(0, 3);
    QCOMPARE(heights.total(), 40 + 10 + 20);
    QCOMPARE(heights.measuredCount(), 2);
    // A dropped measurement keeps counting with its last height.
    heights.dropAll();
    QCOMPARE(heights.measuredCount(), 0);
    QCOMPARE(heights.total(), 70);
}

void tst_ReusableShadowTableViewCell::namedColours()
{
    for (const QString &name : NamedColors::names()) {
        const std::optional<QColor> light = NamedColors::color(name, Appearance::light);
        const std::optional<QColor> dark = NamedColors::color(name, Appearance::dark);
        QVERIFY2(light && light->isValid() && light->alpha() == 255, qPrintable(name));
        QVERIFY2(dark && dark->isValid(), qPrintable(name));
        QVERIFY(NamedColors::contains(name));
    }

    // An unknown name gives nothing, or the fallback.
    QVERIFY(!NamedColors::color(QStringLiteral("CustomPurple")).has_value());
    QVERIFY(!NamedColors::color(QStringLiteral("label_text")).has_value()); // names are case-sensitive
    QVERIFY(!NamedColors::contains(QStringLiteral("CustomPurple")));

    const QColor fallback(1, 2, 3);
    QCOMPARE(NamedColors::color(QStringLiteral("CustomPurple"), fallback), fallback);
    QCOMPARE(NamedColors::color(ColorNames::customRed, fallback), *NamedColors::color(ColorNames::customRed));
    QVERIFY(NamedColors::color(ColorNames::customRed, fallback) != fallback);

    // The appearance selects the variant.
    const QColor lightBackground = *NamedColors::color(ColorNames::viewBackground, Appearance::light);
    const QColor darkBackground = *NamedColors::color(ColorNames::viewBackground, Appearance::dark);
    QVERIFY(lightBackground != darkBackground);
    QCOMPARE(*NamedColors::color(ColorNames::viewBackground), lightBackground);
    NamedColors::setAppearance(Appearance::dark);
    QCOMPARE(*NamedColors::color(ColorNames::viewBackground), darkBackground);
}

QTEST_MAIN(tst_ReusableShadowTableViewCell)
#include "tst_reusableshadowtableviewcell.moc"
