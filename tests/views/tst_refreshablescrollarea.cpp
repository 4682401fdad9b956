#include "views/refreshablescrollarea.h"

#include "resources/namedcolors.h"
#include "shots.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QScrollBar>
#include <QScroller>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int waitMs = 5000;

// A column of labels of the given total height.
QWidget *makeContent(int rows)
{
    auto *content = new QWidget;
    auto *column = new QVBoxLayout(content);
    for (int i = 0; i < rows; ++i) {
        auto *label = new QLabel(QStringLiteral("Row %1").arg(i + 1), content);
        label->setFixedHeight(40);
        column->addWidget(label);
    }
    column->addStretch(1);
    return content;
}

// Drags on the area's viewport the way a finger does: press, move 10 pixels
// per frame, hold still, let go. The scroller moves the content on its own
// frame timer, so the event loop runs between the steps.
void drag(RefreshableScrollArea &area, int distance, qreal *deepestPull = nullptr)
{
    QScroller *scroller = area.scroller();
    QElapsedTimer clock;
    clock.start();
    const QPointF start(area.viewport()->width() / 2.0, 20);
    scroller->handleInput(QScroller::InputPress, start, clock.elapsed());
    const int steps = std::abs(distance) / 10;
    const int step = distance < 0 ? -10 : 10;
    QPointF at = start;
    for (int i = 1; i <= steps; ++i) {
        QTest::qWait(16);
        at = start + QPointF(0, i * step);
        scroller->handleInput(QScroller::InputMove, at, clock.elapsed());
        if (deepestPull)
            *deepestPull = std::max(*deepestPull, area.pullDistance());
    }
    // Holding still before letting go leaves no flick speed.
    QTest::qWait(300);
    scroller->handleInput(QScroller::InputMove, at, clock.elapsed());
    scroller->handleInput(QScroller::InputRelease, at, clock.elapsed());
}

} // namespace

class tst_RefreshableScrollArea : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void refreshShowsTheSpinnerAndAsksOnce();
    void beginRefreshingDoesNotAsk();
    void pullsStartARefresh_data();
    void pullsStartARefresh();
    void pullWhileRefreshingDoesNotAskAgain();
    void scrolledContentScrollsBackBeforeItPulls();
    void titleAndTintAreKept();
    void render();

private:
    std::unique_ptr<RefreshableScrollArea> m_area;
};

void tst_RefreshableScrollArea::init()
{
    m_area = std::make_unique<RefreshableScrollArea>();
    m_area->resize(390, 600);
    m_area->setWidget(makeContent(5));
    m_area->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_area.get()));
}

void tst_RefreshableScrollArea::cleanup()
{
    m_area.reset();
}

void tst_RefreshableScrollArea::refreshShowsTheSpinnerAndAsksOnce()
{
    QSignalSpy asked(m_area.get(), &RefreshableScrollArea::refreshRequested);
    QSignalSpy changed(m_area.get(), &RefreshableScrollArea::refreshingChanged);
    QVERIFY(!m_area->isRefreshing());
    QCOMPARE(m_area->indicatorBand(), 0);
    QVERIFY(m_area->indicator()->isHidden());

    m_area->refresh();
    QVERIFY(m_area->isRefreshing());
    QCOMPARE(asked.size(), 1);
    QCOMPARE(changed.size(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), RefreshableScrollArea::indicatorHeight, waitMs);
    QVERIFY(m_area->indicator()->isVisible());
    // The content moved down by the band.
    QCOMPARE(m_area->viewport()->geometry().top(), RefreshableScrollArea::indicatorHeight);

    m_area->refresh();
    QCOMPARE(asked.size(), 1);

    m_area->endRefreshing();
    QVERIFY(!m_area->isRefreshing());
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.last().first().toBool(), false);
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), 0, waitMs);
    QVERIFY(m_area->indicator()->isHidden());
    QCOMPARE(m_area->viewport()->geometry().top(), 0);
}

void tst_RefreshableScrollArea::beginRefreshingDoesNotAsk()
{
    QSignalSpy asked(m_area.get(), &RefreshableScrollArea::refreshRequested);
    m_area->beginRefreshing();
    QVERIFY(m_area->isRefreshing());
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), RefreshableScrollArea::indicatorHeight, waitMs);
    QCOMPARE(asked.size(), 0);
}

