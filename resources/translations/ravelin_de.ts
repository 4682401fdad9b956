<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Chart</name>
    <message>
        <source>%1% done</source>
        <translation>%1 % erledigt</translation>
    </message>
</context>
<context>
    <name>CommentCellDetail</name>
    <message>
        <source>Task Marked as Blocked</source>
        <translation>Aufgabe als blockiert markiert</translation>
    </message>
</context>
<context>
    <name>DashboardTexts</name>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>%1 (%2 task)</source>
        <translation>%1 (%2 Aufgabe)</translation>
    </message>
    <message>
        <source>%1 (%2 tasks)</source>
        <translation>%1 (%2 Aufgaben)</translation>
    </message>
    <message>
        <source>Acknowledge task %1</source>
        <translation>Aufgabe %1 bestätigen</translation>
    </message>
    <message>
        <source>The task is currently assigned to you, but requires acknowledgment from your part. Do you want to mark it as acknowledged?</source>
        <translation>Die Aufgabe ist Ihnen zugewiesen, muss aber noch von Ihnen bestätigt werden. Möchten Sie sie als bestätigt markieren?</translation>
    </message>
    <message>
        <source>Start task %1</source>
        <translation>Aufgabe %1 beginnen</translation>
    </message>
    <message>
        <source>The task is currently acknowledged. Do you want to start working on it?</source>
        <translation>Die Aufgabe ist bestätigt. Möchten Sie mit der Arbeit daran beginnen?</translation>
    </message>
    <message>
        <source>Unblock task %1</source>
        <translation>Blockierung der Aufgabe %1 aufheben</translation>
    </message>
    <message>
        <source>The task is currently blocked. Do you want to start working on it?</source>
        <translation>Die Aufgabe ist blockiert. Möchten Sie mit der Arbeit daran beginnen?</translation>
    </message>
    <message>
        <source>%1 priority</source>
        <translation>Priorität %1</translation>
    </message>
    <message>
        <source>%1% done</source>
        <translation>%1 % erledigt</translation>
    </message>
    <message>
        <source>%1: 1 task</source>
        <translation>%1: 1 Aufgabe</translation>
    </message>
    <message>
        <source>%1: %2 tasks</source>
        <translation>%1: %2 Aufgaben</translation>
    </message>
    <message>
        <source>Fetching Task Data ...</source>
        <translation>Aufgabendaten werden geladen ...</translation>
    </message>
    <message>
        <source>No item matching filter description</source>
        <translation>Keine Aufgabe entspricht dem Filter</translation>
    </message>
    <message>
        <source>Tasks</source>
        <translation>Aufgaben</translation>
    </message>
    <message>
        <source>The operation couldn&apos;t be completed.</source>
        <translation>Der Vorgang konnte nicht abgeschlossen werden.</translation>
    </message>
    <message>
        <source>Please contact technical support if the problem continues.</source>
        <translation>Wenden Sie sich an den technischen Support, wenn das Problem weiterhin besteht.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Items Loading</source>
        <translation>Prüfpunkte laden</translation>
    </message>
    <message>
        <source>Couldn&apos;t load task items</source>
        <translation>Die Prüfpunkte der Aufgabe konnten nicht geladen werden</translation>
    </message>
    <message>
        <source>Acknowledge</source>
        <translation>Bestätigen</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
</context>
<context>
    <name>DefaultImagePicker</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Take Photo</source>
        <translation>Foto aufnehmen</translation>
    </message>
    <message>
        <source>Choose File…</source>
        <translation>Datei auswählen …</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Images (%1)</source>
        <translation>Bilder (%1)</translation>
    </message>
    <message>
        <source>Choose a Picture</source>
        <translation>Bild auswählen</translation>
    </message>
