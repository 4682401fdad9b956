#pragma once

#include <QList>
#include <QWidget>

class QAbstractButton;
class QBoxLayout;

namespace ravelin {

// The buttons at the bottom of a screen: side by side and equally wide, or one
// above the other when their texts would not fit side by side (large text on a
// narrow screen), so that no title is cut off.
class ButtonRow : public QWidget
{
    Q_OBJECT

public:
    explicit ButtonRow(QWidget *parent = nullptr);

    void addButton(QAbstractButton *button);
    [[nodiscard]] QBoxLayout *boxLayout() const { return m_layout; }
    // Whether the buttons are one above the other.
    [[nodiscard]] bool isStacked() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange(int width);

    QBoxLayout *m_layout = nullptr;
    QList<QAbstractButton *> m_buttons;
};

} // namespace ravelin
