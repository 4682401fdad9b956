#include "views/reusableshadowtableviewcell.h"

#include "support/shots.h"
#include "views/cardshadow.h"
#include "views/roundedview.h"

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

class tst_ReusableShadowTableViewCell : public QObject
{
    Q_OBJECT

private slots:
    void shortCellIsFittedToTheMinimumHeight();
    void tallContentGrowsTheCell();
    void repeatedLayoutKeepsOneShadowOfEachKindUnderTheCard();
    void shadowLayersFollowTheCardAndPaintIt();
    void imageShadowIsReplacedNotStacked();
    void settersSignalOnlyOnChange();
    void backgroundColourPaintsTheCardNotTheWidget();
    void roundedViewSettersSignalOnlyOnChange();
};

void tst_ReusableShadowTableViewCell::shortCellIsFittedToTheMinimumHeight()
{
    ReusableShadowTableViewCell cell;
    cell.resize(320, 60);
    QCOMPARE(cell.fittedHeight(), 100);
    QCOMPARE(cell.heightForWidth(320), 100);
    cell.resize(320, cell.fittedHeight());
    QCOMPARE(cell.cardFrame(), QRect(2, 2, 316, 96));
    cell.show();
    QVERIFY(QTest::qWaitForWindowExposed(&cell));
    QCOMPARE(cell.contentView()->geometry(), QRect(2, 2, 316, 96));
    cell.hide();

    cell.setMinHeight(75);
    cell.resize(320, 60);
    QCOMPARE(cell.fittedHeight(), 75);
}

void tst_ReusableShadowTableViewCell::tallContentGrowsTheCell()
{
    ReusableShadowTableViewCell cell;
    auto *layout = new QVBoxLayout(cell.contentView());
    layout->setContentsMargins(0, 0, 0, 0);
    auto *block = new QWidget(cell.contentView());
    block->setFixedHeight(150);
    layout->addWidget(block);
    QCOMPARE(cell.fittedHeight(320), 154);
    QCOMPARE(cell.sizeHint().height(), 154);

    block->setFixedHeight(20);
    QCOMPARE(cell.fittedHeight(320), 100);
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

void tst_ReusableShadowTableViewCell::shadowLayersFollowTheCardAndPaintIt()
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
    // Inside the card, away from the text: the card colour.
    const QImage image = grabShot(cell, QStringLiteral("shadowcell"));
    QCOMPARE(image.pixelColor(cell.cardFrame().bottomRight() - QPoint(12, 12)), cell.color());

    cell.resize(300, 140);
    QTRY_COMPARE_WITH_TIMEOUT(cell.contentView()->geometry(), cell.cardFrame(), 2000);
    const QRect after = layer(cell, CardShadow::darkShadowName)->geometry();
    QCOMPARE(after.size() - cell.cardFrame().size(), before.size() - QSize(316, 96));
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

void tst_ReusableShadowTableViewCell::backgroundColourPaintsTheCardNotTheWidget()
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
    QCOMPARE(image.pixelColor(12, 12), QColor(Qt::red));
    // The rounded corner stays clear; a square one is filled.
    QVERIFY(image.pixelColor(0, 0) != QColor(Qt::red));
    view.setCornerRadius(0);
    QCOMPARE(view.grab().toImage().pixelColor(0, 0), QColor(Qt::red));

    // A palette's window colour becomes the card colour as well.
    QPalette palette = view.palette();
    palette.setColor(QPalette::Window, Qt::blue);
    view.setPalette(palette);
    QCOMPARE(view.customBackgroundColor(), QColor(Qt::blue));
    QCOMPARE(view.palette().color(QPalette::Window).alpha(), 0);
    QCOMPARE(view.backgroundColor().alpha(), 0);
    QCOMPARE(view.grab().toImage().pixelColor(50, 30), QColor(Qt::blue));
}

void tst_ReusableShadowTableViewCell::roundedViewSettersSignalOnlyOnChange()
{
    RoundedView view;
    QSignalSpy spy(&view, &RoundedView::appearanceChanged);
    view.setCornerRadius(8);
    view.setCornerRadius(8);
    view.setBorderWidth(1);
    view.setBorderWidth(1);
    view.setBorderColor(Qt::black);
    view.setCustomBackgroundColor(Qt::white);
    view.setBackgroundColor(Qt::green);
    view.setBackgroundColor(Qt::green);
    QCOMPARE(spy.count(), 3);
    // The shadow takes the shadow colour.
    view.setShadowColor(QColor(10, 20, 30));
    QCOMPARE(qobject_cast<QGraphicsDropShadowEffect *>(view.graphicsEffect())->color().rgb(), QColor(10, 20, 30).rgb());
}

QTEST_MAIN(tst_ReusableShadowTableViewCell)
#include "tst_reusableshadowtableviewcell.moc"
