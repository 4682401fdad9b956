// Decoding the task list answer: what our JSON layer costs next to a bare
// simdjson parse, a hand-written parse-and-fill over simdjson, and Qt's own JSON
// reader; what one server date costs with the general Qt parsers and with the
// hand-written one; and, measured in the same run as that reference, the
// dashboard's whole path (bytes -> decoded tasks -> status sections) and a large
// comment thread decoded and grouped by local day.
//
// The answer is generated in memory: 10,000 tasks in the server's shape with
// realistic names and descriptions (up to about 400 characters), about 6 MB.

#include "api/clock.h"
#include "api/datecoding.h"
#include "api/json.h"
#include "api/settings.h"
#include "bench/taskanswer.h"
#include "comments/commentsvm.h"
#include "comments/taskscommentsresponse.h"
#include "filter/taskfilterdata.h"
#include "tasks/dashboardvm.h"
#include "tasks/task.h"
#include "tasks/tasklist.h"
#include "tasks/tasksresponse.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using namespace ravelin;
using namespace ravelin::bench;

namespace {

// --- Qt's JSON reader into the same Task records ----------------------------

std::optional<QDateTime> qtDate(const QJsonValue &v)
{
    if (v.isNull() || v.isUndefined())
        return std::nullopt;
    const QByteArray text = v.toString().toLatin1();
    return parseServerDate(std::string_view(text.constData(), std::size_t(text.size())));
}

TaskPtr qtTask(const QJsonObject &o)
{
    auto task = std::make_shared<Task>();
    task->id = o.value(QLatin1String("id")).toInteger();
    task->name = o.value(QLatin1String("name")).toString();
    task->description = o.value(QLatin1String("description")).toString();
    task->latitude = float(o.value(QLatin1String("latitude")).toDouble());
    task->longitude = float(o.value(QLatin1String("longitude")).toDouble());
    task->ownerId = o.value(QLatin1String("ownerId")).toInteger();
    if (const QJsonValue owner = o.value(QLatin1String("ownerAssetName")); owner.isString())
        task->ownerAssetName = owner.toString();
    if (const QJsonValue v = o.value(QLatin1String("assignedUserId")); !v.isNull())
        task->assignedUserId = v.toInteger();
    if (const QJsonValue v = o.value(QLatin1String("updaterUserId")); !v.isNull())
        task->updaterUserId = v.toInteger();
    task->dateScheduled = qtDate(o.value(QLatin1String("dateScheduled")));
    task->dateCreated = qtDate(o.value(QLatin1String("dateCreated"))).value_or(QDateTime());
    task->dateUpdated = qtDate(o.value(QLatin1String("dateUpdated")));
    task->currentStatus = TaskStatuses::fromServerId(o.value(QLatin1String("taskStatusId")).toInteger());
    const qint64 category = o.value(QLatin1String("taskCategoryId")).toInteger();
    task->taskCategory = categories().first();
    for (const TaskCategoryDefinition &c : categories()) {
        if (c.id == category) {
            task->taskCategory = c;
            break;
        }
    }
    task->priority = TaskPriorities::fromWireValue(o.value(QLatin1String("priority")).toInteger());
    if (const QJsonValue counts = o.value(QLatin1String("itemsCount")); counts.isArray()) {
        QList<ItemsCount> list;
        for (const QJsonValue c : counts.toArray()) {
            const QJsonObject entry = c.toObject();
            list.append(ItemsCount{entry.value(QLatin1String("itemStatusId")).toInteger(),
                                   entry.value(QLatin1String("count")).toInteger()});
        }
        task->progress = TaskProgress::fromCounts(list);
    }
    task->isUpdated = o.value(QLatin1String("updated")).toBool(false);
    return task;
}

QList<TaskPtr> qtDecode(const QByteArray &bytes)
{
    const QJsonDocument doc = QJsonDocument::fromJson(bytes);
    const QJsonArray data = doc.object().value(QLatin1String("data")).toArray();
    QList<TaskPtr> tasks;
    tasks.reserve(data.size());
    for (const QJsonValue v : data)
        tasks.append(qtTask(v.toObject()));
    return tasks;
}

// --- The benchmarks ----------------------------------------------------------

// Parses the answer's bytes `parse` way, again and again.
template<class Parse>
void parseAnswer(benchmark::State &state, Parse parse)
{
    const QByteArray &bytes = answer();
    for (auto _ : state)
        benchmark::DoNotOptimize(parse(bytes));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * bytes.size());
}

