#pragma once

#include <QString>

namespace ravelin {

class ListPicker;

// Where a list picker takes its rows from.
class ListPickerDataSource
{
public:
    virtual ~ListPickerDataSource() = default;

    [[nodiscard]] virtual int numberOfRows(const ListPicker &picker) const = 0;
    [[nodiscard]] virtual QString titleForRow(const ListPicker &picker, int row) const = 0;
};

} // namespace ravelin
