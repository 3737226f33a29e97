// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes arbitrary bytes as a picture and draws it.

#include "support/PngBytes.h"
#include "zlib/common/drawing/ZGraphics.h"
#include "zlib/common/drawing/ZImage.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace orvane;
    PngBytes bytes(reinterpret_cast<const std::byte*>(data),
                   reinterpret_cast<const std::byte*>(data) + size);
    if (bytes.size() > 8)
        repairCheckSums(bytes);
    const auto image = ZImage::Decode(bytes);
    if (!image)
        return 0;
    if (image->GetWidth() > ZImage::kMaxSide || image->GetHeight() > ZImage::kMaxSide)
        std::abort();
    const auto target = ZImage::Create(40, 30);
    ZGraphics(*target).DrawImage(*image, {0, 0, image->GetWidth(), image->GetHeight()},
                                 {-5, 3, 50, 20}, 0.5f);
    return 0;
}
