#pragma once

#include <QWidget>

namespace ravelin {

class ListPickerDataSource;
class PickerWheel;

// A picker of one column whose rows come from a data source; it reports the row
// the worker settles on.
class ListPicker : public QWidget
{
    Q_OBJECT

public:
    explicit ListPicker(QWidget *parent = nullptr);

    // Not owned; it must outlive the picker or be unset first.
    void setDataSource(ListPickerDataSource *dataSource) { m_dataSource = dataSource; }
    // Asks the data source for the rows again.
    void reloadAllComponents();

    [[nodiscard]] int numberOfRows() const;
    [[nodiscard]] QString titleForRow(int row) const;
    // -1 when there are no rows.
    [[nodiscard]] int selectedRow() const;
    void selectRow(int row, bool animated = false);

    [[nodiscard]] bool showsSelectionIndicator() const { return m_showsSelectionIndicator; }
    void setShowsSelectionIndicator(bool shows);

    [[nodiscard]] PickerWheel *wheel() const { return m_wheel; }

signals:
    void didSelectRow(int row);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ListPickerDataSource *m_dataSource = nullptr;
    PickerWheel *m_wheel = nullptr;
    bool m_showsSelectionIndicator = false;
};

} // namespace ravelin
