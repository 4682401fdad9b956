#include "items/itemsvc.h"

#include "api/fatalerror.h"
#include "api/outboxsender.h"
#include "comments/commentsvc.h"
#include "comments/commentsvm.h"
#include "host/ownedviewmodel.h"
#include "host/ravelinnavvc.h"
#include "items/blocktaskvc.h"
#include "items/blocktaskvm.h"
#include "items/itemactionvc.h"
#include "items/itemactionvm.h"
#include "items/itemlistmodel.h"
#include "items/itemstexts.h"
#include "items/itemsvcdelegate.h"
#include "items/itemtableview.h"
#include "items/qrscannervc.h"
#include "resources/namedcolors.h"
#include "resources/namedimages.h"
#include "tasks/dashboardtexts.h"
#include "tasks/piechartview.h"
#include "views/alertpresenter.h"
#include "views/buttonrow.h"
#include "views/focusring.h"
#include "views/refreshablescrollarea.h"
#include "views/roundedview.h"
#include "views/segmentedcontrol.h"
#include "views/textscale.h"
#include "views/touchtarget.h"

#include <QAction>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace ravelin {

namespace {

QColor backgroundColor()
{
    return NamedColors::color(ColorNames::groupedBackground, QColor(0xF2, 0xF2, 0xF7));
}

QLabel *makeLabel(QWidget *parent, int pixelSize, QFont::Weight weight, const QColor &color)
{
    auto *label = new QLabel(parent);
    label->setFont(TextScale::font(label->font(), pixelSize, weight));
    label->setStyleSheet(QStringLiteral("color: %1;").arg(color.name()));
    return label;
}

RoundedView *makeCard(QWidget *parent, const QString &name)
{
    auto *card = new RoundedView(parent);
    card->setObjectName(name);
    card->setCornerRadius(16);
    card->setCustomBackgroundColor(NamedColors::color(ColorNames::viewBackground, Qt::white));
    return card;
}

QPushButton *makeButton(const QString &title, const QString &name, const QColor &fill, const QColor &text,
                        const QColor &border, QWidget *parent)
{
    auto *button = new QPushButton(title, parent);
    button->setObjectName(name);
    // A tap leaves the focus where it is; Tab reaches the button.
    button->setFocusPolicy(Qt::TabFocus);
    button->setCursor(Qt::PointingHandCursor);
    button->setMinimumHeight(TextScale::scaled(44));
    button->setStyleSheet(QStringLiteral("QPushButton { background: %1; color: %2; border: 1.5px solid %3;"
                                         " border-radius: 12px; %6 font-weight: 600; padding: 0 14px; }"
                                         "QPushButton:pressed { background: %4; }"
                                         "QPushButton:focus { border: 3px solid %5; }")
                              .arg(fill.name(QColor::HexArgb), text.name(), border.name(QColor::HexArgb),
                                   fill.alpha() == 0 ? QStringLiteral("rgba(0,0,0,20)") : fill.darker(115).name(),
                                   FocusRing::color().name(), TextScale::styleSize(15)));
    return button;
}

QPushButton *makeTextButton(const QString &title, const QString &name, QWidget *parent)
{
    auto *button = new QPushButton(title, parent);
    button->setObjectName(name);
    button->setFocusPolicy(Qt::TabFocus);
    button->setCursor(Qt::PointingHandCursor);
    button->setFlat(true);
    button->setMinimumHeight(TouchTarget::minimumSide);
    const QColor accent = NamedColors::color(ColorNames::accent, QColor(0, 122, 255));
    button->setStyleSheet(
        QStringLiteral("QPushButton { color: %1; border: 2px solid transparent; border-radius: 8px;"
                       " %3 font-weight: 600; padding: 2px 4px; } QPushButton:pressed { color: %2; }"
                       "QPushButton:focus { border-color: %4; }")
            .arg(accent.name(), accent.lighter(150).name(), TextScale::styleSize(15), FocusRing::color().name()));
    return button;
}

// The priority as a chip in the priority's colour, as on the dashboard's cards.
void stylePriority(QLabel *label, TaskPriority priority)
{
    QColor color;
    switch (priority) {
    case TaskPriority::highest: color = NamedColors::color(ColorNames::customRed, Qt::red); break;
    case TaskPriority::high: color = NamedColors::color(ColorNames::customOrange, QColor(255, 149, 0)); break;
    case TaskPriority::medium: color = NamedColors::color(ColorNames::customYellow, Qt::yellow); break;
    case TaskPriority::low: color = NamedColors::color(ColorNames::customBlue, Qt::blue); break;
    case TaskPriority::all: color = NamedColors::color(ColorNames::customGray, Qt::gray); break;
    }
    const QColor text = color.darker(priority == TaskPriority::medium ? 165 : 125);
    label->setStyleSheet(QStringLiteral("QLabel { background: rgba(%1,%2,%3,0.18); color: %4; border-radius: 10px;"
                                        " padding: 2px 9px; %5 font-weight: 600; }")
                             .arg(color.red())
                             .arg(color.green())
                             .arg(color.blue())
                             .arg(text.name(), TextScale::styleSize(11)));
}

} // namespace

