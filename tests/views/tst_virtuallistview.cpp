#include "views/virtuallistview.h"

#include <QScrollArea>
#include <QStandardItemModel>
#include <QTest>
#include <QVBoxLayout>

using namespace ravelin;

// The list inside a page that scrolls, as the checklist and the thread are.
class TestVirtualListView : public QObject
{
    Q_OBJECT

private slots:
    void tapOnAPartlyHiddenRowRevealsIt_data();
    void tapOnAPartlyHiddenRowRevealsIt();
};

void TestVirtualListView::tapOnAPartlyHiddenRowRevealsIt_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("rowHeight");
    QTest::addColumn<bool>("revealed");
    // A page 225 high over rows of 50: rows 0 to 3 show whole, row 4 in part.
    QTest::newRow("whole row: acted on") << 3 << 50 << false;
    QTest::newRow("cut by the bottom edge: scrolled into sight") << 4 << 50 << true;
    QTest::newRow("taller than the page: acted on as it is") << 1 << 300 << false;
}

void TestVirtualListView::tapOnAPartlyHiddenRowRevealsIt()
{
    QFETCH(int, row);
    QFETCH(int, rowHeight);
    QFETCH(bool, revealed);
    QStandardItemModel model;
    for (int i = 0; i < 30; ++i) {
        auto *item = new QStandardItem(QStringLiteral("Row %1").arg(i));
        item->setSizeHint(QSize(100, rowHeight));
        model.appendRow(item);
    }
    QScrollArea area;
    area.setWidgetResizable(true);
    area.setFrameShape(QFrame::NoFrame);
    auto *page = new QWidget;
    auto *list = new VirtualListView(page);
    list->setModel(&model);
    (new QVBoxLayout(page))->addWidget(list);
    page->layout()->setContentsMargins(0, 0, 0, 0);
    area.setWidget(page);
    area.resize(200, 225);
    area.show();
    QVERIFY(QTest::qWaitForWindowExposed(&area));
    QTRY_VERIFY(list->rowsInSight().second >= row);

    const QModelIndex index = model.index(row, 0);
    const int before = area.verticalScrollBar()->value();
    QCOMPARE(list->revealIfPartlyHidden(index), revealed);
    QCOMPARE(area.verticalScrollBar()->value() != before, revealed);
    if (revealed) {
        QVERIFY(list->sight().contains(list->visualRect(index)));
        QVERIFY(!list->revealIfPartlyHidden(index)); // the next tap acts on it
    }
}

QTEST_MAIN(TestVirtualListView)
#include "tst_virtuallistview.moc"
