#include "filter/datepicker.h"
#include "filter/donetoolbar.h"
#include "filter/listpicker.h"
#include "filter/pickerwheel.h"
#include "host/navigationbar.h"
#include "support/logcapture.h"
#include "support/screentest.h"
#include "support/shots.h"
#include "tasks/dashboardvm.h"
#include "views/segmentedcontrol.h"

#include <QWheelEvent>

#include <QSignalSpy>
#include <ctime>

using namespace ravelin;
using namespace ravelin::test;

namespace {

QDateTime local(int y, int m, int d, int h = 12)
{
    return QDateTime(QDate(y, m, d), QTime(h, 0));
}

using Query = QList<std::pair<QString, QString>>;

DoneToolbar *toolbarOf(const InputField *field)
{
    return qobject_cast<DoneToolbar *>(field->inputAccessoryView());
}

// Turns a wheel by whole rows with the mouse wheel (negative: towards later rows).
void turn(PickerWheel *wheel, int notches)
{
    const QPointF middle = QRectF(wheel->rect()).center();
    QWheelEvent event(middle, wheel->mapToGlobal(middle), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(wheel, &event);
}

} // namespace

class TestFilterVC : public ScreenTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup()
    {
        m_log.reset();
        closeHost();
    }

    void loadsTheCurrentChoices();
    void applyOrLeave_data();
    void applyOrLeave();
    void dateLimits_data();
    void dateLimits();
    void pickersAndDoneButtons();

    void turningTheWheels_data();
    void turningTheWheels();

private:
    // Shows the host (m_host) and waits for its dashboard to load (both fetches
    // of the first appearance answered); false when that does not happen.
    bool loadHost();
    // The filter screen, opened with the bar's filter button.
    FilterVC *openFilter();
    // Waits for the filter screen to close and the dashboard to ask for its
    // tasks again; the query of that request.
    std::optional<Query> queryAfterClosing(const QPointer<FilterVC> &filter);
    [[nodiscard]] TaskFilterData &shared() const { return *m_host->dashboard()->viewModel()->filterData(); }

    std::unique_ptr<LogCapture> m_log;
};

void TestFilterVC::initTestCase()
{
    // Dates show in local time; fix the zone so that texts and milliseconds agree.
    qputenv("TZ", "Europe/Berlin");
    tzset();
}

void TestFilterVC::init()
{
    // Kept in id order behind "All": All (0), Meters (1), Pumps (3).
    startHarness({{3, "Pumps"}, {1, "Meters"}}); // now: 2026-11-20 11:15:30.123 in Berlin
    m_api->server.on("GET", tasksPath, CannedResponse{200, answer(QJsonArray{taskJson(1, "Valve A", 4)})});
    m_log = std::make_unique<LogCapture>();
}

bool TestFilterVC::loadHost()
{
    m_host = makeHost(*m_api, m_center);
    DashboardVC *dashboard = m_host->dashboard();
    const auto ready
        = [&] { return m_log->count(QStringLiteral("Fetched ")) >= 2 && !dashboard->refreshControl()->isRefreshing(); };
    return QTest::qWaitFor(ready, timeoutMs);
}

FilterVC *TestFilterVC::openFilter()
{
    m_host->dashboard()->filterAction()->trigger();
    return qobject_cast<FilterVC *>(m_host->topScreen());
}

std::optional<Query> TestFilterVC::queryAfterClosing(const QPointer<FilterVC> &filter)
{
    if (!QTest::qWaitFor([&] { return filter.isNull() && m_api->server.requests(tasksPath).size() >= 2; }, timeoutMs))
        return std::nullopt;
    if (m_host->topScreen() != m_host->dashboard())
        return std::nullopt;
    // Both fetches (the delegate's and the dashboard's on appearing) ask the same.
    const QList<RecordedRequest> requests = m_api->server.requests(tasksPath);
    if (requests.first().query != requests.last().query)
        return std::nullopt;
    return requests.first().query;
}

