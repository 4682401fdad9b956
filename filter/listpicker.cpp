#include "filter/listpicker.h"

#include "filter/listpickerdatasource.h"
#include "filter/pickerwheel.h"

#include <QPainter>
#include <QVBoxLayout>

namespace ravelin {

ListPicker::ListPicker(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::NoFocus);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(12, 0, 12, 0);
    m_wheel = new PickerWheel(this);
    m_wheel->setObjectName(QStringLiteral("rows"));
    column->addWidget(m_wheel);
    connect(m_wheel, &PickerWheel::rowSelected, this, &ListPicker::didSelectRow);
}

void ListPicker::reloadAllComponents()
{
    QStringList rows;
    const int count = m_dataSource ? m_dataSource->numberOfRows(*this) : 0;
    for (int row = 0; row < count; ++row)
        rows.append(m_dataSource->titleForRow(*this, row));
    m_wheel->setItems(rows);
}

int ListPicker::numberOfRows() const
{
    return m_wheel->count();
}

QString ListPicker::titleForRow(int row) const
{
    return m_wheel->items().value(row);
}

int ListPicker::selectedRow() const
{
    return m_wheel->currentIndex();
}

void ListPicker::selectRow(int row, bool animated)
{
    m_wheel->setCurrentIndex(row, animated);
}

void ListPicker::setShowsSelectionIndicator(bool shows)
{
    if (m_showsSelectionIndicator == shows)
        return;
    m_showsSelectionIndicator = shows;
    update();
}

void ListPicker::paintEvent(QPaintEvent *)
{
    if (!m_showsSelectionIndicator)
        return;
    QPainter painter(this);
    PickerWheel::paintSelectionBand(painter, rect());
}

} // namespace ravelin
