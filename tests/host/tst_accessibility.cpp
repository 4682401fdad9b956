#include "resources/namedcolors.h"
#include "support/screentest.h"
#include "support/shots.h"
#include "tasks/taskcard.h"
#include "tasks/taskcollectionmodel.h"
#include "views/touchtarget.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>

using namespace ravelin;
using namespace ravelin::test;

namespace {

QAccessibleInterface *accessible(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

QString nameOf(QObject *object)
{
    QAccessibleInterface *interface = accessible(object);
    return interface ? interface->text(QAccessible::Name) : QString();
}

// Every object assistive technology meets under `interface` while it is shown.
void collect(QAccessibleInterface *interface, QList<QAccessibleInterface *> &out)
{
    if (!interface || interface->state().invisible)
        return;
    out.append(interface);
    for (int i = 0; i < interface->childCount(); ++i)
        collect(interface->child(i), out);
}

QString describe(QAccessibleInterface *interface)
{
    const QObject *object = interface->object();
    return QStringLiteral("%1 %2 \"%3\"")
        .arg(QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(interface->role())),
             object ? QString::fromLatin1(object->metaObject()->className()) + QLatin1Char('#') + object->objectName()
                    : QStringLiteral("item"),
             interface->text(QAccessible::Name));
}

// One round of Tab from where the focus is, by the names heard on the way.
QStringList tabRound()
{
    QStringList names;
    QWidget *first = nullptr;
    for (int presses = 0; presses < 40; ++presses) {
        QWidget *now = QApplication::focusWidget();
        if (!now)
            return names << QStringLiteral("(no focus)");
        if (now == first)
            return names;
        if ((now->focusPolicy() & Qt::TabFocus) == Qt::TabFocus) {
            if (!first)
                first = now;
            names.append(nameOf(now));
        }
        QTest::keyClick(now, Qt::Key_Tab);
    }
    return names << QStringLiteral("(no end)");
}

// What a finger can hit in the window that is smaller than a finger: the
// controls in sight, and the acknowledge buttons painted on the cards.
QStringList smallTargets(const QWidget *window)
{
    QStringList small;
    const auto check = [&small](const QString &what, const QSize &size) {
        if (size.width() < TouchTarget::minimumSide || size.height() < TouchTarget::minimumSide)
            small << QStringLiteral("%1 %2x%3").arg(what).arg(size.width()).arg(size.height());
    };
    for (QWidget *widget : window->findChildren<QWidget *>()) {
        // A field's own icon does what a tap anywhere on the field does.
        if (widget->isVisible() && !qobject_cast<QLineEdit *>(widget->parentWidget())
            && (qobject_cast<QAbstractButton *>(widget) || qobject_cast<QLineEdit *>(widget)
                || qobject_cast<QPlainTextEdit *>(widget) || qobject_cast<QAbstractSpinBox *>(widget)
                || qobject_cast<QComboBox *>(widget)))
            check(describe(accessible(widget)), widget->size());
    }
    for (const TaskTableViewCell *strip : window->findChildren<TaskTableViewCell *>()) {
        for (int i = 0; strip->isVisible() && i < strip->count(); ++i) {
            const QModelIndex card = strip->model()->index(i, 0);
            if (card.data(TaskCollectionModel::ShowsAcknowledgeRole).toBool())
                check(QStringLiteral("acknowledge on card %1").arg(i),
                      TaskCollectionViewCell::acknowledgeTapRect(strip->visualRect(card)).size());
        }
    }
    return small;
}

// Tab until the widget of that name has the focus.
bool tabTo(const QString &name)
{
    for (int presses = 0; presses < 40; ++presses) {
        if (QApplication::focusWidget() && nameOf(QApplication::focusWidget()) == name)
            return true;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    return false;
}

} // namespace

class TestAccessibility : public ScreenTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup()
    {
        closeHost();
        NamedColors::setAppearance(Appearance::light);
    }