// Decodes the answer's tasks `decode` way, again and again.
template<class Decode>
void decodeAnswer(benchmark::State &state, Decode decode)
{
    const QByteArray &bytes = answer();
    for (auto _ : state) {
        auto tasks = decode(bytes);
        if (qsizetype(tasks.size()) != taskCount)
            state.SkipWithError("wrong task count");
        benchmark::DoNotOptimize(tasks.data());
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * bytes.size());
    state.SetItemsProcessed(std::int64_t(state.iterations()) * taskCount);
}

simdjson::dom::element parseWith(simdjson::dom::parser &parser, const QByteArray &bytes, benchmark::State &state)
{
    simdjson::dom::element root;
    if (parser.parse(bytes.constData(), std::size_t(bytes.size())).get(root))
        state.SkipWithError("parse failed");
    return root;
}

void BM_SimdjsonParse(benchmark::State &state)
{
    simdjson::dom::parser parser;
    parseAnswer(state, [&](const QByteArray &bytes) { return parseWith(parser, bytes, state); });
}

// The same parse with a new parser each time, as one answer is decoded at a time:
// the parser's buffers are allocated and first touched on every call.
void BM_SimdjsonParseFreshParser(benchmark::State &state)
{
    parseAnswer(state, [&](const QByteArray &bytes) {
        simdjson::dom::parser parser;
        return parseWith(parser, bytes, state);
    });
}

void BM_SimdjsonParseAndFill(benchmark::State &state)
{
    simdjson::dom::parser parser;
    decodeAnswer(state, [&](const QByteArray &bytes) { return parseAndFill(parser, bytes); });
}

void BM_RavelinDecode(benchmark::State &state)
{
    const json::Options options = networkOptions();
    decodeAnswer(state, [&](const QByteArray &bytes) { return json::decode<TasksResponse>(bytes, options).data; });
}

// Our layer's share without the records: parse only.
void BM_RavelinParseOnly(benchmark::State &state)
{
    const json::Options options = networkOptions();
    parseAnswer(state, [&](const QByteArray &bytes) {
        json::Document document(options);
        return document.parse(bytes);
    });
}

void BM_QtJsonDecode(benchmark::State &state)
{
    decodeAnswer(state, qtDecode);
}

// Dates: the same 1,000 server dates per iteration.
const std::vector<std::string> &dates()
{
    static const std::vector<std::string> list = [] {
        std::mt19937 rng(7);
        std::vector<std::string> out;
        for (int i = 0; i < 1000; ++i)
            out.push_back(serverDate(rng));
        return out;
    }();
    return list;
}

const QStringList &qtDates()
{
    static const QStringList list = [] {
        QStringList out;
        for (const std::string &s : dates())
            out.append(QString::fromStdString(s));
        return out;
    }();
    return list;
}

void datesProcessed(benchmark::State &state)
{
    std::int64_t bytes = 0;
    for (const std::string &s : dates())
        bytes += std::int64_t(s.size());
    state.SetBytesProcessed(std::int64_t(state.iterations()) * bytes);
    state.SetItemsProcessed(std::int64_t(state.iterations()) * std::int64_t(dates().size()));
}

// Reads the dates with QDateTime::fromString(s, form), again and again.
template<class Form>
void readQtDates(benchmark::State &state, const Form &form)
{
    if (!QDateTime::fromString(qtDates().first(), form).isValid())
        state.SkipWithError("Qt does not read the server's dates this way");
    for (auto _ : state) {
        for (const QString &s : qtDates())
            benchmark::DoNotOptimize(QDateTime::fromString(s, form));
    }
    datesProcessed(state);
}

