#include "uimonkey.h"

#include "demo/app/demohostwindow.h"
#include "host/navigationbar.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextEdit>
#include <QWindow>

#include <algorithm>
#include <array>
#include <numeric>

namespace ravelin::test {

namespace {

using namespace std::chrono_literals;

// Relative weights of the actions, in the order of UiMonkey::Action.
constexpr std::array<int, 7> actionWeights{50, 10, 8, 10, 7, 8, 7};

// The screens and overlays a tap is counted under, innermost first.
constexpr std::array<const char *, 7> screenClasses{
    "ravelin::AlertView",    "ravelin::TaskEventSheet", "ravelin::HostPanel", "ravelin::HostBar",
    "ravelin::SignInScreen", "ravelin::NavigationBar",  "ravelin::Screen"};

const QStringList typedTexts{
    QStringLiteral("ok"),
    QStringLiteral("Valve 3 leaks at the flange"),
    QStringLiteral("Ünïcödé 漢字 🔧🚒"),
    QStringLiteral("'; DROP TABLE tasks; --"),
    QStringLiteral("%s%n%x {} [] \\ \" \t"),
    QString(600, QLatin1Char('x')),
};

bool isViewport(const QWidget *widget)
{
    const auto *area = qobject_cast<const QAbstractScrollArea *>(widget->parentWidget());
    return area && area->viewport() == widget;
}

bool isControl(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QComboBox *>(widget)
        || qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QTextEdit *>(widget)
        || qobject_cast<const QPlainTextEdit *>(widget) || qobject_cast<const QAbstractSlider *>(widget)
        || isViewport(widget);
}

bool isTextField(const QWidget *widget)
{
    return (qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QTextEdit *>(widget)
            || qobject_cast<const QPlainTextEdit *>(widget))
        && !widget->property("readOnly").toBool();
}

// Whether something in front (an alert, a sheet, a panel) hides the middle of the widget.
bool isCovered(const QWidget *widget)
{
    const QWidget *top = widget->window();
    if (widget == top)
        return false;
    const QWidget *hit = top->childAt(widget->mapTo(top, widget->rect().center()));
    return hit && hit != widget && !widget->isAncestorOf(hit);
}

bool hasVisibleChild(const QWidget *widget)
{
    const QList<QWidget *> children = widget->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    return std::any_of(children.cbegin(), children.cend(), [](const QWidget *child) { return child->isVisible(); });
}

QString screenAt(QWidget *top, QPoint windowPos)
{
    QWidget *hit = top->childAt(windowPos);
    for (QWidget *widget = hit ? hit : top; widget; widget = widget->parentWidget()) {
        for (const char *name : screenClasses) {
            if (widget->inherits(name))
                return QString::fromLatin1(widget->metaObject()->className()).remove(QStringLiteral("ravelin::"));
        }
    }
    return QString::fromLatin1(top->metaObject()->className()).remove(QStringLiteral("ravelin::"));
}

} // namespace

UiMonkey::UiMonkey(DemoHostWindow *window, quint32 seed)
    : m_window(window)
    , m_random(seed)
{ }

void UiMonkey::run(int actions, Report &report)
{
    for (int i = 0; i < actions && m_window; ++i) {
        const Action action = pickAction();
        if (perform(action, report))
            ++report.performed[action];
        else
            ++report.idle;
        ++report.actions;
        pause();
    }
}

QString UiMonkey::actionName(Action action)
{
    static const QStringList names{"taps", "swipes", "pulls", "typing", "back", "task events", "emergency"};
    return names.value(qsizetype(action));
}

QString UiMonkey::describe(const Report &report)
{
    const auto joined = [](const auto &counts, const auto &name) {
        QStringList parts;
        for (auto it = counts.cbegin(); it != counts.cend(); ++it)
            parts.append(QStringLiteral("%1 %2").arg(name(it.key())).arg(it.value()));
        return parts.join(QStringLiteral(", "));
    };
    return QStringLiteral("%1 actions (%2, nothing to act on %3); taps per screen: %4")
        .arg(report.actions)
        .arg(joined(report.performed, actionName))
        .arg(report.idle)
        .arg(joined(report.screens, [](const QString &screen) { return screen; }));
}

UiMonkey::Action UiMonkey::pickAction()
{
    // Drawn with the generator's own bounded(), so that a seed replays the same walk.
    int roll = int(m_random.bounded(std::accumulate(actionWeights.cbegin(), actionWeights.cend(), 0)));
    for (std::size_t i = 0; i < actionWeights.size(); ++i) {
        if (roll < actionWeights[i])
            return Action(i);
        roll -= actionWeights[i];
    }
    return Action::tap;
}

bool UiMonkey::perform(Action action, Report &report)
{
    switch (action) {
    case Action::tap: {
        // Mostly what can be seen; now and then anywhere on the screen, hidden or not.
        const QList<QWidget *> widgets = visibleWidgets();
        return tap(m_random.bounded(5u) == 0 ? any(widgets, nullptr) : pick(widgets), &report);
    }
    case Action::swipe: return swipe();
    case Action::pull: return pull();
    case Action::type: return type();
    case Action::back: return back();
    case Action::taskEvent: taskEvent(); return true;
    case Action::emergency: emergency(); return true;
    }
    return false;
}

QList<QWidget *> UiMonkey::visibleWidgets(bool (*keep)(const QWidget *)) const
{
    QList<QWidget *> out;
    const QList<QWidget *> tops = QApplication::topLevelWidgets();
    for (QWidget *top : tops) {
        if (!top->isVisible() || !top->windowHandle())
            continue;
        out.append(top);
        const QList<QWidget *> children = top->findChildren<QWidget *>();
        for (QWidget *widget : children) {
            if (widget->isVisible() && widget->isEnabled() && widget->width() > 0 && widget->height() > 0
                && !widget->visibleRegion().isEmpty())
                out.append(widget);
        }
    }
    if (keep)
        out.removeIf([keep](const QWidget *widget) { return !keep(widget); });
    return out;
}

// Controls are three times as likely as other widgets that draw something of
// their own (those without visible children); containers and widgets hidden
// behind others are not picked.
QWidget *UiMonkey::pick(const QList<QWidget *> &widgets)
{
    QList<QWidget *> weighted;
    for (QWidget *widget : widgets) {
        const int weight = isCovered(widget) ? 0 : isControl(widget) ? 3 : hasVisibleChild(widget) ? 0 : 1;
        for (int i = 0; i < weight; ++i)
            weighted.append(widget);
    }
    return weighted.isEmpty() ? widgets.value(0) : any(weighted, nullptr);
}

QPoint UiMonkey::pointIn(const QWidget *widget)
{
    const QRect area = widget->visibleRegion().boundingRect();
    return QPoint(area.left() + int(m_random.bounded(quint32(std::max(1, area.width())))),
                  area.top() + int(m_random.bounded(quint32(std::max(1, area.height())))));
}

bool UiMonkey::tap(QWidget *widget, Report *report)
{
    if (!widget)
        return false;
    QWidget *top = widget->window();
    const QPoint at = widget->mapTo(top, pointIn(widget));
    const QPointer<QWindow> window = top->windowHandle();
    if (!window)
        return false;
    if (report)
        ++report->screens[screenAt(top, at)];
    QTest::mousePress(window, Qt::LeftButton, {}, at);
    if (window)
        QTest::mouseRelease(window, Qt::LeftButton, {}, at);
    return true;
}

bool UiMonkey::drag(QWidget *widget, QPoint from, QPoint to, std::chrono::milliseconds hold)
{
    QWidget *top = widget->window();
    const QPointer<QWindow> window = top->windowHandle();
    if (!window)
        return false;
    // A finger stays on the screen: the drag is kept inside the window.
    const QRect inside = top->rect().adjusted(0, 0, -1, -1);
    const auto clamp = [&inside](QPoint p) {
        return QPoint(std::clamp(p.x(), inside.left(), inside.right()),
                      std::clamp(p.y(), inside.top(), inside.bottom()));
    };
    const QPoint start = clamp(widget->mapTo(top, from));
    const QPoint end = clamp(widget->mapTo(top, to));
    QTest::mousePress(window, Qt::LeftButton, {}, start);
    const int steps = std::max(1, int((end - start).manhattanLength() / 20));
    for (int i = 1; i <= steps && window; ++i) {
        QTest::qWait(16);
        if (window)
            QTest::mouseMove(window, start + (end - start) * i / steps);
    }
    if (hold > 0ms)
        QTest::qWait(int(hold.count()));
    if (window)
        QTest::mouseRelease(window, Qt::LeftButton, {}, end);
    return true;
}

bool UiMonkey::swipe()
{
    QWidget *widget = pick(visibleWidgets());
    if (!widget)
        return false;
    const QPoint from = pointIn(widget);
    const int distance = 60 + int(m_random.bounded(160u));
    const int direction = m_random.bounded(2u) ? 1 : -1;
    return drag(widget, from, from + QPoint(direction * distance, int(m_random.bounded(21u)) - 10), 0ms);
}

bool UiMonkey::pull()
{
    QWidget *viewport = any(visibleWidgets(isViewport), nullptr);
    if (!viewport)
        return false;
    const QPoint from(int(m_random.bounded(quint32(std::max(1, viewport->width())))), 10 + int(m_random.bounded(30u)));
    const int distance = 60 + int(m_random.bounded(180u));
    // Held still before letting go, or flicked.
    return drag(viewport, from, from + QPoint(0, distance), m_random.bounded(3u) == 0 ? 300ms : 0ms);
}

bool UiMonkey::type()
{
    QPointer<QWidget> field = any(visibleWidgets(isTextField), nullptr);
    if (!field)
        return false;
    tap(field);
    if (!field)
        return true;
    QWidget *target = QApplication::focusWidget() ? QApplication::focusWidget() : field.data();
    QTest::keyClicks(target, any(typedTexts, QString()));
    static const QList<Qt::Key> keys{Qt::Key_Backspace, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Left};
    if (QWidget *focused = QApplication::focusWidget())
        QTest::keyClick(focused, any(keys, Qt::Key_Escape));
    return true;
}

bool UiMonkey::back()
{
    for (QWidget *widget : visibleWidgets()) {
        auto *bar = qobject_cast<NavigationBar *>(widget);
        if (bar && bar->backButton() && bar->backButton()->isVisible())
            return tap(bar->backButton());
    }
    // No way back on screen: what a hardware back key or Escape would do.
    QWidget *target = QApplication::focusWidget() ? QApplication::focusWidget() : m_window.data();
    if (!target)
        return false;
    QTest::keyClick(target, Qt::Key_Escape);
    return true;
}

void UiMonkey::taskEvent()
{
    static const QStringList kinds{QStringLiteral("task-assigned"), QStringLiteral("task-unassigned"),
                                   QStringLiteral("task-deleted"), QStringLiteral("task-exploded")};
    const QString kind = any(kinds, QString());
    const QList<HostSetup::TaskChoice> tasks = m_window->taskChoices();
    // Now and then a task that nobody knows.
    if (tasks.isEmpty() || m_random.bounded(5u) == 0) {
        m_window->postTaskEvent(900000 + qint64(m_random.bounded(1000u)), QStringLiteral("Unknown task"), kind);
        return;
    }
    const HostSetup::TaskChoice task = any(tasks, HostSetup::TaskChoice());
    m_window->postTaskEvent(task.id, task.name, kind);
}

void UiMonkey::emergency()
{
    // Mostly a change, sometimes the same flag once more.
    m_emergency = m_random.bounded(3u) == 0 ? m_emergency : !m_emergency;
    m_window->setEmergency(m_emergency);
}

void UiMonkey::pause()
{
    // Mostly short, now and then long enough for an answer or an alert's timer.
    QTest::qWait(m_random.bounded(20u) == 0 ? 200 + int(m_random.bounded(300u)) : int(m_random.bounded(25u)));
}

} // namespace ravelin::test
