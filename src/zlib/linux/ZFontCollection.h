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

/// The fonts of the process's applications: a font map of our own over a fontconfig configuration
/// of our own, with the installed fonts and the private ones. The host, which may draw texts too,
/// sees neither. One for the library; counted by ZDrawingLibrary and freed with the last.
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
    std::mutex mMutex;
    int mUsers = 0;
    std::vector<std::string> mFiles;
    bool mCurrent = false;  // mFontMap is what the fonts of now give
    GObjectPointer<PangoFontMap> mFontMap;
};

}  // namespace orvane
