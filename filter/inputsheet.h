#pragma once

#include <QPointer>
#include <QWidget>

#include <chrono>

class QVariantAnimation;
class QVBoxLayout;

namespace ravelin {

class InputField;

// What stands in for the keyboard while a field with its own input view is
// edited: the field's accessory bar over its input view (a picker), slid in at
// the bottom of the host widget over whatever is there. One sheet serves every
// field of a screen; it shows the views of the field being edited. With the
// focus in it, Tab stays in the sheet, and Escape or Enter ends editing as the
// accessory bar's button does.
class InputSheet : public QWidget
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds slideDuration{250};

    explicit InputSheet(QWidget *host);

    // The field being edited, if any.
    [[nodiscard]] InputField *responder() const { return m_responder; }
    // Shows the field's views, sliding in if the sheet was away.
    void present(InputField *field);
    // Slides away.
    void dismiss();
    [[nodiscard]] bool isPresented() const { return m_responder != nullptr; }

    // How much of the host the sheet takes from the bottom once it is in (0 when away).
    [[nodiscard]] int coveredHeight() const;
    // True while sliding.
    [[nodiscard]] bool isMoving() const;

signals:
    void coveredHeightChanged(int height);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void adopt(QWidget *view);
    void place();

    QPointer<QWidget> m_host;
    QPointer<InputField> m_responder;
    QVBoxLayout *m_column = nullptr;
    QVariantAnimation *m_slide = nullptr;
    // 0 away, 1 all in.
    qreal m_shown = 0;
};

} // namespace ravelin
