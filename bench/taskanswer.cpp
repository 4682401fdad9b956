#include "bench/taskanswer.h"

#include "api/datecoding.h"

#include <simdjson.h>

#include <array>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string_view>

namespace ravelin::bench {

namespace {

// --- The generated answer ---------------------------------------------------

constexpr std::array words{
    "pump",      "valve",    "seal",       "pressure", "gauge",       "inspect",   "replace", "filter",  "hall",
    "north",     "south",    "basement",   "roof",     "ventilation", "check",     "log",     "reading", "meter",
    "Prüfung",   "Ventil",   "Druckstufe", "cooling",  "circuit",     "breaker",   "panel",   "fire",    "door",
    "emergency", "lighting", "battery",    "backup",   "generator",   "fuel",      "level",   "leak",    "corrosion",
    "bolt",      "torque",   "clean",      "drain",    "sensor",      "calibrate", "report",  "photo",   "damage",
};

std::string sentence(std::mt19937 &rng, std::size_t length)
{
    std::uniform_int_distribution<std::size_t> pick(0, words.size() - 1);
    std::string out;
    while (out.size() < length) {
        if (!out.empty())
            out += (pick(rng) % 9 == 0) ? ", " : " ";
        out += words[pick(rng)];
    }
    out[0] = char(std::toupper(static_cast<unsigned char>(out[0])));
    out += '.';
    return out;
}

} // namespace

std::string serverDate(std::mt19937 &rng)
{
    std::uniform_int_distribution<int> month(1, 12), day(1, 28), hour(0, 23), minute(0, 59), ms(0, 999), zone(0, 3);
    static constexpr std::array zones{"+0000", "+0000", "+0100", "+0200"};
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "2026-%02d-%02dT%02d:%02d:%02d.%03d%s", month(rng), day(rng), hour(rng),
                  minute(rng), minute(rng), ms(rng), zones[std::size_t(zone(rng))]);
    return buffer;
}

namespace {

QByteArray makeAnswer()
{
    std::mt19937 rng(20260220);
    std::uniform_int_distribution<int> status(1, 6), priority(0, 4), category(1, 6), count(0, 12), coin(0, 3);
    std::uniform_int_distribution<int> nameLength(15, 50), descriptionLength(20, 300);
    std::string out = R"({"success":true,"data":[)";
    out.reserve(6 * 1024 * 1024);
    for (int i = 0; i < taskCount; ++i) {
        if (i)
            out += ',';
        out += R"({"id":)" + std::to_string(100000 + i);
        out += R"(,"name":")" + sentence(rng, std::size_t(nameLength(rng))) + '"';
        out += R"(,"description":")" + sentence(rng, std::size_t(descriptionLength(rng))) + '"';
        out += R"(,"latitude":)" + std::to_string(48.0 + (i % 1000) * 0.00731);
        out += R"(,"longitude":)" + std::to_string(11.0 + (i % 777) * 0.00917);
        out += R"(,"ownerId":)" + std::to_string(7 + i % 40);
        if (coin(rng))
            out += R"(,"ownerAssetName":"Crew )" + std::to_string(i % 40) + '"';
        out += R"(,"assignedUserId":)" + (coin(rng) ? std::to_string(11 + i % 13) : std::string("null"));
        out += R"(,"updaterUserId":)" + (coin(rng) ? std::to_string(11 + i % 17) : std::string("null"));
        out += R"(,"dateScheduled":)" + (coin(rng) ? '"' + serverDate(rng) + '"' : std::string("null"));
        out += R"(,"dateCreated":")" + serverDate(rng) + '"';
        if (coin(rng))
            out += R"(,"dateUpdated":")" + serverDate(rng) + '"';
        out += R"(,"taskStatusId":)" + std::to_string(status(rng));
        out += R"(,"taskCategoryId":)" + std::to_string(category(rng));
        out += R"(,"priority":)" + std::to_string(priority(rng));
        out += R"(,"itemsCount":[{"itemStatusId":1,"count":)" + std::to_string(count(rng))
            + R"(},{"itemStatusId":2,"count":)" + std::to_string(count(rng)) + R"(},{"itemStatusId":3,"count":)"
            + std::to_string(count(rng)) + "}]";
        out += R"(,"updated":)" + std::string(coin(rng) ? "false" : "true");
        out += '}';
    }
    out += "]}";
    return QByteArray(out.data(), qsizetype(out.size()));
}

} // namespace

