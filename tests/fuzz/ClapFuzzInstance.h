// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/clap/ClapEntry.h"
#include "pluginwrappers/interface/ClapExtensions.h"
#include "support/Standard.h"

namespace orvane
{

/// An instance that processes, in a host that renders offline and ignores what the log says.
struct ClapFuzzInstance
{
    static constexpr std::uint32_t kFrames = 512;  // the longest block

    ClapFuzzInstance()
    {
        const auto& factory =
            *static_cast<const clap_plugin_factory*>(clapEntry().get_factory(kClapPluginFactory));
        plugin = factory.create_plugin(&factory, &kHost, kClapId);
        if (plugin == nullptr || !plugin->init(plugin))
            std::abort();
        state = static_cast<const clap_plugin_state*>(plugin->get_extension(plugin, kClapState));
        params = static_cast<const clap_plugin_params*>(plugin->get_extension(plugin, kClapParams));
        static_cast<const clap_plugin_render*>(plugin->get_extension(plugin, kClapRender))
            ->set(plugin, CLAP_RENDER_OFFLINE);
        if (!plugin->activate(plugin, 44100.0, 1, kFrames) || !plugin->start_processing(plugin))
            std::abort();
    }
    ClapFuzzInstance(ClapFuzzInstance&&) = delete;

    /// Loads a state by a stream that gives at most `most` bytes a call.
    bool Load(std::string_view text, std::size_t most = SIZE_MAX) const
    {
        struct Source
        {
            std::string_view rest;
            std::size_t most;
        } source{text, most};
        const clap_istream stream{
            &source, [](const clap_istream* from, void* buffer, std::uint64_t size) {
                auto& given = *static_cast<Source*>(from->ctx);
                const auto count =
                    std::min({static_cast<std::size_t>(size), given.most, given.rest.size()});
                std::memcpy(buffer, given.rest.data(), count);
                given.rest.remove_prefix(count);
                return static_cast<std::int64_t>(count);
            }};
        return state->load(plugin, &stream);
    }
    [[nodiscard]] std::string Save() const
    {
        std::string text;
        const clap_ostream stream{
            &text, [](const clap_ostream* to, const void* buffer, std::uint64_t size) {
                static_cast<std::string*>(to->ctx)->append(static_cast<const char*>(buffer), size);
                return static_cast<std::int64_t>(size);
            }};
        if (!state->save(plugin, &stream))
            std::abort();
        return text;
    }
    /// Runs a block of at most kFrames; returns whether the sound is finite.
    bool RunBlock(const clap_input_events* in = nullptr, const clap_output_events* out = nullptr,
                  std::uint32_t frames = kFrames)
    {
        std::array<float, kFrames> left{0.5f};
        std::array<float, kFrames> right{-0.5f};
        std::array<float*, 2> channels{left.data(), right.data()};
        const clap_audio_buffer input{channels.data(), nullptr, 2, 0, 0};
        clap_audio_buffer output{channels.data(), nullptr, 2, 0, 0};
        const clap_process block{-1, frames, nullptr, &input, &output, 1, 1, in, out};
        const std::int32_t status = plugin->process(plugin, &block);
        const auto isFinite = [](float sample) { return std::isfinite(sample); };
        return status != CLAP_PROCESS_ERROR && std::ranges::all_of(left, isFinite) &&
               std::ranges::all_of(right, isFinite);
    }

    const clap_plugin* plugin = nullptr;
    const clap_plugin_state* state = nullptr;
    const clap_plugin_params* params = nullptr;

private:
    static const void* getExtension(const clap_host*, const char* name)
    {
        static const clap_host_log log{[](const clap_host*, std::int32_t, const char*) {}};
        return std::strcmp(name, kClapLog) == 0 ? &log : nullptr;
    }
    static constexpr auto kIgnore = [](const clap_host*) {};
    static constexpr clap_host kHost{kClapVersion, nullptr,      "fuzz",  "",      "",
                                     "1",          getExtension, kIgnore, kIgnore, kIgnore};
};

}  // namespace orvane