    void everyControlIsNamedFitsAFingerAndTabsInOrder_data();
    void everyControlIsNamedFitsAFingerAndTabsInOrder();
    void chartsReadAsText_data();
    void chartsReadAsText();
    void listItemsCarryNamesAndIdentifiers_data();
    void listItemsCarryNamesAndIdentifiers();
    void keysAct_data();
    void keysAct();
    void focusIsVisibleInBothAppearances_data();
    void focusIsVisibleInBothAppearances();

private:
    // A new host, walked to the screen of that name (openScreen); false when it does not show.
    bool open(const QString &screen);
    [[nodiscard]] QWidget *view(const QString &objectName) const;
    // Where the worker is: the top screen, a presented screen, an alert.
    [[nodiscard]] QString where() const;
};

void TestAccessibility::init()
{
    startHarness({{1, "Meters"}, {3, "Pumps"}});
    const QJsonArray counts{QJsonObject{{"itemStatusId", 1}, {"count", 1}},
                            QJsonObject{{"itemStatusId", 2}, {"count", 1}},
                            QJsonObject{{"itemStatusId", 3}, {"count", 2}}};
    m_api->server.on(
        "GET", tasksPath,
        CannedResponse{200,
                       answer(QJsonArray{taskJson(1, "Meter C", 2, 0, "2026-11-03T08:00:00.000Z", 1),
                                         taskJson(2, "Valve A", 4, 1, "2026-11-02T08:00:00.000Z", 3, counts),
                                         taskJson(3, "Valve B", 4, 2, "2026-11-01T08:00:00.000Z", 3),
                                         taskJson(4, "Tank D", 6, 3, "2026-10-30T08:00:00.000Z", 3)})});
    m_api->server.on("GET", "/api/items/taskId/2",
                     CannedResponse{200,
                                    answer(QJsonArray{itemJson(21, 2, "Gauge", 1), itemJson(22, 2, "Seal", 2),
                                                      itemJson(23, 2, "Valve", 3, QStringLiteral("CP-1")),
                                                      itemJson(24, 2, "Gate", 3)})});
    const QJsonObject pictured = commentJson("Valve closed", serverDate(m_api->now - std::chrono::minutes(5)),
                                             std::nullopt, false, {"p/valve.jpg"});
    m_api->server.on("GET", "/api/task/2/comments",
                     CannedResponse{200,
                                    answer(QJsonArray{commentJson("Seal replaced",
                                                                  serverDate(m_api->now - std::chrono::hours(50)), 22),
                                                      pictured})});
    m_api->server.onPrefix("GET", QStringLiteral("/files/"), [](const RecordedRequest &) {
        return CannedResponse{200, jpeg(), "image/jpeg"};
    });
}

QWidget *TestAccessibility::view(const QString &objectName) const
{
    return m_host ? m_host->findChild<QWidget *>(objectName) : nullptr;
}

QString TestAccessibility::where() const
{
    if (const AlertView *alert = AlertPresenter::visibleAlert(m_host.get()))
        return QStringLiteral("alert ") + alert->title();
    if (const Screen *presented = m_host->presentedScreen())
        return presented->objectName();
    return m_host->topScreen()->objectName();
}

bool TestAccessibility::open(const QString &screen)
{
    m_picker.next = std::nullopt;
    openHost().activateWindow();
    // Three sections; the second's first task has four items and four comment rows.
    return openScreen(*m_host, screen, ScreenRoute{.sections = 3, .taskRow = 1, .items = 4, .commentRows = 4},
                      timeoutMs);
}

