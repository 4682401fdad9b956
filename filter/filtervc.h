#pragma once

#include "filter/filtervm.h"
#include "filter/listpickerdatasource.h"
#include "host/screen.h"

#include <memory>

class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace ravelin {

class DatePicker;
class FilterVCDelegate;
class InputField;
class InputSheet;
class ListPicker;
class SegmentedControl;

// The screen on which the worker narrows and orders the dashboard's tasks:
// sort key and order, priority, a window of creation dates and a category.
// The edits stay in the view model until Apply writes them into the shared
// choices and has the dashboard fetch again; Clear leaves without changing
// anything.
class FilterVC
    : public Screen
    , public ListPickerDataSource
{
    Q_OBJECT

public:
    // Tags of the Done buttons above the pickers.
    static constexpr int startDoneTag = 0;
    static constexpr int endDoneTag = 1;
    static constexpr int categoryDoneTag = 2;
    static constexpr int datePickerHeight = 300;
    static constexpr int categoryPickerHeight = 216;

    explicit FilterVC(QWidget *parent = nullptr);
    ~FilterVC() override;

    // Set before the screen loads.
    [[nodiscard]] FilterVM *viewModel() const { return m_viewModel.get(); }
    void setViewModel(std::unique_ptr<FilterVM> viewModel);
    // Not owned: the screen that opened this one, which stays below it.
    [[nodiscard]] FilterVCDelegate *delegate() const { return m_delegate; }
    void setDelegate(FilterVCDelegate *delegate) { m_delegate = delegate; }

    // Fills the controls from the view model and makes the pickers.
    void viewDidLoad() override;

    // Takes what the screen shows into the view model, applies it, tells the
    // delegate and closes. Before the screen has loaded this stops the process.
    void didTapApply();
    // Closes without changing anything.
    void didTapClear();
    // A picker's Done: the date pickers (tags 0 and 1) write their date into
    // their field; any other tag lets the category field go. Editing then ends.
    void donePressed(int tag);
    // The field being edited lets go and its picker slides away.
    void endEditing();

    // ListPickerDataSource: the session's task categories.
    [[nodiscard]] int numberOfRows(const ListPicker &picker) const override;
    [[nodiscard]] QString titleForRow(const ListPicker &picker, int row) const override;
    // A category chosen on the picker shows in the field.
    void pickerDidSelectRow(int row);

    // The views, for the navigation host, the tour and tests.
    [[nodiscard]] SegmentedControl *sortKeySegment() const { return m_sortKeySegment; }
    [[nodiscard]] SegmentedControl *sortOrderSegment() const { return m_sortOrderSegment; }
    [[nodiscard]] SegmentedControl *prioritySegment() const { return m_prioritySegment; }
    [[nodiscard]] InputField *dateStart() const { return m_dateStart; }
    [[nodiscard]] InputField *dateEnd() const { return m_dateEnd; }
    [[nodiscard]] InputField *categoryTextField() const { return m_categoryTextField; }
    [[nodiscard]] DatePicker *dateStartPicker() const { return m_dateStartPicker; }
    [[nodiscard]] DatePicker *dateEndPicker() const { return m_dateEndPicker; }
    [[nodiscard]] ListPicker *categoryPicker() const { return m_categoryPicker; }
    [[nodiscard]] InputSheet *inputSheet() const { return m_inputSheet; }
    [[nodiscard]] QPushButton *applyButton() const { return m_applyButton; }
    [[nodiscard]] QPushButton *clearButton() const { return m_clearButton; }

private:
    void buildViews();
    void loadSegments();
    [[nodiscard]] DatePicker *makeDatePicker(InputField *field, int doneTag, const QDateTime &date);
    void loadCategoryField();
    void updateDateLimits();
    void keepEditedFieldInSight(int coveredHeight);
    [[nodiscard]] FilterVM &requireViewModel() const;

    std::unique_ptr<FilterVM> m_viewModel;
    FilterVCDelegate *m_delegate = nullptr;

    QScrollArea *m_scrollArea = nullptr;
    QVBoxLayout *m_contentLayout = nullptr;
    SegmentedControl *m_sortKeySegment = nullptr;
    SegmentedControl *m_sortOrderSegment = nullptr;
    SegmentedControl *m_prioritySegment = nullptr;
    InputField *m_dateStart = nullptr;
    InputField *m_dateEnd = nullptr;
    InputField *m_categoryTextField = nullptr;
    QPushButton *m_applyButton = nullptr;
    QPushButton *m_clearButton = nullptr;
    InputSheet *m_inputSheet = nullptr;
    DatePicker *m_dateStartPicker = nullptr;
    DatePicker *m_dateEndPicker = nullptr;
    ListPicker *m_categoryPicker = nullptr;
    bool m_updatingLimits = false;
};

} // namespace ravelin
