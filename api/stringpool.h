#pragma once

#include <QArrayDataPointer>
#include <QString>

#include <string_view>

namespace ravelin::json {

// Makes the strings of one decoded answer out of a few large blocks instead of
// one allocation per string. Each string is an ordinary QString that holds a
// reference to its block: copies may outlive the pool and the answer, any
// change to a string detaches it as usual, and a block is freed with the last
// string that points into it. Blocks start small and grow, so that a short
// answer (settings, one task) never pins a large block.
//
// Not thread-safe; one pool belongs to one decoding pass.
class StringPool
{
public:
    StringPool() = default;
    StringPool(const StringPool &) = delete;
    StringPool &operator=(const StringPool &) = delete;

    // The UTF-8 text as a QString (invalid sequences become U+FFFD, as with
    // QString::fromUtf8).
    [[nodiscard]] QString make(std::string_view utf8);

    // Strings longer than this get an allocation of their own.
    static constexpr qsizetype largeString = 2048;
    static constexpr qsizetype firstBlockSize = 1024;
    static constexpr qsizetype largestBlockSize = qsizetype(64) * 1024;

private:
    void startBlock(qsizetype atLeast);

    // The block being filled; the pool holds one reference to it.
    QArrayDataPointer<char16_t> m_block;
    char16_t *m_next = nullptr;
    qsizetype m_left = 0;
    qsizetype m_nextBlockSize = firstBlockSize;
};

} // namespace ravelin::json
