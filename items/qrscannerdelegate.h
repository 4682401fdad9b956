#pragma once

#include <QString>

#include <optional>

namespace ravelin {

// Receives the text of the QR code the scanner read.
class QRScannerDelegate
{
public:
    virtual ~QRScannerDelegate() = default;
    virtual void didScanCode(const std::optional<QString> &code) = 0;
};

} // namespace ravelin
