#include "tasks/dashboardvc.h"

#include "api/fatalerror.h"
#include "api/networkmanager.h"
#include "api/outboxsender.h"
#include "filter/filtervc.h"
#include "host/ownedviewmodel.h"
#include "host/ravelinnavvc.h"
#include "host/taskupdateevent.h"
#include "items/itemsvc.h"
#include "items/itemsvm.h"
#include "resources/namedcolors.h"
#include "resources/namedimages.h"
#include "tasks/dashboardheaderview.h"
#include "tasks/dashboardtexts.h"
#include "tasks/dashboardvcdelegate.h"
#include "tasks/dashboardvm.h"
#include "tasks/piechartview.h"
#include "tasks/taskcard.h"
#include "tasks/taskcollectionmodel.h"
#include "tasks/taskstrip.h"
#include "views/alertpresenter.h"
#include "views/refreshablescrollarea.h"
#include "views/textscale.h"

#include <QAction>
#include <QLabel>
#include <QVBoxLayout>
#include <QVariantAnimation>

namespace ravelin {

namespace {

// The refresh indicator's colour. The colour is part of the library's own
// resources, so the lookup is repeated until it answers; there is no stand-in.
QColor refreshTint()
{
    std::optional<QColor> color;
    while (!color)
        color = NamedColors::color(ColorNames::labelText);
    return *color;
}

QColor backgroundColor()
{
    return NamedColors::color(ColorNames::groupedBackground, QColor(0xF2, 0xF2, 0xF7));
}

void paintBackground(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, color);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

} // namespace

DashboardVC::DashboardVC(QWidget *parent)
    : RavelinEventVC(parent)
{
    setObjectName(QStringLiteral("DashboardVC"));
    buildViews();
}

DashboardVC::~DashboardVC() = default;

DashboardVM *DashboardVC::viewModel() const
{
    return m_viewModel;
}

void DashboardVC::setViewModel(DashboardVM *viewModel)
{
    adoptViewModel(m_viewModel, viewModel, this);
}

void DashboardVC::buildViews()
{
    paintBackground(this, backgroundColor());
    m_cardPainter = new TaskCollectionViewCell(this);
    m_cardPainter->setDelegate(this);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    m_scrollArea = new RefreshableScrollArea(this);
    m_scrollArea->setObjectName(QStringLiteral("refreshControl"));
    paintBackground(m_scrollArea, backgroundColor());
    paintBackground(m_scrollArea->viewport(), backgroundColor());
    column->addWidget(m_scrollArea);
    // Pulling far enough asks for the tasks again.
    connect(m_scrollArea, &RefreshableScrollArea::refreshRequested, this, &DashboardVC::refreshData);

    m_tableView = new QWidget;
    m_tableView->setObjectName(DashboardTexts::tableName);
    m_tableView->setAccessibleName(tr("Tasks"));
    paintBackground(m_tableView, backgroundColor());
    auto *table = new QVBoxLayout(m_tableView);
    table->setContentsMargins(0, 0, 0, 16);
    table->setSpacing(0);

    m_headerView = new DashboardHeaderView(m_tableView);
    m_headerView->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_headerView->setBackdropColor(backgroundColor());
    m_pieChartView = m_headerView->pieChartView();
    table->addWidget(m_headerView);

    m_sectionsLayout = new QVBoxLayout;
    m_sectionsLayout->setContentsMargins(0, 4, 0, 0);
    m_sectionsLayout->setSpacing(0);
    table->addLayout(m_sectionsLayout);

    m_emptyLabel = new QLabel(DashboardTexts::emptyMessage(), m_tableView);
    m_emptyLabel->setObjectName(QStringLiteral("emptyMessage"));
    m_emptyLabel->setAlignment(Qt::AlignCenter);
    m_emptyLabel->setWordWrap(true);
    m_emptyLabel->setMargin(24);
    m_emptyLabel->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    m_emptyLabel->setFont(TextScale::font(m_emptyLabel->font(), 15));
    m_emptyLabel->setStyleSheet(
        QStringLiteral("color: %1;").arg(NamedColors::color(ColorNames::secondaryLabelText, QColor(Qt::gray)).name()));
    m_emptyLabel->hide();
    table->addWidget(m_emptyLabel, 1);
    table->addStretch(0);

    m_scrollArea->setWidget(m_tableView);

    connect(m_headerView, &DashboardHeaderView::panelButtonTapped, this, &DashboardVC::panelButtonTapped);
    connect(m_headerView, &DashboardHeaderView::swiped, this, [this](DashboardHeaderView::SwipeDirection direction) {
        if (m_vcDelegate)
            m_vcDelegate->didSwipe(direction == DashboardHeaderView::SwipeDirection::left);
    });

    const QColor barText = NamedColors::color(ColorNames::navigationBarText, QColor(Qt::white));
    m_refreshAction = new QAction(NamedImages::icon(ImageNames::refresh, barText), tr("Refresh"), this);
    m_refreshAction->setObjectName(QStringLiteral("refreshButton"));
    m_refreshAction->setShortcut(QKeySequence::Refresh);
    connect(m_refreshAction, &QAction::triggered, this, &DashboardVC::pullToRefresh);
    m_filterAction = new QAction(NamedImages::icon(ImageNames::filter, barText), tr("Filter"), this);
    m_filterAction->setObjectName(QStringLiteral("filterButton"));
    connect(m_filterAction, &QAction::triggered, this, [this] { performSegue(DashboardTexts::showFilterView); });
    setTitle(tr("Dashboard"));
    setLeftBarActions({m_refreshAction});
    setRightBarActions({m_filterAction});
}

void DashboardVC::viewDidLoad()
{
    RavelinEventVC::viewDidLoad();
    m_scrollArea->setTintColor(refreshTint());
    m_scrollArea->setRefreshTitle(DashboardTexts::refreshTitle());
    pullToRefresh();
    followOutbox([this](bool someSent) {
        updateMarks();
        if (someSent) // the server's answer replaces what the cache kept
            refreshData();
    });
}

void DashboardVC::viewDidAppear()
{
    RavelinEventVC::viewDidAppear();
    pullToRefresh();
}

void DashboardVC::pullToRefresh()
{
    m_scrollArea->beginRefreshing();
    refreshData();
}

void DashboardVC::refreshData()
{
    requireViewModel().fetchTasks([self = QPointer<DashboardVC>(this)](bool success, std::optional<ManagerErrors>) {
        if (self)
            self->tasksLoaded(success);
    });
}

DashboardVM &DashboardVC::requireViewModel() const
{
    return requiredViewModel(m_viewModel, "The dashboard has no view model", "DashboardVC");
}

void DashboardVC::tasksLoaded(bool success)
{
    if (!success) {
        presentFetchFailure();
        return;
    }
    showCachedAt(requireViewModel().cachedAt(), m_scrollArea, DashboardTexts::refreshTitle());
    const bool hasTasks = !requireViewModel().taskList().tasks.isEmpty();
    fadeHeader(hasTasks, [this] {
        m_scrollArea->endRefreshing();
        reloadData();
    });
}

void DashboardVC::fadeHeader(bool visible, std::function<void()> completion)
{
    if (m_headerFade) {
        // A newer answer takes over; the older one's follow-up is not needed.
        m_headerFade->stop();
        delete m_headerFade;
    }
    const qreal from = m_headerView->isHidden() ? 0.0 : m_headerView->contentOpacity();
    m_headerView->setContentOpacity(from);
    if (visible)
        m_headerView->show();

    m_headerFade = new QVariantAnimation(this);
    m_headerFade->setDuration(static_cast<int>(headerFadeDuration.count()));
    m_headerFade->setStartValue(from);
    m_headerFade->setEndValue(visible ? 1.0 : 0.0);
    connect(m_headerFade, &QVariantAnimation::valueChanged, m_headerView,
            [this](const QVariant &value) { m_headerView->setContentOpacity(value.toReal()); });
    connect(m_headerFade, &QVariantAnimation::finished, this, [this, visible, completion = std::move(completion)] {
        m_headerFade->deleteLater();
        m_headerFade = nullptr;
        m_headerView->setContentOpacity(visible ? 1.0 : 0.0);
        if (!visible)
            m_headerView->hide();
        completion();
    });
    m_headerFade->start();
}

void DashboardVC::presentFetchFailure()
{
    Alert alert;
    alert.title = DashboardTexts::fetchFailureTitle();
    alert.message = DashboardTexts::fetchFailureMessage();
    alert.addAction(DashboardTexts::fetchFailureAction(), AlertActionStyle::cancel,
                    [self = QPointer<DashboardVC>(this)] {
                        if (!self)
                            return;
                        self->m_scrollArea->endRefreshing();
                        self->reloadData();
                    });
    AlertPresenter::present(this, std::move(alert));
}

void DashboardVC::reloadData()
{
    updateChart();
    reloadTable();
}

void DashboardVC::updateChart()
{
    const ChartData chart = DashboardTexts::overallChart(requireViewModel().statusCounts());
    m_pieChartView->updateChartForTaskStatus(chart.names, chart.values, chart.colors,
                                             DashboardTexts::overallChartTitle());
}

void DashboardVC::reloadTable()
{
    // Each row's model takes its section's tasks as they are (shared, not
    // copied); the rows lay out only the cards in sight.
    const QList<TaskSection> &data = requireViewModel().sections();
    const auto sections = int(data.size());

    while (m_rows.size() > sections) {
        QWidget *header = m_sectionHeaderViews.takeLast();
        m_sectionHeaders.removeLast();
        TaskTableViewCell *row = m_rows.takeLast();
        for (QWidget *gone : {header, static_cast<QWidget *>(row)}) {
            m_sectionsLayout->removeWidget(gone);
            gone->hide();
            gone->deleteLater();
        }
    }
    const QFont headerFont = TextScale::font(QFont(), 15, QFont::Light);
    QColor headerColor = NamedColors::color(ColorNames::labelText, QColor(Qt::black));
    headerColor.setAlphaF(0.8f);
    while (m_rows.size() < sections) {
        // The section header: a clear band holding one label at x 10.
        auto *header = new QWidget(m_tableView);
        header->setObjectName(QStringLiteral("sectionHeader"));
        header->setFixedHeight(TextScale::scaled(sectionHeaderHeight));
        auto *band = new QHBoxLayout(header);
        band->setContentsMargins(10, 0, 10, 0);
        auto *label = new QLabel(header);
        label->setFont(headerFont);
        label->setFixedHeight(TextScale::scaled(sectionHeaderHeight));
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, headerColor);
        label->setPalette(palette);
        band->addWidget(label);

        auto *row = new TaskTableViewCell(m_tableView);
        row->setCardPainter(m_cardPainter);
        connect(row, &TaskTableViewCell::taskSelected, this, [this, row](int, int item) {
            // The row's own tasks are what the worker sees and taps.
            if (const TaskPtr task = row->tasks().value(item))
                openTask(task);
        });
        m_sectionsLayout->addWidget(header);
        m_sectionsLayout->addWidget(row);
        m_sectionHeaderViews.append(header);
        m_sectionHeaders.append(label);
        m_rows.append(row);
    }

