#pragma once

#include "host/delays.h"

#include <QAction>
#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <any>
#include <functional>

namespace ravelin {

class RavelinNavVC;

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
    [[nodiscard]] QList<QAction *> rightBarActions() const { return m_rightBarActions; }
    void setRightBarActions(const QList<QAction *> &actions);
    [[nodiscard]] QList<QAction *> leftBarActions() const { return m_leftBarActions; }
    void setLeftBarActions(const QList<QAction *> &actions);

    // The navigation host whose stack (or presentation) shows this screen.
    [[nodiscard]] RavelinNavVC *navigationHost() const;
    void setNavigationHost(RavelinNavVC *host);
    // The waits of the navigation host's environment (the standard ones without a host).
    [[nodiscard]] Delays delays() const;

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
    QList<QAction *> m_rightBarActions;
    QList<QAction *> m_leftBarActions;
    QPointer<RavelinNavVC> m_navigationHost;
};

} // namespace ravelin
