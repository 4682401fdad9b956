#include "demo/app/signinscreen.h"

#include "demo/app/hostbrand.h"
#include "demo/app/workerrow.h"

#include <QButtonGroup>
#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace ravelin {

namespace {

constexpr int heroHeight = 300;
constexpr int logoSize = 76;

QLabel *label(const QString &text, const QFont &font, const QColor &color, QWidget *parent)
{
    auto *l = new QLabel(text, parent);
    l->setFont(font);
    QPalette palette = l->palette();
    palette.setColor(QPalette::WindowText, color);
    l->setPalette(palette);
    return l;
}

QPixmap logoPixmap()
{
    QPixmap pixmap(QSize(logoSize, logoSize) * 2);
    pixmap.setDevicePixelRatio(2.0);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    hostbrand::drawLogo(painter, QRectF(0, 0, logoSize, logoSize), Qt::white, hostbrand::primary());
    return pixmap;
}

} // namespace

SignInScreen::SignInScreen(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("signInScreen"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 56, 20, 20);
    column->setSpacing(0);

    m_logo = new QLabel(this);
    m_logo->setPixmap(logoPixmap());
    m_logo->setAlignment(Qt::AlignCenter);
    column->addWidget(m_logo);
    column->addSpacing(16);

    auto *product = label(hostbrand::productName, hostbrand::font(30, QFont::Bold), Qt::white, this);
    product->setAlignment(Qt::AlignCenter);
    column->addWidget(product);
    column->addSpacing(4);
    auto *tagline = label(hostbrand::tagline, hostbrand::font(15), QColor(255, 255, 255, 215), this);
    tagline->setAlignment(Qt::AlignCenter);
    column->addWidget(tagline);
    column->addSpacing(44);

    auto *card = new QWidget(this);
    card->setObjectName(QStringLiteral("signInCard"));
    card->setAttribute(Qt::WA_StyledBackground);
    card->setStyleSheet(
        QStringLiteral("QWidget#signInCard { background: %1; border-radius: 18px; }").arg(hostbrand::surface().name()));
    auto *shadow = new QGraphicsDropShadowEffect(card);
    shadow->setBlurRadius(28);
    shadow->setOffset(0, 6);
    shadow->setColor(QColor(8, 40, 38, 60));
    card->setGraphicsEffect(shadow);

    auto *cardColumn = new QVBoxLayout(card);
    cardColumn->setContentsMargins(18, 20, 18, 18);
    cardColumn->setSpacing(0);
    cardColumn->addWidget(label(signInTitle, hostbrand::font(21, QFont::DemiBold), hostbrand::text(), card));
    cardColumn->addSpacing(4);
    cardColumn->addWidget(label(QStringLiteral("Choose a demo field worker to start a session."), hostbrand::font(13),
                                hostbrand::secondaryText(), card));
    cardColumn->addSpacing(14);

    m_rowsLayout = new QVBoxLayout;
    m_rowsLayout->setSpacing(4);
    cardColumn->addLayout(m_rowsLayout);
    m_group = new QButtonGroup(this);
    m_group->setExclusive(true);
    cardColumn->addSpacing(16);

    m_signInButton = new QPushButton(signInTitle, card);
    m_signInButton->setObjectName(QStringLiteral("signInButton"));
    m_signInButton->setCursor(Qt::PointingHandCursor);
    m_signInButton->setMinimumHeight(48);
    m_signInButton->setFont(hostbrand::font(16, QFont::DemiBold));
    m_signInButton->setStyleSheet(
        QStringLiteral("QPushButton { background: %1; color: white; border: none; border-radius: 12px; }"
                       "QPushButton:hover { background: %2; }"
                       "QPushButton:pressed { background: %2; }"
                       "QPushButton:disabled { background: %3; color: rgba(255,255,255,220); }")
            .arg(hostbrand::primary().name(), hostbrand::primaryDark().name(), QColor(0x8F, 0xB8, 0xB4).name()));
    connect(m_signInButton, &QPushButton::clicked, this, &SignInScreen::requestSignIn);
    cardColumn->addWidget(m_signInButton);
    cardColumn->addSpacing(10);

    m_message = label(QString(), hostbrand::font(13), hostbrand::secondaryText(), card);
    m_message->setObjectName(QStringLiteral("signInMessage"));
    m_message->setAlignment(Qt::AlignCenter);
    m_message->setWordWrap(true);
    m_message->setMinimumHeight(20);
    cardColumn->addWidget(m_message);

    column->addWidget(card);
    column->addSpacing(22);

    auto *hints = label(QStringLiteral("Once signed in: acknowledge or start a task on the dashboard, open the host "
                                       "panel with the dashboard's panel button, and post a task event or an "
                                       "emergency from the host bar at the bottom."),
                        hostbrand::font(13), hostbrand::secondaryText(), this);
    hints->setObjectName(QStringLiteral("signInHints"));
    hints->setWordWrap(true);
    hints->setAlignment(Qt::AlignCenter);
    hints->setContentsMargins(12, 0, 12, 0);
    column->addWidget(hints);
    column->addStretch(1);

    m_serverNote = label(QString(), hostbrand::font(12), hostbrand::secondaryText(), this);
    m_serverNote->setObjectName(QStringLiteral("serverNote"));
    m_serverNote->setAlignment(Qt::AlignCenter);
    m_serverNote->setWordWrap(true);
    column->addWidget(m_serverNote);
    column->addSpacing(8);

    m_offline = new QPushButton(QStringLiteral("Offline"), this);
    m_offline->setObjectName(QStringLiteral("signInOfflineButton"));
    m_offline->setCheckable(true);
    m_offline->setCursor(Qt::PointingHandCursor);
    m_offline->setFont(hostbrand::font(13, QFont::DemiBold));
    m_offline->setMinimumHeight(32);
    m_offline->setToolTip(QStringLiteral("Switch the host's network off and on"));
    m_offline->setStyleSheet(QStringLiteral("QPushButton { color: %1; background: transparent; border: 1px solid %2;"
                                            " border-radius: 10px; padding: 0 14px; }"
                                            "QPushButton:checked { background: %3; border-color: %3; color: %4; }")
                                 .arg(hostbrand::secondaryText().name(), hostbrand::hairline().name(),
                                      hostbrand::accent().name(), hostbrand::text().name()));
    connect(m_offline, &QPushButton::toggled, this, &SignInScreen::offlineToggled);
    column->addWidget(m_offline, 0, Qt::AlignHCenter);
}