void TestAccessibility::everyControlIsNamedFitsAFingerAndTabsInOrder_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QStringList>("round"); // one round of Tab, by the names heard
    QTest::newRow("dashboard") << "dashboard"
                               << QStringList{
                                      "Refresh",          "Filter", "Panel", "Assigned: 1 task", "In Progress: 2 tasks",
                                      "Completed: 1 task"};
    QTest::newRow("prompt") << "prompt" << QStringList{"Yes", "No"};
    QTest::newRow("items") << "items"
                           << QStringList{
                                  "Back", "Comments", "Scan Checkpoint", "Select",          "Completed",    "Incidents",
                                  "Open", "All",      "Checklist",       "Mark as Blocked", "Complete Task"};
    QTest::newRow("item action") << "item action" << QStringList{"Cancel", "Note", "Add Photo", "Complete"};
    QTest::newRow("block task") << "block task" << QStringList{"Cancel", "Reason", "Add Photo", "Mark as Blocked"};
    QTest::newRow("scanner") << "scanner" << QStringList{"Back", "Scan from photo"};
    QTest::newRow("comments") << "comments" << QStringList{"Back", "Comments", "Add Picture", "Comment"};
    QTest::newRow("picture") << "picture" << QStringList{"Close"};
    QTest::newRow("filter") << "filter"
                            << QStringList{"Back",       "Name",     "Priority", "Date", "Ascending", "Descending",
                                           "Highest",    "High",     "Medium",   "Low",  "All",       "Created from",
                                           "Created to", "Category", "Clear",    "Apply"};
    QTest::newRow("date picker") << "date picker" << QStringList{"Month", "Day", "Year", "Done"};
}

void TestAccessibility::everyControlIsNamedFitsAFingerAndTabsInOrder()
{
    // Whatever the worker can act on, and every picture and chart, is named in
    // words; what only holds others (cards, panes) may say nothing; and no name
    // is an identifier meant for automation ("statusCell_Assigned", "dateStart").
    // Whatever a finger can hit is at least as large as a finger.
    QFETCH(QString, screen);
    QFETCH(QStringList, round);
    QVERIFY(open(screen));
    static const QList<QAccessible::Role> speaking{
        QAccessible::Button,   QAccessible::PushButton, QAccessible::CheckBox, QAccessible::RadioButton,
        QAccessible::ComboBox, QAccessible::SpinBox,    QAccessible::Slider,   QAccessible::EditableText,
        QAccessible::List,     QAccessible::ListItem,   QAccessible::Cell,     QAccessible::PageTab,
        QAccessible::Link,     QAccessible::Chart,      QAccessible::Graphic,  QAccessible::AlertMessage};
    static const QRegularExpression identifier(QStringLiteral("^\\S*[a-z][A-Z_]\\S*$"));
    QList<QAccessibleInterface *> all;
    collect(accessible(m_host.get()), all);
    collect(accessible(AlertPresenter::visibleAlert(m_host.get())), all);
    QStringList offenders;
    for (QAccessibleInterface *interface : std::as_const(all)) {
        const QString name = interface->text(QAccessible::Name).trimmed();
        const bool acts = interface->state().focusable || speaking.contains(interface->role())
            || (interface->actionInterface() && !interface->actionInterface()->actionNames().isEmpty());
        if ((acts && name.isEmpty()) || identifier.match(name).hasMatch())
            offenders.append(describe(interface));
    }
    QCOMPARE(offenders.join(QStringLiteral("; ")), QString());
    QVERIFY(all.size() > 3);
    const QStringList small = smallTargets(m_host.get());
    QVERIFY2(small.isEmpty(), qPrintable(small.join(QStringLiteral("; "))));
    // Tab goes round the screen in its order.
    QCOMPARE(tabRound().join(QStringLiteral(", ")), round.join(QStringLiteral(", ")));
}

void TestAccessibility::chartsReadAsText_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("chart");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");
    const auto row
        = [](const char *tag, const char *screen, const char *chart, const char *name, const char *description) {
              QTest::newRow(tag) << QString(screen) << QString(chart) << QString(name) << QString(description);
          };
    row("overall chart", "dashboard", "pieChartView", "Assigned: 1, In Progress: 2, Completed: 1", "Tasks");
    row("items chart", "items", "progressView", "50% done. Completed: 1, Incidents: 1, Open: 2", "");
}