void BM_DateQtFormat(benchmark::State &state)
{
    readQtDates(state, QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzzt"));
}

void BM_DateQtIsoWithMs(benchmark::State &state)
{
    readQtDates(state, Qt::ISODateWithMs);
}

void BM_DateParseServerDateMSecs(benchmark::State &state)
{
    for (auto _ : state) {
        for (const std::string &s : dates())
            benchmark::DoNotOptimize(parseServerDateMSecs(s));
    }
    datesProcessed(state);
}

// --- The dashboard's path and a large comment thread --------------------------

TaskList makeTaskList()
{
    Settings settings = Settings::defaults();
    settings.taskCategory = categories();
    return TaskList(
        TaskFilterData::makeDefault(fixedClock(TimePoint(std::chrono::milliseconds(1795169730123))), settings));
}

void BM_TaskSections(benchmark::State &state)
{
    const TaskList list = makeTaskList();
    const QList<TaskPtr> tasks = json::decode<TasksResponse>(answer(), networkOptions()).data;
    for (auto _ : state)
        benchmark::DoNotOptimize(DashboardVM::arrange(tasks, list.filterData->sortingConfig));
    state.SetItemsProcessed(state.iterations() * tasks.size());
}

// What one fetch costs on the api queue: decoding, sorting, grouping, counting.
void BM_TaskPathBytesToSections(benchmark::State &state)
{
    const TaskList list = makeTaskList();
    const json::Options options = networkOptions();
    parseAnswer(state, [&](const QByteArray &bytes) {
        return DashboardVM::arrange(json::decode<TasksResponse>(bytes, options).data, list.filterData->sortingConfig);
    });
}

constexpr int commentCount = 10000;

QByteArray makeCommentAnswer()
{
    std::mt19937 rng(7);
    std::uniform_int_distribution<qint64> offset(0, 60LL * 86400 * 1000);
    std::uniform_int_distribution<int> coin(0, 3);
    const qint64 start = 1790000000000;
    std::string out = R"({"success":true,"data":[)";
    for (int i = 0; i < commentCount; ++i) {
        const QByteArray date = QDateTime::fromMSecsSinceEpoch(start + offset(rng), Qt::UTC)
                                    .toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"))
                                    .toLatin1();
        if (i)
            out += ',';
        out += R"({"text":"Checked the pump housing, seal replaced and pressure logged.","userId":)"
            + std::to_string(i % 9);
        out += R"(,"dateCreated":")" + date.toStdString() + '"';
        out += R"(,"itemId":)" + (coin(rng) ? std::to_string(100 + i % 40) : std::string("null"));
        out += R"(,"isIncident":")" + std::string(coin(rng) == 0 ? "1" : "0") + '"';
        out += R"(,"assetName":"Crew )" + std::to_string(i % 9) + R"(","assetIcon":"people_01"})";
    }
    out += "]}";
    return QByteArray(out.data(), qsizetype(out.size()));
}

const QByteArray &commentAnswer()
{
    static const QByteArray bytes = makeCommentAnswer();
    return bytes;
}

void BM_CommentDecoding(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(json::decode<TasksCommentsResponse>(commentAnswer(), networkOptions()));
    state.SetItemsProcessed(state.iterations() * commentCount);
}

// Newest-first ordering and grouping by local day, as a fetch does with its answer.
void BM_CommentGrouping(benchmark::State &state)
{
    const QList<CommentPtr> comments = json::decode<TasksCommentsResponse>(commentAnswer(), networkOptions()).data;
    CommentsVM vm(std::make_shared<Task>(), nullptr, UsersData{});
    for (auto _ : state) {
        vm.setComments(comments);
        benchmark::DoNotOptimize(vm.groupedComments().size());
    }
    state.SetItemsProcessed(state.iterations() * commentCount);
}

// Checks once that the three task decoders agree, so that the figures compare
// the same work.
void checkAgreement()
{
    simdjson::dom::parser parser;
    const std::vector<PlainTask> plain = parseAndFill(parser, answer());
    const TasksResponse ours = json::decode<TasksResponse>(answer(), networkOptions());
    const QList<TaskPtr> qt = qtDecode(answer());
    for (int i = 0; i < taskCount; i += 97) {
        const PlainTask &p = plain[std::size_t(i)];
        const Task &a = *ours.data.at(i);
        const Task &b = *qt.at(i);
        const bool same = a.id == p.id && b.id == p.id && a.name == QString::fromStdString(p.name)
            && a.description == b.description && a.dateCreated.toMSecsSinceEpoch() == p.dateCreated
            && b.dateCreated == a.dateCreated && a.dateScheduled == b.dateScheduled && a.progress == b.progress
            && a.progress.ok == p.ok && a.isUpdated == b.isUpdated && a.ownerAssetName == b.ownerAssetName
            && a.taskCategory == b.taskCategory;
        if (!same) {
            std::fprintf(stderr, "Decoders disagree on task %d\n", i);
            std::exit(1);
        }
    }
    std::fprintf(stderr, "Answer: %d tasks, %lld bytes\n", taskCount, static_cast<long long>(answer().size()));
}

} // namespace

BENCHMARK(BM_SimdjsonParse)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SimdjsonParseFreshParser)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SimdjsonParseAndFill)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RavelinParseOnly)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RavelinDecode)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QtJsonDecode)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DateQtFormat)->ComputeStatistics("min", minimum)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DateQtIsoWithMs)->ComputeStatistics("min", minimum)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DateParseServerDateMSecs)->ComputeStatistics("min", minimum)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TaskSections)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TaskPathBytesToSections)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CommentDecoding)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CommentGrouping)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    checkAgreement();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
