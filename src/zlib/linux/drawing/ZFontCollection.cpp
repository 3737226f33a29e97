// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/drawing/ZFontCollection.h"

#include "zlib/common/drawing/ZDrawingLibrary.h"
#include "zlib/common/objects/ZNeverDestroyed.h"
#include "zlib/common/objects/ZString.h"

#include <dlfcn.h>
#include <fontconfig/fontconfig.h>
#include <pango/pangofc-fontmap.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <optional>

namespace orvane
{

namespace
{

/// Pango registers types with GObject, which is never unloaded, and runs a thread of its own. So
/// Pango must stay loaded when a host unloads this library. Never undone.
bool keepTextLibraryLoaded()
{
    Dl_info info;
    const void* const function = reinterpret_cast<const void*>(&pango_cairo_show_layout);
    return dladdr(function, &info) != 0 &&
           dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE) != nullptr;
}

// Done when this library is loaded: otherwise each unloading would leak what Pango allocates when
// it is loaded.
[[maybe_unused]] const bool kTextLibraryIsKept = keepTextLibraryLoaded();

struct ConfigFreer
{
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using ConfigPointer = std::unique_ptr<FcConfig, ConfigFreer>;

/// Reads the system's font configuration and fonts, and adds the files to them.
ConfigPointer loadConfig(const std::vector<std::string>& files)
{
    ConfigPointer config(FcInitLoadConfigAndFonts());
    if (!config)
        return nullptr;
    for (const std::string& file : files)
        FcConfigAppFontAddFile(config.get(), reinterpret_cast<const FcChar8*>(file.c_str()));
    return config;
}

bool hasFonts(FcConfig* config)
{
    const auto holds = [config](FcSetName name) {
        const FcFontSet* const set = FcConfigGetFonts(config, name);
        return set && set->nfont > 0;
    };
    return holds(FcSetSystem) || holds(FcSetApplication);
}

PangoFontMap* makeFontMap(const std::vector<std::string>& files)
{
    // The first map of a process has a thread of Pango's read the system's fonts for the default
    // configuration, which is waited for below: meanwhile this thread reads them for its own.
    GObjectPointer<PangoFontMap> map(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT));
    const ConfigPointer config = loadConfig(files);
    // Pango's text layout crashes if there is no font at all.
    if (!map || !config || !hasFonts(config.get()))
        return nullptr;
    pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(map.get()), config.get());
    return map.release();
}

/// Font maps out of use are kept in GLib's dataset of this address, under the name of the files
/// that the map was made with. The address belongs to a function that is never unloaded.
gconstpointer keepingPlace()
{
    return reinterpret_cast<gconstpointer>(&pango_cairo_show_layout);
}

GQuark keepingName(const std::vector<std::string>& files)
{
    std::string name = "orvane fonts";
    for (const std::string& file : files)
        name += '\n' + file;
    return g_quark_from_string(name.c_str());
}

/// Takes a kept map out of the dataset, so that no second plug-in library in the process uses it.
PangoFontMap* takeFontMap(const std::vector<std::string>& files)
{
    return static_cast<PangoFontMap*>(
        g_dataset_id_remove_no_notify(keepingPlace(), keepingName(files)));
}

using CharPointer = std::unique_ptr<char, decltype(&g_free)>;

/// Makes a file in memory with these bytes and returns its path; none when it cannot be made. The
/// file stays open.
std::optional<std::string> makeMemoryFile(std::span<const std::byte> bytes)
{
    const int descriptor = memfd_create("orvane font", MFD_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    const auto size = static_cast<ssize_t>(bytes.size());
    if (write(descriptor, bytes.data(), bytes.size()) == size)
        return "/proc/self/fd/" + std::to_string(descriptor);
    close(descriptor);
    return std::nullopt;
}

/// Returns a path under which fontconfig can read the bytes: it takes only files, and reads them at
/// any later time. So the file stays with the process, as the font maps that name it do. The same
/// bytes give the same file.
std::optional<std::string> memoryFileOf(std::span<const std::byte> bytes)
{
    const CharPointer sum(g_compute_checksum_for_data(G_CHECKSUM_SHA256,
                                                      reinterpret_cast<const guchar*>(bytes.data()),
                                                      bytes.size()),
                          &g_free);
    const GQuark name = g_quark_from_string(("orvane font " + std::string(sum.get())).c_str());
    if (const void* const kept = g_dataset_id_get_data(keepingPlace(), name))
        return static_cast<const char*>(kept);
    const auto path = makeMemoryFile(bytes);
    if (path)
        g_dataset_id_set_data(keepingPlace(), name, g_strdup(path->c_str()));
    return path;
}

// Never destroyed: the interface thread may draw until the process ends.
const ZNeverDestroyed<ZFontCollection> fontCollection;

}  // namespace

ZFontCollection& ZFontCollection::Get()
{
    return *fontCollection;
}

void ZFontCollection::Retain()
{
    const std::lock_guard lock(mMutex);
    ++mUsers;
}

void ZFontCollection::Release()
{
    const std::lock_guard lock(mMutex);
    assert(mUsers > 0);
    if (--mUsers > 0)
        return;
    KeepFontMapInProcess();
    // Frees the memory too: the collection is never destroyed, and the library may be unloaded.
    std::vector<std::string>().swap(mFiles);
}

void ZFontCollection::AddFile(const std::string& path)
{
    const std::lock_guard lock(mMutex);
    if (std::find(mFiles.begin(), mFiles.end(), path) != mFiles.end())
        return;
    // The map's own thread may be reading its configuration, so that is never changed; the next
    // text makes a new map.
    KeepFontMapInProcess();
    mFiles.push_back(path);
}

void ZFontCollection::KeepFontMapInProcess()
{
    if (mFontMap)
        g_dataset_id_set_data(keepingPlace(), keepingName(mFiles), mFontMap);
    mFontMap = nullptr;
    mCurrent = false;
}

PangoFontMap* ZFontCollection::GetFontMap()
{
    if (!mCurrent)
        mFontMap = takeFontMap(mFiles);
    if (!mCurrent && !mFontMap)
        mFontMap = makeFontMap(mFiles);
    mCurrent = true;
    return mFontMap;
}

ZDrawingLibrary::ZDrawingLibrary()
{
    ZFontCollection::Get().Retain();
}

ZDrawingLibrary::~ZDrawingLibrary()
{
    ZFontCollection::Get().Release();
}

void AddPrivateFont(const ZString& path)
{
    if (!path.IsEmpty())
        ZFontCollection::Get().AddFile(path.ToNarrow());
}

void AddPrivateFont(std::span<const std::byte> font)
{
    ZFontCollection& fonts = ZFontCollection::Get();
    if (const auto path = memoryFileOf(font))
        fonts.AddFile(*path);
}

}  // namespace orvane
