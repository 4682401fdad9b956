#include "filter/filtervc.h"

#include "api/fatalerror.h"
#include "api/settings.h"
#include "filter/datepicker.h"
#include "filter/donetoolbar.h"
#include "filter/filtervcdelegate.h"
#include "filter/inputfield.h"
#include "filter/inputsheet.h"
#include "filter/listpicker.h"
#include "filter/pickerwheel.h"
#include "resources/namedcolors.h"
#include "tasks/taskpriority.h"
#include "views/focuschain.h"
#include "views/focusring.h"
#include "views/roundedview.h"
#include "views/segmentedcontrol.h"
#include "views/textscale.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScroller>
#include <QTimer>
#include <QVBoxLayout>

namespace ravelin {

namespace {

constexpr int contentMargin = 12;

QColor backgroundColor()
{
    return NamedColors::color(ColorNames::groupedBackground, QColor(0xF1, 0xF3, 0xF6));
}

void paintBackground(QWidget *widget)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, backgroundColor());
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

QLabel *caption(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setFont(TextScale::font(label->font(), 13, QFont::DemiBold));
    label->setStyleSheet(
        QStringLiteral("color: %1;").arg(NamedColors::color(ColorNames::secondaryLabelText, QColor(Qt::gray)).name()));
    return label;
}

// A white rounded card with a caption, like the dashboard's overview.
QVBoxLayout *addCard(QVBoxLayout *content, const QString &title, const QString &name)
{
    auto *card = new RoundedView;
    card->setObjectName(name);
    card->setCornerRadius(16);
    card->setCustomBackgroundColor(NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)));
    auto *column = new QVBoxLayout(card);
    column->setContentsMargins(14, 10, 14, 14);
    column->setSpacing(8);
    column->addWidget(caption(title, card));
    content->addWidget(card);
    return column;
}

// `name` is the object name that automation finds it by, `spoken` what the
// worker hears.
SegmentedControl *segmentedControl(const QString &name, const QString &spoken, QWidget *parent)
{
    auto *control = new SegmentedControl(parent);
    control->setObjectName(name);
    control->setAccessibleName(spoken);
    control->setFixedHeight(SegmentedControl::preferredHeight());
    return control;
}

InputField *inputField(const QString &name, const QString &spoken, const QString &description, QWidget *parent)
{
    auto *field = new InputField(parent);
    field->setObjectName(name);
    field->setAccessibleName(spoken);
    field->setAccessibleDescription(description);
    return field;
}

QPushButton *button(const QString &title, const QString &name, bool primary)
{
    auto *out = new QPushButton(title);
    out->setObjectName(name);
    out->setAccessibleName(title);
    // A tap leaves the focus where it is; Tab reaches the button.
    out->setFocusPolicy(Qt::TabFocus);
    out->setCursor(Qt::PointingHandCursor);
    out->setMinimumHeight(TextScale::scaled(46));
    const QString accent = NamedColors::color(ColorNames::accent, QColor(0x25, 0x63, 0xC4)).name();
    const QString card = NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)).name();
    out->setStyleSheet(primary ? QStringLiteral("QPushButton { background: %1; color: white; border: 2px solid %1;"
                                                " border-radius: 12px; %2 font-weight: 600; }"
                                                "QPushButton:pressed { background: %1; color: rgba(255,255,255,170); }"
                                                "QPushButton:focus { border: 3px solid %3; }")
                                     .arg(accent, TextScale::styleSize(16), FocusRing::onAccent().name())
                               : QStringLiteral("QPushButton { background: %2; color: %1; border: 1px solid %1;"
                                                " border-radius: 12px; %3 font-weight: 600; }"
                                                "QPushButton:pressed { background: rgba(0,0,0,14); }"
                                                "QPushButton:focus { border: 3px solid %4; }")
                                     .arg(accent, card, TextScale::styleSize(16), FocusRing::color().name()));
    return out;
}

} // namespace

FilterVC::FilterVC(QWidget *parent)
    : Screen(parent)
{
    setObjectName(QStringLiteral("FilterVC"));
    setTitle(tr("Filter"));
    buildViews();
}

FilterVC::~FilterVC() = default;