    for (int section = 0; section < sections; ++section) {
        const TaskSection &rowData = data.at(section);
        const QString text = DashboardTexts::sectionHeader(rowData.status, rowData.tasks.size());
        // Heard as "In Progress: 2 tasks", whatever the header shows.
        const QString spoken = DashboardTexts::sectionAccessibleName(rowData.status, rowData.tasks.size());
        QLabel *label = m_sectionHeaders.at(section);
        label->setText(text);
        label->setAccessibleName(spoken);
        TaskTableViewCell *row = m_rows.at(section);
        row->setObjectName(DashboardTexts::statusCellName(rowData.status));
        row->setAccessibleName(spoken);
        row->setTag(section);
        row->setTasks(rowData.tasks);
    }
    updateMarks();

    m_emptyLabel->setVisible(sections == 0 && !m_scrollArea->isRefreshing());
}

void DashboardVC::updateMarks()
{
    const OutboxSender *sender = outbox();
    const SyncMarks marks = sender ? sender->pending().taskMarks() : SyncMarks();
    for (TaskTableViewCell *row : std::as_const(m_rows))
        row->collectionModel()->setSyncMarks(marks);
}

void DashboardVC::openTask(const TaskPtr &task)
{
    if (!task)
        return;
    if (DashboardTexts::promptsBeforeOpening(task->currentStatus)) {
        showStatusPrompt(task);
        return;
    }
    openTaskItems(task);
}

