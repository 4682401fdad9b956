#pragma once

#include "api/clock.h"
#include "host/delays.h"

#include <QAction>
#include <QList>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <any>
#include <functional>
#include <optional>

namespace ravelin {

class OutboxSender;
class RavelinNavVC;
class RefreshableScrollArea;

// A screen of the library: a widget with a life cycle driven by the navigation
// host (loaded once, then will/did appear and will/did disappear around each
// push, pop, presentation and dismissal), a navigation item (title and bar
// buttons) and named transitions to other screens.
//
// From the keyboard, Enter acts on the focused button as Space does; a
// presented screen keeps Tab inside itself and closes on Escape. Assistive
// technology knows a screen by its title.
class Screen : public QWidget
{
    Q_OBJECT

public:
    explicit Screen(QWidget *parent = nullptr);

    // Calls viewDidLoad() the first time it is asked.
    void loadViewIfNeeded();
    [[nodiscard]] bool isViewLoaded() const { return m_loaded; }

    [[nodiscard]] QString title() const { return m_title; }
    void setTitle(const QString &title);
    // A line the bar shows under the title, such as where the data came from.
    [[nodiscard]] QString prompt() const { return m_prompt; }
    void setPrompt(const QString &prompt);
    [[nodiscard]] QList<QAction *> rightBarActions() const { return m_rightBarActions; }
    void setRightBarActions(const QList<QAction *> &actions);
    [[nodiscard]] QList<QAction *> leftBarActions() const { return m_leftBarActions; }
    void setLeftBarActions(const QList<QAction *> &actions);

    // The navigation host whose stack (or presentation) shows this screen.
    [[nodiscard]] RavelinNavVC *navigationHost() const;
    void setNavigationHost(RavelinNavVC *host);
    // The waits of the navigation host's environment (the standard ones without a host).
    [[nodiscard]] Delays delays() const;

    // The session's outbox: none without an offline store or a navigation host.
    [[nodiscard]] OutboxSender *outbox() const;
    // Calls `changed` after the outbox changed (changes in a row make one call),
    // with true when a result reached the server meanwhile. Nothing without an outbox.
    void followOutbox(std::function<void(bool someSent)> changed);
    // While the screen shows what the cache kept, the bar says so under the
    // title ("Offline · updated 10 min ago"), and so does pull to refresh.
    void showCachedAt(std::optional<TimePoint> cachedAt, RefreshableScrollArea *refresh,
                      const QString &onlineRefreshTitle);

    // Follows a named transition: the destination is made by makeDestination(),
    // handed to prepare() with the sender, then pushed (or presented when
    // presentsModally() says so). Unknown identifiers do nothing.
    void performSegue(const QString &identifier, const std::any &sender = {});

    // The screen presented over this one, if any.
    [[nodiscard]] Screen *presentedScreen() const;
    // Closes this screen if it was presented, or pops it from the stack, then runs the completion.
    void dismiss(const std::function<void()> &completion = {});

    // Life cycle, called by the navigation host.
    virtual void viewDidLoad() { }
    virtual void viewWillAppear() { }
    virtual void viewDidAppear() { }
    virtual void viewWillDisappear() { }
    virtual void viewDidDisappear() { }

signals:
    void navigationItemChanged();

protected:
    [[nodiscard]] virtual Screen *makeDestination(const QString &identifier);
    virtual void prepare(const QString &identifier, Screen *destination, const std::any &sender);
    [[nodiscard]] virtual bool presentsModally(const QString &identifier) const;

    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    [[nodiscard]] bool isPresented() const;

    bool m_loaded = false;
    QString m_title;
    QString m_prompt;
    QList<QAction *> m_rightBarActions;
    QList<QAction *> m_leftBarActions;
    QPointer<RavelinNavVC> m_navigationHost;
    QTimer *m_outboxChanges = nullptr;
    bool m_outboxSent = false;
};

} // namespace ravelin
