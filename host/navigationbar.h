#pragma once

#include <QColor>
#include <QList>
#include <QWidget>

class QAction;
class QHBoxLayout;
class QLabel;
class QToolButton;

namespace ravelin {

// The bar above the screens: back button, title, bar buttons and bar colour.
class NavigationBar : public QWidget
{
    Q_OBJECT

public:
    static constexpr int barHeight = 52;

    explicit NavigationBar(QWidget *parent = nullptr);

    [[nodiscard]] QString title() const;
    void setTitle(const QString &title);
    // The back button shows while there is a screen to go back to.
    void setBackVisible(bool visible);
    [[nodiscard]] bool isBackVisible() const;
    void setRightActions(const QList<QAction *> &actions);
    void setLeftActions(const QList<QAction *> &actions);

    [[nodiscard]] QColor barColor() const { return m_barColor; }
    void setBarColor(const QColor &color);
    [[nodiscard]] QToolButton *backButton() const { return m_backButton; }

signals:
    void backRequested();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void fill(QHBoxLayout *layout, const QList<QAction *> &actions);

    QToolButton *m_backButton = nullptr;
    QLabel *m_title = nullptr;
    QHBoxLayout *m_left = nullptr;
    QHBoxLayout *m_right = nullptr;
    QColor m_barColor;
};

} // namespace ravelin