void SignInScreen::setWorkers(const QList<HostSetup::Worker> &workers)
{
    for (WorkerRow *row : std::as_const(m_rows)) {
        m_group->removeButton(row);
        delete row;
    }
    m_rows.clear();
    for (const HostSetup::Worker &worker : workers) {
        auto *row = new WorkerRow(worker.id, worker.name, worker.role, this);
        m_group->addButton(row);
        m_rowsLayout->addWidget(row);
        m_rows.append(row);
        // Choosing someone else clears an earlier failure.
        connect(row, &WorkerRow::clicked, this, [this] { setMessage(QString()); });
    }
    if (!m_rows.isEmpty())
        m_rows.first()->setChecked(true);
    m_signInButton->setEnabled(!m_busy && !m_rows.isEmpty());
}

std::optional<qint64> SignInScreen::selectedWorker() const
{
    for (const WorkerRow *row : m_rows) {
        if (row->isChecked())
            return row->workerId();
    }
    return std::nullopt;
}

bool SignInScreen::selectWorker(qint64 workerId)
{
    for (WorkerRow *row : std::as_const(m_rows)) {
        if (row->workerId() == workerId) {
            row->setChecked(true);
            return true;
        }
    }
    return false;
}

void SignInScreen::setServerNote(const QString &note)
{
    m_serverNote->setText(note);
}

void SignInScreen::setOffline(bool offline)
{
    const QSignalBlocker blocker(m_offline);
    m_offline->setChecked(offline);
}

void SignInScreen::setBusy(bool busy)
{
    if (m_busy == busy)
        return;
    m_busy = busy;
    m_signInButton->setEnabled(!busy && !m_rows.isEmpty());
    m_signInButton->setText(busy ? QStringLiteral("Signing in…") : signInTitle);
    for (WorkerRow *row : std::as_const(m_rows))
        row->setEnabled(!busy);
}

void SignInScreen::setMessage(const QString &message, bool isError)
{
    m_message->setText(message);
    QPalette palette = m_message->palette();
    palette.setColor(QPalette::WindowText, isError ? hostbrand::danger() : hostbrand::secondaryText());
    m_message->setPalette(palette);
}

QString SignInScreen::message() const
{
    return m_message->text();
}

void SignInScreen::requestSignIn()
{
    const auto worker = selectedWorker();
    if (m_busy || !worker)
        return;
    emit signInRequested(*worker);
}

void SignInScreen::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), hostbrand::background());
    QLinearGradient hero(0, 0, width(), heroHeight);
    hero.setColorAt(0, hostbrand::primary());
    hero.setColorAt(1, hostbrand::primaryDark());
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath band;
    band.moveTo(0, 0);
    band.lineTo(width(), 0);
    band.lineTo(width(), heroHeight - 40);
    band.quadTo(width() / 2.0, heroHeight + 24, 0, heroHeight - 40);
    band.closeSubpath();
    painter.fillPath(band, hero);
    // A faint bastion watermark in the corner of the band.
    painter.setOpacity(0.07);
    hostbrand::drawLogo(painter, QRectF(width() - 150, -30, 210, 210), Qt::transparent, Qt::white);
}

} // namespace ravelin