void TestAccessibility::chartsReadAsText()
{
    QFETCH(QString, screen);
    QFETCH(QString, chart);
    QVERIFY(open(screen));
    QAccessibleInterface *interface = accessible(view(chart));
    QVERIFY(interface);
    QCOMPARE(interface->role(), QAccessible::Chart);
    QTEST(interface->text(QAccessible::Name), "name");
    QTEST(interface->text(QAccessible::Description), "description");
}

void TestAccessibility::listItemsCarryNamesAndIdentifiers_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("list");
    QTest::addColumn<QString>("listName");
    QTest::addColumn<QStringList>("read");
    QTest::addColumn<QStringList>("identifiers");
    const auto row = [](const char *tag, const char *screen, const char *list, const char *name,
                        const QStringList &read, const QStringList &identifiers) {
        QTest::newRow(tag) << QString(screen) << QString(list) << QString(name) << read << identifiers;
    };
    // A card's ring reads as its percentage.
    row("cards", "dashboard", "statusCell_InProgress", "In Progress: 2 tasks",
        {"Valve A | In Progress, High priority, Pumps, 50% done",
         "Valve B | In Progress, Medium priority, Pumps, 0% done"},
        {"task_in_progress", "task_in_progress"});
    row("item rows", "items", "tableView", "Checklist",
        {"Gauge | Completed. Gauge details", "Seal | Incidents. Seal details", "Valve | Open, QR code. Valve details",
         "Gate | Open. Gate details"},
        {"itemCell_21", "itemCell_22", "itemCell_23", "itemCell_24"});
    row("comment rows", "comments", "commentsTableView", "Comments",
        {"2 days ago | ", "Seal replaced | Ann Rivers, 2 days ago, Seal", "10 hours ago | ",
         "Valve closed | Ann Rivers, 5 mins ago"},
        {"dayHeader", "commentCell", "dayHeader", "commentCell"});
}

void TestAccessibility::listItemsCarryNamesAndIdentifiers()
{
    QFETCH(QString, screen);
    QFETCH(QString, list);
    QFETCH(QStringList, read);
    QFETCH(QStringList, identifiers);
    QVERIFY(open(screen));
    auto *listView = qobject_cast<QAbstractItemView *>(view(list));
    QVERIFY(listView);
    QTEST(nameOf(listView), "listName");
    // The items as a screen reader reads them ("name | description") and as
    // automation finds them (the model's "identifier" role).
    QAccessibleInterface *accessibleList = accessible(listView);
    const int identifierRole = listView->model()->roleNames().key("identifier");
    QStringList itemsRead, itemIdentifiers;
    for (int i = 0; accessibleList && i < accessibleList->childCount(); ++i) {
        QAccessibleInterface *item = accessibleList->child(i);
        itemsRead.append(item->text(QAccessible::Name) + QStringLiteral(" | ") + item->text(QAccessible::Description));
        const int row = item->tableCellInterface()->rowIndex();
        itemIdentifiers.append(listView->model()->index(row, 0).data(identifierRole).toString());
    }
    QCOMPARE(itemsRead.join(QStringLiteral("; ")), read.join(QStringLiteral("; ")));
    QCOMPARE(itemIdentifiers, identifiers);
}

void TestAccessibility::keysAct_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const char *screen, const char *control, Qt::Key key, const char *after) {
        QTest::newRow(name) << QString(screen) << QString(control) << int(key) << QString(after);
    };
    row("Enter on a bar button", "dashboard", "Filter", Qt::Key_Return, "FilterVC");
    row("Space on a card", "dashboard", "Assigned: 1 task", Qt::Key_Space, "alert Acknowledge task `Meter C`");
    row("Enter on a row", "items", "Checklist", Qt::Key_Enter, "ItemActionVC");
    row("Enter on a segment", "items", "Open", Qt::Key_Return, "ItemsVC");
    row("Escape on the prompt", "prompt", "Yes", Qt::Key_Escape, "DashboardVC");
    row("Escape on a sheet", "block task", "Reason", Qt::Key_Escape, "ItemsVC");
    row("Enter on a picture", "comments", "Comments", Qt::Key_Down, "ImageVC");
    row("Escape on the picture", "picture", "Close", Qt::Key_Escape, "CommentsVC");
    row("Escape on the date picker", "date picker", "Day", Qt::Key_Escape, "FilterVC");
}

