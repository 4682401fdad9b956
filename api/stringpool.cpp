#include "api/stringpool.h"

#include <QStringDecoder>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace ravelin::json {

namespace {

// True when every byte is ASCII, eight at a time.
bool isAscii(std::string_view text)
{
    std::uint64_t seen = 0;
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + i, sizeof word);
        seen |= word;
    }
    for (; i < text.size(); ++i)
        seen |= static_cast<unsigned char>(text[i]);
    return (seen & 0x8080808080808080ULL) == 0;
}

// ASCII to UTF-16 is a widening copy; written plainly so that the compiler
// turns it into vector instructions (this file is built for that).
void widen(const char *__restrict in, std::size_t size, char16_t *__restrict out)
{
    for (std::size_t i = 0; i < size; ++i)
        out[i] = static_cast<unsigned char>(in[i]);
}

} // namespace

void StringPool::startBlock(qsizetype atLeast)
{
    const qsizetype size = std::max(atLeast, m_nextBlockSize);
    m_nextBlockSize = std::min(m_nextBlockSize * 2, largestBlockSize);
    auto [header, data] = QTypedArrayData<char16_t>::allocate(size);
    Q_CHECK_PTR(data);
    m_block = QArrayDataPointer<char16_t>(header, data, 0);
    m_next = data;
    m_left = size;
}

QString StringPool::make(std::string_view utf8)
{
    const auto bytes = qsizetype(utf8.size());
    if (bytes == 0)
        return QString::fromUtf8(utf8.data(), 0);
    // UTF-8 never takes fewer code units than UTF-16, and one more is the terminator.
    const qsizetype room = bytes + 1;
    if (room > largeString)
        return QString::fromUtf8(utf8.data(), bytes);
    if (room > m_left)
        startBlock(room);

    char16_t *start = m_next;
    qsizetype length = bytes;
    if (isAscii(utf8)) {
        widen(utf8.data(), utf8.size(), start);
    } else {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QChar *end = decoder.appendToBuffer(reinterpret_cast<QChar *>(start), QByteArrayView(utf8.data(), bytes));
        length = end - reinterpret_cast<const QChar *>(start);
    }
    start[length] = u'\0';
    m_next += length + 1;
    m_left -= length + 1;

    // One more reference to the block, owned by the new string.
    m_block.d_ptr()->ref();
    return QString(QString::DataPointer(m_block.d_ptr(), start, length));
}

} // namespace ravelin::json
