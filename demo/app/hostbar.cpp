#include "demo/app/hostbar.h"

#include "demo/app/hostbrand.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

namespace ravelin {

HostBar::HostBar(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("hostBar"));
    setFixedHeight(barHeight);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 8, 12, 8);
    row->setSpacing(6);

    auto *mark = new QLabel(this);
    QPixmap logo(QSize(28, 28) * 2);
    logo.setDevicePixelRatio(2.0);
    logo.fill(Qt::transparent);
    {
        QPainter painter(&logo);
        hostbrand::drawLogo(painter, QRectF(0, 0, 28, 28), Qt::white, hostbrand::primary());
    }
    mark->setPixmap(logo);
    mark->setToolTip(hostbrand::productName);
    row->addWidget(mark);
    row->addStretch(1);

    const QString buttonStyle = QStringLiteral(
        "QPushButton { color: white; background: rgba(255,255,255,28); border: 1px solid rgba(255,255,255,60);"
        " border-radius: 10px; padding: 0 9px; }"
        "QPushButton:hover { background: rgba(255,255,255,45); }"
        "QPushButton:pressed { background: rgba(255,255,255,60); }");

    m_taskEvent = new QPushButton(QStringLiteral("\u2691 Task event"), this);
    m_taskEvent->setObjectName(QStringLiteral("hostTaskEventButton"));
    m_taskEvent->setCursor(Qt::PointingHandCursor);
    m_taskEvent->setFont(hostbrand::font(13, QFont::DemiBold));
    m_taskEvent->setMinimumHeight(38);
    m_taskEvent->setStyleSheet(buttonStyle);
    connect(m_taskEvent, &QPushButton::clicked, this, &HostBar::taskEventRequested);
    row->addWidget(m_taskEvent);

    m_emergency = new QPushButton(this);
    m_emergency->setObjectName(QStringLiteral("hostEmergencyButton"));
    m_emergency->setCheckable(true);
    m_emergency->setCursor(Qt::PointingHandCursor);
    m_emergency->setFont(hostbrand::font(13, QFont::DemiBold));
    m_emergency->setMinimumHeight(38);
    m_emergency->setStyleSheet(
        buttonStyle
        + QStringLiteral("QPushButton:checked { background: %1; border-color: %1; }").arg(hostbrand::danger().name()));
    connect(m_emergency, &QPushButton::toggled, this, [this](bool checked) {
        updateEmergencyText();
        emit emergencyToggled(checked);
    });
    row->addWidget(m_emergency);
    updateEmergencyText();

    // Amber while on: the host's network fails every request.
    m_offline = new QPushButton(QStringLiteral("Offline"), this);
    m_offline->setObjectName(QStringLiteral("hostOfflineButton"));
    m_offline->setCheckable(true);
    m_offline->setCursor(Qt::PointingHandCursor);
    m_offline->setFont(hostbrand::font(13, QFont::DemiBold));
    m_offline->setMinimumHeight(38);
    m_offline->setToolTip(QStringLiteral("Switch the host's network off and on"));
    m_offline->setStyleSheet(buttonStyle
                             + QStringLiteral("QPushButton:checked { background: %1; border-color: %1; color: %2; }")
                                   .arg(hostbrand::accent().name(), hostbrand::text().name()));
    connect(m_offline, &QPushButton::toggled, this, &HostBar::offlineToggled);
    row->addWidget(m_offline);
}

bool HostBar::isEmergency() const
{
    return m_emergency->isChecked();
}

void HostBar::setEmergency(bool inForce)
{
    if (m_emergency->isChecked() == inForce)
        return;
    const QSignalBlocker blocker(m_emergency);
    m_emergency->setChecked(inForce);
    updateEmergencyText();
}

bool HostBar::isOffline() const
{
    return m_offline->isChecked();
}

void HostBar::setOffline(bool offline)
{
    const QSignalBlocker blocker(m_offline);
    m_offline->setChecked(offline);
}

void HostBar::updateEmergencyText()
{
    // The switch reads the same both ways; red says it is on.
    m_emergency->setText(QStringLiteral("\u26A0 Emergency"));
    m_emergency->setToolTip(m_emergency->isChecked() ? QStringLiteral("Emergency in force: tap to end it")
                                                     : QStringLiteral("Post an emergency to the task client"));
    m_emergency->setAccessibleDescription(m_emergency->isChecked() ? QStringLiteral("on") : QStringLiteral("off"));
}

void HostBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QLinearGradient fill(0, 0, width(), 0);
    fill.setColorAt(0, hostbrand::primaryDark());
    fill.setColorAt(1, hostbrand::primary());
    painter.fillRect(rect(), fill);
}

} // namespace ravelin
