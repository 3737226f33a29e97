// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/OfflineHost.h"

#include "pluginwrappers/interface/VstOpcodes.h"

#include <cmath>
#include <cstring>
#include <string_view>

namespace orvane
{

namespace
{

constexpr double kTempo = 120.0;
constexpr double kQuartersPerBar = 4.0;
constexpr double kClocksPerQuarter = 24.0;
constexpr std::intptr_t kVendorVersion = 1;

std::intptr_t writeText(void* room, std::string_view text) noexcept
{
    if (!room)
        return 0;
    char* const end = static_cast<char*>(std::memcpy(room, text.data(), text.size())) + text.size();
    *end = '\0';
    return 1;
}

/// Whether this host sends what the word names: events and the time, but no window.
std::intptr_t canDo(const void* word) noexcept
{
    if (!word)
        return 0;
    const std::string_view asked = static_cast<const char*>(word);
    return asked == "sendVstEvents" || asked == "sendVstMidiEvent" || asked == "sendVstTimeInfo";
}

}  // namespace

void OfflineHost::SetFormat(int rate, int blockFrames)
{
    mRate = rate;
    mBlockFrames = blockFrames;
    MoveTo(0);
    mIsStart = true;
}

void OfflineHost::MoveTo(std::int64_t frame)
{
    const double seconds = static_cast<double>(frame) / mRate;
    const double quarters = seconds * kTempo / 60.0;
    const double clocks = quarters * kClocksPerQuarter;
    const double framesPerClock = mRate * 60.0 / (kTempo * kClocksPerQuarter);
    mTime.samplePos = static_cast<double>(frame);
    mTime.sampleRate = mRate;
    // Time in the file instead of the clock, so that every run gives the same output.
    mTime.nanoSeconds = seconds * 1e9;
    mTime.ppqPos = quarters;
    mTime.tempo = kTempo;
    mTime.barStartPos = std::floor(quarters / kQuartersPerBar) * kQuartersPerBar;
    mTime.timeSigNumerator = static_cast<std::int32_t>(kQuartersPerBar);
    mTime.timeSigDenominator = 4;
    mTime.samplesToNextClock =
        static_cast<std::int32_t>(std::lround((std::round(clocks) - clocks) * framesPerClock));
    mTime.flags = kVstTransportPlaying | kVstNanosValid | kVstPpqPosValid | kVstTempoValid |
                  kVstBarsValid | kVstTimeSigValid | kVstClockValid;
    if (mIsStart)
        mTime.flags |= kVstTransportChanged;
    mIsStart = false;
}

std::intptr_t OfflineHost::Answer(std::int32_t opcode, void* ptr) noexcept
{
    switch (opcode) {
    case audioMasterVersion:
        return kVstVersion;
    case audioMasterGetTime:
        return reinterpret_cast<std::intptr_t>(&mTime);
    case audioMasterWantMidi:
    case audioMasterIOChanged:
    case audioMasterUpdateDisplay:
        return 1;
    case audioMasterGetSampleRate:
        return mRate;
    case audioMasterGetBlockSize:
        return mBlockFrames;
    case audioMasterGetCurrentProcessLevel:
        return kVstProcessLevelOffline;
    case audioMasterGetVendorString:
        return writeText(ptr, "Orvane Inc.");
    case audioMasterGetProductString:
        return writeText(ptr, "kestrune-render");
    case audioMasterGetVendorVersion:
        return kVendorVersion;
    case audioMasterGetLanguage:
        return kVstLangEnglish;
    case audioMasterCanDo:
        return canDo(ptr);
    default:
        return 0;
    }
}

}  // namespace orvane