void FilterVC::setViewModel(std::unique_ptr<FilterVM> viewModel)
{
    m_viewModel = std::move(viewModel);
}

FilterVM &FilterVC::requireViewModel() const
{
    if (!m_viewModel)
        fatalError(QStringLiteral("The filter screen has no view model"), "FilterVC");
    return *m_viewModel;
}

void FilterVC::buildViews()
{
    paintBackground(this);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);

    m_scrollArea = new QScrollArea(this);
    m_scrollArea->setObjectName(QStringLiteral("filterScrollArea"));
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setWidgetResizable(true);
    // Scrolled by dragging, as on a phone; the mouse wheel scrolls too.
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Tab goes through the controls; the screen scrolls along.
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    QScroller::grabGesture(m_scrollArea->viewport(), QScroller::TouchGesture);
    paintBackground(m_scrollArea->viewport());
    column->addWidget(m_scrollArea);

    auto *content = new QWidget;
    paintBackground(content);
    m_contentLayout = new QVBoxLayout(content);
    m_contentLayout->setContentsMargins(contentMargin, contentMargin, contentMargin, contentMargin + 4);
    m_contentLayout->setSpacing(12);

    QVBoxLayout *sort = addCard(m_contentLayout, tr("Sort by"), QStringLiteral("sortCard"));
    m_sortKeySegment = segmentedControl(QStringLiteral("sortKeySegment"), tr("Sort by"), content);
    m_sortOrderSegment = segmentedControl(QStringLiteral("sortOrderSegment"), tr("Order"), content);
    sort->addWidget(m_sortKeySegment);
    sort->addWidget(m_sortOrderSegment);

    QVBoxLayout *priority = addCard(m_contentLayout, tr("Priority"), QStringLiteral("priorityCard"));
    m_prioritySegment = segmentedControl(QStringLiteral("prioritySegment"), tr("Priority"), content);
    // One segment per priority, in order, the last one for all of them.
    const QList<TaskPriority> &priorities = TaskPriorities::allCases();
    for (int i = 0; i < priorities.size(); ++i)
        m_prioritySegment->insertSegment(TaskPriorities::text(priorities.at(i)), i);
    priority->addWidget(m_prioritySegment);

    QVBoxLayout *dates = addCard(m_contentLayout, tr("Created"), QStringLiteral("datesCard"));
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(8);
    const QString opensDates = tr("Enter or Space opens the date picker");
    m_dateStart = inputField(QStringLiteral("dateStart"), tr("Created from"), opensDates, content);
    m_dateEnd = inputField(QStringLiteral("dateEnd"), tr("Created to"), opensDates, content);
    auto *from = new QLabel(tr("From"), content);
    auto *to = new QLabel(tr("To"), content);
    for (QLabel *label : {from, to}) {
        label->setFont(TextScale::font(label->font(), 15));
        label->setStyleSheet(QStringLiteral("color: %1;")
                                 .arg(NamedColors::color(ColorNames::labelText, QColor(0x1F, 0x29, 0x37)).name()));
    }
    from->setBuddy(m_dateStart);
    to->setBuddy(m_dateEnd);
    grid->addWidget(from, 0, 0);
    grid->addWidget(m_dateStart, 0, 1);
    grid->addWidget(to, 1, 0);
    grid->addWidget(m_dateEnd, 1, 1);
    grid->setColumnStretch(1, 1);
    dates->addLayout(grid);

    QVBoxLayout *category = addCard(m_contentLayout, tr("Category"), QStringLiteral("categoryCard"));
    m_categoryTextField = inputField(QStringLiteral("categoryTextField"), tr("Category"),
                                     tr("Enter or Space opens the list of categories"), content);
    // An empty field stands for every category.
    m_categoryTextField->setPlaceholderText(tr("All"));
    category->addWidget(m_categoryTextField);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(12);
    m_clearButton = button(tr("Clear"), QStringLiteral("clearButton"), false);
    m_applyButton = button(tr("Apply"), QStringLiteral("applyButton"), true);
    m_clearButton->setAccessibleDescription(tr("Leaves the filter as it was"));
    m_applyButton->setAccessibleDescription(tr("Shows the tasks with these choices"));
    buttons->addWidget(m_clearButton, 1);
    buttons->addWidget(m_applyButton, 1);
    m_contentLayout->addSpacing(4);
    m_contentLayout->addLayout(buttons);
    m_contentLayout->addStretch(1);
    m_scrollArea->setWidget(content);

    connect(m_applyButton, &QPushButton::clicked, this, &FilterVC::didTapApply);
    connect(m_clearButton, &QPushButton::clicked, this, &FilterVC::didTapClear);

    m_inputSheet = new InputSheet(this);
    for (InputField *field : {m_dateStart, m_dateEnd, m_categoryTextField})
        field->setInputSheet(m_inputSheet);
    connect(m_inputSheet, &InputSheet::coveredHeightChanged, this, &FilterVC::keepEditedFieldInSight);
}