void TestFilterVC::loadsTheCurrentChoices()
{
    QVERIFY(loadHost());
    TaskFilterData &choices = shared();
    choices.sortingConfig = SortConfiguration{SortKey::priority, SortOrder::ascending};
    choices.filteringConfig.selectedPriority = TaskPriority::low;
    choices.filteringConfig.dateStart = local(2026, 10, 1, 8);
    choices.filteringConfig.dateEnd = local(2026, 11, 15, 23);

    FilterVC *filter = openFilter();
    QVERIFY(filter);
    QVERIFY(m_host->navigationBar()->isBackVisible());

    // The segments' order is the view model's (tst_taskfilterdata segmentPositionsAndTitles); the screen selects the
    // current choices.
    QCOMPARE(filter->sortKeySegment()->selectedSegmentIndex(), 1);
    QCOMPARE(filter->sortOrderSegment()->selectedSegmentIndex(), 0);
    QCOMPARE(filter->prioritySegment()->selectedSegmentIndex(), 3);

    QCOMPARE(filter->dateStart()->text(), QStringLiteral("2026/10/01"));
    QCOMPARE(filter->dateEnd()->text(), QStringLiteral("2026/11/15"));
    QCOMPARE(filter->dateStartPicker()->date(), choices.filteringConfig.dateStart);
    QCOMPARE(filter->dateEndPicker()->date(), choices.filteringConfig.dateEnd);
    // The category field starts empty: applied so, it stands for "All".
    QVERIFY(filter->categoryTextField()->text().isEmpty());
    QCOMPARE(filter->categoryTextField()->placeholderText(), QStringLiteral("All"));
    QVERIFY(!filter->inputSheet()->isVisible());
    grabShot(*m_host, QStringLiteral("filter"));

    filter->dateEnd()->becomeFirstResponder();
    QTRY_VERIFY_WITH_TIMEOUT(!filter->inputSheet()->isMoving(), timeoutMs);
    QCOMPARE(filter->inputSheet()->geometry().bottom(), filter->rect().bottom());
    grabShot(*m_host, QStringLiteral("filter-date-picker"));
}

void TestFilterVC::applyOrLeave_data()
{
    QTest::addColumn<QString>("leaveBy");
    QTest::addColumn<QString>("categoryText");
    QTest::addColumn<int>("priorityIndex");
    QTest::addColumn<int>("sortKeyIndex");
    QTest::addColumn<int>("sortOrderIndex");
    QTest::addColumn<TaskCategoryDefinition>("category");
    QTest::addColumn<QString>("orderBy");
    QTest::addColumn<QString>("sortBy");

    // Applied, the shared choices start with the category Pumps.
    const TaskCategoryDefinition all{0, "All"}, meters{1, "Meters"}, pumps{3, "Pumps"};
    QTest::newRow("empty category: All, all priorities, newest first")
        << "Apply" << QString() << 4 << 2 << 1 << all << QStringLiteral("date_created") << "DESC";
    QTest::newRow("Meters, Highest, by priority descending")
        << "Apply"
        << "Meters" << 0 << 1 << 1 << meters << QStringLiteral("priority") << "DESC";
    // Not a category's exact name: the shared choice, Pumps, stays.
    QTest::newRow("names match exactly") << "Apply"
                                         << "meters" << 3 << 2 << 0 << pumps << QStringLiteral("date_created") << "ASC";
    // Left without applying: the choices and the dashboard's query stay as they were.
    QTest::newRow("Clear") << "Clear"
                           << "Meters" << 0 << 0 << 0 << all << QString() << QString();
    QTest::newRow("the bar's back button") << "Back"
                                           << "Meters" << 0 << 0 << 0 << all << QString() << QString();
}

void TestFilterVC::applyOrLeave()
{
    QFETCH(QString, leaveBy);
    QFETCH(QString, categoryText);
    QFETCH(int, priorityIndex);
    QFETCH(int, sortKeyIndex);
    QFETCH(int, sortOrderIndex);
    QFETCH(QString, orderBy);
    QFETCH(QString, sortBy);

    QVERIFY(loadHost());
    const bool applies = leaveBy == QLatin1String("Apply");
    if (applies)
        shared().filteringConfig.selectedCategory = {3, "Pumps"};
    const TaskFilterData before = shared();
    const Query queryBefore = m_api->server.requests(tasksPath).last().query;
    QPointer<FilterVC> filter = openFilter();
    QVERIFY(filter);

    const QDateTime start = local(2026, 10, 5, 8);
    const QDateTime end = local(2026, 11, 15, 18);
    filter->dateStartPicker()->setDate(start);
    filter->dateEndPicker()->setDate(end);
    QTest::mouseClick(filter->prioritySegment()->segmentButton(priorityIndex), Qt::LeftButton);
    QTest::mouseClick(filter->sortKeySegment()->segmentButton(sortKeyIndex), Qt::LeftButton);
    QTest::mouseClick(filter->sortOrderSegment()->segmentButton(sortOrderIndex), Qt::LeftButton);
    filter->categoryTextField()->setText(categoryText);
    m_api->server.clearRequests();
    QWidget *button = applies ? filter->applyButton() : filter->clearButton();
    if (leaveBy == QLatin1String("Back"))
        button = m_host->navigationBar()->backButton();
    QTest::mouseClick(button, Qt::LeftButton);

    const TaskFilterData &choices = shared();
    if (!applies) {
        QCOMPARE(choices.filteringConfig, before.filteringConfig);
        QCOMPARE(choices.sortingConfig, before.sortingConfig);
        QVERIFY(QTest::qWaitFor([&] { return filter.isNull() && !m_api->server.requests(tasksPath).isEmpty(); },
                                timeoutMs));
        QCOMPARE(m_api->server.requests(tasksPath).first().query, queryBefore);
        return;
    }
    QTEST(choices.filteringConfig.selectedCategory, "category");
    QCOMPARE(choices.filteringConfig.selectedPriority, FilterVM::priorityAt(priorityIndex));
    QCOMPARE(choices.filteringConfig.dateStart, start);
    QCOMPARE(choices.filteringConfig.dateEnd, end);
    const std::optional<Query> query = queryAfterClosing(filter);
    QVERIFY(query);
    // The dashboard asks again with the applied choices (the whole query:
    // tst_dashboardvm queryFollowsTheFilter, tst_apidata queryItems).
    QCOMPARE(query->first().second, QString::number(start.toMSecsSinceEpoch()));
    QCOMPARE(query->mid(query->size() - 2), (Query{{"orderBy", orderBy}, {"sortBy", sortBy}}));
}