void DashboardVC::openTaskItems(const TaskPtr &task)
{
    requireViewModel().fetchItems(task, [self = QPointer<DashboardVC>(this), task](bool success) {
        if (!self)
            return;
        if (success) {
            self->performSegue(DashboardTexts::showChecklistItems, task);
            return;
        }
        AlertPresenter::presentTransient(self, DashboardTexts::itemsLoadingTitle(),
                                         DashboardTexts::itemsLoadingMessage(), self->delays().shortAlert);
    });
}

void DashboardVC::showStatusPrompt(const TaskPtr &task)
{
    const std::optional<StatusPrompt> prompt = DashboardTexts::statusPrompt(*task);
    if (!prompt)
        return;
    Alert alert;
    alert.title = prompt->title;
    alert.message = prompt->message;
    alert.addAction(DashboardTexts::promptYes(), AlertActionStyle::standard,
                    [self = QPointer<DashboardVC>(this), task, id = prompt->newStatusId] {
                        if (self)
                            self->sendStatusChange(task, id);
                    });
    alert.addAction(DashboardTexts::promptNo());
    AlertPresenter::present(this, std::move(alert));
}

void DashboardVC::sendStatusChange(const TaskPtr &task, qint64 statusId)
{
    requireViewModel().updateTaskStatus(task, statusId,
                                        [self = QPointer<DashboardVC>(this), task](std::optional<TaskStatus> status) {
                                            if (!self)
                                                return;
                                            // Started (or unblocked): straight on to its items.
                                            if (status == TaskStatus::in_progress)
                                                self->openTaskItems(task);
                                            else
                                                self->pullToRefresh();
                                        });
}