void FilterVC::viewDidLoad()
{
    Screen::viewDidLoad();
    FilterVM &viewModel = requireViewModel();
    loadSegments();
    const TaskFilterConfiguration &filter = viewModel.changedFilterConfig();
    m_dateStartPicker = makeDatePicker(m_dateStart, startDoneTag, filter.dateStart);
    m_dateStartPicker->setObjectName(QStringLiteral("dateStartPicker"));
    m_dateEndPicker = makeDatePicker(m_dateEnd, endDoneTag, filter.dateEnd);
    m_dateEndPicker->setObjectName(QStringLiteral("dateEndPicker"));
    updateDateLimits();
    for (DatePicker *picker : {m_dateStartPicker, m_dateEndPicker})
        connect(picker, &DatePicker::dateChanged, this, &FilterVC::updateDateLimits);
    loadCategoryField();

    // Tab follows the screen from top to bottom (the sort segments were made
    // again above, after the rest).
    QList<QWidget *> order;
    for (SegmentedControl *control : {m_sortKeySegment, m_sortOrderSegment, m_prioritySegment}) {
        for (int i = 0; i < control->numberOfSegments(); ++i)
            order.append(control->segmentButton(i));
    }
    order << m_dateStart << m_dateEnd << m_categoryTextField << m_clearButton << m_applyButton;
    FocusChain::setOrder(order);
}

void FilterVC::loadSegments()
{
    const FilterVM &viewModel = requireViewModel();
    const SortConfiguration &sort = viewModel.filterData()->sortingConfig;

    m_sortKeySegment->setSelectedSegmentTintColor(Qt::white);
    m_sortKeySegment->removeAllSegments();
    for (int i = 0; i < viewModel.sortingKeys().size(); ++i)
        m_sortKeySegment->insertSegment(SortKeys::text(viewModel.sortingKeys().at(i)), i);
    m_sortKeySegment->setSelectedSegmentIndex(viewModel.sortKeyIndex(sort.sortKey));

    m_sortOrderSegment->setSelectedSegmentTintColor(Qt::white);
    m_sortOrderSegment->removeAllSegments();
    for (int i = 0; i < viewModel.sortingTypes().size(); ++i)
        m_sortOrderSegment->insertSegment(SortOrders::text(viewModel.sortingTypes().at(i)), i);
    m_sortOrderSegment->setSelectedSegmentIndex(viewModel.sortOrderIndex(sort.sortOrder));

    m_prioritySegment->setSelectedSegmentIndex(
        FilterVM::priorityIndex(viewModel.changedFilterConfig().selectedPriority));
}

DatePicker *FilterVC::makeDatePicker(InputField *field, int doneTag, const QDateTime &date)
{
    auto *picker = new DatePicker;
    picker->setFixedHeight(TextScale::scaled(datePickerHeight));
    auto *toolbar = new DoneToolbar(doneTag);
    connect(toolbar, &DoneToolbar::donePressed, this, &FilterVC::donePressed);
    field->setInputView(picker);
    field->setInputAccessoryView(toolbar);
    picker->setDate(date);
    field->setText(FilterVM::dateText(picker->date()));
    return picker;
}

