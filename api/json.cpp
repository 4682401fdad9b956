#include "api/json.h"

#include "api/contentencoding.h"
#include "api/datecoding.h"
#include "api/stringpool.h"

#include <simdjson.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

namespace ravelin::json {

static_assert(ContentEncoding::readPadding >= qsizetype(simdjson::SIMDJSON_PADDING),
              "inflated answers must be readable by the JSON reader where they are");

namespace {

using Storage = std::array<std::byte, 16>;

template<class T>
void store(Storage &storage, const T &value)
{
    static_assert(sizeof(T) <= sizeof(Storage) && alignof(T) <= 8);
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    new (storage.data()) T(value);
}

template<class T>
const T &load(const Storage &storage)
{
    return *std::launder(reinterpret_cast<const T *>(storage.data()));
}

template<class T>
T &load(Storage &storage)
{
    return *std::launder(reinterpret_cast<T *>(storage.data()));
}

const simdjson::dom::element &element(const Storage &s)
{
    return load<simdjson::dom::element>(s);
}

QString describe(simdjson::dom::element_type type)
{
    switch (type) {
    case simdjson::dom::element_type::ARRAY: return QStringLiteral("an array");
    case simdjson::dom::element_type::OBJECT: return QStringLiteral("a dictionary");
    case simdjson::dom::element_type::INT64:
    case simdjson::dom::element_type::UINT64:
    case simdjson::dom::element_type::DOUBLE: return QStringLiteral("a number");
    case simdjson::dom::element_type::STRING: return QStringLiteral("a string");
    case simdjson::dom::element_type::BOOL: return QStringLiteral("a boolean");
    case simdjson::dom::element_type::NULL_VALUE: return QStringLiteral("null");
    }
    return QStringLiteral("a value");
}

[[noreturn]] void mismatch(const simdjson::dom::element &e, const char *expected)
{
    if (e.is_null())
        throw DecodingError(DecodingError::Kind::valueNotFound,
                            QStringLiteral("Expected %1 value but found null instead.").arg(QLatin1String(expected)));
    throw DecodingError(
        DecodingError::Kind::typeMismatch,
        QStringLiteral("Expected to decode %1 but found %2 instead.").arg(QLatin1String(expected), describe(e.type())));
}

bool keyMatches(std::string_view fieldKey, std::string_view wanted, KeyDecoding strategy)
{
    if (fieldKey == wanted)
        return true;
    if (strategy != KeyDecoding::convertFromSnakeCase || fieldKey.size() <= wanted.size()
        || fieldKey.find('_') == std::string_view::npos)
        return false;
    return convertFromSnakeCase(fieldKey) == wanted;
}

// Two keys of the same length compared a word at a time (keys are short; a
// library call per candidate costs more than the comparison).
inline bool sameBytes(std::string_view a, std::string_view b)
{
    const std::size_t n = a.size();
    const auto word = [](const char *p) {
        std::uint64_t w;
        std::memcpy(&w, p, sizeof w);
        return w;
    };
    if (n >= 8) {
        for (std::size_t i = 0; i + 8 <= n; i += 8) {
            if (word(a.data() + i) != word(b.data() + i))
                return false;
        }
        // The last eight bytes, overlapping what was compared.
        return word(a.data() + n - 8) == word(b.data() + n - 8);
    }
    for (std::size_t i = 0; i < n; ++i) {
        if (a[i] != b[i])
            return false;
    }
    return true;
}

constexpr qint64 referenceDateSecondsSince1970 = 978307200; // 2001-01-01 00:00 UTC

// A date marked Qt::UTC rather than carrying the UTC time zone: the value is the
// same moment, but in this Qt version a QDateTime with a time zone allocates its
// private data (and QTimeZone::utc() builds a zone object) on every call, which
// is a large part of decoding a task list with two or three dates per task.
QDateTime utcDateTime(qint64 msecsSinceEpoch)
{
    return QDateTime::fromMSecsSinceEpoch(msecsSinceEpoch, Qt::UTC);
}

} // namespace

DecodingError::DecodingError(Kind kind, QString debugDescription)
    : m_kind(kind)
    , m_debugDescription(std::move(debugDescription))
    , m_what(m_debugDescription.toStdString())
{ }

QString DecodingError::localizedDescription() const
{
    switch (m_kind) {
    case Kind::keyNotFound:
    case Kind::valueNotFound: return QStringLiteral("The data couldn’t be read because it is missing.");
    case Kind::typeMismatch:
    case Kind::dataCorrupted: break;
    }
    return QStringLiteral("The data couldn’t be read because it isn’t in the correct format.");
}

std::string convertFromSnakeCase(std::string_view key)
{
    const auto first = key.find_first_not_of('_');
    if (first == std::string_view::npos)
        return std::string(key);
    const auto last = key.find_last_not_of('_');
    const std::string_view core = key.substr(first, last - first + 1);
    if (core.find('_') == std::string_view::npos)
        return std::string(key);

    std::string out(key.substr(0, first));
    bool firstWord = true;
    std::size_t pos = 0;
    while (pos <= core.size()) {
        const auto end = std::min(core.find('_', pos), core.size());
        const std::string_view word = core.substr(pos, end - pos);
        pos = end + 1;
        if (word.empty())
            continue;
        for (std::size_t i = 0; i < word.size(); ++i) {
            const char c = word[i];
            const bool upper = !firstWord && i == 0;
            out += static_cast<char>(upper ? std::toupper(static_cast<unsigned char>(c))
                                           : std::tolower(static_cast<unsigned char>(c)));
        }
        firstWord = false;
    }
    out.append(key.substr(last + 1));
    return out;
}

// --- Value ------------------------------------------------------------------

bool Value::isNull() const
{
    return element(m_element).is_null();
}

qint64 Value::toInt64() const
{
    const auto &e = element(m_element);
    switch (e.type()) {
    case simdjson::dom::element_type::INT64: return e.get_int64().value_unsafe();
    case simdjson::dom::element_type::UINT64: {
        const auto u = e.get_uint64().value_unsafe();
        if (u <= std::uint64_t(std::numeric_limits<qint64>::max()))
            return qint64(u);
        break;
    }
    case simdjson::dom::element_type::DOUBLE: {
        const double d = e.get_double().value_unsafe();
        if (std::isfinite(d) && std::trunc(d) == d && d >= -9.2233720368547758e18 && d < 9.2233720368547758e18)
            return qint64(d);
        break;
    }
    default: mismatch(e, "Int");
    }
    throw DecodingError(DecodingError::Kind::dataCorrupted, QStringLiteral("Parsed JSON number does not fit in Int."));
}

double Value::toDouble() const
{
    const auto &e = element(m_element);
    switch (e.type()) {
    case simdjson::dom::element_type::INT64: return double(e.get_int64().value_unsafe());
    case simdjson::dom::element_type::UINT64: return double(e.get_uint64().value_unsafe());
    case simdjson::dom::element_type::DOUBLE: return e.get_double().value_unsafe();
    default: mismatch(e, "Double");
    }
}

bool Value::toBool() const
{
    const auto &e = element(m_element);
    if (!e.is_bool())
        mismatch(e, "Bool");
    return e.get_bool().value_unsafe();
}

std::string_view Value::toStringView() const
{
    const auto &e = element(m_element);
    if (!e.is_string())
        mismatch(e, "String");
    return e.get_string().value_unsafe();
}

QString Value::toString() const
{
    const auto s = toStringView();
    if (m_options->strings)
        return m_options->strings->make(s);
    return QString::fromUtf8(s.data(), qsizetype(s.size()));
}

QDateTime Value::toDate() const
{
    if (m_options->dates == DateDecoding::secondsSinceReferenceDate) {
        const double seconds = toDouble();
        const double ms = (seconds + double(referenceDateSecondsSince1970)) * 1000.0;
        if (!std::isfinite(ms) || std::fabs(ms) > 8.64e18)
            throw DecodingError(DecodingError::Kind::dataCorrupted, QStringLiteral("Date is out of range."));
        return utcDateTime(std::llround(ms));
    }
    const auto ms = parseServerDateMSecs(toStringView());
    if (!ms)
        throw DecodingError(DecodingError::Kind::dataCorrupted,
                            QStringLiteral("Date string does not match format expected by formatter."));
    return utcDateTime(*ms);
}

Object Value::toObject() const
{
    const auto &e = element(m_element);
    if (!e.is_object())
        mismatch(e, "Dictionary<String, Any>");
    Object o;
    store(o.m_object, e.get_object().value_unsafe());
    o.m_options = m_options;
    return o;
}

Array Value::toArray() const
{
    const auto &e = element(m_element);
    if (!e.is_array())
        mismatch(e, "Array<Any>");
    Array a;
    store(a.m_array, e.get_array().value_unsafe());
    a.m_options = m_options;
    return a;
}

// --- Object -----------------------------------------------------------------

std::optional<Value> Object::find(std::string_view key) const
{
    using Iterator = simdjson::dom::object::iterator;
    const auto &object = load<simdjson::dom::object>(m_object);
    const Iterator begin = object.begin();
    const Iterator end = object.end();
    const Iterator start = m_hasCursor ? load<Iterator>(m_cursor) : begin;

    auto hit = [&](Iterator it) {
        Value v;
        store(v.m_element, it.value());
        v.m_options = m_options;
        ++it;
        store(m_cursor, it);
        m_hasCursor = true;
        return v;
    };
    for (Iterator it = start; it != end; ++it) {
        if (keyMatches(it.key(), key, m_options->keys))
            return hit(it);
    }
    for (Iterator it = begin; it != start; ++it) {
        if (keyMatches(it.key(), key, m_options->keys))
            return hit(it);
    }
    return std::nullopt;
}

namespace {

// The position of key in keys (keys.size() when it is not there), trying the
// expected position first.
inline std::size_t slotOf(std::string_view key, std::span<const std::string_view> keys, std::size_t expected)
{
    const auto same = [](std::string_view a, std::string_view b) { return a.size() == b.size() && sameBytes(a, b); };
    if (expected < keys.size() && same(keys[expected], key))
        return expected;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (same(keys[i], key))
            return i;
    }
    return keys.size();
}

// The same for a member's key as written, converted first where the options say so.
std::size_t slotOfMember(std::string_view raw, std::span<const std::string_view> keys, std::size_t expected,
                         KeyDecoding strategy)
{
    const std::size_t slot = slotOf(raw, keys, expected);
    if (slot == keys.size() && strategy == KeyDecoding::convertFromSnakeCase && raw.find('_') != std::string_view::npos)
        return slotOf(convertFromSnakeCase(raw), keys, expected);
    return slot;
}

} // namespace

