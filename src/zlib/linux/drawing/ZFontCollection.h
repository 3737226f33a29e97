// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pango/pangocairo.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orvane
{

struct GObjectFreer
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

template <typename T>
using GObjectPointer = std::unique_ptr<T, GObjectFreer>;

/// The fonts of the library's applications: a font map of our own over a fontconfig configuration
/// of our own, with the installed fonts and the private ones. The host, which may draw texts too,
/// sees neither. Counted by ZDrawingLibrary.
///
/// A font map is never freed: it looks fonts up in a thread that it does not wait for, and that
/// thread goes on with a map that is gone. Instead the last ZDrawingLibrary leaves it to the
/// process, where the next one finds it, also when the library was unloaded in between.
///
/// Font maps have no lock, and applications draw on more than one thread over time, so whoever uses
/// the map holds Lock() all the while. [any thread but the audio thread]
class ZFontCollection
{
public:
    [[nodiscard]] static ZFontCollection& Get();

    void Retain();
    void Release();
    void AddFile(const std::string& path);

    [[nodiscard]] std::unique_lock<std::mutex> Lock() { return std::unique_lock(mMutex); }
    /// Null when there is no font at all; made when it is first asked for and after a file came.
    /// Under Lock().
    [[nodiscard]] PangoFontMap* GetFontMap();

private:
    void LeaveFontMap();

    std::mutex mMutex;
    int mUsers = 0;
    std::vector<std::string> mFiles;
    bool mCurrent = false;  // mFontMap is what mFiles give
    PangoFontMap* mFontMap = nullptr;
};

}  // namespace orvane
