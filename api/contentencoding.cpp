#include "api/contentencoding.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace ravelin::ContentEncoding {

namespace {

// One inflate pass with the given window bits (15 + 32: gzip or zlib header,
// detected; -15: raw deflate).
std::optional<QByteArray> inflateWith(const QByteArray &body, int windowBits, qsizetype expectedSize,
                                      qsizetype maximumSize)
{
    z_stream stream{};
    if (inflateInit2(&stream, windowBits) != Z_OK)
        return std::nullopt;
    QByteArray out;
    // The expected size when the stream tells it, else a few times the
    // compressed size (text compresses well); and room for the JSON reader to
    // read past the end without copying the body.
    const qsizetype guess = expectedSize > 0 ? expectedSize + 1 : std::max<qsizetype>(body.size() * 8, 4096);
    out.reserve(std::min(guess, maximumSize) + readPadding);
    out.resize(out.capacity() - readPadding);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(body.constData()));
    stream.avail_in = uInt(std::min<qsizetype>(body.size(), std::numeric_limits<uInt>::max()));
    int result = Z_OK;
    qsizetype written = 0;
    while (result != Z_STREAM_END) {
        if (written == out.size()) {
            if (out.size() >= maximumSize) {
                inflateEnd(&stream);
                return std::nullopt;
            }
            const qsizetype grown = std::min(out.size() * 2, maximumSize);
            out.reserve(grown + readPadding);
            out.resize(grown);
        }
        stream.next_out = reinterpret_cast<Bytef *>(out.data() + written);
        stream.avail_out = uInt(std::min<qsizetype>(out.size() - written, std::numeric_limits<uInt>::max()));
        const uInt before = stream.avail_out;
        result = inflate(&stream, Z_NO_FLUSH);
        written += qsizetype(before - stream.avail_out);
        if (result == Z_STREAM_END)
            break;
        // Out of input before the end, or a broken stream.
        if (result != Z_OK && !(result == Z_BUF_ERROR && stream.avail_out == 0)) {
            inflateEnd(&stream);
            return std::nullopt;
        }
    }
    inflateEnd(&stream);
    out.resize(written);
    return out;
}

} // namespace

std::optional<QByteArray> decode(const QByteArray &body, QByteArrayView encoding, qsizetype maximumSize)
{
    const QByteArray name = encoding.toByteArray().trimmed().toLower();
    if (name.isEmpty() || name == "identity")
        return body;
    if (name == "gzip" || name == "x-gzip") {
        // A gzip member ends with the inflated size modulo 2^32, little-endian.
        qsizetype expected = 0;
        if (body.size() >= 18) {
            const auto *end = reinterpret_cast<const uchar *>(body.constData() + body.size());
            expected
                = qsizetype(quint32(end[-4]) | quint32(end[-3]) << 8 | quint32(end[-2]) << 16 | quint32(end[-1]) << 24);
        }
        return inflateWith(body, 15 + 32, expected, maximumSize);
    }
    if (name == "deflate") {
        // Servers send either a zlib stream (as the standard says) or raw deflate.
        if (auto zlib = inflateWith(body, 15 + 32, 0, maximumSize))
            return zlib;
        return inflateWith(body, -15, 0, maximumSize);
    }
    return std::nullopt;
}

} // namespace ravelin::ContentEncoding
