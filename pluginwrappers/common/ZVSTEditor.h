// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/AEffEditor.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <vector>

namespace orvane
{

class ZMessage;
class ZWindow;
struct WindowPicture;

/// What the host sees as the plug-in's editor. It draws nothing: it lends the description's window
/// to the host's parent window between open and close, and hands on the keys that the host sends.
/// Views and their state stay while it is closed. Nothing else depends on whether it is open.
///
/// A failure is reported and goes no further. [host thread, under the interface lock]
class ZVSTEditor : public AEffEditor
{
public:
    /// window: not null; held as long as the editor lives. [setup]
    ZVSTEditor(AudioEffect* audioEffect, boost::shared_ptr<ZWindow> window);
    ~ZVSTEditor() override;

    /// Lends the window's size, the same before, during and after open.
    bool getRect(ERect** rect) override;
    /// Puts the window into the parent, out of the one where it was. False, with all as it was,
    /// when there is no display or the parent is no window.
    bool open(void* parent) override;
    /// Takes the window out of the parent, which may be gone already.
    void close() override;
    /// Keys that move or delete, and text, go to the view that has the keyboard; all other keys,
    /// and the space that starts hosts, stay with the host.
    bool onKeyDown(VstKeyCode& key) override;
    /// Tells the views. rate in Hz. [setup, any thread under the interface lock]
    virtual bool SampleRateChanged(float rate);
    /// Draws the window as it stands and lends what it shows, open or not. Throws ZException for a
    /// window that cannot be drawn.
    void GetPicture(WindowPicture& picture);

private:
    void Send(const boost::shared_ptr<const ZMessage>& message);

    boost::shared_ptr<ZWindow> mWindow;
    std::map<std::uint8_t, std::uint8_t> mKeyMap;  // from the interface's keys to the window's
    ERect mRect{};                                 // lent to the host, as are the next
    std::vector<std::uint32_t> mPicture;           // empty until somebody asks
};

}  // namespace orvane
