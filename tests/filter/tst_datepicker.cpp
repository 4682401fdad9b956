#include "filter/datepicker.h"
#include "filter/pickerwheel.h"

#include <QSignalSpy>
#include <QTest>

using ravelin::DatePicker;
using ravelin::PickerWheel;

namespace {

QDateTime at(int y, int m, int d, int h = 12)
{
    return QDateTime(QDate(y, m, d), QTime(h, 0));
}

} // namespace

// Turning the wheels as a worker would: a day the month does not have, and the limits.
class TestDatePicker : public QObject
{
    Q_OBJECT

private slots:
    void turningTheWheels_data();
    void turningTheWheels();
};

void TestDatePicker::turningTheWheels_data()
{
    QTest::addColumn<QDateTime>("from");
    QTest::addColumn<QDateTime>("minimum");
    QTest::addColumn<QDateTime>("maximum");
    QTest::addColumn<QString>("wheel");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QDateTime>("to");

    const QDateTime open;
    QTest::newRow("31 October, then November") << at(2026, 10, 31) << open << open << "month" << 1 << at(2026, 11, 30);
    QTest::newRow("29 February, then a common year")
        << at(2024, 2, 29, 9) << open << open << "year" << 1 << at(2025, 2, 28, 9);
    QTest::newRow("31 March, back to February") << at(2026, 3, 31) << open << open << "month" << -1 << at(2026, 2, 28);
    QTest::newRow("past the maximum comes back to it")
        << at(2026, 11, 19) << open << at(2026, 11, 21, 8) << "day" << 5 << at(2026, 11, 21, 8);
    QTest::newRow("before the minimum comes back to it")
        << at(2026, 9, 25) << at(2026, 9, 21) << open << "month" << -1 << at(2026, 9, 21);
    QTest::newRow("limits the wrong way round are ignored")
        << at(2026, 9, 25) << at(2026, 10, 1) << at(2026, 9, 1) << "day" << 3 << at(2026, 9, 28);
}

void TestDatePicker::turningTheWheels()
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

QTEST_MAIN(TestDatePicker)
#include "tst_datepicker.moc"
