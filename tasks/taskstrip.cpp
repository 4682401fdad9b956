#include "tasks/taskstrip.h"

#include "tasks/taskcard.h"
#include "tasks/taskcollectionmodel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QScroller>
#include <QScrollerProperties>
#include <QWheelEvent>

#include <cstdlib>

namespace ravelin {

namespace {

// Room kept above and below a card brought into the page's view.
constexpr int revealMargin = 12;

// The scrolling page the strip lies on (the dashboard's table), if any.
QScrollArea *enclosingPage(const QWidget *strip)
{
    for (QWidget *above = strip->parentWidget(); above; above = above->parentWidget()) {
        if (auto *page = qobject_cast<QScrollArea *>(above))
            return page;
    }
    return nullptr;
}

} // namespace

TaskTableViewCell::TaskTableViewCell(QWidget *parent)
    : QListView(parent)
{
    setObjectName(reuseIdentifier);
    setViewMode(QListView::ListMode);
    setFlow(QListView::LeftToRight);
    setWrapping(false);
    // Every card has the same size: laying out a strip never measures its cards.
    setUniformItemSizes(true);
    setMovement(QListView::Static);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setFixedHeight(TaskCollectionViewCell::itemSize().height());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // The dashboard shows through between and around the cards.
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    setStyleSheet(QStringLiteral("QListView { background: transparent; border: none; }"));

    QScroller::grabGesture(viewport(), QScroller::LeftMouseButtonGesture);
    QScroller *kinetic = QScroller::scroller(viewport());
    QScrollerProperties properties = kinetic->scrollerProperties();
    properties.setScrollMetric(QScrollerProperties::VerticalOvershootPolicy,
                               QVariant::fromValue(QScrollerProperties::OvershootAlwaysOff));
    properties.setScrollMetric(QScrollerProperties::HorizontalOvershootPolicy,
                               QVariant::fromValue(QScrollerProperties::OvershootWhenScrollable));
    properties.setScrollMetric(QScrollerProperties::MousePressEventDelay, 0.0);
    kinetic->setScrollerProperties(properties);

    m_model = new TaskCollectionModel(this);
    setModel(m_model);
}

TaskCollectionViewCell *TaskTableViewCell::cardPainter() const
{
    return qobject_cast<TaskCollectionViewCell *>(itemDelegate());
}

void TaskTableViewCell::setCardPainter(TaskCollectionViewCell *painter)
{
    setItemDelegate(painter);
}

const QList<TaskPtr> &TaskTableViewCell::tasks() const
{
    return m_model->tasks();
}

void TaskTableViewCell::setTasks(const QList<TaskPtr> &tasks)
{
    m_model->setTasks(tasks);
}

int TaskTableViewCell::count() const
{
    return m_model->rowCount();
}

QRect TaskTableViewCell::cardRect(int item) const
{
    return TaskCollectionViewCell::cardFrame(visualRect(m_model->index(item)));
}

QSize TaskTableViewCell::sizeHint() const
{
    return {TaskCollectionViewCell::itemSize().width() * 2, TaskCollectionViewCell::itemSize().height()};
}

void TaskTableViewCell::setButtonPressed(const QModelIndex &index)
{
    TaskCollectionViewCell *painter = cardPainter();
    if (!painter || painter->pressedIndex() == index)
        return;
    const QModelIndex before = painter->pressedIndex();
    painter->setPressedIndex(index);
    for (const QModelIndex &changed : {before, index}) {
        if (changed.isValid() && changed.model() == model())
            viewport()->update(visualRect(changed));
    }
}

void TaskTableViewCell::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QListView::mousePressEvent(event);
        return;
    }
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    const QRect item = visualRect(index);
    m_pressing = index.isValid() && TaskCollectionViewCell::cardFrame(item).contains(position);
    m_pressIndex = m_pressing ? QPersistentModelIndex(index) : QPersistentModelIndex();
    m_pressPosition = position;
    m_pressOnButton = m_pressing && index.data(TaskCollectionModel::ShowsAcknowledgeRole).toBool()
        && TaskCollectionViewCell::acknowledgeTapRect(item).contains(position);
    // Seen before the current card moves into view.
    m_pressOnHiddenCard = m_pressing && revealCard(index, false);
    if (m_pressing)
        setCurrentIndex(index);
    setButtonPressed(m_pressOnButton ? index : QModelIndex());
    event->accept();
}

