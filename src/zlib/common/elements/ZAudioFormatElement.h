// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZElement.h"

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZMessage;

/// The format of a document's audio: frame rate in Hz, channels, bits per sample, and length in
/// frames. Accessed under the interface lock.
class ZAudioFormatElement : public ZElement
{
public:
    /// Starts with 44100 Hz, 2 channels, 16 bits and no frames; not archivable. [setup]
    ZAudioFormatElement(std::string_view name, ZLooper* looper);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;

    /// Adds "Framerate", "Numchannels", "Bitspersample" (signed 32-bit) and "Framecount" (signed
    /// 64-bit).
    void GetFormat(ZMessage& out) const;
    /// Takes the same four fields and marks the element as changed. Throws ZException kGeneral,
    /// with nothing changed, when one is missing.
    void SetFormat(const ZMessage& format);

private:
    std::int32_t mFramerate = 44100;
    std::int32_t mNumchannels = 2;
    std::int32_t mBitspersample = 16;
    std::int64_t mFramecount = 0;
};

}  // namespace orvane
