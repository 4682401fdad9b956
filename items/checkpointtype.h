#pragma once

namespace ravelin {

// Kinds of checkpoint an item may be bound to. Only `qr` is acted on (the items
// screen scans QR codes); no item field carries the kind.
enum class CheckpointType { qr, zone, beacon, nfc };

} // namespace ravelin