</context>
<context>
    <name>ElapsedTime</name>
    <message>
        <source>%1 month ago</source>
        <translation>vor %1 Monat</translation>
    </message>
    <message>
        <source>%1 months ago</source>
        <translation>vor %1 Monaten</translation>
    </message>
    <message>
        <source>%1 week ago</source>
        <translation>vor %1 Woche</translation>
    </message>
    <message>
        <source>%1 weeks ago</source>
        <translation>vor %1 Wochen</translation>
    </message>
    <message>
        <source>%1 day ago</source>
        <translation>vor %1 Tag</translation>
    </message>
    <message>
        <source>%1 days ago</source>
        <translation>vor %1 Tagen</translation>
    </message>
    <message>
        <source>%1 hour ago</source>
        <translation>vor %1 Stunde</translation>
    </message>
    <message>
        <source>%1 hours ago</source>
        <translation>vor %1 Stunden</translation>
    </message>
    <message>
        <source>%1 min ago</source>
        <translation>vor %1 Minute</translation>
    </message>
    <message>
        <source>%1 mins ago</source>
        <translation>vor %1 Minuten</translation>
    </message>
    <message>
        <source>%1 second ago</source>
        <translation>vor %1 Sekunde</translation>
    </message>
    <message>
        <source>%1 seconds ago</source>
        <translation>vor %1 Sekunden</translation>
    </message>
</context>
<context>
    <name>ItemStatus</name>
    <message>
        <source>Completed</source>
        <translation>Erledigt</translation>
    </message>
    <message>
        <source>Incidents</source>
        <translation>Störungen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Offen</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
</context>
<context>
    <name>ItemsTexts</name>
    <message>
        <source>, QR code</source>
        <translation>, QR-Code</translation>
    </message>
    <message>
        <source>%1 Total</source>
        <translation>%1 gesamt</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Prüfpunkt</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Prüfpunkte</translation>
    </message>
    <message>
        <source>Item Status Successfully Updated!</source>
        <translation>Status des Prüfpunkts erfolgreich aktualisiert!</translation>
    </message>
    <message>
        <source>Items Status Successfully Updated!</source>
        <translation>Status der Prüfpunkte erfolgreich aktualisiert!</translation>
    </message>
    <message>
        <source>Item Status Update Failed!</source>
        <translation>Status des Prüfpunkts konnte nicht aktualisiert werden!</translation>
    </message>
    <message>
        <source>Items Status Update Failed!</source>
        <translation>Status der Prüfpunkte konnte nicht aktualisiert werden!</translation>
    </message>
    <message>
        <source>Task successfully completed!</source>
        <translation>Aufgabe erfolgreich abgeschlossen!</translation>
    </message>
    <message>
        <source>The task status %1 was changed to `Complete`</source>
        <translation>Der Status der Aufgabe %1 wurde in `Abgeschlossen` geändert</translation>
    </message>
    <message>
        <source>Task marked as blocked!</source>
        <translation>Aufgabe als blockiert markiert!</translation>
    </message>
    <message>
        <source>The task status %1 was changed to `Blocked`</source>
        <translation>Der Status der Aufgabe %1 wurde in `Blockiert` geändert</translation>
    </message>
    <message>
        <source>Fetching Items ...</source>
        <translation>Prüfpunkte werden geladen ...</translation>
    </message>
    <message>
        <source>The operation couldn&apos;t be completed</source>
        <translation>Der Vorgang konnte nicht abgeschlossen werden</translation>
    </message>
    <message>
        <source>No items selected</source>
        <translation>Keine Prüfpunkte ausgewählt</translation>
    </message>
    <message>
        <source>Provide a reason for blocking the task</source>
        <translation>Geben Sie einen Grund für die Blockierung an</translation>
    </message>
    <message>
        <source>Add a note</source>
        <translation>Notiz hinzufügen</translation>
    </message>
    <message>
        <source>Comments</source>
        <translation>Kommentare</translation>
    </message>
    <message>
        <source>Failed to mark task as blocked!</source>
        <translation>Die Aufgabe konnte nicht als blockiert markiert werden!</translation>
    </message>
    <message>
        <source>Complete Selected Items</source>
        <translation>Ausgewählte Prüfpunkte erledigen</translation>
    </message>
    <message>
        <source>Scan QR code to complete this item</source>
        <translation>QR-Code scannen, um diesen Prüfpunkt zu erledigen</translation>
    </message>
    <message>
        <source>Already Marked as `Completed`</source>
        <translation>Bereits als `Erledigt` markiert</translation>
    </message>
    <message>
        <source>* Mandatory field for `Report`</source>
        <translation>* Pflichtfeld für `Melden`</translation>
    </message>
    <message>
        <source>* Mandatory field</source>
        <translation>* Pflichtfeld</translation>
    </message>
    <message>
        <source>Scan QR Code</source>
        <translation>QR-Code scannen</translation>
    </message>
    <message>
        <source>Center the QR code that you want to scan on the screen and hold your phone steady for a couple of seconds.</source>
        <translation>Richten Sie den QR-Code, den Sie scannen möchten, mittig auf dem Bildschirm aus und halten Sie Ihr Telefon ein paar Sekunden lang ruhig.</translation>
    </message>
    <message>
        <source>QR Code Detected</source>
        <translation>QR-Code erkannt</translation>
    </message>
    <message>
        <source>Camera Access Denied</source>
        <translation>Kamerazugriff verweigert</translation>
    </message>
    <message>
        <source>Cannot perform a scan without camera permission</source>
        <translation>Ohne Kameraberechtigung ist kein Scan möglich</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Erlauben</translation>
    </message>
    <message>
        <source>Scan from photo</source>
        <translation>Aus Foto scannen</translation>
    </message>
    <message>
        <source>Camera picture</source>
        <translation>Kamerabild</translation>
    </message>
    <message>
        <source>Fail</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Couldn&apos;t detect QR</source>
        <translation>Kein QR-Code erkannt</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Item Status Saved</source>
        <translation>Status des Prüfpunkts gespeichert</translation>
    </message>
    <message>
        <source>Items Status Saved</source>
        <translation>Status der Prüfpunkte gespeichert</translation>
    </message>
    <message>
        <source>Waiting to be sent to the server.</source>
        <translation>Wartet auf das Senden an den Server.</translation>
    </message>
