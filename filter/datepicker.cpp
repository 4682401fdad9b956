#include "filter/datepicker.h"

#include "filter/pickerwheel.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace ravelin {

namespace {

// Whether the days from `first` to `last` meet the window [from, to] (an
// invalid end is open).
bool meets(QDate first, QDate last, QDate from, QDate to)
{
    return (!from.isValid() || last >= from) && (!to.isValid() || first <= to);
}

} // namespace

DatePicker::DatePicker(QWidget *parent)
    : QWidget(parent)
    , m_date(QDateTime::currentDateTime())
{
    setFocusPolicy(Qt::NoFocus);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 0, 12, 0);
    row->setSpacing(0);

    const QLocale english(QLocale::English, QLocale::UnitedStates);
    QStringList months;
    for (int month = 1; month <= 12; ++month)
        months.append(english.monthName(month, QLocale::LongFormat));
    QStringList days;
    for (int day = 1; day <= 31; ++day)
        days.append(QString::number(day));
    QStringList years;
    for (int year = firstYear; year <= lastYear; ++year)
        years.append(QString::number(year));

    const auto wheel
        = [this, row](const QString &name, const QStringList &items, Qt::Alignment alignment, int stretch) {
              auto *column = new PickerWheel(this);
              column->setObjectName(name);
              column->setAccessibleName(name);
              column->setItems(items);
              column->setTextAlignment(alignment);
              row->addWidget(column, stretch);
              connect(column, &PickerWheel::rowSelected, this, &DatePicker::wheelTurned);
              return column;
          };
    m_month = wheel(tr("Month"), months, Qt::AlignRight, 5);
    m_day = wheel(tr("Day"), days, Qt::AlignCenter, 2);
    m_year = wheel(tr("Year"), years, Qt::AlignLeft, 4);
    showDate(false);
}

void DatePicker::setDate(const QDateTime &date)
{
    takeDate(date, false);
}

void DatePicker::setMinimumDate(const QDateTime &date)
{
    if (m_minimumDate == date)
        return;
    m_minimumDate = date;
    takeDate(m_date, isVisible());
}

void DatePicker::setMaximumDate(const QDateTime &date)
{
    if (m_maximumDate == date)
        return;
    m_maximumDate = date;
    takeDate(m_date, isVisible());
}

QDateTime DatePicker::allowed(const QDateTime &date) const
{
    QDateTime out = date.isValid() ? date : m_date;
    const QDateTime first(QDate(firstYear, 1, 1), QTime(0, 0));
    const QDateTime last(QDate(lastYear, 12, 31), QTime(23, 59, 59));
    out = std::clamp(out, first, last);
    const bool ordered = !(m_minimumDate.isValid() && m_maximumDate.isValid() && m_minimumDate > m_maximumDate);
    if (ordered && m_minimumDate.isValid() && out < m_minimumDate)
        out = m_minimumDate;
    if (ordered && m_maximumDate.isValid() && out > m_maximumDate)
        out = m_maximumDate;
    return out;
}

void DatePicker::takeDate(const QDateTime &date, bool animated)
{
    const QDateTime next = allowed(date);
    const bool changed = next != m_date;
    m_date = next;
    showDate(animated);
    if (changed)
        emit dateChanged(m_date);
}

void DatePicker::wheelTurned()
{
    const QDateTime local = m_date.toLocalTime();
    const int year = firstYear + m_year->currentIndex();
    const int month = m_month->currentIndex() + 1;
    // A day the month does not have becomes its last day.
    const int day = std::min(m_day->currentIndex() + 1, QDate(year, month, 1).daysInMonth());
    takeDate(QDateTime(QDate(year, month, day), local.time()), true);
}

void DatePicker::showDate(bool animated)
{
    const QDate shown = m_date.toLocalTime().date();
    m_year->setCurrentIndex(shown.year() - firstYear, animated);
    m_month->setCurrentIndex(shown.month() - 1, animated);
    m_day->setCurrentIndex(shown.day() - 1, animated);
    updateAvailability();
}

void DatePicker::updateAvailability()
{
    const bool ordered = !(m_minimumDate.isValid() && m_maximumDate.isValid() && m_minimumDate > m_maximumDate);
    const QDate from = ordered && m_minimumDate.isValid() ? m_minimumDate.toLocalTime().date() : QDate();
    const QDate to = ordered && m_maximumDate.isValid() ? m_maximumDate.toLocalTime().date() : QDate();
    const QDate shown = m_date.toLocalTime().date();

    QList<bool> years;
    for (int year = firstYear; year <= lastYear; ++year)
        years.append(meets(QDate(year, 1, 1), QDate(year, 12, 31), from, to));
    QList<bool> months;
    for (int month = 1; month <= 12; ++month) {
        const QDate first(shown.year(), month, 1);
        months.append(meets(first, first.addDays(first.daysInMonth() - 1), from, to));
    }
    QList<bool> days;
    for (int day = 1; day <= 31; ++day) {
        const QDate date(shown.year(), shown.month(), day);
        days.append(date.isValid() && meets(date, date, from, to));
    }
    m_year->setItemsEnabled(years);
    m_month->setItemsEnabled(months);
    m_day->setItemsEnabled(days);
}

void DatePicker::paintEvent(QPaintEvent *)
{
    // One band across the wheels marks the chosen date.
    QPainter painter(this);
    PickerWheel::paintSelectionBand(painter, rect());
}

} // namespace ravelin
