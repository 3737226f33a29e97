// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZSignalBay.h"

#include <memory>
#include <vector>

namespace orvane
{

class ZEnvelopeDetector;

/// Passes its channels through unchanged and publishes their levels as elements, which are not
/// archived. The elements' names are prefixed with the bay's name; channels count from 0:
/// MeterCalibration (the range of the peaks), ClipReset (set to "Reset Me" to clear the clip
/// counters; the bay answers "Reset Complete"), Heartbeat (calls of ProcessSignal),
/// ClipCountChannel0 and so on (runs of clipped samples), InstPeakdBChannel0 and so on (held peak
/// in dB).
class ZMeterBay : public ZSignalBay
{
public:
    /// The level of digital silence, in dB.
    static constexpr float kSilenceDecibels = -144.0f;

    /// Makes as many channels as the attribute numchannels says. Throws ZException kGeneral unless
    /// that is 1 to kMaxChannels. [setup]
    ZMeterBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZMeterBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Adds the number of channels.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    /// ZELEMENTCHANGED of MeterCalibration: changes the range of the peaks. [interface thread]
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    void SampleRateChanged() override;
    /// Sets all elements to their defaults, the peaks to the minimum of the calibration.
    void SetDefaults() override;
    /// Sets the held peaks to silence.
    void Reset() override;
    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t firstExport,
                       std::int32_t exportCount) noexcept override;

private:
    struct Channel
    {
        boost::shared_ptr<ZElement> clipCount;
        boost::shared_ptr<ZElement> peakDecibels;
        std::unique_ptr<ZEnvelopeDetector> clips;
        float heldPeak = 0.0f;
        std::uint32_t heldFor = 0;  // samples since the peak was held
    };

    void MakeElements();
    void MakeChannel(std::int32_t number);
    [[nodiscard]] boost::shared_ptr<ZElement> MakeFloat(const std::string& name, float min,
                                                        float max);
    [[nodiscard]] boost::shared_ptr<ZElement> MakeChoice(const std::string& name,
                                                         std::initializer_list<const char*> items);
    void Publish(const boost::shared_ptr<ZElement>& element);
    void Calibrate();
    void Meter(Channel& channel, const float* samples, std::uint32_t count) noexcept;
    void HoldPeak(Channel& channel, float peak, std::uint32_t count) const noexcept;
    void AnswerClipReset() noexcept;

    std::vector<Channel> mChannels;
    boost::shared_ptr<ZElement> mCalibration;
    boost::shared_ptr<ZElement> mClipReset;
    boost::shared_ptr<ZElement> mHeartbeat;
    std::uint32_t mBeats = 0;
    std::uint32_t mHoldSamples = 0;
};

}  // namespace orvane
