#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace ravelin {

// The host's strip under the library's screens: the host's mark, the button
// that opens the task event sheet, the emergency switch and the "Offline"
// switch that cuts the host's network. Drawn in the host's colours so that it
// is plainly not part of the library.
class HostBar : public QWidget
{
    Q_OBJECT

public:
    static constexpr int barHeight = 56;

    explicit HostBar(QWidget *parent = nullptr);

    [[nodiscard]] QPushButton *taskEventButton() const { return m_taskEvent; }
    [[nodiscard]] QPushButton *emergencyButton() const { return m_emergency; }
    [[nodiscard]] QPushButton *offlineButton() const { return m_offline; }

    [[nodiscard]] bool isEmergency() const;
    // Sets the switch without telling anyone (a new session starts without emergency).
    void setEmergency(bool inForce);

    [[nodiscard]] bool isOffline() const;
    // Sets the switch without telling anyone (it follows the host's network).
    void setOffline(bool offline);

signals:
    void taskEventRequested();
    void emergencyToggled(bool inForce);
    void offlineToggled(bool offline);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void updateEmergencyText();

    QPushButton *m_taskEvent = nullptr;
    QPushButton *m_emergency = nullptr;
    QPushButton *m_offline = nullptr;
};

} // namespace ravelin