void TestAccessibility::keysAct()
{
    QFETCH(QString, screen);
    QFETCH(QString, control);
    QFETCH(int, key);
    QFETCH(QString, after);
    QVERIFY(open(screen));
    QVERIFY(tabTo(control));
    if (key == Qt::Key_Down) {
        // The last comment, the one with the picture, then Enter.
        auto *thread = qobject_cast<CommentThreadView *>(QApplication::focusWidget());
        QTest::keyClick(thread, Qt::Key_End);
        QTRY_VERIFY_WITH_TIMEOUT(!thread->pictureRect(3).isEmpty(), timeoutMs);
        QTRY_VERIFY_WITH_TIMEOUT(
            !thread->model()->index(3, 0).data(CommentThreadModel::ThumbnailRole).value<QImage>().isNull(), timeoutMs);
        key = Qt::Key_Return;
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
    QTRY_COMPARE_WITH_TIMEOUT(where(), after, timeoutMs);
    if (screen == QLatin1String("items") && control == QLatin1String("Open")) {
        // The segment chosen from the keyboard filters the list.
        QCOMPARE(qobject_cast<ItemsVC *>(m_host->topScreen())->itemModel()->rowCount(), 2);
    }
    if (screen == QLatin1String("date picker")) {
        // The date picker closed and the keyboard is back on its field.
        auto *filter = qobject_cast<FilterVC *>(m_host->topScreen());
        QVERIFY(!filter->inputSheet()->isPresented());
        QCOMPARE(QApplication::focusWidget(), filter->dateStart());
    }
}

void TestAccessibility::focusIsVisibleInBothAppearances_data()
{
    // One host per screen and appearance, walked over each kind of control that draws its own focus.
    QTest::addColumn<bool>("dark");
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QStringList>("controls");
    for (const bool dark : {false, true}) {
        const char *look = dark ? "dark" : "light";
        // A bar button, a button, a segment and an item row.
        QTest::addRow("%s: items", look) << dark << "items"
                                         << QStringList{"Comments", "Complete Task", "Incidents", "Checklist"};
        QTest::addRow("%s: card", look) << dark << "dashboard" << QStringList{"In Progress: 2 tasks"};
        QTest::addRow("%s: comment row", look) << dark << "comments" << QStringList{"Comments"};
        QTest::addRow("%s: picker field", look) << dark << "filter" << QStringList{"Created to"};
    }
}

void TestAccessibility::focusIsVisibleInBothAppearances()
{
    QFETCH(bool, dark);
    QFETCH(QString, screen);
    QFETCH(QStringList, controls);
    NamedColors::setAppearance(dark ? Appearance::dark : Appearance::light);
    QVERIFY(open(screen));
    for (const QString &control : controls) {
        QVERIFY2(tabTo(control), qPrintable(control));
        QWidget *widget = QApplication::focusWidget();
        const QImage withFocus = widget->grab().toImage();
        grabShot(*m_host, QStringLiteral("focus-%1-%2").arg(QString::fromLatin1(QTest::currentDataTag()), control));
        QTest::keyClick(widget, Qt::Key_Tab);
        QVERIFY(QApplication::focusWidget() != widget);
        QVERIFY2(widget->grab().toImage() != withFocus, qPrintable(control));
    }
}

int main(int argc, char *argv[])
{
    // A day's header reads the time since its local midnight: the same zone on
    // every machine.
    qputenv("TZ", "UTC");
    QApplication app(argc, argv);
    TestAccessibility test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_accessibility.moc"
