#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>

// The decoding entry points of everything the library reads from outside: the
// server's answers, the stored session data and the server's date form. The
// libFuzzer targets and the corpus replay test feed bytes through the same
// functions, so a corpus file means the same thing to both.
namespace ravelin::fuzz {

enum class DecodeEntry {
    tasksAnswer,
    itemsAnswer,
    commentsAnswer,
    settingsAnswer,
    tokenAnswer,
    taskUpdateAnswer,
    itemsUpdateAnswer,
    storedSession,
    serverDate,
};

enum class Outcome {
    decoded, // the bytes gave a value
    rejected, // a decoding failure: invalidParsing, no session data, no date
    stopped, // a programming error of the server's data (an id outside its range) stopped the process
};

struct Verdict
{
    Outcome outcome = Outcome::rejected;
    // Set when a decoded value breaks a rule that decoding must keep; a fuzzer stops on it.
    std::optional<QString> violation;
};

[[nodiscard]] const QList<DecodeEntry> &allEntries();
// The name of the entry's fuzz target and corpus folder, e.g. "tasks_answer".
[[nodiscard]] QString entryName(DecodeEntry entry);
[[nodiscard]] std::optional<DecodeEntry> entryNamed(const QString &name);
// The word for an outcome ("decoded", "rejected", "stopped"), which also starts
// the name of a corpus file that must keep that outcome.
[[nodiscard]] QString outcomeName(Outcome outcome);

// Runs the bytes through the entry as the library does. A fatal error is caught
// here (through a handler installed for the call) and reported as `stopped`.
// Task answers are decoded against a fixed list of session categories, and a
// decoded task list once more against none, which must stop.
[[nodiscard]] Verdict decode(DecodeEntry entry, QByteArrayView bytes);

} // namespace ravelin::fuzz
