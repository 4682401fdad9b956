#pragma once

#include "demo/app/hostsetup.h"

#include <QList>
#include <QWidget>

#include <optional>

class QButtonGroup;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace ravelin {

class WorkerRow;

// The host's first screen: its brand, the demo field workers to choose from,
// the "Sign in" button and, at the foot, the host's "Offline" switch (the
// sign-in needs the network too). It only asks; the window signs in and
// answers with setBusy() and setMessage().
class SignInScreen : public QWidget
{
    Q_OBJECT

public:
    static inline const QString signInTitle = QStringLiteral("Sign in");

    explicit SignInScreen(QWidget *parent = nullptr);

    // The people to choose from; the first one is chosen.
    void setWorkers(const QList<HostSetup::Worker> &workers);
    [[nodiscard]] const QList<WorkerRow *> &workerRows() const { return m_rows; }
    [[nodiscard]] std::optional<qint64> selectedWorker() const;
    // Chooses the worker with that id; false when there is none.
    bool selectWorker(qint64 workerId);

    // The small print under the card: where the server is.
    void setServerNote(const QString &note);

    // While a sign-in runs the controls are disabled and the button says so.
    void setBusy(bool busy);
    [[nodiscard]] bool isBusy() const { return m_busy; }
    // A line under the button; errors are red.
    void setMessage(const QString &message, bool isError = false);
    [[nodiscard]] QString message() const;

    [[nodiscard]] QPushButton *signInButton() const { return m_signInButton; }
    [[nodiscard]] QPushButton *offlineButton() const { return m_offline; }
    // Sets the switch without telling anyone (it follows the host's network).
    void setOffline(bool offline);

signals:
    void signInRequested(qint64 workerId);
    void offlineToggled(bool offline);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void requestSignIn();

    QVBoxLayout *m_rowsLayout = nullptr;
    QButtonGroup *m_group = nullptr;
    QList<WorkerRow *> m_rows;
    QPushButton *m_signInButton = nullptr;
    QLabel *m_message = nullptr;
    QLabel *m_serverNote = nullptr;
    QPushButton *m_offline = nullptr;
    QLabel *m_logo = nullptr;
    bool m_busy = false;
};

} // namespace ravelin
