// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/MidiFile.h"

#include "tools/render/Failure.h"
#include "tools/render/InputFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace orvane
{

namespace
{

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint8_t kStatusBit = 0x80;
constexpr std::uint8_t kSystemExclusive = 0xF0;
constexpr std::uint8_t kEscape = 0xF7;
constexpr std::uint8_t kMeta = 0xFF;
constexpr std::uint8_t kMetaEndOfTrack = 0x2F;
constexpr std::uint8_t kMetaTempo = 0x51;
constexpr double kMicroseconds = 1e6;  // in a second
constexpr double kStandardTempo =
    0.5 * kMicroseconds;  // for a quarter note, until the file sets a tempo

/// A channel message or a tempo change at a time that is still counted in ticks.
struct TickedEvent
{
    std::int64_t tick;
    std::array<std::uint8_t, 3> bytes;  // status 0 marks a tempo change
    double tempo;                       // microseconds for a quarter note
};

/// Reads bytes from the front of a part of a file and throws ZException past its end.
class ByteReader
{
public:
    ByteReader(Bytes bytes, const std::string& name)
        : mRest(bytes)
        , mName(name)
    {
    }

    [[nodiscard]] bool IsAtEnd() const { return mRest.empty(); }

    [[nodiscard]] Bytes Take(std::size_t count)
    {
        if (count > mRest.size())
            Refuse("it ends too early");
        const Bytes taken = mRest.first(count);
        mRest = mRest.subspan(count);
        return taken;
    }

    [[nodiscard]] std::uint8_t Next() { return Take(1).front(); }
    [[nodiscard]] bool DataIsNext() const { return !IsAtEnd() && !(mRest.front() & kStatusBit); }

    /// Reads a big-endian number of count bytes, at most 4.
    [[nodiscard]] std::uint32_t Number(std::size_t count)
    {
        std::uint32_t number = 0;
        for (const std::uint8_t byte : Take(count))
            number = number << 8 | byte;
        return number;
    }

    /// Reads a variable-length quantity: one to four bytes of seven bits each, where the top bit is
    /// set in all but the last.
    [[nodiscard]] std::uint32_t VariableNumber()
    {
        std::uint32_t number = 0;
        for (int i = 0; i < 4; ++i) {
            const std::uint8_t byte = Next();
            number = number << 7 | (byte & 0x7Fu);
            if (!(byte & kStatusBit))
                return number;
        }
        Refuse("a number in it is too long");
    }

    [[noreturn]] void Refuse(std::string_view reason) const
    {
        fail("{} is a broken MIDI file: {}", mName, reason);
    }

private:
    Bytes mRest;
    const std::string& mName;
};

bool isNamed(Bytes id, std::string_view name)
{
    return std::equal(id.begin(), id.end(), name.begin(), name.end());
}

/// Number of data bytes after the status byte of a channel message.
std::size_t dataBytes(std::uint8_t status)
{
    const int kind = status >> 4;
    return kind == 0xC || kind == 0xD ? 1 : 2;
}

/// Reads the events of one track.
class TrackReader
{
public:
    TrackReader(Bytes track, const std::string& name, std::vector<TickedEvent>& events)
        : mBytes(track, name)
        , mEvents(events)
    {
    }

    void Read()
    {
        // A track without an end-of-track event ends with its data.
        while (!mHasEnded && !mBytes.IsAtEnd()) {
            mTick += mBytes.VariableNumber();
            ReadEvent();
        }
    }

private:
    void ReadEvent()
    {
        if (mBytes.DataIsNext())
            return ReadMessage();
        const std::uint8_t status = mBytes.Next();
        if (status == kMeta)
            return ReadMeta();
        if (status == kSystemExclusive || status == kEscape)
            return static_cast<void>(Skip());
        if (status > kSystemExclusive)
            mBytes.Refuse("a track holds a message that belongs in no file");
        mStatus = status;
        ReadMessage();
    }

    void ReadMessage()
    {
        if (mStatus == 0)
            mBytes.Refuse("a track has data without a status");
        TickedEvent event{mTick, {mStatus, 0, 0}, 0.0};
        const Bytes data = mBytes.Take(dataBytes(mStatus));
        std::copy(data.begin(), data.end(), event.bytes.begin() + 1);
        if ((event.bytes[1] | event.bytes[2]) & kStatusBit)
            mBytes.Refuse("a message is cut off by another");
        mEvents.push_back(event);
    }

    void ReadMeta()
    {
        const std::uint8_t kind = mBytes.Next();
        ByteReader data = mBytes;
        const std::uint32_t length = Skip();
        mHasEnded = kind == kMetaEndOfTrack;
        if (kind != kMetaTempo)
            return;
        static_cast<void>(data.VariableNumber());
        if (length != 3)
            mBytes.Refuse("a change of tempo has a wrong length");
        mEvents.push_back({mTick, {}, static_cast<double>(data.Number(3))});
    }

    /// Skips a length and as many bytes as it says, and returns the length. Running status ends
    /// here.
    std::uint32_t Skip()
    {
        mStatus = 0;
        const std::uint32_t length = mBytes.VariableNumber();
        static_cast<void>(mBytes.Take(length));
        return length;
    }

    ByteReader mBytes;
    std::vector<TickedEvent>& mEvents;
    std::int64_t mTick = 0;
    std::uint8_t mStatus = 0;  // running status; 0 while there is none
    bool mHasEnded = false;
};

/// Converts ticks to seconds; ticks must not decrease from call to call.
class TickClock
{
public:
    /// division is the third field of the file header, not 0.
    explicit TickClock(std::uint32_t division)
    {
        if (division & 0x8000u) {
            const int frames = 256 - static_cast<int>(division >> 8);
            // 29 stands for the 29.97 frames a second of drop-frame time code.
            const double rate = frames == 29 ? 30.0 / 1.001 : frames;
            mFixedSeconds = 1.0 / (rate * (division & 0xFFu));
        }
        mTicksPerQuarter = division;
    }

    double SecondsAt(std::int64_t tick)
    {
        const double step =
            mFixedSeconds > 0.0 ? mFixedSeconds : mTempo / kMicroseconds / mTicksPerQuarter;
        mSeconds += static_cast<double>(tick - mTick) * step;
        mTick = tick;
        return mSeconds;
    }
    void SetTempo(double tempo) { mTempo = tempo; }

private:
    double mTicksPerQuarter;
    double mFixedSeconds = 0.0;  // of a tick with SMPTE time; 0 with metrical time
    double mTempo = kStandardTempo;
    std::int64_t mTick = 0;
    double mSeconds = 0.0;
};

std::vector<MidiEvent> withSeconds(const std::vector<TickedEvent>& events, std::uint32_t division)
{
    TickClock clock(division);
    std::vector<MidiEvent> timedEvents;
    for (const TickedEvent& event : events) {
        const double seconds = clock.SecondsAt(event.tick);
        if (event.bytes[0] == 0)
            clock.SetTempo(event.tempo);
        else
            timedEvents.push_back({seconds, event.bytes});
    }
    return timedEvents;
}

struct MidiHeader
{
    std::uint32_t format;
    std::uint32_t tracks;
    std::uint32_t division;
};

MidiHeader readHeader(ByteReader& reader, const std::string& name)
{
    ByteReader head(reader.Take(reader.Number(4)), name);
    MidiHeader taken{};
    taken.format = head.Number(2);
    taken.tracks = head.Number(2);
    taken.division = head.Number(2);
    if (taken.format > 1)
        fail("{} is a MIDI file of format {}: only 0 and 1 have one "
             "time for all tracks; export it as one of these",
             name, taken.format);
    if ((taken.division & 0x8000u ? taken.division & 0xFFu : taken.division) == 0)
        reader.Refuse("its time has no steps");
    return taken;
}

}  // namespace

std::vector<MidiEvent> parseMidiFile(std::span<const std::uint8_t> file, const std::string& name)
{
    constexpr std::string_view kHeaderId = "MThd";
    if (file.size() < kHeaderId.size() || !isNamed(file.first(kHeaderId.size()), kHeaderId))
        fail("{} is no Standard MIDI File", name);
    ByteReader reader(file.subspan(kHeaderId.size()), name);
    const MidiHeader head = readHeader(reader, name);
    std::vector<TickedEvent> events;
    for (std::uint32_t tracks = 0; tracks < head.tracks;) {
        const Bytes id = reader.Take(4);
        const Bytes part = reader.Take(reader.Number(4));
        if (!isNamed(id, "MTrk"))
            continue;  // other chunk types are skipped, as the file format asks
        TrackReader(part, name, events).Read();
        ++tracks;
    }
    std::stable_sort(events.begin(), events.end(),
                     [](const TickedEvent& a, const TickedEvent& b) { return a.tick < b.tick; });
    return withSeconds(events, head.division);
}

std::vector<MidiEvent> readMidiFile(const std::filesystem::path& path)
{
    const std::string bytes = readInputFile(path);
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    return parseMidiFile({data, bytes.size()}, path.string());
}

}  // namespace orvane
