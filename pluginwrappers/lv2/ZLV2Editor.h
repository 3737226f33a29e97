// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/lv2/ZLV2Plugin.h"

#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>

#include <cstdint>
#include <vector>

namespace orvane
{

/// The window of an instance as its host sees it: it places the window into the host's and hands
/// the user's edits to the host when the host gives it time. The instance is reached directly, by
/// the feature instance-access. [host thread]
class ZLV2Editor
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
        float scaleFactor;  // by which the host wants windows magnified; kept, not yet followed
    };

    /// plugin outlives the editor.
    ZLV2Editor(ZLV2Plugin& plugin, const Host& host);
    ZLV2Editor(const ZLV2Editor&) = delete;
    ZLV2Editor& operator=(const ZLV2Editor&) = delete;
    /// Tells the host of the last edits, so that no gesture stays open.
    ~ZLV2Editor();

    /// Places the window into the host's and tells the host its size; returns the window of the
    /// system, 0 when there is none to place or no display.
    [[nodiscard]] std::uintptr_t Open(std::uintptr_t parent);
    /// Tells the host of the user's edits. Returns false when another editor has the window.
    bool Idle();
    [[nodiscard]] float GetScaleFactor() const { return mHost.scaleFactor; }

private:
    void Tell(const std::vector<ZLV2Plugin::Edit>& edits) const;

    ZLV2Plugin& mPlugin;
    const Host mHost;
};

}  // namespace orvane