ItemsVC::ItemsVC(QWidget *parent)
    : RavelinEventVC(parent)
{
    setObjectName(QStringLiteral("ItemsVC"));
    buildViews();
}

ItemsVC::~ItemsVC() = default;

void ItemsVC::setViewModel(ItemsVM *viewModel)
{
    adoptViewModel(m_viewModel, viewModel, this);
}

ItemsVM &ItemsVC::requireViewModel() const
{
    return requiredViewModel(m_viewModel, "The items screen has no view model", "ItemsVC");
}

void ItemsVC::buildViews()
{
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, backgroundColor());
    setPalette(palette);
    setAutoFillBackground(true);
    const QColor label = NamedColors::color(ColorNames::labelText, Qt::black);
    const QColor secondary = NamedColors::color(ColorNames::secondaryLabelText, Qt::darkGray);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    m_scrollArea = new RefreshableScrollArea(this);
    m_scrollArea->setObjectName(QStringLiteral("refreshControl"));
    m_scrollArea->viewport()->setAutoFillBackground(false);
    m_scrollArea->setStyleSheet(QStringLiteral("QScrollArea { background: transparent; border: none; }"));
    column->addWidget(m_scrollArea, 1);
    connect(m_scrollArea, &RefreshableScrollArea::refreshRequested, this, &ItemsVC::reloadItems);

    auto *content = new QWidget;
    content->setObjectName(QStringLiteral("itemsContent"));
    content->setAutoFillBackground(false);
    auto *contentColumn = new QVBoxLayout(content);
    contentColumn->setContentsMargins(12, 12, 12, 16);
    contentColumn->setSpacing(10);

    // The task's details.
    m_topView = new QWidget(content);
    m_topView->setObjectName(QStringLiteral("topView"));
    auto *topColumn = new QVBoxLayout(m_topView);
    topColumn->setContentsMargins(0, 0, 0, 0);
    topColumn->setSpacing(10);
    m_taskDetailsView = makeCard(m_topView, QStringLiteral("taskDetailsView"));
    auto *details = new QGridLayout(m_taskDetailsView);
    details->setContentsMargins(14, 12, 14, 12);
    details->setHorizontalSpacing(10);
    details->setVerticalSpacing(6);
    m_categorylbl = makeLabel(m_taskDetailsView, 16, QFont::DemiBold, label);
    m_categorylbl->setObjectName(QStringLiteral("categorylbl"));
    m_prioritylbl = new QLabel(m_taskDetailsView);
    m_prioritylbl->setObjectName(QStringLiteral("prioritylbl"));
    details->addWidget(m_categorylbl, 0, 0, 1, 2);
    details->addWidget(m_prioritylbl, 0, 2, Qt::AlignRight | Qt::AlignVCenter);
    const auto addRow = [&](int row, const QString &caption, QLabel *&value, const QString &name) {
        QLabel *captionLabel = makeLabel(m_taskDetailsView, 13, QFont::Normal, secondary);
        captionLabel->setText(caption);
        value = makeLabel(m_taskDetailsView, 13, QFont::Medium, label);
        value->setObjectName(name);
        value->setWordWrap(true);
        details->addWidget(captionLabel, row, 0);
        details->addWidget(value, row, 1, 1, 2);
    };
    addRow(1, tr("Assigned by"), m_assignedByLbl, QStringLiteral("assignedByLbl"));
    addRow(2, tr("Created"), m_dateCreatedLbl, QStringLiteral("dateCreatedLbl"));
    addRow(3, tr("Updated"), m_dateUpdatedLbl, QStringLiteral("dateUpdatedLbl"));
    details->setColumnStretch(1, 1);
    topColumn->addWidget(m_taskDetailsView);

    // Progress of the items the list shows.
    m_overviewView = makeCard(m_topView, QStringLiteral("overviewView"));
    auto *overview = new QHBoxLayout(m_overviewView);
    overview->setContentsMargins(10, 8, 14, 8);
    overview->setSpacing(12);
    m_progressView = new PieChartView(m_overviewView);
    m_progressView->setObjectName(QStringLiteral("progressView"));
    m_progressView->setFixedSize(TextScale::scaled(QSize(112, 112)));
    overview->addWidget(m_progressView);
    auto *counts = new QVBoxLayout;
    counts->setSpacing(4);
    counts->addStretch(1);
    m_overviewLbl = makeLabel(m_overviewView, 22, QFont::DemiBold, label);
    m_overviewLbl->setObjectName(ItemsTexts::totalItemsCount);
    counts->addWidget(m_overviewLbl);
    m_statusBreakdown = new QWidget(m_overviewView);
    m_statusBreakdown->setObjectName(QStringLiteral("statusBreakdown"));
    auto *breakdown = new QVBoxLayout(m_statusBreakdown);
    breakdown->setContentsMargins(0, 0, 0, 0);
    breakdown->setSpacing(2);
    m_acceptedCountLbl
        = makeLabel(m_statusBreakdown, 14, QFont::Medium, NamedColors::color(ColorNames::customGreen, Qt::darkGreen));
    m_acceptedCountLbl->setObjectName(ItemsTexts::acceptedItemsCount);
    m_rejectedCountLbl
        = makeLabel(m_statusBreakdown, 14, QFont::Medium, NamedColors::color(ColorNames::customRed, Qt::red));
    m_rejectedCountLbl->setObjectName(ItemsTexts::rejectedItemsCount);
    breakdown->addWidget(m_acceptedCountLbl);
    breakdown->addWidget(m_rejectedCountLbl);
    counts->addWidget(m_statusBreakdown);
    counts->addStretch(1);
    overview->addLayout(counts, 1);
    topColumn->addWidget(m_overviewView);
    contentColumn->addWidget(m_topView);

    // The checklist: its caption with the selection buttons, the filter, the rows.
    auto *captionRow = new QHBoxLayout;
    captionRow->setContentsMargins(4, 6, 0, 0);
    QLabel *caption = makeLabel(content, 15, QFont::Light, label);
    caption->setText(tr("CHECKLIST"));
    captionRow->addWidget(caption);
    captionRow->addStretch(1);
    m_multipleSelectionBtn = makeTextButton(tr("Select"), QStringLiteral("multipleSelectionBtn"), content);
    m_saveBtn = makeTextButton(tr("done"), QStringLiteral("saveBtn"), content);
    m_saveBtn->hide();
    m_multipleSelectionBtn->setAccessibleDescription(tr("Choose several items"));
    m_saveBtn->setAccessibleDescription(tr("Acts on the chosen items"));
    captionRow->addWidget(m_multipleSelectionBtn);
    captionRow->addWidget(m_saveBtn);
    contentColumn->addLayout(captionRow);

    m_filterSegment = new SegmentedControl(content);
    m_filterSegment->setObjectName(QStringLiteral("filterSegment"));
    m_filterSegment->setAccessibleName(tr("Filter"));
    for (const ItemStatus status : ItemStatuses::allCases())
        m_filterSegment->insertSegment(ItemStatuses::text(status), m_filterSegment->numberOfSegments());
    m_filterSegment->setFixedHeight(SegmentedControl::preferredHeight());
    m_filterSegment->setSelectedSegmentIndex(ItemStatuses::segmentIndex(ItemStatus::all));
    contentColumn->addWidget(m_filterSegment);

    m_model = new ItemListModel(this);
    m_tableView = new ItemTableView(content);
    m_tableView->setItemModel(m_model);
    contentColumn->addWidget(m_tableView);
    contentColumn->addStretch(1);
    m_scrollArea->setWidget(content);
    // The screen's own background shows through (setWidget() made it fill).
    content->setAutoFillBackground(false);

    // The task's own actions, at the bottom.
    auto *buttons = new ButtonRow(this);
    m_taskBtnsStack = buttons;
    m_taskBtnsStack->setObjectName(QStringLiteral("taskBtnsStack"));
    m_taskBtnsStack->setAutoFillBackground(true);
    QPalette stackPalette = m_taskBtnsStack->palette();
    stackPalette.setColor(QPalette::Window, NamedColors::color(ColorNames::viewBackground, Qt::white));
    m_taskBtnsStack->setPalette(stackPalette);
    buttons->boxLayout()->setContentsMargins(12, 10, 12, 12);
    buttons->boxLayout()->setSpacing(10);
    const QColor red = NamedColors::color(ColorNames::customRed, Qt::red);
    const QColor green = NamedColors::color(ColorNames::customGreen, Qt::darkGreen);
    m_markAsBlockedBtn = makeButton(tr("Mark as Blocked"), QStringLiteral("markAsBlockedBtn"), QColor(0, 0, 0, 0), red,
                                    red, m_taskBtnsStack);
    m_completeBtn
        = makeButton(tr("Complete Task"), QStringLiteral("completeBtn"), green, Qt::white, green, m_taskBtnsStack);
    buttons->addButton(m_markAsBlockedBtn);
    buttons->addButton(m_completeBtn);
    column->addWidget(m_taskBtnsStack);

    const QColor barText = NamedColors::color(ColorNames::navigationBarText, Qt::white);
    m_commentsAction = new QAction(NamedImages::icon(ImageNames::comments, barText), ItemsTexts::commentsTitle(), this);
    m_commentsAction->setObjectName(QStringLiteral("commentsButton"));
    m_checkpointAction = new QAction(NamedImages::icon(ImageNames::qrScan, barText), tr("Scan Checkpoint"), this);
    m_checkpointAction->setObjectName(QStringLiteral("checkpointBtnPressed"));
    setRightBarActions({m_commentsAction, m_checkpointAction});

    connect(m_commentsAction, &QAction::triggered, this, [this] { performSegue(ItemsTexts::showCommentsVC); });
    connect(m_checkpointAction, &QAction::triggered, this, [this] { performSegue(ItemsTexts::showQRScannerVC); });
    connect(m_multipleSelectionBtn, &QPushButton::clicked, this, [this] { setMultipleSelection(true); });
    connect(m_saveBtn, &QPushButton::clicked, this, &ItemsVC::finishMultipleSelection);
    connect(m_completeBtn, &QPushButton::clicked, this, &ItemsVC::completeTask);
    connect(m_markAsBlockedBtn, &QPushButton::clicked, this, [this] { performSegue(ItemsTexts::showBlockTaskVC); });
    connect(m_filterSegment, &SegmentedControl::selectedSegmentChanged, this, &ItemsVC::filterChanged);
    connect(m_tableView, &ItemTableView::rowTapped, this, &ItemsVC::actOnRow);
    connect(m_tableView, &ItemTableView::swipeActionChosen, this, &ItemsVC::swipeAction);
    connect(m_tableView, &ItemTableView::rowSelectionToggled, this, [this](int row, bool selected) {
        if (const ItemPtr item = m_model->item(row))
            requireViewModel().select(item, selected);
    });
}

