#include "zlib/linux/ZFontCollection.h"

#include "zlib/common/ZDrawingLibrary.h"
#include "zlib/common/ZString.h"
#include "zlib/common/ZUndying.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangofc-fontmap.h>

#include <algorithm>

namespace orvane
{

namespace
{

struct ConfigFreer
{
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using ConfigPointer = std::unique_ptr<FcConfig, ConfigFreer>;

/// The system's configuration and fonts, read anew, and the files.
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
    const ConfigPointer config = loadConfig(files);
    // Text layout takes it for granted that some font stands in for all others.
    if (!config || !hasFonts(config.get()))
        return nullptr;
    PangoFontMap* const map = pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT);
    if (map)
        pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(map), config.get());
    return map;
}

/// The process keeps maps that nobody uses under the place of a function that is never unloaded and
/// the files the map was made with.
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

/// Taken, so that no second library in the process has it too.
PangoFontMap* takeFontMap(const std::vector<std::string>& files)
{
    return static_cast<PangoFontMap*>(
        g_dataset_id_remove_no_notify(keepingPlace(), keepingName(files)));
}

// Never destroyed: the interface thread may draw until the very end of the process.
const ZUndying<ZFontCollection> fontCollection;

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
    if (--mUsers > 0)
        return;
    LeaveFontMap();
    mFiles = {};
}

void ZFontCollection::AddFile(const std::string& path)
{
    const std::lock_guard lock(mMutex);
    if (std::find(mFiles.begin(), mFiles.end(), path) != mFiles.end())
        return;
    // A lookup may be under way in the map's own thread, so the configuration it reads is never
    // changed: the next text gets another map.
    LeaveFontMap();
    mFiles.push_back(path);
}

void ZFontCollection::LeaveFontMap()
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

}  // namespace orvane
