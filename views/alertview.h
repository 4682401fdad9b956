#pragma once

#include "views/alert.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

class QLabel;
class QPushButton;

namespace ravelin {

class RoundedView;

// An alert shown inside a window: it dims the whole window and shows a centred
// rounded card with the title, the message and the buttons. It blocks the
// window's content while it is up. Its object name is "alert".
//
// Assistive technology hears it as an alert named by its title. From the
// keyboard, Tab goes round its buttons, Enter or Space presses the focused one,
// and Escape gives the answer that changes nothing (the cancel button, else a
// button without an action) or takes away an alert without buttons.
class AlertView : public QWidget
{
    Q_OBJECT

public:
    static inline const QString objectNameForAlerts = QStringLiteral("alert");
    static constexpr int cardWidth = 270;

    // Covers the given window (a top-level widget).
    explicit AlertView(Alert alert, QWidget *window);

    [[nodiscard]] QString title() const { return m_alert.title; }
    // The message as shown: the styled message's text when there is one.
    [[nodiscard]] QString message() const;
    [[nodiscard]] const std::optional<AttributedText> &attributedMessage() const { return m_alert.attributedMessage; }
    [[nodiscard]] QStringList actionTitles() const;
    [[nodiscard]] QPushButton *actionButton(const QString &title) const;
    [[nodiscard]] bool isDismissed() const { return m_dismissed; }

    // Taps the button with that title: dismisses the alert, then runs the
    // action's handler. False when there is no such button or the alert is gone.
    bool triggerAction(const QString &title);

    // Takes the alert away (it is deleted later). Does nothing a second time.
    void dismiss();

signals:
    void dismissed();
    // Escape on an alert without buttons: its presenter takes it away.
    void dismissalRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void showEvent(QShowEvent *event) override;

private:
    void build();
    void coverWindow();

    Alert m_alert;
    RoundedView *m_card = nullptr;
    QList<QPushButton *> m_buttons;
    QPointer<QWidget> m_previousFocus;
    bool m_dismissed = false;
};

} // namespace ravelin
