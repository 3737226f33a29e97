// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/lv2/Lv2Entry.h"

#include "pluginwrappers/core/PluginStart.h"
#include "pluginwrappers/lv2/ZLV2Editor.h"
#include "pluginwrappers/lv2/ZLV2Plugin.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <lv2/instance-access/instance-access.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>

namespace orvane
{

namespace
{

// The plug-in.

ZLV2Plugin& pluginOf(LV2_Handle instance)
{
    return *static_cast<ZLV2Plugin*>(instance);
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double sampleRate,
                       const char* /*bundle*/, const LV2_Feature* const* features)
{
    const auto* const map =
        static_cast<const LV2_URID_Map*>(requireFeature(features, LV2_URID__map));
    if (map == nullptr)
        return nullptr;
    const auto* const options =
        static_cast<const LV2_Options_Option*>(findFeature(features, LV2_OPTIONS__options));
    try {
        const ZInterfaceLock lock;
        return std::make_unique<ZLV2Plugin>(sampleRate, Lv2Urids(*map), options).release();
    } catch (...) {
        reportFailedLoad();
        return nullptr;
    }
}

void activate(LV2_Handle instance)
{
    try {
        pluginOf(instance).Activate();
    } catch (...) {
        reportCurrentException();
    }
}

void cleanup(LV2_Handle instance)
{
    delete &pluginOf(instance);
}

LV2_State_Status save(LV2_Handle instance, LV2_State_Store_Function store, LV2_State_Handle handle,
                      std::uint32_t /*flags*/, const LV2_Feature* const* /*features*/)
{
    try {
        return pluginOf(instance).Save(store, handle);
    } catch (...) {
        reportCurrentException();
        return LV2_STATE_ERR_UNKNOWN;
    }
}

LV2_State_Status restore(LV2_Handle instance, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle handle, std::uint32_t /*flags*/,
                         const LV2_Feature* const* /*features*/)
{
    try {
        return pluginOf(instance).Restore(retrieve, handle);
    } catch (...) {
        reportCurrentException();
        return LV2_STATE_ERR_UNKNOWN;
    }
}

const void* extensionData(const char* uri)
{
    static const LV2_State_Interface state{save, restore};
    static const LV2_Options_Interface options{
        [](LV2_Handle instance, LV2_Options_Option* asked) {
            return pluginOf(instance).GetOptions(asked);
        },
        [](LV2_Handle instance, const LV2_Options_Option* given) -> std::uint32_t {
            try {
                return pluginOf(instance).SetOptions(given);
            } catch (...) {
                reportCurrentException();
                return LV2_OPTIONS_ERR_UNKNOWN;
            }
        }};
    if (std::strcmp(uri, LV2_STATE__interface) == 0)
        return &state;
    return std::strcmp(uri, LV2_OPTIONS__interface) == 0 ? &options : nullptr;
}

// The window.

ZLV2Editor& editorOf(LV2UI_Handle editor)
{
    return *static_cast<ZLV2Editor*>(editor);
}

LV2UI_Handle openEditor(const LV2UI_Descriptor* /*descriptor*/, const char* uri,
                        const char* /*bundle*/, LV2UI_Write_Function write,
                        LV2UI_Controller controller, LV2UI_Widget* widget,
                        const LV2_Feature* const* features)
{
    *widget = nullptr;
    void* const instance = requireFeature(features, LV2_INSTANCE_ACCESS_URI);
    void* const parent = requireFeature(features, LV2_UI__parent);
    if (instance == nullptr || parent == nullptr || std::strcmp(uri, kLv2Uri) != 0)
        return nullptr;
    const auto* const map = static_cast<const LV2_URID_Map*>(findFeature(features, LV2_URID__map));
    try {
        const auto urids = map != nullptr ? std::optional(Lv2Urids(*map)) : std::nullopt;
        const ZLV2Editor::Host host{
            write,
            controller,
            static_cast<const LV2UI_Resize*>(findFeature(features, LV2_UI__resize)),
            static_cast<const LV2UI_Touch*>(findFeature(features, LV2_UI__touch)),
            urids ? &*urids : nullptr,
            static_cast<const LV2_Options_Option*>(findFeature(features, LV2_OPTIONS__options))};
        auto editor = std::make_unique<ZLV2Editor>(pluginOf(instance), host);
        const std::uintptr_t window = editor->Open(reinterpret_cast<std::uintptr_t>(parent));
        if (window == 0)
            return nullptr;
        *widget = reinterpret_cast<LV2UI_Widget>(window);
        return editor.release();
    } catch (...) {
        reportCurrentException();
        return nullptr;
    }
}

void closeEditor(LV2UI_Handle editor)
{
    delete &editorOf(editor);
}

int idleEditor(LV2UI_Handle editor)
{
    try {
        return editorOf(editor).Idle() ? 0 : 1;
    } catch (...) {
        reportCurrentException();
        return 1;
    }
}

std::uint32_t setEditorOptions(LV2UI_Handle editor, const LV2_Options_Option* options)
{
    try {
        return editorOf(editor).SetOptions(options);
    } catch (...) {
        reportCurrentException();
        return LV2_OPTIONS_ERR_UNKNOWN;
    }
}

const void* editorExtensionData(const char* uri)
{
    static const LV2UI_Idle_Interface idle{idleEditor};
    static const LV2_Options_Interface options{
        [](LV2UI_Handle, LV2_Options_Option*) -> std::uint32_t { return LV2_OPTIONS_ERR_BAD_KEY; },
        setEditorOptions};
    if (std::strcmp(uri, LV2_UI__idleInterface) == 0)
        return &idle;
    return std::strcmp(uri, LV2_OPTIONS__interface) == 0 ? &options : nullptr;
}

}  // namespace

const LV2_Descriptor& lv2Descriptor()
{
    static const LV2_Descriptor descriptor{
        kLv2Uri,
        instantiate,
        [](LV2_Handle instance, std::uint32_t port, void* data) {
            pluginOf(instance).Connect(port, data);
        },
        activate,
        [](LV2_Handle instance, std::uint32_t frames) { pluginOf(instance).Run(frames); },
        nullptr,
        cleanup,
        extensionData};
    return descriptor;
}

const LV2UI_Descriptor& lv2UiDescriptor()
{
    // Views follow the elements themselves, so the host's news of ports are not needed.
    static const LV2UI_Descriptor descriptor{kLv2UiUri, openEditor, closeEditor, nullptr,
                                             editorExtensionData};
    return descriptor;
}

}  // namespace orvane