</context>
<context>
    <name>ItemsVM</name>
    <message>
        <source>Cannot find item matching the scanned QR</source>
        <translation>Kein Prüfpunkt passt zum gescannten QR-Code</translation>
    </message>
    <message>
        <source>Invalid Code</source>
        <translation>Ungültiger Code</translation>
    </message>
    <message>
        <source>No Item Detected</source>
        <translation>Kein Prüfpunkt erkannt</translation>
    </message>
    <message>
        <source>Item Detected</source>
        <translation>Prüfpunkt erkannt</translation>
    </message>
    <message>
        <source>Item `%1` already marked as `Completed`.</source>
        <translation>Prüfpunkt `%1` ist bereits als `Erledigt` markiert.</translation>
    </message>
</context>
<context>
    <name>SortKey</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Priority</source>
        <translation>Priorität</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
</context>
<context>
    <name>SortOrder</name>
    <message>
        <source>Ascending</source>
        <translation>Aufsteigend</translation>
    </message>
    <message>
        <source>Descending</source>
        <translation>Absteigend</translation>
    </message>
</context>
<context>
    <name>SyncTexts</name>
    <message>
        <source>updated just now</source>
        <translation>gerade aktualisiert</translation>
    </message>
    <message>
        <source>updated %1 min ago</source>
        <translation>aktualisiert vor %1 Min.</translation>
    </message>
    <message>
        <source>updated %1 h ago</source>
        <translation>aktualisiert vor %1 Std.</translation>
    </message>
    <message>
        <source>updated %1 d ago</source>
        <translation>aktualisiert vor %1 Tg.</translation>
    </message>
    <message>
        <source>Offline</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>%1 waiting</source>
        <translation>%1 wartend</translation>
    </message>
    <message>
        <source>%1 not sent</source>
        <translation>%1 nicht gesendet</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>Not sent</source>
        <translation>Nicht gesendet</translation>
    </message>
    <message>
        <source>Task %1</source>
        <translation>Aufgabe %1</translation>
    </message>
    <message>
        <source>Status: %1</source>
        <translation>Status: %1</translation>
    </message>
    <message>
        <source>Items reported: %1</source>
        <translation>Prüfpunkte gemeldet: %1</translation>
    </message>
    <message>
        <source>Items completed: %1</source>
        <translation>Prüfpunkte erledigt: %1</translation>
    </message>
    <message>
        <source>Comment: %1</source>
        <translation>Kommentar: %1</translation>
    </message>
    <message>
        <source>Blocked: %1</source>
        <translation>Blockiert: %1</translation>
    </message>
    <message>
        <source>photo</source>
        <translation>Foto</translation>
    </message>
