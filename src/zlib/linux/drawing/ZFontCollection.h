// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pango/pangocairo.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orvane
{

/// Releases a reference to an object of GLib.
struct GObjectFreer
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

template <typename T>
using GObjectPointer = std::unique_ptr<T, GObjectFreer>;

/// The fonts that the library draws with: a Pango font map of its own over a fontconfig
/// configuration of its own, with the installed fonts and the private ones. A host that uses Pango
/// sees neither. ZDrawingLibrary counts the users.
///
/// A font map is never freed, because it looks fonts up in a thread that nobody can wait for and
/// that would go on with a freed map. Instead the last ZDrawingLibrary leaves the map to the
/// process, where the next one finds it, even if the library was unloaded meanwhile.
///
/// Font maps have no lock of their own, and texts are drawn on more than one thread over time, so
/// callers hold Lock() as long as they use the map. [any thread but the audio thread]
class ZFontCollection
{
public:
    [[nodiscard]] static ZFontCollection& Get();

    void Retain();
    void Release();
    void AddFile(const std::string& path);

    [[nodiscard]] std::unique_lock<std::mutex> Lock() { return std::unique_lock(mMutex); }
    /// Returns the font map, made at the first call and at the first one after AddFile; null when
    /// the system has no font at all. Call it under Lock().
    [[nodiscard]] PangoFontMap* GetFontMap();

private:
    void KeepFontMapInProcess();

    std::mutex mMutex;  // guards the fields below and the font map itself
    int mUsers = 0;
    std::vector<std::string> mFiles;
    bool mCurrent = false;  // mFontMap was made from mFiles as they are
    PangoFontMap* mFontMap = nullptr;
};

}  // namespace orvane