void TestFilterVC::dateLimits_data()
{
    QTest::addColumn<QDateTime>("startTo");
    QTest::addColumn<QDateTime>("endTo");
    QTest::addColumn<QDateTime>("start");
    QTest::addColumn<QDateTime>("end");

    // A fresh dashboard's window: 2026-09-21 to tomorrow, 2026-11-21, at 11:15:30.123.
    const QTime time(11, 15, 30, 123);
    const QDateTime first(QDate(2026, 9, 21), time), tomorrow(QDate(2026, 11, 21), time);
    const QDateTime none;
    QTest::newRow("end after tomorrow") << none << local(2026, 12, 24) << first << tomorrow;
    QTest::newRow("a later start raises the end's minimum")
        << local(2026, 11, 1) << local(2026, 10, 15) << local(2026, 11, 1) << local(2026, 11, 1);
    QTest::newRow("an earlier end lowers the start's maximum")
        << none << local(2026, 10, 20) << first << local(2026, 10, 20);
}

void TestFilterVC::dateLimits()
{
    QFETCH(QDateTime, startTo);
    QFETCH(QDateTime, endTo);
    QFETCH(QDateTime, start);
    QFETCH(QDateTime, end);

    QVERIFY(loadHost());
    FilterVC *filter = openFilter();
    QVERIFY(filter);
    DatePicker *startPicker = filter->dateStartPicker();
    DatePicker *endPicker = filter->dateEndPicker();
    if (startTo.isValid())
        startPicker->setDate(startTo);
    if (endTo.isValid())
        endPicker->setDate(endTo);

    QCOMPARE(startPicker->date(), start);
    QCOMPARE(endPicker->date(), end);
    QCOMPARE(endPicker->maximumDate(), QDateTime(QDate(2026, 11, 21), QTime(11, 15, 30, 123)));
    QCOMPARE(endPicker->minimumDate(), start);
    QCOMPARE(startPicker->maximumDate(), end);
}