</context>
<context>
    <name>TaskPriority</name>
    <message>
        <source>Highest</source>
        <translation>Höchste</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niedrig</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
</context>
<context>
    <name>TaskStatus</name>
    <message>
        <source>Unassigned</source>
        <translation>Nicht zugewiesen</translation>
    </message>
    <message>
        <source>Assigned</source>
        <translation>Zugewiesen</translation>
    </message>
    <message>
        <source>Acknowledged</source>
        <translation>Bestätigt</translation>
    </message>
    <message>
        <source>In Progress</source>
        <translation>In Arbeit</translation>
    </message>
    <message>
        <source>Blocked</source>
        <translation>Blockiert</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Abgeschlossen</translation>
    </message>
</context>
<context>
    <name>TaskUpdateEvent</name>
    <message>
        <source>newly assigned to you</source>
        <translation>Ihnen neu zugewiesen</translation>
    </message>
    <message>
        <source>unassigned from you</source>
        <translation>Ihnen nicht mehr zugewiesen</translation>
    </message>
    <message>
        <source>deleted</source>
        <translation>gelöscht</translation>
    </message>
    <message>
        <source>Task Event Update</source>
        <translation>Aufgabe aktualisiert</translation>
    </message>
    <message>
        <source>Task %1.</source>
        <translation>Aufgabe %1.</translation>
    </message>
</context>
<context>
    <name>ravelin::BlockTaskVC</name>
    <message>
        <source>REASON</source>
        <translation>GRUND</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>Mark as Blocked</source>
        <translation>Als blockiert markieren</translation>
    </message>
</context>
<context>
    <name>ravelin::CommentThreadView</name>
    <message>
        <source>Comments</source>
        <translation>Kommentare</translation>
    </message>
</context>
<context>
    <name>ravelin::CommentsVC</name>
    <message>
        <source>Fetching comments ...</source>
        <translation>Kommentare werden geladen ...</translation>
    </message>
    <message>
        <source>No comments</source>
        <translation>Keine Kommentare</translation>
    </message>
    <message>
        <source>The operation couldn&apos;t be completed</source>
        <translation>Der Vorgang konnte nicht abgeschlossen werden</translation>
    </message>
</context>
<context>
    <name>ravelin::CustomInputBar</name>
    <message>
        <source>Add Picture</source>
        <translation>Bild hinzufügen</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>Picture %1</source>
        <translation>Bild %1</translation>
    </message>
    <message>
        <source>Leave a comment ...</source>
        <translation>Kommentar schreiben ...</translation>
    </message>
    <message>
        <source>Sending...</source>
        <translation>Wird gesendet ...</translation>
    </message>
</context>
<context>
    <name>ravelin::DashboardHeaderView</name>
    <message>
        <source>Overview</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Panel</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>Show or hide the panel</source>
        <translation>Bereich ein- oder ausblenden</translation>
    </message>
</context>
<context>
    <name>ravelin::DashboardVC</name>
    <message>
        <source>Tasks</source>
        <translation>Aufgaben</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Dashboard</source>
        <translation>Aufgabenübersicht</translation>
    </message>
</context>
<context>
    <name>ravelin::DatePicker</name>
    <message>
        <source>Month</source>
        <translation>Monat</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Jahr</translation>
    </message>
