#pragma once

#include "filter/filtervcdelegate.h"
// The screen base's inline accessors need the complete navigation host.
#include "host/ravelineventvc.h"
#include "host/ravelinnavvc.h"
#include "items/itemsvcdelegate.h"
#include "tasks/task.h"
#include "tasks/taskcollectionviewcelldelegate.h"

#include <QList>
#include <QPointer>

#include <chrono>
#include <functional>

class QAction;
class QLabel;
class QVariantAnimation;
class QVBoxLayout;

namespace ravelin {

class DashboardHeaderView;
class DashboardVCDelegate;
class DashboardVM;
class PieChartView;
class RefreshableScrollArea;
class TaskCollectionViewCell;
class TaskTableViewCell;

// The first screen: the overall chart of task statuses over one section per
// status, each a horizontal strip of task cards. From here the worker refreshes,
// opens the filter, acknowledges, starts or unblocks a task, or opens its items.
class DashboardVC
    : public RavelinEventVC
    , public TaskCollectionViewCellDelegate
    , public ItemsVCDelegate
    , public FilterVCDelegate
{
    Q_OBJECT

public:
    static constexpr int sectionHeaderHeight = 30;
    static constexpr std::chrono::milliseconds headerFadeDuration{400};

    explicit DashboardVC(QWidget *parent = nullptr);
    ~DashboardVC() override;

    // Set before the screen loads; the screen owns its view model.
    [[nodiscard]] DashboardVM *viewModel() const;
    void setViewModel(DashboardVM *viewModel);
    [[nodiscard]] DashboardVCDelegate *vcDelegate() const { return m_vcDelegate; }
    void setVcDelegate(DashboardVCDelegate *delegate) { m_vcDelegate = delegate; }

    // Starts the refresh indicator and fetches the tasks.
    void pullToRefresh();
    // Fetches the tasks; the table, the chart and the indicator follow the answer.
    void refreshData();
    // Redraws the overall chart and reloads the table from the view model's
    // sections (what an answer leads to). Costs the same for ten tasks or ten
    // thousand: only the cards in sight are laid out and painted.
    void reloadData();

    // Selecting a task: assigned, acknowledged and blocked tasks ask first;
    // the others load their items and open them.
    void openTask(const TaskPtr &task);

    // A screen opened from here reports that a task is now in another status
    // (completed or blocked): the change is sent, then the dashboard refreshes.
    // The items screen's delegate calls this.
    void changeTaskStatus(const TaskPtr &task, TaskStatus status);

    // Life cycle.
    void viewDidLoad() override;
    void viewDidAppear() override;

    // Any task event is told to the worker, then the dashboard reloads.
    void receivedTaskEvent(const QVariant &object) override;

    // TaskCollectionViewCellDelegate: the card's acknowledge button asks at once.
    void didTapAcknowledge(const TaskPtr &task) override;

    // ItemsVCDelegate: the task opened from here was completed or blocked.
    void didChangeTaskStatus(TaskStatus status, qint64 taskId) override;

    // FilterVCDelegate: the applied choices become the task list's, then the
    // dashboard fetches again.
    void filterApplied(const TaskFilterData &filterData) override;

    // The views, for the navigation host and for tests.
    [[nodiscard]] DashboardHeaderView *headerView() const { return m_headerView; }
    [[nodiscard]] PieChartView *pieChartView() const { return m_pieChartView; }
    [[nodiscard]] RefreshableScrollArea *refreshControl() const { return m_scrollArea; }
    [[nodiscard]] QWidget *tableView() const { return m_tableView; }
    [[nodiscard]] QLabel *emptyMessageLabel() const { return m_emptyLabel; }
    [[nodiscard]] const QList<QLabel *> &sectionHeaderLabels() const { return m_sectionHeaders; }
    [[nodiscard]] const QList<TaskTableViewCell *> &rows() const { return m_rows; }
    // Paints every card of every row.
    [[nodiscard]] TaskCollectionViewCell *cardPainter() const { return m_cardPainter; }
    [[nodiscard]] QAction *refreshAction() const { return m_refreshAction; }
    [[nodiscard]] QAction *filterAction() const { return m_filterAction; }

protected:
    // The filter screen ("ShowFilterView") and the items screen
    // ("ShowChecklistItems") are made here.
    [[nodiscard]] Screen *makeDestination(const QString &identifier) override;
    // Hands each destination what it works on; see the definition.
    void prepare(const QString &identifier, Screen *destination, const std::any &sender) override;

private:
    void buildViews();
    void tasksLoaded(bool success);
    void fadeHeader(bool visible, std::function<void()> completion);
    void presentFetchFailure();
    void updateChart();
    void reloadTable();
    // The marks of changes still in the outbox, on every strip's cards.
    void updateMarks();
    void showStatusPrompt(const TaskPtr &task);
    void sendStatusChange(const TaskPtr &task, qint64 statusId);
    void openTaskItems(const TaskPtr &task);
    void panelButtonTapped(bool wasSelected);
    [[nodiscard]] DashboardVM &requireViewModel() const;

    QPointer<DashboardVM> m_viewModel;
    DashboardVCDelegate *m_vcDelegate = nullptr;

    RefreshableScrollArea *m_scrollArea = nullptr;
    QWidget *m_tableView = nullptr;
    QVBoxLayout *m_sectionsLayout = nullptr;
    DashboardHeaderView *m_headerView = nullptr;
    PieChartView *m_pieChartView = nullptr;
    QLabel *m_emptyLabel = nullptr;
    QList<QWidget *> m_sectionHeaderViews;
    QList<QLabel *> m_sectionHeaders;
    QList<TaskTableViewCell *> m_rows;
    TaskCollectionViewCell *m_cardPainter = nullptr;
    QAction *m_refreshAction = nullptr;
    QAction *m_filterAction = nullptr;
    QVariantAnimation *m_headerFade = nullptr;
};

} // namespace ravelin
