#include "items/itemlistmodel.h"
#include "items/taskitemsmodel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace ravelin;

namespace {

// "1 2* 3": items 1 to 3, open, item 2 completed.
QList<ItemPtr> items(const QString &rows)
{
    QList<ItemPtr> out;
    for (QString entry : rows.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        auto item = std::make_shared<Item>();
        item->status = entry.endsWith(QLatin1Char('*')) ? ItemStatus::ok : ItemStatus::open;
        entry.remove(QLatin1Char('*'));
        item->id = entry.toLongLong();
        item->name = QStringLiteral("Item %1").arg(item->id);
        out.append(item);
    }
    return out;
}

QString ids(const ItemListModel &model)
{
    QStringList out;
    for (int row = 0; row < model.rowCount(); ++row)
        out.append(QString::number(model.item(row)->id));
    return out.join(QLatin1Char(' '));
}

// "first-last" of each range a row signal reported.
QStringList ranges(const QSignalSpy &spy)
{
    QStringList out;
    for (const QList<QVariant> &signal : spy)
        out.append(QStringLiteral("%1-%2").arg(signal.at(1).toInt()).arg(signal.at(2).toInt()));
    return out;
}

TaskPtr taskWith(const QString &rows)
{
    auto task = std::make_shared<Task>();
    task->itemList.items = items(rows);
    return task;
}

} // namespace

class TestItemListModel : public QObject
{
    Q_OBJECT

private slots:
    void answerTakenRowByRow_data();
    void answerTakenRowByRow();
    void filterRemovesAndInsertsRows();
    void statusChangeUnderAFilter();
};

void TestItemListModel::answerTakenRowByRow_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<QStringList>("inserted");
    QTest::addColumn<QStringList>("changed");

    QTest::newRow("first answer") << ""
                                  << "1 2 3" << QStringList{} << QStringList{"0-2"} << QStringList{};
    QTest::newRow("same answer") << "1 2 3"
                                 << "1 2 3" << QStringList{} << QStringList{} << QStringList{};
    QTest::newRow("one new at the end") << "1 2"
                                        << "1 2 3" << QStringList{} << QStringList{"2-2"} << QStringList{};
    QTest::newRow("one gone") << "1 2 3"
                              << "1 3" << QStringList{"1-1"} << QStringList{} << QStringList{};
    QTest::newRow("one completed") << "1 2 3"
                                   << "1 2* 3" << QStringList{} << QStringList{} << QStringList{"1-1"};
    QTest::newRow("gone, new and changed")
        << "1 2 3 4"
        << "2* 4 5 6" << QStringList{"2-2", "0-0"} << QStringList{"2-3"} << QStringList{"0-0"};
}

void TestItemListModel::answerTakenRowByRow()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QStringList, removed);
    QFETCH(QStringList, inserted);
    QFETCH(QStringList, changed);

    const TaskPtr task = taskWith(before);
    ItemListModel model;
    model.setTask(task);
    QAbstractItemModelTester sourceTester(model.taskItems(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    TaskItemsModel *source = model.taskItems();
    QSignalSpy resets(source, &QAbstractItemModel::modelReset);
    QSignalSpy removes(source, &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserts(source, &QAbstractItemModel::rowsInserted);
    QSignalSpy changes(source, &QAbstractItemModel::dataChanged);

    task->itemList.items = items(after);
    model.reload();

    QCOMPARE(ids(model), QString(after).remove(QLatin1Char('*')));
    QCOMPARE(resets.size(), 0);
    QCOMPARE(ranges(removes), removed);
    QCOMPARE(ranges(inserts), inserted);
    QStringList changedRows;
    for (const QList<QVariant> &signal : changes) {
        changedRows.append(
            QStringLiteral("%1-%2").arg(signal.at(0).toModelIndex().row()).arg(signal.at(1).toModelIndex().row()));
        // A status change names the roles it touches.
        QVERIFY(signal.at(2).value<QList<int>>().contains(TaskItemsModel::StatusRole));
    }
    QCOMPARE(changedRows, changed);
}

void TestItemListModel::filterRemovesAndInsertsRows()
{
    const TaskPtr task = taskWith("1 2* 3 4*");
    ItemListModel model;
    model.setTask(task);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy removes(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);

    task->itemList.filterData.status = ItemStatus::open;
    model.reload();
    QCOMPARE(ids(model), QStringLiteral("1 3"));
    QCOMPARE(model.item(1), task->itemList.filteredItems().at(1));
    QVERIFY(!removes.isEmpty());

    task->itemList.filterData.status = ItemStatus::all;
    model.reload();
    QCOMPARE(ids(model), QStringLiteral("1 2 3 4"));
    QVERIFY(!inserts.isEmpty());
    QCOMPARE(resets.size(), 0);
}

void TestItemListModel::statusChangeUnderAFilter()
{
    const TaskPtr task = taskWith("1 2 3");
    task->itemList.filterData.status = ItemStatus::open;
    ItemListModel model;
    model.setTask(task);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy removes(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);

    // Item 2 completed: it leaves the "Open" rows, and only it.
    task->itemList.items = items("1 2* 3");
    model.reload();
    QCOMPARE(ids(model), QStringLiteral("1 3"));
    QCOMPARE(ranges(removes), QStringList{"1-1"});
    QCOMPARE(resets.size(), 0);
}

QTEST_GUILESS_MAIN(TestItemListModel)
#include "tst_itemlistmodel.moc"
