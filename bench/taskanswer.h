#pragma once

// The generated task-list answer that the benchmarks decode, and the reference
// they are measured against: a bare simdjson parse-and-fill into plain structs.

#include "api/json.h"
#include "api/settings.h"

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace simdjson::dom {
class parser;
}

namespace ravelin::bench {

inline constexpr int taskCount = 10000;

// The machine is shared: with --benchmark_repetitions the minimum is the
// figure least disturbed by other work.
inline double minimum(const std::vector<double> &v)
{
    return *std::min_element(v.begin(), v.end());
}

// 10,000 tasks in the server's shape (about 6 MB), made once.
[[nodiscard]] const QByteArray &answer();
// A server date in 2026 with a random zone offset.
[[nodiscard]] std::string serverDate(std::mt19937 &rng);
// The categories the tasks are looked up in (ids 0 to 6).
[[nodiscard]] const QList<TaskCategoryDefinition> &categories();
// The network manager's decoding options with those categories.
[[nodiscard]] json::Options networkOptions();

// A task as plain data: what a parse-and-fill with no library types produces.
struct PlainTask
{
    std::int64_t id = 0;
    std::string name;
    std::string description;
    float latitude = 0;
    float longitude = 0;
    std::int64_t ownerId = 0;
    std::string ownerAssetName = "Unknown";
    std::optional<std::int64_t> assignedUserId;
    std::optional<std::int64_t> updaterUserId;
    std::optional<std::int64_t> dateScheduled;
    std::int64_t dateCreated = 0;
    std::optional<std::int64_t> dateUpdated;
    std::int64_t taskStatusId = 0;
    std::int64_t taskCategoryId = 0;
    std::int64_t priority = 0;
    std::int64_t ok = 0, nok = 0, open = 0;
    bool updated = false;
};

// The reference: simdjson's DOM walked once, filling PlainTask records.
[[nodiscard]] std::vector<PlainTask> parseAndFill(simdjson::dom::parser &parser, const QByteArray &bytes);

} // namespace ravelin::bench