Object::Members Object::firstMember() const
{
    const auto &object = load<simdjson::dom::object>(m_object);
    Members members;
    store(members.m_iterator, object.begin());
    store(members.m_end, object.end());
    return members;
}

bool Object::nextMember(Members &members, std::span<const std::string_view> keys, std::size_t &slot, Value &value) const
{
    using Iterator = simdjson::dom::object::iterator;
    auto &it = load<Iterator>(members.m_iterator);
    const auto &end = load<Iterator>(members.m_end);
    for (; it != end; ++it) {
        slot = slotOfMember(it.key(), keys, members.expected, m_options->keys);
        if (slot == keys.size())
            continue;
        const std::uint64_t bit = slot < 64 ? std::uint64_t(1) << slot : 0;
        if (!bit || (members.seen & bit))
            throw DecodingError(DecodingError::Kind::dataCorrupted,
                                QStringLiteral("Key \"%1\" is repeated.")
                                    .arg(QLatin1String(keys[slot].data(), qsizetype(keys[slot].size()))));
        members.seen |= bit;
        members.expected = slot + 1;
        store(value.m_element, it.value());
        value.m_options = m_options;
        ++it;
        return true;
    }
    return false;
}

void Object::read(std::span<const std::string_view> keys, std::span<std::optional<Value>> out) const
{
    const auto &object = load<simdjson::dom::object>(m_object);
    const std::span<const std::string_view> wanted = keys.first(std::min(keys.size(), out.size()));
    const std::size_t count = wanted.size();
    // The table position the next member is expected at.
    std::size_t expected = 0;
    for (auto it = object.begin(); it != object.end(); ++it) {
        const std::size_t slot = slotOfMember(it.key(), wanted, expected, m_options->keys);
        if (slot == count)
            continue;
        expected = slot + 1;
        if (out[slot])
            continue; // the first member with a key wins
        Value v;
        store(v.m_element, it.value());
        v.m_options = m_options;
        out[slot] = v;
    }
}

