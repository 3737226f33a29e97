// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/Lv2PluginBundle.h"

#include "tools/render/Failure.h"

#include <lv2/core/lv2.h>
#include <lv2/presets/presets.h>
#include <lv2/units/units.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <system_error>

namespace orvane
{

namespace
{

namespace fs = std::filesystem;

LilvWorld* worldWith(const fs::path& folder)
{
    std::error_code error;
    if (!fs::exists(folder / "manifest.ttl", error))
        fail("{} is no LV2 bundle: it has no manifest.ttl; a VST plug-in is a single file",
             folder.string());
    LilvWorld* const world = lilv_world_new();
    // LV2 knows a folder by the slash at its end.
    const std::string path = (fs::absolute(folder) / "").lexically_normal().string();
    const LilvNodePtr uri(lilv_new_file_uri(world, nullptr, path.c_str()));
    lilv_world_load_bundle(world, uri.get());
    return world;
}

std::string textOf(const LilvNode* node)
{
    return node != nullptr ? lilv_node_as_string(node) : "";
}

/// Returns a unit's short name, which is the end of its long one.
std::string unitOf(const LilvNode* unit)
{
    const std::string uri = textOf(unit);
    const std::size_t end = uri.rfind('#');
    return end != std::string::npos ? " " + uri.substr(end + 1) : "";
}

std::vector<Lv2PluginBundle::Parameter::Choice> choicesOf(const LilvPlugin* plugin,
                                                          const LilvPort* port)
{
    std::vector<Lv2PluginBundle::Parameter::Choice> choices;
    LilvScalePoints* const points = lilv_port_get_scale_points(plugin, port);
    LILV_FOREACH(scale_points, i, points)
    {
        const LilvScalePoint* const point = lilv_scale_points_get(points, i);
        choices.push_back({lilv_node_as_float(lilv_scale_point_get_value(point)),
                           textOf(lilv_scale_point_get_label(point))});
    }
    lilv_scale_points_free(points);
    return choices;
}

}  // namespace

Lv2PluginBundle::Lv2PluginBundle(const fs::path& folder)
    : mFolder(folder)
    , mWorld(worldWith(folder))
{
    FindPlugin();
    ReadParameters();
    ReadPresets();
}

LilvNodePtr Lv2PluginBundle::Uri(const char* uri) const
{
    return LilvNodePtr(lilv_new_uri(World(), uri));
}

void Lv2PluginBundle::FindPlugin()
{
    const LilvPlugins* const plugins = lilv_world_get_all_plugins(World());
    if (const unsigned count = lilv_plugins_size(plugins); count != 1)
        fail("the LV2 bundle {} holds {} plug-ins: one is needed", mFolder.string(), count);
    mPlugin = lilv_plugins_get(plugins, lilv_plugins_begin(plugins));
    if (!lilv_plugin_verify(mPlugin))
        fail("the LV2 bundle {} does not tell enough of its plug-in", mFolder.string());
}

const LilvPort* Lv2PluginBundle::FreeWheelPort() const
{
    return lilv_plugin_get_port_by_designation(mPlugin, Uri(LV2_CORE__InputPort).get(),
                                               Uri(LV2_CORE__freeWheeling).get());
}

bool Lv2PluginBundle::HasProperty(const LilvPort* port, const char* uri) const
{
    return lilv_port_has_property(mPlugin, port, Uri(uri).get());
}

void Lv2PluginBundle::ReadParameters()
{
    const LilvNodePtr control = Uri(LV2_CORE__ControlPort);
    const LilvNodePtr input = Uri(LV2_CORE__InputPort);
    const LilvPort* const freeWheel = FreeWheelPort();
    for (std::uint32_t i = 0; i < lilv_plugin_get_num_ports(mPlugin); ++i) {
        const LilvPort* const port = lilv_plugin_get_port_by_index(mPlugin, i);
        if (lilv_port_is_a(mPlugin, port, control.get()) &&
            lilv_port_is_a(mPlugin, port, input.get()) && port != freeWheel)
            mParameters.push_back(ReadParameter(port));
    }
}

Lv2PluginBundle::Parameter Lv2PluginBundle::ReadParameter(const LilvPort* port) const
{
    LilvNode* low = nullptr;
    LilvNode* high = nullptr;
    lilv_port_get_range(mPlugin, port, nullptr, &low, &high);
    const LilvNodePtr keptLow(low);
    const LilvNodePtr keptHigh(high);
    const LilvNodePtr name(lilv_port_get_name(mPlugin, port));
    const LilvNodePtr unit(lilv_port_get(mPlugin, port, Uri(LV2_UNITS__unit).get()));
    Parameter parameter{lilv_port_get_index(mPlugin, port),
                        textOf(lilv_port_get_symbol(mPlugin, port)),
                        textOf(name.get()),
                        unitOf(unit.get()),
                        low != nullptr ? lilv_node_as_float(low) : 0.0f,
                        high != nullptr ? lilv_node_as_float(high) : 1.0f,
                        HasProperty(port, LV2_CORE__integer),
                        HasProperty(port, LV2_CORE__toggled),
                        choicesOf(mPlugin, port)};
    if (!(parameter.low < parameter.high))
        fail("the port {} of the plug-in in {} has no range", parameter.symbol, mFolder.string());
    return parameter;
}

void Lv2PluginBundle::ReadPresets()
{
    LilvNodes* const found = lilv_plugin_get_related(mPlugin, Uri(LV2_PRESETS__Preset).get());
    const LilvNodePtr label = Uri(LILV_NS_RDFS "label");
    LILV_FOREACH(nodes, i, found)
    {
        const LilvNode* const preset = lilv_nodes_get(found, i);
        lilv_world_load_resource(World(), preset);
        const LilvNodePtr name(lilv_world_get(World(), preset, label.get(), nullptr));
        mPresets.push_back({textOf(preset), textOf(name.get())});
    }
    lilv_nodes_free(found);
    std::ranges::sort(mPresets, [](const Preset& a, const Preset& b) {
        return ::strverscmp(a.uri.c_str(), b.uri.c_str()) < 0;
    });
}

}  // namespace orvane
