#pragma once

#include "api/usersdata.h"
#include "items/item.h"
#include "items/itemstatus.h"
#include "tasks/task.h"
#include "views/attributedtext.h"

#include <QCoreApplication>
#include <QList>
#include <QString>

namespace ravelin {

// A self-dismissing alert's title and message (styled when it has runs).
struct ItemsAlert
{
    QString title;
    QString message;
    AttributedText attributedMessage;

    friend bool operator==(const ItemsAlert &, const ItemsAlert &) = default;
};

// The texts and decisions of a task's items screen and its action screens,
// free of any widget.
namespace ItemsTexts {

[[nodiscard]] inline QString refreshTitle()
{
    return QCoreApplication::translate("ItemsTexts", "Fetching Items ...");
}
[[nodiscard]] inline QString loadFailureTitle()
{
    return QCoreApplication::translate("ItemsTexts", "The operation couldn't be completed");
}
[[nodiscard]] inline QString noItemsSelectedTitle()
{
    return QCoreApplication::translate("ItemsTexts", "No items selected");
}
inline const QString noItemsSelectedMessage = QStringLiteral(" ");
[[nodiscard]] inline QString blockNotePlaceholder()
{
    return QCoreApplication::translate("ItemsTexts", "Provide a reason for blocking the task");
}
[[nodiscard]] inline QString actionNotePlaceholder()
{
    return QCoreApplication::translate("ItemsTexts", "Add a note");
}
[[nodiscard]] inline QString commentsTitle()
{
    return QCoreApplication::translate("ItemsTexts", "Comments");
}
[[nodiscard]] inline QString blockFailureTitle()
{
    return QCoreApplication::translate("ItemsTexts", "Failed to mark task as blocked!");
}
// Transitions.
inline const QString showActionVC = QStringLiteral("ShowActionVC");
inline const QString showBlockTaskVC = QStringLiteral("ShowBlockTaskVC");
inline const QString showCommentsVC = QStringLiteral("ShowCommentsVC");
inline const QString showQRScannerVC = QStringLiteral("ShowQRScannerVC");
// Accessibility identifiers.
inline const QString totalItemsCount = QStringLiteral("totalItemsCount");
inline const QString acceptedItemsCount = QStringLiteral("acceptedItemsCount");
inline const QString rejectedItemsCount = QStringLiteral("rejectedItemsCount");
inline const QString reportIncidentTxt = QStringLiteral("reportIncidentTxt");
inline const QString markAsBlockedTitle = QStringLiteral("markAsBlockedTitle");
inline const QString markAsBlockedBtn = QStringLiteral("markAsBlockedBtn");
inline const QString markAsBlockedText = QStringLiteral("markAsBlockedText");
// The item action screen's fixed texts.
[[nodiscard]] inline QString completeSelectedItems()
{
    return QCoreApplication::translate("ItemsTexts", "Complete Selected Items");
}
[[nodiscard]] inline QString scanToComplete()
{
    return QCoreApplication::translate("ItemsTexts", "Scan QR code to complete this item");
}
[[nodiscard]] inline QString alreadyCompleted()
{
    return QCoreApplication::translate("ItemsTexts", "Already Marked as `Completed`");
}
[[nodiscard]] inline QString reportNeedsNote()
{
    return QCoreApplication::translate("ItemsTexts", "* Mandatory field for `Report`");
}
[[nodiscard]] inline QString mandatoryField()
{
    return QCoreApplication::translate("ItemsTexts", "* Mandatory field");
}
// The QR scanner's texts.
[[nodiscard]] inline QString scannerTitle()
{
    return QCoreApplication::translate("ItemsTexts", "Scan QR Code");
}
[[nodiscard]] inline QString scannerInstructions()
{
    return QCoreApplication::translate(
        "ItemsTexts",
        "Center the QR code that you want to scan on the screen and hold your phone steady for a couple of seconds.");
}
[[nodiscard]] inline QString qrCodeDetected()
{
    return QCoreApplication::translate("ItemsTexts", "QR Code Detected");
}
inline const QString noCameraDevice = QStringLiteral("Failed to get the built in camera device");
[[nodiscard]] inline QString cameraAccessDeniedTitle()
{
    return QCoreApplication::translate("ItemsTexts", "Camera Access Denied");
}
[[nodiscard]] inline QString cameraAccessDeniedMessage()
{
    return QCoreApplication::translate("ItemsTexts", "Cannot perform a scan without camera permission");
}
[[nodiscard]] inline QString cancel()
{
    return QCoreApplication::translate("ItemsTexts", "Cancel");
}
[[nodiscard]] inline QString allow()
{
    return QCoreApplication::translate("ItemsTexts", "Allow");
}
[[nodiscard]] inline QString scanFromPhoto()
{
    return QCoreApplication::translate("ItemsTexts", "Scan from photo");
}
[[nodiscard]] inline QString cameraPicture()
{
    return QCoreApplication::translate("ItemsTexts", "Camera picture");
}
[[nodiscard]] inline QString photoScanFailedTitle()
{
    return QCoreApplication::translate("ItemsTexts", "Fail");
}
[[nodiscard]] inline QString photoScanFailedMessage()
{
    return QCoreApplication::translate("ItemsTexts", "Couldn't detect QR");
}
[[nodiscard]] inline QString ok()
{
    return QCoreApplication::translate("ItemsTexts", "OK");
}

// "itemCell_" + the item's id.
[[nodiscard]] QString itemIdentifier(const Item &item);
// What a row says to a screen reader after the item's name: its status,
// whether it has a QR code, and its details ("Open, QR code. Check the needle").
[[nodiscard]] QString rowDescription(const Item &item);
// "ok", "nok" or "open" (the status images of the library's resources).
[[nodiscard]] QString statusImageName(ItemStatus status);

// The statuses a row's swipe offers: completed and incidents for an open item,
// none for the others.
[[nodiscard]] QList<ItemStatus> swipeActions(const Item &item);

// The counts of the overview: the filtered items, then the completed and the
// reported ones among them.
struct Counts
{
    qsizetype total = 0;
    qsizetype accepted = 0;
    qsizetype rejected = 0;

    friend bool operator==(const Counts &, const Counts &) = default;
};
[[nodiscard]] Counts counts(const QList<ItemPtr> &filteredItems);
// "7 Total", "3 Completed", "1 Incidents".
[[nodiscard]] QString totalText(qsizetype count);
[[nodiscard]] QString acceptedText(qsizetype count);
[[nodiscard]] QString rejectedText(qsizetype count);

// The assigning user: the task owner's name among the session's users, else
// the owner's name as the task carries it.
[[nodiscard]] QString assignedBy(const Task &task, const UsersData &users);
// Dates of the header: "23 Nov 2026, 09:15" in local time; "–" without one.
[[nodiscard]] QString headerDate(const std::optional<QDateTime> &date);

// The alert after an item status update, from the names of the selected items
// in selection order: "Item"/"Items" + " Status Successfully Updated!" or
// " Status Update Failed!", and the styled message "\n " + noun + ":\n\n"
// (thin) followed by the names, one per line (regular).
[[nodiscard]] ItemsAlert updateResult(const QStringList &names, bool success);
// The same for results kept in the outbox: saved on the device, not on the server yet.
[[nodiscard]] ItemsAlert savedResult(const QStringList &names);
// After completing the task, and after it was marked as blocked.
[[nodiscard]] ItemsAlert taskCompleted(const QString &taskName);
[[nodiscard]] ItemsAlert taskBlocked(const QString &taskName);

} // namespace ItemsTexts

} // namespace ravelin
