// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/ZAudioFormatElement.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"

namespace orvane
{

namespace
{

template <typename T>
T require(const ZMessage& format, const char* field, const char* missing)
{
    T value{};
    if (!format.Find(field, value))
        throw ZException(missing);
    return value;
}

}  // namespace

ZAudioFormatElement::ZAudioFormatElement(std::string_view name, ZLooper* looper)
    : ZElement(name, ZGROUP, looper)
{
    SetArchivable(false);
}

bool ZAudioFormatElement::IsKindOf(std::string_view className) const
{
    return className == "ZAudioFormatElementClass" || ZElement::IsKindOf(className);
}

const char* ZAudioFormatElement::GetClassName() const
{
    return "ZAudioFormatElementClass";
}

void ZAudioFormatElement::GetFormat(ZMessage& out) const
{
    out.Add<std::int32_t>("Framerate", mFramerate);
    out.Add<std::int32_t>("Numchannels", mNumchannels);
    out.Add<std::int32_t>("Bitspersample", mBitspersample);
    out.Add<std::int64_t>("Framecount", mFramecount);
}

void ZAudioFormatElement::SetFormat(const ZMessage& format)
{
    const auto framerate =
        require<std::int32_t>(format, "Framerate", "Couldn't find frame rate in Message");
    const auto channels = require<std::int32_t>(format, "Numchannels",
                                                "Couldn't find snumber of channels in Message");
    const auto bits =
        require<std::int32_t>(format, "Bitspersample", "Couldn't find bits per channel in Message");
    const auto frames =
        require<std::int64_t>(format, "Framecount", "Couldn't find frame count in Message");
    mFramerate = framerate;
    mNumchannels = channels;
    mBitspersample = bits;
    mFramecount = frames;
    ElementChanged(nullptr, true);
}

}  // namespace orvane