void Object::keyNotFound(std::string_view key)
{
    throw DecodingError(DecodingError::Kind::keyNotFound,
                        QStringLiteral("No value associated with key \"%1\".")
                            .arg(QString::fromUtf8(key.data(), qsizetype(key.size()))));
}

const Value &Object::required(const std::optional<Value> &value, std::string_view key)
{
    if (!value)
        keyNotFound(key);
    return *value;
}

Value Object::value(std::string_view key) const
{
    if (auto v = find(key))
        return *v;
    keyNotFound(key);
}

qint64 Object::int64(std::string_view key) const
{
    return value(key).toInt64();
}
double Object::number(std::string_view key) const
{
    return value(key).toDouble();
}
bool Object::boolean(std::string_view key) const
{
    return value(key).toBool();
}
QString Object::string(std::string_view key) const
{
    return value(key).toString();
}
QDateTime Object::date(std::string_view key) const
{
    return value(key).toDate();
}

std::optional<qint64> Object::nullableInt64(std::string_view key) const
{
    const Value v = value(key);
    return v.isNull() ? std::nullopt : std::optional(v.toInt64());
}

std::optional<QDateTime> Object::nullableDate(std::string_view key) const
{
    const Value v = value(key);
    return v.isNull() ? std::nullopt : std::optional(v.toDate());
}

