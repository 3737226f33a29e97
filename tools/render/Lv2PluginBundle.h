// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <lilv/lilv.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace orvane
{

/// Frees what lilv hands over.
struct LilvNodeDeleter
{
    void operator()(LilvNode* node) const { lilv_node_free(node); }
};
using LilvNodePtr = std::unique_ptr<LilvNode, LilvNodeDeleter>;

/// The folder of an LV2 plug-in, with what its texts say of the plug-in.
class Lv2PluginBundle
{
public:
    /// Reads the texts. Throws ZException when the folder is not the bundle of a single plug-in.
    explicit Lv2PluginBundle(const std::filesystem::path& folder);

    [[nodiscard]] LilvWorld* World() const { return mWorld.get(); }
    [[nodiscard]] const LilvPlugin* Plugin() const { return mPlugin; }
    [[nodiscard]] LilvNodePtr Uri(const char* uri) const;

    /// A control input of the plug-in but for the one that tells it that the host renders offline.
    struct Parameter
    {
        struct Choice
        {
            float value;
            std::string label;
        };
        std::uint32_t port;
        std::string symbol;
        std::string name;
        std::string unit;  // with a space before it; empty when there is none
        float low;
        float high;
        bool isInteger;  // takes whole numbers only
        bool isSwitch;
        std::vector<Choice> choices;
    };
    /// In the order of the ports.
    [[nodiscard]] const std::vector<Parameter>& Parameters() const { return mParameters; }

    struct Preset
    {
        std::string uri;
        std::string name;
    };
    /// In the order of their names in LV2, numbers in them by their value.
    [[nodiscard]] const std::vector<Preset>& Presets() const { return mPresets; }

    /// The port that the host sets above 0 while it renders offline; null without one.
    [[nodiscard]] const LilvPort* FreeWheelPort() const;

private:
    struct WorldDeleter
    {
        void operator()(LilvWorld* world) const { lilv_world_free(world); }
    };

    void FindPlugin();
    void ReadParameters();
    [[nodiscard]] Parameter ReadParameter(const LilvPort* port) const;
    void ReadPresets();
    [[nodiscard]] bool HasProperty(const LilvPort* port, const char* uri) const;

    std::filesystem::path mFolder;
    std::unique_ptr<LilvWorld, WorldDeleter> mWorld;
    const LilvPlugin* mPlugin = nullptr;
    std::vector<Parameter> mParameters;
    std::vector<Preset> mPresets;
};

}  // namespace orvane