void ItemsVC::viewDidLoad()
{
    RavelinEventVC::viewDidLoad();
    ItemsVM &viewModel = requireViewModel();
    setTitle(viewModel.task()->name);
    m_scrollArea->setTintColor(NamedColors::color(ColorNames::labelText, Qt::black));
    m_scrollArea->setRefreshTitle(ItemsTexts::refreshTitle());
    m_filterSegment->setSelectedSegmentIndex(ItemStatuses::segmentIndex(viewModel.task()->itemList.filterData.status));
    reloadData();
    pullToRefresh();
    followOutbox([this](bool someSent) {
        updateMarks();
        if (someSent) // the server's answer replaces what the cache kept
            reloadItems();
    });
}

void ItemsVC::updateMarks()
{
    const OutboxSender *sender = outbox();
    m_model->taskItems()->setSyncMarks(sender ? sender->pending().itemMarks() : SyncMarks());
}

void ItemsVC::pullToRefresh()
{
    m_scrollArea->beginRefreshing();
    reloadItems();
}

void ItemsVC::reloadItems()
{
    requireViewModel().fetchItems([self = QPointer<ItemsVC>(this)](bool success) {
        if (!self)
            return;
        self->m_scrollArea->endRefreshing();
        if (!success) {
            AlertPresenter::presentTransient(self, ItemsTexts::loadFailureTitle(), QString(), self->delays().longAlert);
            return;
        }
        self->m_singleSelection.reset();
        self->showCachedAt(self->requireViewModel().cachedAt(), self->m_scrollArea, ItemsTexts::refreshTitle());
        self->updateMarks();
        self->reloadData();
    });
}