void TestFilterVC::pickersAndDoneButtons()
{
    QVERIFY(loadHost());
    FilterVC *filter = openFilter();
    QVERIFY(filter);
    InputSheet *sheet = filter->inputSheet();

    // Start: one turn of the day wheel moves a day on; the field follows on Done.
    DatePicker *startPicker = filter->dateStartPicker();
    const QDateTime start = startPicker->date();
    QTest::mouseClick(filter->dateStart(), Qt::LeftButton);
    QCOMPARE(sheet->responder(), filter->dateStart());
    QVERIFY(sheet->isVisible() && startPicker->isVisible() && !filter->dateEndPicker()->isVisible());
    turn(startPicker->dayWheel(), -1);
    QCOMPARE(startPicker->date(), start.addDays(1));
    QCOMPARE(filter->dateStart()->text(), QStringLiteral("2026/09/21"));
    QTest::mouseClick(toolbarOf(filter->dateStart())->doneButton(), Qt::LeftButton);
    QCOMPARE(filter->dateStart()->text(), QStringLiteral("2026/09/22"));
    QVERIFY(!sheet->isPresented() && !filter->dateStart()->isFirstResponder());

    // End: already on tomorrow, later days are dimmed and a tap on one comes back.
    DatePicker *endPicker = filter->dateEndPicker();
    const QDateTime tomorrow = endPicker->date();
    QTest::mouseClick(filter->dateEnd(), Qt::LeftButton);
    QCOMPARE(sheet->responder(), filter->dateEnd());
    PickerWheel *days = endPicker->dayWheel();
    QCOMPARE(days->currentIndex(), 20);
    QVERIFY(days->isItemEnabled(20) && !days->isItemEnabled(21));
    QTest::mouseClick(days, Qt::LeftButton, {}, days->rowRect(22).center());
    QCOMPARE(endPicker->date(), tomorrow);
    QCOMPARE(days->currentIndex(), 20);
    QTest::mouseClick(days, Qt::LeftButton, {}, days->rowRect(19).center());
    QCOMPARE(endPicker->date(), tomorrow.addDays(-1));
    QTest::mouseClick(toolbarOf(filter->dateEnd())->doneButton(), Qt::LeftButton);
    QCOMPARE(filter->dateEnd()->text(), QStringLiteral("2026/11/20"));

    // Category: the session's categories; a chosen row names the field.
    ListPicker *categories = filter->categoryPicker();
    QTest::mouseClick(filter->categoryTextField(), Qt::LeftButton);
    QCOMPARE(sheet->responder(), filter->categoryTextField());
    QVERIFY(categories->isVisible() && categories->showsSelectionIndicator());
    QCOMPARE(categories->wheel()->items(), (QStringList{"All", "Meters", "Pumps"}));
    QCOMPARE(categories->selectedRow(), 0);
    QTest::mouseClick(categories->wheel(), Qt::LeftButton, {}, categories->wheel()->rowRect(2).center());
    QCOMPARE(filter->categoryTextField()->text(), QStringLiteral("Pumps"));
    // Another field takes over the sheet.
    QTest::mouseClick(filter->dateStart(), Qt::LeftButton);
    QCOMPARE(sheet->responder(), filter->dateStart());
    QVERIFY(!filter->categoryTextField()->isFirstResponder() && !categories->isVisible());
    QTest::mouseClick(filter->categoryTextField(), Qt::LeftButton);
    QCOMPARE(categories->selectedRow(), 2);
    QTest::mouseClick(toolbarOf(filter->categoryTextField())->doneButton(), Qt::LeftButton);
    QVERIFY(!filter->categoryTextField()->isFirstResponder() && !sheet->isPresented());
    QTRY_VERIFY_WITH_TIMEOUT(!sheet->isVisible(), timeoutMs);
    QCOMPARE(filter->dateStart()->text(), QStringLiteral("2026/09/22"));
}

void TestFilterVC::turningTheWheels_data()
{
    QTest::addColumn<QDateTime>("from");
    QTest::addColumn<QDateTime>("minimum");
    QTest::addColumn<QDateTime>("maximum");
    QTest::addColumn<QString>("wheel");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QDateTime>("to");

    const QDateTime open;
    QTest::newRow("31 October, then November")
        << local(2026, 10, 31) << open << open << "month" << 1 << local(2026, 11, 30);
    QTest::newRow("29 February, then a common year")
        << local(2024, 2, 29, 9) << open << open << "year" << 1 << local(2025, 2, 28, 9);
    QTest::newRow("31 March, back to February")
        << local(2026, 3, 31) << open << open << "month" << -1 << local(2026, 2, 28);
    QTest::newRow("past the maximum comes back to it")
        << local(2026, 11, 19) << open << local(2026, 11, 21, 8) << "day" << 5 << local(2026, 11, 21, 8);
    QTest::newRow("before the minimum comes back to it")
        << local(2026, 9, 25) << local(2026, 9, 21) << open << "month" << -1 << local(2026, 9, 21);
    QTest::newRow("limits the wrong way round are ignored")
        << local(2026, 9, 25) << local(2026, 10, 1) << local(2026, 9, 1) << "day" << 3 << local(2026, 9, 28);
}

void TestFilterVC::turningTheWheels()
{
    QFETCH(QDateTime, from);
    QFETCH(QDateTime, minimum);
    QFETCH(QDateTime, maximum);
    QFETCH(QString, wheel);
    QFETCH(int, rows);
    QFETCH(QDateTime, to);

    DatePicker picker;
    picker.setMinimumDate(minimum);
    picker.setMaximumDate(maximum);
    picker.setDate(from);
    QCOMPARE(picker.date(), from);
    QSignalSpy changed(&picker, &DatePicker::dateChanged);
    PickerWheel *turned = wheel == "month" ? picker.monthWheel()
        : wheel == "day"                   ? picker.dayWheel()
                                           : picker.yearWheel();
    turned->step(rows);

    QCOMPARE(picker.date(), to);
    QCOMPARE(changed.count(), 1);
    // The wheels show the date that was taken.
    QCOMPARE(picker.dayWheel()->currentIndex() + 1, to.date().day());
    QCOMPARE(picker.monthWheel()->currentIndex() + 1, to.date().month());
    QCOMPARE(picker.yearWheel()->currentIndex() + DatePicker::firstYear, to.date().year());
}

QTEST_MAIN(TestFilterVC)
#include "tst_filtervc.moc"
