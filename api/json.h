#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace simdjson::dom {
class parser;
}

namespace ravelin {
struct TaskCategoryDefinition;
}

// Reading JSON answers. A thin keyed-container layer over simdjson's DOM: the
// records decode themselves through Object/Value much as with a keyed decoder,
// and failures are thrown as DecodingError and turned into one error value at
// the edge (the network manager). simdjson stays behind this header.
namespace ravelin::json {

class StringPool;

enum class KeyDecoding {
    useDefaultKeys,
    convertFromSnakeCase, // "task_category" is read as "taskCategory"
};

enum class DateDecoding {
    serverFormat, // "yyyy-MM-dd'T'HH:mm:ss.SSSZ"
    secondsSinceReferenceDate, // a number of seconds since 2001-01-01 00:00 UTC
};

struct Options
{
    KeyDecoding keys = KeyDecoding::useDefaultKeys;
    DateDecoding dates = DateDecoding::serverFormat;
    // Categories that task decoding looks category ids up in. Requests snapshot
    // them on the main thread because answers are decoded on the api queue; when
    // unset, the process-wide settings are read.
    const QList<TaskCategoryDefinition> *taskCategories = nullptr;
    // Where decoded strings are made; a Document provides its own.
    StringPool *strings = nullptr;
};

class DecodingError : public std::exception
{
public:
    enum class Kind { typeMismatch, valueNotFound, keyNotFound, dataCorrupted };

    DecodingError(Kind kind, QString debugDescription);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] QString debugDescription() const { return m_debugDescription; }
    // The user-level text of the error, in the platform's words.
    [[nodiscard]] QString localizedDescription() const;
    [[nodiscard]] const char *what() const noexcept override { return m_what.c_str(); }

private:
    Kind m_kind;
    QString m_debugDescription;
    std::string m_what;
};

// Swift-style key conversion: "item_status_id" -> "itemStatusId"; a key without
// inner underscores is left as it is; leading and trailing underscores stay.
[[nodiscard]] std::string convertFromSnakeCase(std::string_view key);

class Object;
class Array;

// One JSON value of a parsed document; valid while its Document lives.
class Value
{
public:
    [[nodiscard]] bool isNull() const;
    [[nodiscard]] qint64 toInt64() const;
    [[nodiscard]] double toDouble() const;
    [[nodiscard]] bool toBool() const;
    [[nodiscard]] std::string_view toStringView() const;
    [[nodiscard]] QString toString() const;
    [[nodiscard]] QDateTime toDate() const;
    [[nodiscard]] Object toObject() const;
    [[nodiscard]] Array toArray() const;
    [[nodiscard]] const Options &options() const { return *m_options; }

private:
    friend class Document;
    friend class Object;
    friend class Array;
    Value() = default;
    alignas(8) std::array<std::byte, 16> m_element{};
    const Options *m_options = nullptr;
};

class Object
{
public:
    // The value under a key (after key conversion), or nothing when the key is absent.
    [[nodiscard]] std::optional<Value> find(std::string_view key) const;
    [[nodiscard]] bool contains(std::string_view key) const { return find(key).has_value(); }
    // The value under a key that must be present (keyNotFound otherwise).
    [[nodiscard]] Value value(std::string_view key) const;

    // Required key and value.
    [[nodiscard]] qint64 int64(std::string_view key) const;
    [[nodiscard]] double number(std::string_view key) const;
    [[nodiscard]] bool boolean(std::string_view key) const;
    [[nodiscard]] QString string(std::string_view key) const;
    [[nodiscard]] QDateTime date(std::string_view key) const;

    // Required key whose value may be null.
    [[nodiscard]] std::optional<qint64> nullableInt64(std::string_view key) const;
    [[nodiscard]] std::optional<QDateTime> nullableDate(std::string_view key) const;

