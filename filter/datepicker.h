#pragma once

#include <QDateTime>
#include <QWidget>

namespace ravelin {

class PickerWheel;

// A date-only picker on three wheels (month, day, year), in local time. The
// date keeps its time of day while the worker turns the wheels, and always
// stays within the minimum and maximum dates: a day outside them is dimmed, and
// turning to one brings the wheels back to the nearest allowed date. When the
// minimum is after the maximum both are ignored.
class DatePicker : public QWidget
{
    Q_OBJECT

public:
    static constexpr int firstYear = 1970;
    static constexpr int lastYear = 2100;

    explicit DatePicker(QWidget *parent = nullptr);

    [[nodiscard]] QDateTime date() const { return m_date; }
    // Takes the date into the limits.
    void setDate(const QDateTime &date);

    // Invalid dates leave that side open.
    [[nodiscard]] QDateTime minimumDate() const { return m_minimumDate; }
    void setMinimumDate(const QDateTime &date);
    [[nodiscard]] QDateTime maximumDate() const { return m_maximumDate; }
    void setMaximumDate(const QDateTime &date);

    [[nodiscard]] PickerWheel *monthWheel() const { return m_month; }
    [[nodiscard]] PickerWheel *dayWheel() const { return m_day; }
    [[nodiscard]] PickerWheel *yearWheel() const { return m_year; }

signals:
    // The date changed, by the worker or in code (also when a new limit moved it).
    void dateChanged(const QDateTime &date);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void wheelTurned();
    // Moves to the date as the limits allow, then shows it.
    void takeDate(const QDateTime &date, bool animated);
    void showDate(bool animated);
    void updateAvailability();
    [[nodiscard]] QDateTime allowed(const QDateTime &date) const;

    QDateTime m_date;
    QDateTime m_minimumDate;
    QDateTime m_maximumDate;
    PickerWheel *m_month = nullptr;
    PickerWheel *m_day = nullptr;
    PickerWheel *m_year = nullptr;
};

} // namespace ravelin
