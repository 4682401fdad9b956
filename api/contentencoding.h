#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace ravelin {

// Answers travel compressed: the network manager asks for gzip itself and
// inflates the body on the api queue, where the answer is decoded anyway. (Left
// to the network stack, a large, well-compressible answer is inflated in small
// steps and takes seconds instead of milliseconds.)
namespace ContentEncoding {

// The Accept-Encoding the network manager sends.
inline constexpr QByteArrayView accepted = "gzip, deflate";

// Larger inflated bodies are refused (a small answer that inflates without
// bound must not exhaust the device's memory).
inline constexpr qsizetype maximumInflatedSize = 512LL * 1024 * 1024;

// Spare bytes after an inflated body, so that the JSON reader can read it where
// it is (it reads ahead of the last byte) instead of copying it.
inline constexpr qsizetype readPadding = 64;

// The body as sent before compression: as it is for no (or "identity")
// encoding, inflated for "gzip" and "deflate" (zlib or raw). Nothing for a
// body that does not inflate, an unknown encoding, or one that grows past
// `maximumSize`.
[[nodiscard]] std::optional<QByteArray> decode(const QByteArray &body, QByteArrayView encoding,
                                               qsizetype maximumSize = maximumInflatedSize);

} // namespace ContentEncoding

} // namespace ravelin