</context>
<context>
    <name>ravelin::DoneToolbar</name>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>ravelin::FilterVC</name>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Sort by</source>
        <translation>Sortieren nach</translation>
    </message>
    <message>
        <source>Order</source>
        <translation>Reihenfolge</translation>
    </message>
    <message>
        <source>Priority</source>
        <translation>Priorität</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Erstellt</translation>
    </message>
    <message>
        <source>Enter or Space opens the date picker</source>
        <translation>Eingabe oder Leertaste öffnet die Datumsauswahl</translation>
    </message>
    <message>
        <source>Created from</source>
        <translation>Erstellt ab</translation>
    </message>
    <message>
        <source>Created to</source>
        <translation>Erstellt bis</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Bis</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Kategorie</translation>
    </message>
    <message>
        <source>Enter or Space opens the list of categories</source>
        <translation>Eingabe oder Leertaste öffnet die Liste der Kategorien</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Leaves the filter as it was</source>
        <translation>Lässt den Filter unverändert</translation>
    </message>
    <message>
        <source>Shows the tasks with these choices</source>
        <translation>Zeigt die Aufgaben mit dieser Auswahl</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
</context>
<context>
    <name>ravelin::ImageVC</name>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Comment picture</source>
        <translation>Kommentarbild</translation>
    </message>
</context>
<context>
    <name>ravelin::InputField</name>
    <message>
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
</context>
<context>
    <name>ravelin::ItemActionVC</name>
    <message>
        <source>QR checkpoint</source>
        <translation>QR-Prüfpunkt</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Melden</translation>
    </message>
    <message>
        <source>Complete</source>
        <translation>Erledigen</translation>
    </message>
    <message>
        <source>Reports an incident; needs a note</source>
        <translation>Meldet eine Störung; erfordert eine Notiz</translation>
    </message>
    <message>
        <source>Marks as completed</source>
        <translation>Markiert als erledigt</translation>
    </message>
    <message>
        <source>Checkpoint</source>
        <translation>Prüfpunkt</translation>
    </message>
</context>
<context>
    <name>ravelin::ItemTableView</name>
    <message>
        <source>Checklist</source>
        <translation>Checkliste</translation>
    </message>
</context>
<context>
    <name>ravelin::ItemsVC</name>
    <message>
        <source>Assigned by</source>
        <translation>Zugewiesen von</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Erstellt</translation>
    </message>
    <message>
        <source>Updated</source>
        <translation>Aktualisiert</translation>
    </message>
    <message>
        <source>CHECKLIST</source>
        <translation>CHECKLISTE</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Choose several items</source>
        <translation>Mehrere Prüfpunkte auswählen</translation>
    </message>
    <message>
        <source>Acts on the chosen items</source>
        <translation>Bearbeitet die ausgewählten Prüfpunkte</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Mark as Blocked</source>
        <translation>Als blockiert markieren</translation>
    </message>
    <message>
        <source>Complete Task</source>
        <translation>Aufgabe abschließen</translation>
    </message>
    <message>
        <source>Scan Checkpoint</source>
        <translation>Prüfpunkt scannen</translation>
    </message>
    <message>
        <source>%1 priority</source>
        <translation>Priorität %1</translation>
    </message>
</context>
<context>
    <name>ravelin::NavigationBar</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
</context>
<context>
    <name>ravelin::NoteSheet</name>
    <message>
        <source>NOTES</source>
        <translation>NOTIZEN</translation>
    </message>
    <message>
        <source>Add Photo</source>
        <translation>Foto hinzufügen</translation>
    </message>
    <message>
        <source>Attached photo</source>
        <translation>Angehängtes Foto</translation>
    </message>
    <message>
        <source>Remove Photo</source>
        <translation>Foto entfernen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>ravelin::OutboxVC</name>
    <message>
        <source>Not sent</source>
        <translation>Nicht gesendet</translation>
    </message>
    <message>
        <source>Sync now</source>
        <translation>Jetzt senden</translation>
    </message>
    <message>
        <source>Everything has reached the server.</source>
        <translation>Alles ist beim Server angekommen.</translation>
    </message>
    <message>
        <source>Send again</source>
        <translation>Erneut senden</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
</context>
<context>
    <name>ravelin::SheetBar</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
</TS>
