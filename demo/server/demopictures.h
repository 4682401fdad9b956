#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <optional>

namespace ravelin::demopictures {

inline constexpr QSize kPictureSize{800, 600};
inline constexpr QSize kThumbnailSize{160, 120};

// Field-work scenes for the seeded comments, drawn with shapes only (no text,
// so no font machinery is needed): sky, hills, a pump house, a pipeline and a
// marker. `variant` picks the colours and the details; any number is valid.
[[nodiscard]] QImage drawScene(int variant, QSize size = kPictureSize);

// JPEG bytes of an image; empty when the JPEG writer is missing.
[[nodiscard]] QByteArray encodeJpeg(const QImage &image);

// The image scaled smoothly to fit in 160x120, keeping its aspect ratio.
[[nodiscard]] QImage thumbnailOf(const QImage &image);

// Reads picture bytes in any format that Qt reads; nothing when they do not form an image.
[[nodiscard]] std::optional<QImage> decode(const QByteArray &bytes);

} // namespace ravelin::demopictures
