#include "api/contentencoding.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace ravelin::ContentEncoding {

namespace {

// The first buffer: a few times the compressed size (text compresses well),
// grown by doubling while the stream goes on. On glibc a large buffer grows in
// place (realloc moves its pages), so the doubling costs no copies.
constexpr qsizetype firstGuessRatio = 8;
constexpr qsizetype smallestBuffer = 4096;

// One inflate pass with the given window bits (15 + 32: gzip or zlib header,
// detected; -15: raw deflate).
std::optional<QByteArray> inflateWith(const QByteArray &body, int windowBits, qsizetype maximumSize)
{
    z_stream stream{};
    if (inflateInit2(&stream, windowBits) != Z_OK)
        return std::nullopt;
    const auto refuse = [&stream]() -> std::optional<QByteArray> {
        inflateEnd(&stream);
        return std::nullopt;
    };

    QByteArray out;
    // Room for the JSON reader to read past the end without copying the body.
    const qsizetype first = std::min(std::max(body.size() * firstGuessRatio, smallestBuffer), maximumSize);
    out.reserve(first + readPadding);
    out.resize(first);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(body.constData()));
    stream.avail_in = uInt(std::min<qsizetype>(body.size(), std::numeric_limits<uInt>::max()));
    qsizetype written = 0;
    for (;;) {
        if (written == out.size()) {
            if (out.size() >= maximumSize)
                return refuse();
            const qsizetype grown = std::min(out.size() * 2, maximumSize);
            out.reserve(grown + readPadding);
            out.resize(grown);
        }
        stream.next_out = reinterpret_cast<Bytef *>(out.data() + written);
        stream.avail_out = uInt(std::min<qsizetype>(out.size() - written, std::numeric_limits<uInt>::max()));
        const uInt before = stream.avail_out;
        const int result = inflate(&stream, Z_NO_FLUSH);
        written += qsizetype(before - stream.avail_out);
        if (result == Z_STREAM_END)
            break;
        // Out of input before the end, or a broken stream.
        if (result != Z_OK && !(result == Z_BUF_ERROR && stream.avail_out == 0))
            return refuse();
    }
    inflateEnd(&stream);
    out.resize(written);
    return out;
}

} // namespace

qsizetype inflationLimit(qsizetype compressedSize)
{
    const qsizetype byRatio
        = compressedSize > maximumInflatedSize / maximumRatio ? maximumInflatedSize : compressedSize * maximumRatio;
    return std::min(std::max(byRatio, minimumAllowance), maximumInflatedSize);
}

std::optional<QByteArray> decode(const QByteArray &body, QByteArrayView encoding)
{
    return decode(body, encoding, inflationLimit(body.size()));
}

std::optional<QByteArray> decode(const QByteArray &body, QByteArrayView encoding, qsizetype maximumSize)
{
    const QByteArray name = encoding.toByteArray().trimmed().toLower();
    if (name.isEmpty() || name == "identity")
        return body;
    if (name == "gzip" || name == "x-gzip")
        return inflateWith(body, 15 + 32, maximumSize);
    if (name == "deflate") {
        // Servers send either a zlib stream (as the standard says) or raw deflate.
        if (auto zlib = inflateWith(body, 15 + 32, maximumSize))
            return zlib;
        return inflateWith(body, -15, maximumSize);
    }
    return std::nullopt;
}

} // namespace ravelin::ContentEncoding
