// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/AEffEditor.h"
#include "pluginwrappers/core/ZEditorWindow.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/views/ZWindowHost.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <vector>

namespace orvane
{

class AudioEffectX;
class ZWindow;
struct WindowPicture;

/// The plug-in's editor as the host sees it. It draws nothing: between open and close it places the
/// description's window into the host's parent window, and it forwards the host's key events to
/// that window. Views keep their state while it is closed.
///
/// Exceptions are reported and do not reach the caller. [host thread, under the interface lock]
class ZVSTEditor : public AEffEditor, private ZWindowHost
{
public:
    /// Both are not null; the plug-in owns the editor. [setup]
    ZVSTEditor(AudioEffectX* audioEffect, boost::shared_ptr<ZWindow> window);
    ~ZVSTEditor() override;

    /// Gives the window's size in pixels, which does not depend on whether the editor is open.
    bool getRect(ERect** rect) override;
    /// Moves the window into parent, from a previous parent if there is one. Returns false and
    /// changes nothing when there is no display or parent is not a window.
    bool open(void* parent) override;
    /// Removes the window from its parent, which may have been destroyed already.
    void close() override;
    /// While a view has the keyboard focus, gives the key to that view and returns whether it wants
    /// it. Else sends text and the keys that move or delete to the window and returns true, which
    /// gives the focus to a view if the key is Tab; returns false for all other keys and for space,
    /// which starts and stops many hosts.
    bool onKeyDown(VstKeyCode& key) override;
    /// Notifies the views of a new sample rate in Hz. [setup, any thread under the interface lock]
    virtual bool SampleRateChanged(float rate);
    /// Draws the window, whether it is open or not, and fills picture; the editor keeps the pixels
    /// until the next call. scale is above 0. Throws ZException for a window that cannot be drawn.
    void GetPicture(WindowPicture& picture, double scale);

private:
    bool ResizeWindow(const ZPoint& size) override;
    [[nodiscard]] ZNativeKeyEvent KeyEventOf(const VstKeyCode& key) const;

    AudioEffectX& mPlugin;
    ZEditorWindow mEditor;
    std::map<std::uint8_t, std::uint8_t> mKeyMap;  // VstVirtualKey -> ZKeyCode
    ERect mRect{};                                 // the host reads it after getRect
    std::vector<std::uint32_t> mPicture;           // pixels of the last GetPicture
};

}  // namespace orvane
