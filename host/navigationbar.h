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
// Tab goes from the back button through the left and then the right buttons
// before it reaches the screen; Enter or Space presses the focused button,
// which shows a ring in the bar's text colour.
class NavigationBar : public QWidget
{
    Q_OBJECT

public:
    static constexpr int barHeight = 52;
    static constexpr int promptHeight = 22;
    // The bar's height at the worker's text size.
    [[nodiscard]] static int preferredHeight();

    explicit NavigationBar(QWidget *parent = nullptr);

    [[nodiscard]] QString title() const;
    void setTitle(const QString &title);
    // A band under the title row ("Offline · updated 10 min ago"); hidden when
    // empty. The bar grows by its height while it shows.
    [[nodiscard]] QString prompt() const;
    void setPrompt(const QString &prompt);
    // The count of results not on the server yet ("3 waiting"), a button that
    // opens them; hidden when empty.
    [[nodiscard]] QString syncText() const;
    void setSyncText(const QString &text);
    [[nodiscard]] QToolButton *syncButton() const { return m_syncButton; }
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
    void syncRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void fill(QHBoxLayout *layout, const QList<QAction *> &actions);
    void orderTabs();

    QToolButton *m_backButton = nullptr;
    QLabel *m_title = nullptr;
    QLabel *m_prompt = nullptr;
    QToolButton *m_syncButton = nullptr;
    QHBoxLayout *m_left = nullptr;
    QHBoxLayout *m_right = nullptr;
    QColor m_barColor;
};

} // namespace ravelin
