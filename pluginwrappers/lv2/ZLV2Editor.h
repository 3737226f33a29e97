// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/lv2/Lv2Features.h"
#include "pluginwrappers/lv2/ZLV2Plugin.h"
#include "zlib/common/views/ZWindowHost.h"

#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>

#include <cstdint>
#include <optional>
#include <thread>
#include <vector>

namespace orvane
{

/// The window of an instance as its host sees it: it places the window into the host's and hands
/// the user's edits to the host when the host gives it time. The instance is reached directly, by
/// the feature instance-access. [host thread]
class ZLV2Editor : private ZWindowHost
{
public:
    /// What the host gives a window; the pointers outlive the editor, those to features may be
    /// null.
    struct Host
    {
        LV2UI_Write_Function write;
        LV2UI_Controller controller;
        const LV2UI_Resize* resize;
        const LV2UI_Touch* touch;
        const Lv2Urids* urids;              // null when the host gives no numbers; not kept
        const LV2_Options_Option* options;  // may be null; not kept
    };

    /// plugin outlives the editor.
    ZLV2Editor(ZLV2Plugin& plugin, const Host& host);
    ZLV2Editor(const ZLV2Editor&) = delete;
    ZLV2Editor& operator=(const ZLV2Editor&) = delete;
    /// Tells the host of the last edits, so that no gesture stays open.
    ~ZLV2Editor() override;

    /// Places the window into the host's and tells the host its size; returns the window of the
    /// system, 0 when there is none to place or no display.
    [[nodiscard]] std::uintptr_t Open(std::uintptr_t parent);
    /// Tells the host of the user's edits and asks it for another size when the window wants one.
    /// Returns false when another editor has the window.
    bool Idle();
    /// Takes the host's options: by what factor it wants windows magnified. Returns
    /// LV2_Options_Status.
    std::uint32_t SetOptions(const LV2_Options_Option* options);

private:
    void Tell(const std::vector<ZLV2Plugin::Edit>& edits) const;
    [[nodiscard]] bool AskForSize(const ZPoint& size) const;
    /// Answers false on another thread than the host's, since only that one may ask: Idle makes up
    /// for it.
    bool ResizeWindow(const ZPoint& size) override;

    ZLV2Plugin& mPlugin;
    const Host mHost;
    const std::optional<Lv2Urids> mUrids;
    const std::thread::id mHostThread = std::this_thread::get_id();
    std::optional<double> mScale;  // pixels to a unit, as the host wishes
    bool mWantsSize = false;       // guarded by the interface lock
};

}  // namespace orvane