std::optional<qint64> Object::int64IfPresent(std::string_view key) const
{
    const auto v = find(key);
    return !v || v->isNull() ? std::nullopt : std::optional(v->toInt64());
}

std::optional<bool> Object::booleanIfPresent(std::string_view key) const
{
    const auto v = find(key);
    return !v || v->isNull() ? std::nullopt : std::optional(v->toBool());
}

std::optional<QString> Object::stringIfPresent(std::string_view key) const
{
    const auto v = find(key);
    return !v || v->isNull() ? std::nullopt : std::optional(v->toString());
}

std::optional<QDateTime> Object::dateIfPresent(std::string_view key) const
{
    const auto v = find(key);
    return !v || v->isNull() ? std::nullopt : std::optional(v->toDate());
}

// --- Array ------------------------------------------------------------------

Value Array::Iterator::operator*() const
{
    Value v;
    store(v.m_element, *load<simdjson::dom::array::iterator>(m_iterator));
    v.m_options = m_options;
    return v;
}

Array::Iterator &Array::Iterator::operator++()
{
    ++load<simdjson::dom::array::iterator>(m_iterator);
    return *this;
}

bool Array::Iterator::operator!=(const Iterator &other) const
{
    return load<simdjson::dom::array::iterator>(m_iterator) != load<simdjson::dom::array::iterator>(other.m_iterator);
}

Array::Iterator Array::begin() const
{
    Iterator it;
    store(it.m_iterator, load<simdjson::dom::array>(m_array).begin());
    it.m_options = m_options;
    return it;
}

Array::Iterator Array::end() const
{
    Iterator it;
    store(it.m_iterator, load<simdjson::dom::array>(m_array).end());
    it.m_options = m_options;
    return it;
}

qsizetype Array::size() const
{
    return qsizetype(load<simdjson::dom::array>(m_array).size());
}

// --- Document ---------------------------------------------------------------

namespace {

// One parser is kept per thread between documents: a new parser allocates its
// buffers (several times the size of the answer) and touches them afresh on every
// parse, which costs as much as the parse itself for a large task list. A parser
// grown for an answer beyond the limit is released after use rather than kept.
constexpr std::size_t keptParserCapacity = std::size_t(8) * 1024 * 1024;

std::unique_ptr<simdjson::dom::parser> &threadParser()
{
    thread_local std::unique_ptr<simdjson::dom::parser> parser;
    return parser;
}

} // namespace

Document::Document(Options options)
    : m_parser(std::move(threadParser()))
    , m_options(options)
{
    if (!m_options.strings) {
        m_strings = std::make_unique<StringPool>();
        m_options.strings = m_strings.get();
    }
    if (!m_parser)
        m_parser = std::make_unique<simdjson::dom::parser>();
}

Document::~Document()
{
    // Values handed out by this document die with it, so its parser may serve the
    // next document on this thread.
    if (m_parser->capacity() <= keptParserCapacity && !threadParser())
        threadParser() = std::move(m_parser);
}

Value Document::parse(const QByteArray &bytes)
{
    simdjson::dom::element root;
    // A body with room to read ahead of its end is parsed where it is; any
    // other is copied into a padded buffer first.
    const bool padded = bytes.capacity() - bytes.size() >= qsizetype(simdjson::SIMDJSON_PADDING) && !bytes.isEmpty();
    const auto error = m_parser->parse(bytes.constData(), std::size_t(bytes.size()), !padded).get(root);
    if (error) {
        throw DecodingError(DecodingError::Kind::dataCorrupted,
                            QStringLiteral("The given data was not valid JSON. (%1)")
                                .arg(QString::fromUtf8(simdjson::error_message(error))));
    }
    Value v;
    store(v.m_element, root);
    v.m_options = &m_options;
    return v;
}

} // namespace ravelin::json
