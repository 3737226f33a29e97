// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace orvane
{

class ZApp;
class ZApplication;
class ZView;
class ZXMLElement;

/// What a window can show below the size of its description. The tag `fold` of a `windowtype` gives
/// the height, the name of the user setting that keeps whether it is open, and its `subviews`,
/// which exist only while it is open. A window without the tag has an empty fold.
/// [interface thread, or any other but the audio thread under the interface lock]
class ZWindowFold
{
public:
    /// Reads the `fold` of a `windowtype`.
    explicit ZWindowFold(const ZXMLElement& windowType);

    /// Returns whether the description has one.
    [[nodiscard]] bool Exists() const { return mXml != nullptr; }
    /// Returns whether the user's settings want it open. app may be null: then it stays closed.
    [[nodiscard]] bool IsWanted(const ZApp* app) const;
    /// Keeps that in the user's settings; returns false when it cannot be stored.
    [[nodiscard]] bool SetWanted(ZApp& app, bool isWanted) const;

    /// Returns by how much the window is higher while it is open, in units.
    [[nodiscard]] std::int32_t GetHeight() const { return mHeight; }
    [[nodiscard]] bool IsOpen() const { return mIsOpen; }
    /// Builds the views into the window's root view, or takes them out and destroys them.
    void Open(ZView& root, ZApplication* application);
    void Close(ZView& root);

private:
    boost::shared_ptr<ZXMLElement> mXml;  // null where there is no fold
    std::string mSetting;
    std::int32_t mHeight = 0;
    bool mIsOpen = false;
    std::vector<boost::shared_ptr<ZView>> mViews;  // while it is open
};

}  // namespace orvane