void ItemsVC::reloadData()
{
    const TaskPtr &task = requireViewModel().task();
    // The first time the list takes the task; after that, its items row by row.
    if (m_model->task() != task)
        m_model->setTask(task);
    else
        m_model->reload();
    refreshHeader();
}

void ItemsVC::refreshHeader()
{
    const TaskPtr &task = requireViewModel().task();
    if (!isMultipleSelection())
        m_multipleSelectionBtn->setHidden(task->itemList.items.isEmpty());
    m_categorylbl->setText(task->taskCategory.name);
    m_prioritylbl->setText(TaskPriorities::text(task->priority));
    m_prioritylbl->setAccessibleName(tr("%1 priority").arg(m_prioritylbl->text()));
    stylePriority(m_prioritylbl, task->priority);
    m_assignedByLbl->setText(ItemsTexts::assignedBy(*task, requireViewModel().users()));
    m_dateCreatedLbl->setText(ItemsTexts::headerDate(task->dateCreated));
    m_dateUpdatedLbl->setText(ItemsTexts::headerDate(task->dateUpdated));

    const QList<ItemPtr> shown = task->itemList.filteredItems();
    const ItemsTexts::Counts counts = ItemsTexts::counts(shown);
    m_overviewLbl->setText(ItemsTexts::totalText(counts.total));
    m_acceptedCountLbl->setText(ItemsTexts::acceptedText(counts.accepted));
    m_rejectedCountLbl->setText(ItemsTexts::rejectedText(counts.rejected));
    // The breakdown says something only while every item is shown.
    m_statusBreakdown->setVisible(task->itemList.filterData.status == ItemStatus::all);

    const qsizetype open = counts.total - counts.accepted - counts.rejected;
    const TaskProgress progress
        = TaskProgress::fromCounts(QList<ItemsCount>{{1, counts.accepted}, {2, counts.rejected}, {3, open}});
    const ChartData chart = DashboardTexts::itemsChart(progress);
    m_progressView->updateChartForItemsProgress(chart.names, chart.values, chart.colors, int(progress.total), true);
}

