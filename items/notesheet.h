#pragma once

#include "host/screen.h"
#include "views/keyboardobserving.h"

#include <QColor>
#include <QFont>
#include <QImage>

#include <optional>

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace ravelin {

class ButtonRow;
class SheetBar;
class TextViewWithPlaceholder;

// What the item action and the block task screens share: a sheet presented
// over the task's screen with "Cancel", a scrolling body with a note field (its
// label, the "required" hint) and a picture attachment (add, show, clear), and
// a row of buttons at the bottom. The body is kept clear of the on-screen
// keyboard, and a "Done" bar above the keyboard ends editing of the note.
class NoteSheet
    : public Screen
    , public KeyboardObserving
{
    Q_OBJECT

public:
    explicit NoteSheet(const QString &title, QWidget *parent = nullptr);
    ~NoteSheet() override;

    [[nodiscard]] SheetBar *sheetBar() const { return m_sheetBar; }
    [[nodiscard]] QScrollArea *scrollView() const { return m_scrollView; }
    [[nodiscard]] QLabel *notesLabel() const { return m_notesLabel; }
    [[nodiscard]] TextViewWithPlaceholder *noteField() const { return m_noteField; }
    [[nodiscard]] QLabel *requiredLabel() const { return m_requiredLabel; }
    [[nodiscard]] QWidget *attachmentView() const { return m_attachmentView; }
    [[nodiscard]] QLabel *attachmentImageView() const { return m_attachmentImage; }
    [[nodiscard]] QPushButton *addFileButton() const { return m_addFileButton; }
    [[nodiscard]] QPushButton *clearFileButton() const { return m_clearFileButton; }
    [[nodiscard]] QWidget *doneBar() const { return m_doneBar; }

    // The attached picture, if one shows.
    [[nodiscard]] std::optional<QImage> attachedPicture() const { return m_picture; }
    // Shows a picture in the attachment view.
    void attach(const QImage &picture);
    // "add file": asks the navigation host's picker for a picture.
    void addFile();
    // "clear file": removes the picture and hides the attachment view.
    void clearFile();
    // "cancel": closes the sheet; nobody is told.
    void cancel();
    // "done" of the keyboard bar: ends editing of the note.
    void doneEditing();

    void viewWillAppear() override;
    void viewWillDisappear() override;

protected:
    // A wrapping label in the sheet's look: scaled system font, one colour.
    [[nodiscard]] static QLabel *makeLabel(QWidget *parent, int pixelSize, QFont::Weight weight, const QColor &color,
                                           const QString &name);
    // Where subclasses put their labels (above the note).
    [[nodiscard]] QVBoxLayout *headerColumn() const { return m_headerColumn; }
    // A button of the bottom row in the library's look (the buttons stand one
    // above the other when large text does not fit side by side).
    [[nodiscard]] QPushButton *makeActionButton(const QString &title, const QString &name, const QColor &color,
                                                bool filled);

    void keyboardWillShow(const QRectF &endFrame) override;
    void keyboardWillHide() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    SheetBar *m_sheetBar = nullptr;
    QScrollArea *m_scrollView = nullptr;
    QVBoxLayout *m_headerColumn = nullptr;
    QLabel *m_notesLabel = nullptr;
    TextViewWithPlaceholder *m_noteField = nullptr;
    QLabel *m_requiredLabel = nullptr;
    QWidget *m_attachmentView = nullptr;
    QLabel *m_attachmentImage = nullptr;
    QPushButton *m_addFileButton = nullptr;
    QPushButton *m_clearFileButton = nullptr;
    QWidget *m_doneBar = nullptr;
    ButtonRow *m_buttons = nullptr;
    std::optional<QImage> m_picture;
};

} // namespace ravelin
