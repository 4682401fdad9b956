// One libFuzzer target per decoding entry point; the build names the entry
// (RAVELIN_FUZZ_ENTRY, e.g. "tasks_answer"). A crash, a sanitizer report or a
// broken decoding rule is a finding; an answer that is rejected or that stops
// the process through the fatal-error handler is an expected outcome, counted
// and printed when the run ends.

#include "api/debuglog.h"
#include "fuzz/decodeentry.h"

#include <QLoggingCategory>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace ravelin;

namespace {

fuzz::DecodeEntry s_entry = fuzz::DecodeEntry::tasksAnswer;
std::array<unsigned long long, 3> s_outcomes{};

void printOutcomes()
{
    std::fprintf(stderr, "#outcomes %s: decoded %llu, rejected %llu, stopped %llu\n", RAVELIN_FUZZ_ENTRY, s_outcomes[0],
                 s_outcomes[1], s_outcomes[2]);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    const auto entry = fuzz::entryNamed(QStringLiteral(RAVELIN_FUZZ_ENTRY));
    if (!entry) {
        std::fprintf(stderr, "Unknown decoding entry %s\n", RAVELIN_FUZZ_ENTRY);
        std::abort();
    }
    s_entry = *entry;
    // Every rejected answer writes a log line; the run does not need them.
    QLoggingCategory::setFilterRules(QStringLiteral("ravelin.*.debug=false"));
    std::atexit(printOutcomes);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const fuzz::Verdict verdict = fuzz::decode(s_entry, QByteArrayView(data, qsizetype(size)));
    ++s_outcomes[std::size_t(verdict.outcome)];
    if (verdict.violation) {
        std::fprintf(stderr, "Decoding rule broken (%s): %s\n", RAVELIN_FUZZ_ENTRY, qPrintable(*verdict.violation));
        std::abort();
    }
    return 0;
}
