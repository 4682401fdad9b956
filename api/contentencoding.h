#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace ravelin {

// Answers travel compressed: the network manager asks for gzip itself and
// inflates the body on the api queue, where the answer is decoded anyway. (Left
// to the network stack, a large, well-compressible answer is inflated in small
// steps and takes seconds instead of milliseconds.)
//
// Inflation is bounded, so that a small answer that inflates without bound (a
// decompression bomb) is refused before it costs the host its memory: an answer
// may grow to `maximumRatio` times its compressed size, at least to
// `minimumAllowance` and never past `maximumInflatedSize`. The sizes a stream
// announces (the gzip trailer) are never believed: memory grows with the bytes
// that actually come out.
namespace ContentEncoding {

// The Accept-Encoding the network manager sends.
inline constexpr QByteArrayView accepted = "gzip, deflate";

// Answers inflate to at most this many times their compressed size. JSON
// answers compress 5 to 30 times; deflate itself cannot pass about 1,030.
inline constexpr qsizetype maximumRatio = 100;
// Small answers may always inflate this far, whatever their ratio.
inline constexpr qsizetype minimumAllowance = 1024LL * 1024;
// No answer inflates past this, whatever its compressed size (the answer of
// 10,000 tasks is about a tenth of it).
inline constexpr qsizetype maximumInflatedSize = 64LL * 1024 * 1024;

// Spare bytes after an inflated body, so that the JSON reader can read it where
// it is (it reads ahead of the last byte) instead of copying it.
inline constexpr qsizetype readPadding = 64;

// How far a body of `compressedSize` bytes may inflate.
[[nodiscard]] qsizetype inflationLimit(qsizetype compressedSize);

// The body as sent before compression: as it is for no (or "identity")
// encoding, inflated for "gzip" and "deflate" (zlib or raw). Nothing for a
// body that does not inflate, an unknown encoding, or one that grows past its
// inflation limit (or past `maximumSize` where one is given).
[[nodiscard]] std::optional<QByteArray> decode(const QByteArray &body, QByteArrayView encoding);
[[nodiscard]] std::optional<QByteArray> decode(const QByteArray &body, QByteArrayView encoding, qsizetype maximumSize);

} // namespace ContentEncoding

} // namespace ravelin
