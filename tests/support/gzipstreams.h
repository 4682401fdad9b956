#pragma once

// Gzip streams for the tests and benchmarks of compressed answers: a text
// compressed as a server would, and a decompression bomb made without ever
// holding what it inflates to.

#include <QByteArray>
#include <QtEndian>

#include <zlib.h>

namespace ravelin::test {

// The text compressed with the given zlib window bits (31: gzip, 15: zlib, -15: raw).
inline QByteArray compressed(const QByteArray &text, int windowBits, int level = Z_BEST_COMPRESSION)
{
    z_stream stream{};
    deflateInit2(&stream, level, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
    QByteArray out(qsizetype(deflateBound(&stream, uLong(text.size()))) + 32, Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.constData()));
    stream.avail_in = uInt(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(out.data());
    stream.avail_out = uInt(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(qsizetype(stream.total_out));
    deflateEnd(&stream);
    return out;
}

// The text as one gzip member.
inline QByteArray gzip(const QByteArray &text, int level = Z_DEFAULT_COMPRESSION)
{
    return compressed(text, 15 + 16, level);
}

// A gzip member of `mebibytes` MiB of zeros (1024: 1 GiB from about 1 MB). One
// MiB is compressed once, ending on a full flush so that it refers to nothing
// before it, and repeated; the trailer carries the true checksum and size.
inline QByteArray gzipBomb(int mebibytes)
{
    const QByteArray zeros(1 << 20, '\0');
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY);
    QByteArray block(qsizetype(deflateBound(&stream, uLong(zeros.size()))) + 64, Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(zeros.constData()));
    stream.avail_in = uInt(zeros.size());
    stream.next_out = reinterpret_cast<Bytef *>(block.data());
    stream.avail_out = uInt(block.size());
    deflate(&stream, Z_FULL_FLUSH);
    block.resize(qsizetype(stream.total_out));
    char last[16];
    stream.next_out = reinterpret_cast<Bytef *>(last);
    stream.avail_out = sizeof last;
    deflate(&stream, Z_FINISH); // the final, empty block
    const qsizetype lastSize = qsizetype(sizeof last - stream.avail_out);
    deflateEnd(&stream);

    const uLong blockCrc = crc32(0, reinterpret_cast<const Bytef *>(zeros.constData()), uInt(zeros.size()));
    uLong crc = crc32(0, nullptr, 0);
    QByteArray out("\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03", 10);
    out.reserve(10 + block.size() * mebibytes + lastSize + 8);
    for (int i = 0; i < mebibytes; ++i) {
        out += block;
        crc = crc32_combine(crc, blockCrc, z_off_t(zeros.size()));
    }
    out.append(last, lastSize);
    char trailer[8];
    qToLittleEndian(quint32(crc), trailer);
    qToLittleEndian(quint32(quint64(mebibytes) << 20), trailer + 4);
    out.append(trailer, sizeof trailer);
    return out;
}

} // namespace ravelin::test