void TaskTableViewCell::mouseMoveEvent(QMouseEvent *event)
{
    // The finger left the card or began to scroll: no tap any more.
    if (m_pressing && (event->position().toPoint() - m_pressPosition).manhattanLength() > tapSlop) {
        m_pressing = false;
        setButtonPressed({});
    }
    event->accept();
}

void TaskTableViewCell::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QListView::mouseReleaseEvent(event);
        return;
    }
    event->accept();
    const bool wasPressing = m_pressing;
    const QPersistentModelIndex pressed = m_pressIndex;
    const bool onButton = m_pressOnButton;
    m_pressing = false;
    m_pressIndex = QPersistentModelIndex();
    setButtonPressed({});

    const QPoint position = event->position().toPoint();
    // A drag that scrolled the strip or the dashboard ends away from where it
    // started (a scroller that takes over ends the press far outside): no tap.
    if (!wasPressing || !pressed.isValid() || (position - m_pressPosition).manhattanLength() > tapSlop
        || indexAt(position) != pressed)
        return;
    // A card at the edge is brought into view first; the next tap acts on it.
    if (m_pressOnHiddenCard) {
        revealCard(pressed, true);
        return;
    }
    const QRect item = visualRect(pressed);
    if (onButton && TaskCollectionViewCell::acknowledgeTapRect(item).contains(position)) {
        if (TaskCollectionViewCell *painter = cardPainter())
            painter->didTapAcknowledge(pressed);
        return;
    }
    if (TaskCollectionViewCell::cardFrame(item).contains(position))
        emit taskSelected(m_tag, pressed.row());
}

bool TaskTableViewCell::revealCard(const QModelIndex &index, bool reveal)
{
    const QRect item = visualRect(index);
    const QRect card = TaskCollectionViewCell::cardFrame(item);
    bool hidden = false;
    if (!viewport()->rect().contains(card)) {
        // Sideways, in the strip's content (scrolled by pixels): the card with its leading inset.
        if (reveal)
            scrollTo(index, QAbstractItemView::EnsureVisible);
        hidden = true;
    }
    QScrollArea *page = enclosingPage(this);
    if (page && page->widget()) {
        const QRect inPage(viewport()->mapTo(page->viewport(), card.topLeft()), card.size());
        if (inPage.top() < 0 || inPage.bottom() >= page->viewport()->height()) {
            const QPoint centre = viewport()->mapTo(page->widget(), card.center());
            if (reveal)
                page->ensureVisible(centre.x(), centre.y(), 0, card.height() / 2 + revealMargin);
            hidden = true;
        }
    }
    return hidden;
}

void TaskTableViewCell::wheelEvent(QWheelEvent *event)
{
    // An upright wheel belongs to the page (a list view would turn it sideways).
    const QPoint delta = event->angleDelta();
    if (std::abs(delta.y()) > std::abs(delta.x())) {
        event->ignore();
        return;
    }
    QListView::wheelEvent(event);
}

void TaskTableViewCell::mouseDoubleClickEvent(QMouseEvent *event)
{
    // A second quick tap is a tap of its own.
    mousePressEvent(event);
}

void TaskTableViewCell::keyPressEvent(QKeyEvent *event)
{
    const QModelIndex current = currentIndex();
    if (current.isValid()
        && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)) {
        emit taskSelected(m_tag, current.row());
        event->accept();
        return;
    }
    QListView::keyPressEvent(event);
}

} // namespace ravelin