void DashboardVC::changeTaskStatus(const TaskPtr &task, TaskStatus status)
{
    if (!task)
        return;
    requireViewModel().updateTaskStatus(task, TaskStatuses::serverId(status),
                                        [self = QPointer<DashboardVC>(this)](std::optional<TaskStatus>) {
                                            if (self)
                                                self->pullToRefresh();
                                        });
}

void DashboardVC::didTapAcknowledge(const TaskPtr &task)
{
    if (task)
        showStatusPrompt(task);
}

void DashboardVC::receivedTaskEvent(const QVariant &object)
{
    const auto event = eventFrom(object);
    if (!event)
        return;
    // Whatever task it is about, the list may have changed.
    presentEventAlert(*event, [self = QPointer<DashboardVC>(this)] {
        if (self)
            self->pullToRefresh();
    });
}

void DashboardVC::panelButtonTapped(bool wasSelected)
{
    if (m_vcDelegate)
        m_vcDelegate->didSwipe(wasSelected);
}

void DashboardVC::didChangeTaskStatus(TaskStatus status, qint64 taskId)
{
    for (const TaskPtr &task : std::as_const(requireViewModel().taskList().tasks)) {
        if (task->id == taskId) {
            changeTaskStatus(task, status);
            return;
        }
    }
    // A task no longer in the list is still changed on the server.
    auto task = std::make_shared<Task>();
    task->id = taskId;
    changeTaskStatus(task, status);
}

Screen *DashboardVC::makeDestination(const QString &identifier)
{
    if (identifier == DashboardTexts::showChecklistItems)
        return new ItemsVC;
    if (identifier == DashboardTexts::showFilterView)
        return new FilterVC;
    return RavelinEventVC::makeDestination(identifier);
}

void DashboardVC::prepare(const QString &identifier, Screen *destination, const std::any &sender)
{
    if (auto *items = qobject_cast<ItemsVC *>(destination)) {
        // The items screen works on the task the card showed, with the session's
        // manager and users, and reports status changes back here.
        const auto *task = std::any_cast<TaskPtr>(&sender);
        if (!task || !*task)
            fatalError(QStringLiteral("The items screen needs the task it shows"), "DashboardVC");
        const DashboardVM &viewModel = requireViewModel();
        items->setViewModel(new ItemsVM(*task, viewModel.networkManager(), viewModel.users()));
        items->setTaskID((*task)->id);
        items->setDelegate(this);
    }
    // "ShowFilterView": a new FilterVM on the shared choices, with the session's
    // clock for the latest end date, and this screen as the delegate that
    // refreshes once the choices change.
    if (auto *filter = qobject_cast<FilterVC *>(destination); filter && identifier == DashboardTexts::showFilterView) {
        const Clock clock = navigationHost() ? navigationHost()->environment().clock : systemClock();
        filter->setViewModel(std::make_unique<FilterVM>(requireViewModel().filterData(), clock));
        filter->setDelegate(this);
    }
    RavelinEventVC::prepare(identifier, destination, sender);
}

void DashboardVC::filterApplied(const TaskFilterData &filterData)
{
    // The task list's choices are the view model's own shared object; copying
    // both configurations keeps the result right even if they were not.
    TaskFilterData &choices = *requireViewModel().taskList().filterData;
    choices.filteringConfig = filterData.filteringConfig;
    choices.sortingConfig = filterData.sortingConfig;
    pullToRefresh();
}

} // namespace ravelin