    // Optional key whose value may also be null.
    [[nodiscard]] std::optional<qint64> int64IfPresent(std::string_view key) const;
    [[nodiscard]] std::optional<bool> booleanIfPresent(std::string_view key) const;
    [[nodiscard]] std::optional<QString> stringIfPresent(std::string_view key) const;
    [[nodiscard]] std::optional<QDateTime> dateIfPresent(std::string_view key) const;

    [[nodiscard]] const Options &options() const { return *m_options; }

    // Reads the values of many keys in one walk over the object: out[i] is the
    // first value under keys[i] (after key conversion), or nothing. For records
    // with many members, where one lookup per key would walk the object again
    // and again; the keys are best given in the order the server writes them.
    void read(std::span<const std::string_view> keys, std::span<std::optional<Value>> out) const;

    // Calls onMember(slot, value) for each member whose key (after key
    // conversion) is keys[slot], in document order, and skips the others; a key
    // met again throws dataCorrupted. Returns the slots met, one bit each (at most
    // 64 keys). For records that read their members as they come, with a switch on
    // the slot, rather than looking them up.
    template<class OnMember>
    std::uint64_t forEachMember(std::span<const std::string_view> keys, OnMember onMember) const
    {
        Members members = firstMember();
        std::size_t slot = 0;
        Value value;
        while (nextMember(members, keys, slot, value))
            onMember(slot, value);
        return members.seen;
    }

    // The error of a missing required key.
    [[noreturn]] static void keyNotFound(std::string_view key);
    // The value read for a required key (keyNotFound when there is none).
    [[nodiscard]] static const Value &required(const std::optional<Value> &value, std::string_view key);

private:
    friend class Value;
    struct Members
    {
        alignas(8) std::array<std::byte, 16> m_iterator{};
        alignas(8) std::array<std::byte, 16> m_end{};
        std::uint64_t seen = 0;
        std::size_t expected = 0; // the slot the next member most likely has
    };

    Object() = default;
    [[nodiscard]] Members firstMember() const;
    [[nodiscard]] bool nextMember(Members &members, std::span<const std::string_view> keys, std::size_t &slot,
                                  Value &value) const;
    alignas(8) std::array<std::byte, 16> m_object{};
    // Keys are usually looked up in the order in which the server writes them,
    // so a lookup starts after the previous hit.
    alignas(8) mutable std::array<std::byte, 16> m_cursor{};
    mutable bool m_hasCursor = false;
    const Options *m_options = nullptr;
};

class Array
{
public:
    class Iterator
    {
    public:
        [[nodiscard]] Value operator*() const;
        Iterator &operator++();
        [[nodiscard]] bool operator!=(const Iterator &other) const;

    private:
        friend class Array;
        alignas(8) std::array<std::byte, 16> m_iterator{};
        const Options *m_options = nullptr;
    };

    [[nodiscard]] Iterator begin() const;
    [[nodiscard]] Iterator end() const;
    [[nodiscard]] qsizetype size() const;

    // Decodes every element with the given function, in order.
    template<class T, class DecodeOne>
    [[nodiscard]] QList<T> map(DecodeOne decodeOne) const
    {
        QList<T> out;
        out.reserve(size());
        for (const Value v : *this)
            out.append(decodeOne(v));
        return out;
    }

private:
    friend class Value;
    Array() = default;
    alignas(8) std::array<std::byte, 16> m_array{};
    const Options *m_options = nullptr;
};

// Owns the parser and the parsed bytes; values handed out live as long as it does.
class Document
{
public:
    explicit Document(Options options = {});
    ~Document();
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;

    // Parses a whole answer; malformed JSON throws dataCorrupted.
    [[nodiscard]] Value parse(const QByteArray &bytes);

private:
    std::unique_ptr<simdjson::dom::parser> m_parser;
    std::unique_ptr<StringPool> m_strings;
    Options m_options;
};

// Parses bytes and decodes the root value with T::decode(const Value &).
template<class T>
[[nodiscard]] T decode(const QByteArray &bytes, const Options &options = {})
{
    Document document(options);
    return T::decode(document.parse(bytes));
}

} // namespace ravelin::json
