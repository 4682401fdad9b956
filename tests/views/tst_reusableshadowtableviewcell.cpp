#include "views/reusableshadowtableviewcell.h"

#include "resources/namedcolors.h"
#include "shots.h"
#include "views/cardshadow.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace ravelin;
using namespace ravelin::test;

namespace {

QList<QWidget *> layersNamed(const QWidget &cell, const QString &name)
{
    return cell.findChildren<QWidget *>(name);
}

} // namespace

class tst_ReusableShadowTableViewCell : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void shortCellIsFittedToTheMinimumHeight();
    void tallContentGrowsTheCell();
    void cardFrameKeepsTheGapAtEverySize_data();
    void cardFrameKeepsTheGapAtEverySize();
    void repeatedLayoutKeepsOneShadowOfEachKind();
    void shadowLayersLieUnderTheCard();
    void shadowLayersFollowTheCard();
    void imageShadowIsReplacedNotStacked();
    void viewWithoutParentGetsNoLayers();
    void settersSignalOnlyOnChange();
    void render();
};

void tst_ReusableShadowTableViewCell::defaults()
{
    ReusableShadowTableViewCell cell;
    QCOMPARE(cell.minHeight(), 100.0);
    QCOMPARE(cell.cornerRadius(), 10.0);
    QCOMPARE(cell.color(), NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)));
    QVERIFY(cell.contentView() != nullptr);
}

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

void tst_ReusableShadowTableViewCell::cardFrameKeepsTheGapAtEverySize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("phone width") << QSize(390, 100);
    QTest::newRow("narrow") << QSize(200, 75);
    QTest::newRow("tall") << QSize(320, 240);
}

void tst_ReusableShadowTableViewCell::cardFrameKeepsTheGapAtEverySize()
{
    QFETCH(QSize, size);
    ReusableShadowTableViewCell cell;
    cell.resize(size);
    cell.show();
    QVERIFY(QTest::qWaitForWindowExposed(&cell));
    QCOMPARE(cell.contentView()->geometry(), cell.cardFrame());
    const QRect frame = cell.cardFrame();
    QCOMPARE(frame.topLeft(), QPoint(2, 2));
    QCOMPARE(frame.size(), size - QSize(4, 4));
}

void tst_ReusableShadowTableViewCell::repeatedLayoutKeepsOneShadowOfEachKind()
{
    ReusableShadowTableViewCell cell;
    cell.resize(320, 100);
    cell.prepareForReuse();
    cell.resize(330, 110);
    cell.prepareForReuse();
    cell.show();
    QVERIFY(QTest::qWaitForWindowExposed(&cell));

    QCOMPARE(layersNamed(cell, CardShadow::darkShadowName).size(), 1);
    QCOMPARE(layersNamed(cell, CardShadow::lightShadowName).size(), 1);
}

void tst_ReusableShadowTableViewCell::shadowLayersLieUnderTheCard()
{
    ReusableShadowTableViewCell cell;
    cell.resize(320, 100);
    cell.prepareForReuse();
    const QObjectList children = cell.children();
    const qsizetype light = children.indexOf(layersNamed(cell, CardShadow::lightShadowName).constFirst());
    const qsizetype dark = children.indexOf(layersNamed(cell, CardShadow::darkShadowName).constFirst());
    const qsizetype content = children.indexOf(cell.contentView());
    // Children later in the list are drawn on top.
    QVERIFY(light < dark);
    QVERIFY(dark < content);
}

void tst_ReusableShadowTableViewCell::shadowLayersFollowTheCard()
{
    ReusableShadowTableViewCell cell;
    cell.resize(320, 100);
    cell.show();
    QVERIFY(QTest::qWaitForWindowExposed(&cell));
    const QRect before = layersNamed(cell, CardShadow::darkShadowName).constFirst()->geometry();
    QVERIFY(before.contains(cell.cardFrame()));
    QVERIFY(before != cell.cardFrame());
    // The layer reaches the same distance beyond the card on every side.
    QCOMPARE(before.center(), cell.cardFrame().center());

    cell.resize(300, 140);
    QTRY_COMPARE_WITH_TIMEOUT(cell.contentView()->geometry(), cell.cardFrame(), 2000);
    const QRect after = layersNamed(cell, CardShadow::darkShadowName).constFirst()->geometry();
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

void tst_ReusableShadowTableViewCell::viewWithoutParentGetsNoLayers()
{
    QWidget lonely;
    CardShadow::applyCardShadow(&lonely, 10, Qt::white);
    QVERIFY(lonely.findChildren<QWidget *>(CardShadow::darkShadowName).isEmpty());
    QVERIFY(lonely.findChildren<QWidget *>(CardShadow::lightShadowName).isEmpty());
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

void tst_ReusableShadowTableViewCell::render()
{
    QWidget list;
    list.resize(390, 240);
    list.setAutoFillBackground(true);
    QPalette palette = list.palette();
    palette.setColor(QPalette::Window, NamedColors::color(ColorNames::groupedBackground, QColor(Qt::lightGray)));
    list.setPalette(palette);
    auto *rows = new QVBoxLayout(&list);
    rows->setContentsMargins(8, 8, 8, 8);
    rows->setSpacing(4);
    for (const char *title : {"Pump station P-12", "Meter reading, block C"}) {
        auto *cell = new ReusableShadowTableViewCell(&list);
        auto *layout = new QVBoxLayout(cell->contentView());
        layout->setContentsMargins(14, 10, 14, 10);
        auto *label = new QLabel(QString::fromLatin1(title), cell->contentView());
        layout->addWidget(label);
        rows->addWidget(cell);
    }
    rows->addStretch();
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));

    const QImage image = grabShot(list, QStringLiteral("shadowcells"));
    const auto cells = list.findChildren<ReusableShadowTableViewCell *>();
    QCOMPARE(cells.size(), 2);
    const ReusableShadowTableViewCell *first = cells.constFirst();
    QCOMPARE(first->height(), 100);
    // Inside the card, away from the text: the card colour.
    const QPoint inside = first->mapTo(&list, first->cardFrame().bottomRight() - QPoint(12, 12));
    QCOMPARE(image.pixelColor(inside), first->color());
}

QTEST_MAIN(tst_ReusableShadowTableViewCell)
#include "tst_reusableshadowtableviewcell.moc"