void ItemsVC::filterChanged(int segment)
{
    const ItemStatus status = ItemStatuses::fromSegmentIndex(segment);
    requireViewModel().task()->itemList.filterData.status = status;
    m_filterSegment->setSelectedSegmentIndex(segment);
    m_multipleSelectionBtn->setHidden(m_tableView->isEditing());
    m_saveBtn->setHidden(!m_tableView->isEditing());
    m_singleSelection.reset();
    refreshHeader();
    m_model->reload();
}

bool ItemsVC::isMultipleSelection() const
{
    return m_tableView->isEditing();
}

void ItemsVC::setMultipleSelection(bool on)
{
    m_tableView->setEditing(on);
    m_multipleSelectionBtn->setHidden(on);
    m_saveBtn->setHidden(!on);
    m_taskBtnsStack->setHidden(on);
}

void ItemsVC::finishMultipleSelection()
{
    const QList<ItemPtr> selected = requireViewModel().selectedItems();
    if (!selected.isEmpty()) {
        showItemAction(selected);
        setMultipleSelection(false);
        return;
    }
    AlertPresenter::presentTransient(this, ItemsTexts::noItemsSelectedTitle(), ItemsTexts::noItemsSelectedMessage,
                                     delays().shortAlert, [self = QPointer<ItemsVC>(this)] {
                                         if (self)
                                             self->setMultipleSelection(false);
                                     });
}

void ItemsVC::selectRowForAction(int row)
{
    const ItemPtr item = m_model->item(row);
    if (!item)
        return;
    ItemsVM &viewModel = requireViewModel();
    // One row at a time: choosing another row lets go of the one before.
    if (m_singleSelection && m_singleSelection->id != item->id)
        viewModel.select(m_singleSelection, false);
    m_singleSelection = item;
    m_tableView->selectionModel()->setCurrentIndex(m_model->index(row), QItemSelectionModel::NoUpdate);
    viewModel.select(item, true);
    viewModel.setSelectedActionItem(item);
}

void ItemsVC::actOnRow(int row)
{
    if (isMultipleSelection())
        return;
    selectRowForAction(row);
    if (const ItemPtr item = m_model->item(row))
        showItemAction({item});
}

void ItemsVC::swipeAction(int row, ItemStatus)
{
    // Both actions lead to the item's action screen, where the worker confirms.
    actOnRow(row);
}

