// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/RenderReport.h"

#include "tools/render/Failure.h"
#include "tools/render/OfflineRender.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
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

/// Name of the note that many semitones above the key.
std::string noteName(const RenderSettings& settings, std::size_t degree)
{
    const auto key = static_cast<std::size_t>(settings.Index(Setting::kKey));
    return std::string(kKeyNames[(key + degree) % kKeyNames.size()]);
}

Json settingsJson(const RenderResult& result)
{
    Json all = Json::object();
    for (std::size_t i = 0; i < kSettingCount; ++i) {
        const auto setting = static_cast<Setting>(i);
        const SettingRule& rule = settingRule(setting);
        const RenderSettings& settings = result.settings;
        const Json value =
            rule.texts.empty() ? Json(settings.Value(setting)) : Json(settings.Index(setting));
        all[std::string(rule.name)] = {{"value", value}, {"text", settings.Text(setting)}};
    }
    // The scale need not be one of the built-in ones, so it is told by its notes instead of an
    // index.
    Json notes = Json::array();
    for (std::size_t degree = 0; degree < result.scale.degrees.size(); ++degree) {
        if (result.scale.degrees[degree])
            notes.push_back(noteName(result.settings, degree));
    }
    all["scale"] = {{"text", result.scale.name}, {"notes", notes}};
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

/// Lines that warn of results that the user may not expect.
std::string notes(const RenderRequest& request, const RenderResult& result)
{
    std::string text;
    // If the user asked for a change, a note on standard error says so already.
    if (result.IsDry() && request.automation.empty() && !request.AsksForChange())
        text += "  note          neither pitchCorrectionOnOff nor transposeOnOff is on: "
                "the sound is the input's\n";
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

std::vector<std::string> describeSettings(const RenderResult& result)
{
    const RenderSettings& settings = result.settings;
    std::vector<std::string> parts{
        fmt::format("{} {}", settings.Text(Setting::kKey), result.scale.name),
        fmt::format("{} intonation", settings.Text(Setting::kIntonation)),
        fmt::format("{} tracking", settings.Text(Setting::kTracking))};
    if (settings.Value(Setting::kDetune) != 0.0f)
        parts.push_back(fmt::format("detuned {:+} cents", settings.Value(Setting::kDetune)));
    parts.push_back(
        settings.IsOn(Setting::kPitchCorrectionOnOff)
            ? fmt::format("correction in {}", settings.Text(Setting::kPitchCorrectionTime))
            : "no correction");
    if (settings.IsOn(Setting::kTransposeOnOff))
        parts.push_back(fmt::format("pitch {:+}, formants {:+} cents",
                                    settings.Value(Setting::kPitchShift),
                                    settings.Value(Setting::kFormantShift)));
    parts.push_back(settings.Text(Setting::kSourceType));
    return parts;
}

std::string textReport(const RenderRequest& request, const RenderResult& result)
{
    std::string text = fmt::format("{} -> {}\n", request.input.string(), request.output.string());
    text += fmt::format("  duration      {:.3f} s, {} Hz, {}\n", result.Seconds(),
                        result.format.rate, result.format.Describe());
    text += fmt::format("  plug-in       {}, {}\n", result.plugin, result.interface);
    text += fmt::format("  program       {}\n", result.program);
    text += fmt::format("  settings      {}\n", fmt::join(describeSettings(result), ", "));
    text += fmt::format("  latency       {} samples, {:.1f} ms, {}\n", result.latency,
                        result.LatencyMs(), request.keepsLatency ? "kept" : "compensated");
    text += fmt::format("  off the scale before: {}\n", distanceText(result.before));
    text += fmt::format("                after:  {}\n", distanceText(result.after));
    text += fmt::format("  speed         {:.1f} times real time, the whole run\n",
                        result.TimesRealtime());
    return text + notes(request, result);
}

void writeJsonReport(const std::filesystem::path& path, const std::string& name,
                     const RenderRequest& request, const RenderResult& result)
{
    const Json report = {
        {"file", request.input.string()},
        {"output", request.output.string()},
        {"plugin", result.plugin},
        {"interface", result.interface},
        {"program", result.program},
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
        {"run_seconds", rounded(result.runSeconds, 1e3)},
        {"times_realtime", rounded(result.TimesRealtime(), 1e2)},
        {"settings", settingsJson(result)},
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