void tst_RefreshableScrollArea::pullsStartARefresh_data()
{
    QTest::addColumn<int>("distance");
    QTest::addColumn<bool>("refreshes");
    QTest::newRow("a long pull") << 400 << true;
    QTest::newRow("a short pull") << 60 << false;
    QTest::newRow("an upward drag") << -200 << false;
}

void tst_RefreshableScrollArea::pullsStartARefresh()
{
    QFETCH(int, distance);
    QFETCH(bool, refreshes);
    QSignalSpy asked(m_area.get(), &RefreshableScrollArea::refreshRequested);
    qreal deepest = 0;
    drag(*m_area, distance, &deepest);
    if (distance > 0)
        QVERIFY(deepest > 0);
    else
        QCOMPARE(deepest, 0.0);

    QCOMPARE(asked.size(), refreshes ? 1 : 0);
    QCOMPARE(m_area->isRefreshing(), refreshes);
    QTRY_COMPARE_WITH_TIMEOUT(m_area->scroller()->state(), QScroller::Inactive, waitMs);
    QCOMPARE(m_area->pullDistance(), 0.0);
    // A refresh keeps the band open for the spinner; otherwise it closes.
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), refreshes ? RefreshableScrollArea::indicatorHeight : 0, waitMs);
}

void tst_RefreshableScrollArea::pullWhileRefreshingDoesNotAskAgain()
{
    QSignalSpy asked(m_area.get(), &RefreshableScrollArea::refreshRequested);
    m_area->refresh();
    drag(*m_area, 400);
    QTRY_COMPARE_WITH_TIMEOUT(m_area->scroller()->state(), QScroller::Inactive, waitMs);
    QCOMPARE(asked.size(), 1);
    QVERIFY(m_area->isRefreshing());
}

void tst_RefreshableScrollArea::scrolledContentScrollsBackBeforeItPulls()
{
    m_area->setWidget(makeContent(60));
    QTRY_VERIFY_WITH_TIMEOUT(m_area->verticalScrollBar()->maximum() > 1000, waitMs);
    m_area->verticalScrollBar()->setValue(500);
    QSignalSpy asked(m_area.get(), &RefreshableScrollArea::refreshRequested);
    qreal deepest = 0;
    drag(*m_area, 200, &deepest);
    QCOMPARE(deepest, 0.0);
    QTRY_COMPARE_WITH_TIMEOUT(m_area->scroller()->state(), QScroller::Inactive, waitMs);
    QVERIFY(m_area->verticalScrollBar()->value() < 500);
    QVERIFY(m_area->verticalScrollBar()->value() > 0);
    QCOMPARE(asked.size(), 0);
}

void tst_RefreshableScrollArea::titleAndTintAreKept()
{
    QSignalSpy changed(m_area.get(), &RefreshableScrollArea::appearanceChanged);
    m_area->setRefreshTitle(QStringLiteral("Fetching ..."));
    m_area->setTintColor(QColor(10, 20, 30));
    QCOMPARE(m_area->refreshTitle(), QStringLiteral("Fetching ..."));
    QCOMPARE(m_area->tintColor(), QColor(10, 20, 30));
    QCOMPARE(changed.size(), 2);
    m_area->setRefreshTitle(QStringLiteral("Fetching ..."));
    m_area->setTintColor(QColor(10, 20, 30));
    QCOMPARE(changed.size(), 2);
}

void tst_RefreshableScrollArea::render()
{
    const QColor tint = *NamedColors::color(ColorNames::labelText);
    m_area->setRefreshTitle(QStringLiteral("Fetching Task Data ..."));
    m_area->setTintColor(tint);
    m_area->beginRefreshing();
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), RefreshableScrollArea::indicatorHeight, waitMs);
    const QImage image = grabShot(*m_area, QStringLiteral("refreshablescrollarea"));
    // The spinner's spokes are drawn in the tint somewhere in the band.
    bool tinted = false;
    for (int y = 0; y < RefreshableScrollArea::indicatorHeight && !tinted; ++y) {
        for (int x = 0; x < image.width() && !tinted; ++x) {
            const QColor c = image.pixelColor(x, y);
            tinted = qAbs(c.red() - tint.red()) < 40 && qAbs(c.green() - tint.green()) < 40
                     && qAbs(c.blue() - tint.blue()) < 40;
        }
    }
    QVERIFY(tinted);
}

QTEST_MAIN(tst_RefreshableScrollArea)
#include "tst_refreshablescrollarea.moc"