void FilterVC::updateDateLimits()
{
    if (m_updatingLimits)
        return;
    m_updatingLimits = true;
    // A bound may move a date, which moves the other picker's bound: go round
    // until the dates stay put.
    for (int round = 0; round < 3; ++round) {
        const QDateTime start = m_dateStartPicker->date();
        const QDateTime end = m_dateEndPicker->date();
        const DateLimits limits = requireViewModel().dateLimits(start, end);
        m_dateEndPicker->setMaximumDate(limits.endMaximum);
        m_dateEndPicker->setMinimumDate(limits.endMinimum);
        m_dateStartPicker->setMaximumDate(limits.startMaximum);
        if (m_dateStartPicker->date() == start && m_dateEndPicker->date() == end)
            break;
    }
    m_updatingLimits = false;
}

void FilterVC::loadCategoryField()
{
    m_categoryPicker = new ListPicker;
    m_categoryPicker->setObjectName(QStringLiteral("categoryPicker"));
    m_categoryPicker->setFixedHeight(TextScale::scaled(categoryPickerHeight));
    m_categoryPicker->wheel()->setAccessibleName(tr("Category"));
    m_categoryPicker->setDataSource(this);
    m_categoryPicker->setShowsSelectionIndicator(true);
    auto *toolbar = new DoneToolbar(categoryDoneTag);
    connect(toolbar, &DoneToolbar::donePressed, this, &FilterVC::donePressed);
    m_categoryTextField->setInputView(m_categoryPicker);
    m_categoryTextField->setInputAccessoryView(toolbar);
    m_categoryPicker->reloadAllComponents();
    connect(m_categoryPicker, &ListPicker::didSelectRow, this, &FilterVC::pickerDidSelectRow);
    // The picker opens on the category the field names ("All" when empty).
    connect(m_categoryTextField, &InputField::editingDidBegin, this, [this] {
        const QString name
            = m_categoryTextField->text().isEmpty() ? QStringLiteral("All") : m_categoryTextField->text();
        for (int row = 0; row < m_categoryPicker->numberOfRows(); ++row) {
            if (m_categoryPicker->titleForRow(row) == name)
                m_categoryPicker->selectRow(row);
        }
    });
}

int FilterVC::numberOfRows(const ListPicker &) const
{
    return int(Settings::current().taskCategory.size());
}

QString FilterVC::titleForRow(const ListPicker &, int row) const
{
    return Settings::current().taskCategory.value(row).name;
}

void FilterVC::pickerDidSelectRow(int row)
{
    const QList<TaskCategoryDefinition> &categories = Settings::current().taskCategory;
    if (row >= 0 && row < categories.size())
        m_categoryTextField->setText(categories.at(row).name);
}

void FilterVC::donePressed(int tag)
{
    switch (tag) {
    case startDoneTag: m_dateStart->setText(FilterVM::dateText(m_dateStartPicker->date())); break;
    case endDoneTag: m_dateEnd->setText(FilterVM::dateText(m_dateEndPicker->date())); break;
    default: m_categoryTextField->resignFirstResponder(); break;
    }
    endEditing();
}

void FilterVC::endEditing()
{
    if (InputField *field = m_inputSheet->responder())
        field->resignFirstResponder();
}

void FilterVC::keepEditedFieldInSight(int coveredHeight)
{
    m_contentLayout->setContentsMargins(contentMargin, contentMargin, contentMargin, contentMargin + 4 + coveredHeight);
    // Once the content has grown, scroll the field above the sheet.
    QTimer::singleShot(0, this, [this] {
        if (InputField *field = m_inputSheet->responder())
            m_scrollArea->ensureWidgetVisible(field, 0, 24);
    });
}

void FilterVC::didTapApply()
{
    FilterVM &viewModel = requireViewModel();
    if (!m_dateStartPicker || !m_dateEndPicker || !m_categoryPicker)
        fatalError(QStringLiteral("The filter screen was applied before it loaded"), "FilterVC");
    endEditing();
    viewModel.takeChoices(FilterChoices{m_categoryTextField->text(), m_dateStartPicker->date(), m_dateEndPicker->date(),
                                        m_prioritySegment->selectedSegmentIndex(),
                                        m_sortKeySegment->selectedSegmentIndex(),
                                        m_sortOrderSegment->selectedSegmentIndex()});
    viewModel.applyChanges();
    if (m_delegate)
        m_delegate->filterApplied(*viewModel.filterData());
    dismiss();
}

void FilterVC::didTapClear()
{
    endEditing();
    dismiss();
}

} // namespace ravelin
