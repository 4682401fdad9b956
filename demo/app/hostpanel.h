#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QVariantAnimation;

namespace ravelin {

// The host application's side panel: it slides in over the left side of the
// window with the signed-in person and a few host entries, and dims the rest.
// It covers the whole window while it is shown; a tap on the dimmed part asks
// to close it.
class HostPanel : public QWidget
{
    Q_OBJECT

public:
    static constexpr int panelWidth = 300;
    static constexpr std::chrono::milliseconds slideDuration{220};

    explicit HostPanel(QWidget *window);

    void setUser(const QString &name, const QString &detail);
    [[nodiscard]] QString userName() const;

    // Slides in or out; the state changes at once, the picture follows.
    void setShown(bool shown, bool animated = true);
    [[nodiscard]] bool isShown() const { return m_shown; }
    // True once the panel is fully in (or fully out) and not moving.
    [[nodiscard]] bool isSettled() const;

    [[nodiscard]] QWidget *sheet() const { return m_sheet; }
    [[nodiscard]] QPushButton *signOutButton() const { return m_signOut; }

signals:
    void shownChanged(bool shown);
    // The dimmed part was tapped.
    void closeRequested();
    void signOutRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyProgress(qreal progress);
    void coverWindow();

    QWidget *m_sheet = nullptr;
    QLabel *m_avatar = nullptr;
    QLabel *m_name = nullptr;
    QLabel *m_detail = nullptr;
    QPushButton *m_signOut = nullptr;
    QVariantAnimation *m_slide = nullptr;
    qreal m_progress = 0;
    bool m_shown = false;
};

} // namespace ravelin