void ItemsVC::didScanCode(const std::optional<QString> &code)
{
    requireViewModel().findItem(code, [self = QPointer<ItemsVC>(this)](const QrMatch &match) {
        if (!self)
            return;
        if (match.row) {
            // A code read while choosing several items opens its item on its
            // own: the choice so far is let go, as "done" with it would.
            if (self->isMultipleSelection()) {
                self->requireViewModel().clearSelection();
                self->setMultipleSelection(false);
            }
            self->actOnRow(*match.row);
            return;
        }
        if (match.title || match.message)
            AlertPresenter::presentTransient(self, match.title.value_or(QString()), match.message.value_or(QString()),
                                             self->delays().shortAlert);
    });
}

void ItemsVC::showItemAction(const QList<ItemPtr> &items)
{
    performSegue(ItemsTexts::showActionVC, items);
}

void ItemsVC::completeTask()
{
    const TaskPtr task = requireViewModel().task();
    const ItemsAlert alert = ItemsTexts::taskCompleted(task->name);
    AlertPresenter::presentTransient(this, alert.title, alert.message, delays().shortAlert,
                                     [self = QPointer<ItemsVC>(this), task] {
                                         if (self && self->m_delegate)
                                             self->m_delegate->didChangeTaskStatus(TaskStatus::complete, task->id);
                                     });
}

void ItemsVC::didUpdateItemStatus(bool success)
{
    ItemsVM &viewModel = requireViewModel();
    QStringList names;
    for (const ItemPtr &item : viewModel.selectedItems())
        names.append(item->name);
    viewModel.clearSelection();
    m_singleSelection.reset();
    // Kept in the outbox, the result is saved, not yet updated on the server.
    const ItemsAlert result
        = success && outbox() ? ItemsTexts::savedResult(names) : ItemsTexts::updateResult(names, success);
    Alert alert;
    alert.title = result.title;
    alert.attributedMessage = result.attributedMessage;
    AlertPresenter::presentTransient(this, std::move(alert), delays().longAlert, [self = QPointer<ItemsVC>(this)] {
        if (self)
            self->pullToRefresh();
    });
}

void ItemsVC::didBlockTask()
{
    const TaskPtr task = requireViewModel().task();
    const ItemsAlert alert = ItemsTexts::taskBlocked(task->name);
    AlertPresenter::presentTransient(this, alert.title, alert.message, delays().shortAlert,
                                     [self = QPointer<ItemsVC>(this), task] {
                                         if (self && self->m_delegate)
                                             self->m_delegate->didChangeTaskStatus(TaskStatus::blocked, task->id);
                                     });
}

Screen *ItemsVC::makeDestination(const QString &identifier)
{
    if (identifier == ItemsTexts::showActionVC)
        return new ItemActionVC;
    if (identifier == ItemsTexts::showBlockTaskVC)
        return new BlockTaskVC;
    if (identifier == ItemsTexts::showCommentsVC)
        return new CommentsVC;
    if (identifier == ItemsTexts::showQRScannerVC)
        return new QRScannerVC;
    return RavelinEventVC::makeDestination(identifier);
}

void ItemsVC::prepare(const QString &identifier, Screen *destination, const std::any &sender)
{
    ItemsVM &viewModel = requireViewModel();
    if (auto *action = qobject_cast<ItemActionVC *>(destination)) {
        const auto *items = std::any_cast<QList<ItemPtr>>(&sender);
        action->setViewModel(new ItemActionVM(items ? *items : QList<ItemPtr>(), viewModel.task(),
                                              viewModel.networkManager(), ItemsTexts::actionNotePlaceholder(),
                                              viewModel.users()));
        action->setDelegate(this);
    } else if (auto *block = qobject_cast<BlockTaskVC *>(destination)) {
        block->setViewModel(new BlockTaskVM(viewModel.task(), viewModel.networkManager(),
                                            ItemsTexts::blockNotePlaceholder(), viewModel.users()));
        block->setDelegate(this);
    } else if (auto *comments = qobject_cast<CommentsVC *>(destination)) {
        comments->setViewModel(new CommentsVM(viewModel.task(), viewModel.networkManager(), viewModel.users()));
        comments->setTitle(ItemsTexts::commentsTitle());
        comments->setTaskID(viewModel.task()->id);
    } else if (auto *scanner = qobject_cast<QRScannerVC *>(destination)) {
        scanner->setDelegate(this);
    }
    RavelinEventVC::prepare(identifier, destination, sender);
}

bool ItemsVC::presentsModally(const QString &identifier) const
{
    return identifier == ItemsTexts::showActionVC || identifier == ItemsTexts::showBlockTaskVC;
}

} // namespace ravelin