const QByteArray &answer()
{
    static const QByteArray bytes = makeAnswer();
    return bytes;
}

const QList<TaskCategoryDefinition> &categories()
{
    static const QList<TaskCategoryDefinition> list{{0, "All"},    {1, "Pumps"},   {2, "Valves"}, {3, "Electrics"},
                                                    {4, "Safety"}, {5, "Heating"}, {6, "Roofs"}};
    return list;
}

json::Options networkOptions()
{
    return json::Options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, &categories()};
}

namespace {

// --- Reference: simdjson into plain structs ----------------------------------

int twoDigits(const char *p)
{
    return (p[0] - '0') * 10 + (p[1] - '0');
}

// "yyyy-MM-ddTHH:mm:ss.SSS+HHMM" or "...Z", no validation beyond the length.
std::int64_t plainDateMSecs(std::string_view s)
{
    if (s.size() < 24)
        return 0;
    const int year = twoDigits(s.data()) * 100 + twoDigits(s.data() + 2);
    const qint64 days = daysFromCivil(year, unsigned(twoDigits(s.data() + 5)), unsigned(twoDigits(s.data() + 8)));
    qint64 seconds
        = days * 86400 + twoDigits(s.data() + 11) * 3600 + twoDigits(s.data() + 14) * 60 + twoDigits(s.data() + 17);
    const int millis = (s[20] - '0') * 100 + twoDigits(s.data() + 21);
    if (s[23] != 'Z') {
        const int offset = twoDigits(s.data() + 24) * 3600 + twoDigits(s.data() + 26) * 60;
        seconds -= s[23] == '-' ? -offset : offset;
    }
    return seconds * 1000 + millis;
}

std::optional<std::int64_t> optionalInt(simdjson::dom::element e)
{
    if (e.is_null())
        return std::nullopt;
    return e.get_int64().value();
}

std::optional<std::int64_t> optionalDate(simdjson::dom::element e)
{
    if (e.is_null())
        return std::nullopt;
    return plainDateMSecs(e.get_string().value());
}

} // namespace

std::vector<PlainTask> parseAndFill(simdjson::dom::parser &parser, const QByteArray &bytes)
{
    const simdjson::dom::element root = parser.parse(bytes.constData(), std::size_t(bytes.size()));
    const simdjson::dom::array data = root["data"].get_array();
    std::vector<PlainTask> tasks;
    tasks.reserve(data.size());
    for (const simdjson::dom::object object : data) {
        PlainTask &t = tasks.emplace_back();
        for (const auto field : object) {
            const std::string_view key = field.key;
            const simdjson::dom::element v = field.value;
            if (key == "id")
                t.id = v.get_int64();
            else if (key == "name")
                t.name = std::string(v.get_string().value());
            else if (key == "description")
                t.description = std::string(v.get_string().value());
            else if (key == "latitude")
                t.latitude = float(v.get_double().value());
            else if (key == "longitude")
                t.longitude = float(v.get_double().value());
            else if (key == "ownerId")
                t.ownerId = v.get_int64();
            else if (key == "ownerAssetName")
                t.ownerAssetName = std::string(v.get_string().value());
            else if (key == "assignedUserId")
                t.assignedUserId = optionalInt(v);
            else if (key == "updaterUserId")
                t.updaterUserId = optionalInt(v);
            else if (key == "dateScheduled")
                t.dateScheduled = optionalDate(v);
            else if (key == "dateCreated")
                t.dateCreated = plainDateMSecs(v.get_string().value());
            else if (key == "dateUpdated")
                t.dateUpdated = optionalDate(v);
            else if (key == "taskStatusId")
                t.taskStatusId = v.get_int64();
            else if (key == "taskCategoryId")
                t.taskCategoryId = v.get_int64();
            else if (key == "priority")
                t.priority = v.get_int64();
            else if (key == "updated")
                t.updated = v.get_bool();
            else if (key == "itemsCount") {
                for (const simdjson::dom::object c : v.get_array()) {
                    const std::int64_t status = c["itemStatusId"].get_int64();
                    const std::int64_t n = c["count"].get_int64();
                    (status == 1 ? t.ok : status == 2 ? t.nok : t.open) = n;
                }
            }
        }
    }
    return tasks;
}

} // namespace ravelin::bench
