#pragma once

#include <QAbstractButton>
#include <QPixmap>
#include <QString>

namespace ravelin {

// One person on the sign-in screen: avatar, name and role, and a round check
// mark when chosen. A checkable button; the screen keeps one chosen at a time.
class WorkerRow : public QAbstractButton
{
    Q_OBJECT

public:
    static constexpr int rowHeight = 64;

    WorkerRow(qint64 workerId, const QString &name, const QString &role, QWidget *parent = nullptr);

    [[nodiscard]] qint64 workerId() const { return m_workerId; }
    [[nodiscard]] QString name() const { return m_name; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    qint64 m_workerId = 0;
    QString m_name;
    QString m_role;
    QPixmap m_avatar;
    bool m_hovered = false;
};

} // namespace ravelin
