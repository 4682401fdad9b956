#pragma once

#include "api/usersdata.h"
#include "items/item.h"
#include "items/itemstatus.h"
#include "tasks/task.h"
#include "views/attributedtext.h"

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

inline const QString refreshTitle = QStringLiteral("Fetching Items ...");
inline const QString loadFailureTitle = QStringLiteral("The operation couldn't be completed");
inline const QString noItemsSelectedTitle = QStringLiteral("No items selected");
inline const QString noItemsSelectedMessage = QStringLiteral(" ");
inline const QString blockNotePlaceholder = QStringLiteral("Provide a reason for blocking the task");
inline const QString actionNotePlaceholder = QStringLiteral("Add a note");
inline const QString commentsTitle = QStringLiteral("Comments");
inline const QString blockFailureTitle = QStringLiteral("Failed to mark task as blocked!");
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
inline const QString completeSelectedItems = QStringLiteral("Complete Selected Items");
inline const QString scanToComplete = QStringLiteral("Scan QR code to complete this item");
inline const QString alreadyCompleted = QStringLiteral("Already Marked as `Completed`");
inline const QString reportNeedsNote = QStringLiteral("* Mandatory field for `Report`");
inline const QString mandatoryField = QStringLiteral("* Mandatory field");
// The QR scanner's texts.
inline const QString scannerTitle = QStringLiteral("Scan QR Code");
inline const QString scannerInstructions = QStringLiteral(
    "Center the QR code that you want to scan on the screen and hold your phone steady for a couple of seconds.");
inline const QString qrCodeDetected = QStringLiteral("QR Code Detected");
inline const QString noCameraDevice = QStringLiteral("Failed to get the built in camera device");
inline const QString cameraAccessDeniedTitle = QStringLiteral("Camera Access Denied");
inline const QString cameraAccessDeniedMessage = QStringLiteral("Cannot perform a scan without camera permission");
inline const QString cancel = QStringLiteral("Cancel");
inline const QString allow = QStringLiteral("Allow");
inline const QString scanFromPhoto = QStringLiteral("Scan from photo");
inline const QString cameraPicture = QStringLiteral("Camera picture");
inline const QString photoScanFailedTitle = QStringLiteral("Fail");
inline const QString photoScanFailedMessage = QStringLiteral("Couldn't detect QR");
inline const QString ok = QStringLiteral("OK");

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
// After completing the task, and after it was marked as blocked.
[[nodiscard]] ItemsAlert taskCompleted(const QString &taskName);
[[nodiscard]] ItemsAlert taskBlocked(const QString &taskName);

} // namespace ItemsTexts

} // namespace ravelin
