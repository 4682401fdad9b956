#include "host/screen.h"

#include "api/debuglog.h"
#include "api/outboxsender.h"
#include "host/ravelinnavvc.h"
#include "host/synctexts.h"
#include "views/focuschain.h"
#include "views/refreshablescrollarea.h"

#include <QKeyEvent>

namespace ravelin {

Screen::Screen(QWidget *parent)
    : QWidget(parent)
{ }

void Screen::loadViewIfNeeded()
{
    if (m_loaded)
        return;
    m_loaded = true;
    viewDidLoad();
}

void Screen::setTitle(const QString &title)
{
    if (m_title == title)
        return;
    m_title = title;
    setAccessibleName(title);
    emit navigationItemChanged();
}

void Screen::setPrompt(const QString &prompt)
{
    if (m_prompt == prompt)
        return;
    m_prompt = prompt;
    emit navigationItemChanged();
}

void Screen::setRightBarActions(const QList<QAction *> &actions)
{
    if (m_rightBarActions == actions)
        return;
    m_rightBarActions = actions;
    emit navigationItemChanged();
}

void Screen::setLeftBarActions(const QList<QAction *> &actions)
{
    if (m_leftBarActions == actions)
        return;
    m_leftBarActions = actions;
    emit navigationItemChanged();
}

OutboxSender *Screen::outbox() const
{
    return m_navigationHost ? m_navigationHost->outboxSender() : nullptr;
}

void Screen::followOutbox(std::function<void(bool)> changed)
{
    OutboxSender *sender = outbox();
    if (!sender)
        return;
    // A sync sends results one after another: the screen looks once they settle.
    m_outboxChanges = new QTimer(this);
    m_outboxChanges->setSingleShot(true);
    m_outboxChanges->setInterval(50);
    connect(m_outboxChanges, &QTimer::timeout, this,
            [this, changed = std::move(changed)] { changed(std::exchange(m_outboxSent, false)); });
    connect(sender, &OutboxSender::entryChanged, this, [this](qint64, OutboxEntry::State state) {
        m_outboxSent = m_outboxSent || state == OutboxEntry::State::sent;
        m_outboxChanges->start();
    });
}

void Screen::showCachedAt(std::optional<TimePoint> cachedAt, RefreshableScrollArea *refresh,
                          const QString &onlineRefreshTitle)
{
    const QString offline = cachedAt && m_navigationHost
        ? SyncTexts::offlinePrompt(*cachedAt, m_navigationHost->environment().clock())
        : QString();
    setPrompt(offline);
    if (refresh)
        refresh->setRefreshTitle(offline.isEmpty() ? onlineRefreshTitle : offline);
}

RavelinNavVC *Screen::navigationHost() const
{
    return m_navigationHost;
}

void Screen::setNavigationHost(RavelinNavVC *host)
{
    m_navigationHost = host;
}

Delays Screen::delays() const
{
    return m_navigationHost ? m_navigationHost->environment().delays : Delays{};
}

void Screen::performSegue(const QString &identifier, const std::any &sender)
{
    Screen *destination = makeDestination(identifier);
    if (!destination) {
        debugLog(lcHost, QStringLiteral("No screen for the transition ") + identifier);
        return;
    }
    prepare(identifier, destination, sender);
    if (!m_navigationHost) {
        destination->deleteLater();
        return;
    }
    if (presentsModally(identifier))
        m_navigationHost->present(destination);
    else
        m_navigationHost->push(destination);
}

Screen *Screen::presentedScreen() const
{
    return m_navigationHost && m_navigationHost->presentedScreen() != this ? m_navigationHost->presentedScreen()
                                                                           : nullptr;
}

void Screen::dismiss(const std::function<void()> &completion)
{
    if (!m_navigationHost) {
        if (completion)
            completion();
        return;
    }
    if (m_navigationHost->presentedScreen() == this)
        m_navigationHost->dismissPresented(completion);
    else {
        if (m_navigationHost->topScreen() == this)
            m_navigationHost->pop();
        if (completion)
            completion();
    }
}

Screen *Screen::makeDestination(const QString &)
{
    return nullptr;
}

void Screen::prepare(const QString &, Screen *, const std::any &)
{ }

bool Screen::presentsModally(const QString &) const
{
    return false;
}

bool Screen::isPresented() const
{
    return m_navigationHost && m_navigationHost->presentedScreen() == this;
}

void Screen::keyPressEvent(QKeyEvent *event)
{
    if (FocusChain::clickFocusedButton(this, event))
        return;
    if (event->key() == Qt::Key_Escape && isPresented()) {
        // As the sheet's own Cancel or Close: nobody is told.
        dismiss();
        return;
    }
    QWidget::keyPressEvent(event);
}

bool Screen::focusNextPrevChild(bool next)
{
    // Over the other screens, Tab stays on this one.
    if (isPresented())
        return FocusChain::moveWithin(this, next);
    return QWidget::focusNextPrevChild(next);
}

} // namespace ravelin
