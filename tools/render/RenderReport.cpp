// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/RenderReport.h"

#include "tools/render/Failure.h"
#include "tools/render/OfflineRender.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>

namespace orvane
{

namespace
{

using Json = nlohmann::ordered_json;

/// Rounds to multiples of 1 / perUnit.
double rounded(double value, double perUnit)
{
    return std::round(value * perUnit) / perUnit;
}

Json settingsJson(const RenderSettings& settings)
{
    Json all = Json::object();
    for (std::size_t i = 0; i < kSettingCount; ++i) {
        const auto setting = static_cast<Setting>(i);
        const SettingRule& rule = settingRule(setting);
        const Json value =
            rule.texts.empty() ? Json(settings.Value(setting)) : Json(settings.Index(setting));
        all[std::string(rule.name)] = {{"value", value}, {"text", settings.Text(setting)}};
    }
    return all;
}

Json centsJson(const std::optional<double>& cents)
{
    return cents ? Json(rounded(*cents, 1e3)) : Json();
}

Json distanceJson(const ScaleDistance& distance)
{
    return {{"median_cents", centsJson(distance.median)},
            {"p95_cents", centsJson(distance.percentile95)}};
}

Json pitchJson(const std::vector<PitchPoint>& points)
{
    Json pitch = {{"time", Json::array()},
                  {"input_hz", Json::array()},
                  {"output_hz", Json::array()},
                  {"voiced", Json::array()}};
    for (const PitchPoint& point : points) {
        pitch["time"].push_back(rounded(point.seconds, 1e6));
        pitch["input_hz"].push_back(rounded(static_cast<double>(point.inputHz), 1e3));
        pitch["output_hz"].push_back(rounded(static_cast<double>(point.outputHz), 1e3));
        pitch["voiced"].push_back(point.isVoiced);
    }
    return pitch;
}

std::string distanceText(const ScaleDistance& distance)
{
    if (!distance.median || !distance.percentile95)
        return "no voice found";
    return fmt::format("median {:5.1f}, 95 % within {:5.1f} cents", *distance.median,
                       *distance.percentile95);
}

bool clips(const RenderResult& result)
{
    switch (result.format.code & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE:
        return false;
    default:
        return result.peak > 1.0f;
    }
}

/// Lines about what the user may not expect.
std::string notes(const RenderRequest& request, const RenderResult& result)
{
    std::string text;
    const bool isDry = !result.settings.IsOn(Setting::kPitchCorrectionOnOff) &&
                       !result.settings.IsOn(Setting::kTransposeOnOff);
    if (isDry && request.automation.empty())
        text += "  note          neither pitchCorrectionOnOff nor transposeOnOff is on: "
                "the sound is the input's\n";
    if (result.eventsLeft > 0)
        text += fmt::format("  note          {} points of automation or messages come after the "
                            "end and were left out\n",
                            result.eventsLeft);
    if (result.badSamples > 0)
        text +=
            fmt::format("  note          {} samples were no finite numbers and were taken as 0\n",
                        result.badSamples);
    if (result.latencyMoved)
        text +=
            "  note          the plug-in changed its latency on the way: what came after is not "
            "aligned\n";
    if (clips(result))
        text +=
            fmt::format("  note          the output reaches {:+.1f} dB and is held at full scale\n",
                        20.0 * std::log10(static_cast<double>(result.peak)));
    return text;
}

}  // namespace

std::string textReport(const RenderRequest& request, const RenderResult& result)
{
    std::string text = fmt::format("{} -> {}\n", request.input.string(), request.output.string());
    text += fmt::format("  duration      {:.3f} s, {} Hz, {}\n", result.Seconds(),
                        result.format.rate, result.format.Describe());
    text += fmt::format("  latency       {} samples, {:.1f} ms, {}\n", result.latency,
                        result.LatencyMs(), request.keepsLatency ? "kept" : "compensated");
    text += fmt::format("  off the scale before: {}\n", distanceText(result.before));
    text += fmt::format("                after:  {}\n", distanceText(result.after));
    text += fmt::format("  speed         {:.1f} times real time\n", result.timesRealtime);
    return text + notes(request, result);
}

void writeJsonReport(const std::filesystem::path& path, const std::string& name,
                     const RenderRequest& request, const RenderResult& result)
{
    const Json report = {
        {"file", request.input.string()},
        {"output", request.output.string()},
        {"plugin", result.plugin},
        {"format", result.format.Describe()},
        {"rate", result.format.rate},
        {"channels", result.format.channels},
        {"frames", result.frames},
        {"duration_seconds", result.Seconds()},
        {"latency_samples", result.latency},
        {"latency_ms", result.LatencyMs()},
        {"latency_kept", request.keepsLatency},
        {"block_frames", request.blockFrames},
        {"samples_not_finite", result.badSamples},
        {"output_peak", static_cast<double>(result.peak)},
        {"events_after_end", result.eventsLeft},
        {"times_realtime", rounded(result.timesRealtime, 1e2)},
        {"settings", settingsJson(result.settings)},
        {"before", distanceJson(result.before)},
        {"after", distanceJson(result.after)},
        {"pitch", pitchJson(result.points)},
    };
    std::ofstream file(path, std::ios::binary);
    // JSON is UTF-8, but a file name may hold any bytes.
    file << report.dump(1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
    file.close();
    if (!file)
        fail("cannot write {}: the disk may be full", name);
}

}  // namespace orvane
