#pragma once

#include <QWidget>

class QToolButton;

namespace ravelin {

// The bar above a picker with one "Done" button. The tag tells the screen which
// picker's Done was pressed.
class DoneToolbar : public QWidget
{
    Q_OBJECT

public:
    static constexpr int barHeight = 44;

    explicit DoneToolbar(int tag, QWidget *parent = nullptr);

    [[nodiscard]] int tag() const { return m_tag; }
    [[nodiscard]] QToolButton *doneButton() const { return m_done; }

signals:
    void donePressed(int tag);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_tag = 0;
    QToolButton *m_done = nullptr;
};

} // namespace ravelin
