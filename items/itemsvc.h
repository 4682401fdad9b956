#pragma once

#include "host/guardeddelegate.h"
#include "host/ravelineventvc.h"
#include "items/blocktaskvcdelegate.h"
#include "items/itemactionvcdelegate.h"
#include "items/itemstatus.h"
#include "items/itemsvcdelegate.h"
#include "items/itemsvm.h"
#include "items/qrscannerdelegate.h"

#include <QPointer>

class QAction;
class QHBoxLayout;
class QLabel;
class QPushButton;

namespace ravelin {

class ItemListModel;
class ItemTableView;
class PieChartView;
class RefreshableScrollArea;
class RoundedView;
class SegmentedControl;

// The screen of one task: its details and item progress, its checklist
// filtered by status, and the task's actions (complete it, mark it as blocked,
// its comments, scanning a checkpoint). Items are acted on one at a time (tap,
// swipe, scan) or several at once (multiple-selection mode). Status changes of
// the task itself go to the delegate, which sends them.
class ItemsVC
    : public RavelinEventVC
    , public ItemActionVCDelegate
    , public BlockTaskVCDelegate
    , public QRScannerDelegate
{
    Q_OBJECT

public:
    explicit ItemsVC(QWidget *parent = nullptr);
    ~ItemsVC() override;

    // Set before the screen loads; the screen owns its view model.
    [[nodiscard]] ItemsVM *viewModel() const { return m_viewModel; }
    void setViewModel(ItemsVM *viewModel);
    [[nodiscard]] ItemsVCDelegate *delegate() const { return m_delegate.get(); }
    void setDelegate(ItemsVCDelegate *delegate) { m_delegate = delegate; }

    void viewDidLoad() override;

    // Starts the refresh indicator and fetches the items.
    void pullToRefresh();
    void reloadItems();
    void updateMarks();
    // Shows the task's items and counts as the view model has them now.
    void reloadData();

    // Filter segment i stands for the i-th item status (completed, incidents, open, all).
    void filterChanged(int segment);
    // Multiple-selection mode on or off.
    void setMultipleSelection(bool on);
    [[nodiscard]] bool isMultipleSelection() const;
    // "done": the chosen items go to the item action, or "No items selected".
    void finishMultipleSelection();
    // The single-item action for a row of the filtered list.
    void actOnRow(int row);
    // Completes the task: tells the worker, then the delegate.
    void completeTask();
    // QRScannerDelegate: a scanned code opens its item, or the screen tells why not.
    void didScanCode(const std::optional<QString> &code) override;

    // ItemActionVCDelegate and BlockTaskVCDelegate.
    void didUpdateItemStatus(bool success) override;
    void didBlockTask() override;

    // The views, for the tests and the tour.
    [[nodiscard]] ItemTableView *tableView() const { return m_tableView; }
    [[nodiscard]] ItemListModel *itemModel() const { return m_model; }
    [[nodiscard]] SegmentedControl *filterSegment() const { return m_filterSegment; }
    [[nodiscard]] RefreshableScrollArea *refreshControl() const { return m_scrollArea; }
    [[nodiscard]] PieChartView *progressView() const { return m_progressView; }
    [[nodiscard]] QLabel *overviewLbl() const { return m_overviewLbl; }
    [[nodiscard]] QLabel *acceptedCountLbl() const { return m_acceptedCountLbl; }
    [[nodiscard]] QLabel *rejectedCountLbl() const { return m_rejectedCountLbl; }
    [[nodiscard]] QWidget *statusBreakdown() const { return m_statusBreakdown; }
    [[nodiscard]] QLabel *categorylbl() const { return m_categorylbl; }
    [[nodiscard]] QLabel *prioritylbl() const { return m_prioritylbl; }
    [[nodiscard]] QLabel *assignedByLbl() const { return m_assignedByLbl; }
    [[nodiscard]] QLabel *dateCreatedLbl() const { return m_dateCreatedLbl; }
    [[nodiscard]] QLabel *dateUpdatedLbl() const { return m_dateUpdatedLbl; }
    [[nodiscard]] QPushButton *completeBtn() const { return m_completeBtn; }
    [[nodiscard]] QPushButton *markAsBlockedBtn() const { return m_markAsBlockedBtn; }
    [[nodiscard]] QPushButton *multipleSelectionBtn() const { return m_multipleSelectionBtn; }
    [[nodiscard]] QPushButton *saveBtn() const { return m_saveBtn; }
    [[nodiscard]] QWidget *taskBtnsStack() const { return m_taskBtnsStack; }
    [[nodiscard]] QAction *checkpointBtnPressed() const { return m_checkpointAction; }
    [[nodiscard]] QAction *commentsButton() const { return m_commentsAction; }

protected:
    // The item action and the block task screen (presented over this one), the
    // comments and the QR scanner (pushed).
    [[nodiscard]] Screen *makeDestination(const QString &identifier) override;
    void prepare(const QString &identifier, Screen *destination, const std::any &sender) override;
    [[nodiscard]] bool presentsModally(const QString &identifier) const override;

private:
    void buildViews();
    void refreshHeader();
    void showItemAction(const QList<ItemPtr> &items);
    void selectRowForAction(int row);
    void swipeAction(int row, ItemStatus status);
    [[nodiscard]] ItemsVM &requireViewModel() const;

    QPointer<ItemsVM> m_viewModel;
    GuardedDelegate<ItemsVCDelegate> m_delegate;
    ItemListModel *m_model = nullptr;
    // The row picked for a single action (outside multiple selection), as the
    // list's single selection keeps it.
    ItemPtr m_singleSelection;

    RefreshableScrollArea *m_scrollArea = nullptr;
    QWidget *m_topView = nullptr;
    RoundedView *m_taskDetailsView = nullptr;
    RoundedView *m_overviewView = nullptr;
    PieChartView *m_progressView = nullptr;
    QLabel *m_overviewLbl = nullptr;
    QLabel *m_acceptedCountLbl = nullptr;
    QLabel *m_rejectedCountLbl = nullptr;
    QWidget *m_statusBreakdown = nullptr;
    QLabel *m_categorylbl = nullptr;
    QLabel *m_prioritylbl = nullptr;
    QLabel *m_assignedByLbl = nullptr;
    QLabel *m_dateCreatedLbl = nullptr;
    QLabel *m_dateUpdatedLbl = nullptr;
    SegmentedControl *m_filterSegment = nullptr;
    ItemTableView *m_tableView = nullptr;
    QPushButton *m_completeBtn = nullptr;
    QPushButton *m_markAsBlockedBtn = nullptr;
    QPushButton *m_multipleSelectionBtn = nullptr;
    QPushButton *m_saveBtn = nullptr;
    QWidget *m_taskBtnsStack = nullptr;
    QAction *m_checkpointAction = nullptr;
    QAction *m_commentsAction = nullptr;
};

} // namespace ravelin
