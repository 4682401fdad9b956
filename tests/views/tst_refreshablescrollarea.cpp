#include "views/refreshablescrollarea.h"

#include "support/shots.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QScroller>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int waitMs = 5000;
constexpr int band = RefreshableScrollArea::indicatorHeight;

// A column of labels 40 pixels high.
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
// frame timer, so the event loop runs between the steps. Gives the deepest pull.
qreal drag(RefreshableScrollArea &area, int distance)
{
    QScroller *scroller = area.scroller();
    QElapsedTimer clock;
    clock.start();
    const QPointF start(area.viewport()->width() / 2.0, 20);
    scroller->handleInput(QScroller::InputPress, start, clock.elapsed());
    QPointF at = start;
    qreal deepest = 0;
    for (int i = 1; i <= std::abs(distance) / 10; ++i) {
        QTest::qWait(16);
        at = start + QPointF(0, i * (distance < 0 ? -10 : 10));
        scroller->handleInput(QScroller::InputMove, at, clock.elapsed());
        deepest = std::max(deepest, area.pullDistance());
    }
    // Holding still before letting go leaves no flick speed.
    QTest::qWait(300);
    scroller->handleInput(QScroller::InputMove, at, clock.elapsed());
    scroller->handleInput(QScroller::InputRelease, at, clock.elapsed());
    return deepest;
}

} // namespace

class tst_RefreshableScrollArea : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_area.reset(); }
    void refreshShowsTheSpinnerAndAsksOnce();
    void pullsStartARefresh_data();
    void pullsStartARefresh();
    void scrolledContentScrollsBackBeforeItPulls();
    void spinnerAndTitleTakeTheTint();

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

void tst_RefreshableScrollArea::refreshShowsTheSpinnerAndAsksOnce()
{
    QSignalSpy asked(m_area.get(), &RefreshableScrollArea::refreshRequested);
    QSignalSpy changed(m_area.get(), &RefreshableScrollArea::refreshingChanged);
    QVERIFY(!m_area->isRefreshing());
    QCOMPARE(m_area->indicatorBand(), 0);
    QVERIFY(m_area->indicator()->isHidden());

    m_area->refresh();
    m_area->refresh();
    QVERIFY(m_area->isRefreshing());
    QCOMPARE(asked.size(), 1);
    QCOMPARE(changed.size(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), band, waitMs);
    QVERIFY(m_area->indicator()->isVisible());
    // The content moved down by the band.
    QCOMPARE(m_area->viewport()->geometry().top(), band);

    m_area->endRefreshing();
    QVERIFY(!m_area->isRefreshing());
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.last().first().toBool(), false);
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), 0, waitMs);
    QVERIFY(m_area->indicator()->isHidden());
    QCOMPARE(m_area->viewport()->geometry().top(), 0);

    // Refreshing started by code shows the spinner without asking.
    m_area->beginRefreshing();
    QVERIFY(m_area->isRefreshing());
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), band, waitMs);
    QCOMPARE(asked.size(), 1);
}

void tst_RefreshableScrollArea::pullsStartARefresh_data()
{
    QTest::addColumn<int>("distance");
    QTest::addColumn<bool>("alreadyRefreshing");
    QTest::addColumn<bool>("refreshes");
    QTest::newRow("a long pull") << 400 << false << true;
    QTest::newRow("a short pull") << 60 << false << false;
    QTest::newRow("an upward drag") << -200 << false << false;
    QTest::newRow("a long pull while refreshing") << 400 << true << true;
}

void tst_RefreshableScrollArea::pullsStartARefresh()
{
    QFETCH(int, distance);
    QFETCH(bool, alreadyRefreshing);
    QFETCH(bool, refreshes);
    if (alreadyRefreshing)
        m_area->refresh();
    QSignalSpy asked(m_area.get(), &RefreshableScrollArea::refreshRequested);
    const qreal deepest = drag(*m_area, distance);
    if (!alreadyRefreshing)
        QCOMPARE(deepest > 0, distance > 0);

    QCOMPARE(asked.size(), refreshes && !alreadyRefreshing ? 1 : 0);
    QCOMPARE(m_area->isRefreshing(), refreshes);
    QTRY_COMPARE_WITH_TIMEOUT(m_area->scroller()->state(), QScroller::Inactive, waitMs);
    QCOMPARE(m_area->pullDistance(), 0.0);
    // A refresh keeps the band open for the spinner; otherwise it closes.
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), refreshes ? band : 0, waitMs);
}

void tst_RefreshableScrollArea::scrolledContentScrollsBackBeforeItPulls()
{
    m_area->setWidget(makeContent(60));
    QTRY_VERIFY_WITH_TIMEOUT(m_area->verticalScrollBar()->maximum() > 1000, waitMs);
    m_area->verticalScrollBar()->setValue(500);
    QSignalSpy asked(m_area.get(), &RefreshableScrollArea::refreshRequested);
    QCOMPARE(drag(*m_area, 200), 0.0);
    QTRY_COMPARE_WITH_TIMEOUT(m_area->scroller()->state(), QScroller::Inactive, waitMs);
    QVERIFY(m_area->verticalScrollBar()->value() < 500);
    QVERIFY(m_area->verticalScrollBar()->value() > 0);
    QCOMPARE(asked.size(), 0);
}

void tst_RefreshableScrollArea::spinnerAndTitleTakeTheTint()
{
    const QColor tint(200, 40, 160);
    QSignalSpy changed(m_area.get(), &RefreshableScrollArea::appearanceChanged);
    for (int round = 0; round < 2; ++round) {
        m_area->setRefreshTitle(QStringLiteral("Fetching Task Data ..."));
        m_area->setTintColor(tint);
    }
    QCOMPARE(m_area->refreshTitle(), QStringLiteral("Fetching Task Data ..."));
    QCOMPARE(m_area->tintColor(), tint);
    QCOMPARE(changed.size(), 2);

    m_area->beginRefreshing();
    QTRY_COMPARE_WITH_TIMEOUT(m_area->indicatorBand(), band, waitMs);
    const QImage image = grabShot(*m_area, QStringLiteral("refreshablescrollarea"));
    // The spinner's spokes are drawn in the tint somewhere in the band.
    bool tinted = false;
    for (int y = 0; y < band; ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            tinted = tinted
                || (qAbs(c.red() - tint.red()) < 40 && qAbs(c.green() - tint.green()) < 40
                    && qAbs(c.blue() - tint.blue()) < 40);
        }
    }
    QVERIFY(tinted);
}

QTEST_MAIN(tst_RefreshableScrollArea)
#include "tst_refreshablescrollarea.moc"
