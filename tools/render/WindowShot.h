// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orvane
{

class PluginInstance;

/// What a window shows: width x height pixels, row by row from the top, as 0xAARRGGBB with colours
/// multiplied by alpha.
struct WindowPixels
{
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> values;
};

/// Writes a PNG, each pixel as a square of scale by scale. name is what an error calls the file.
/// Throws ZException -1 where the file cannot be written.
void writePicture(const WindowPixels& pixels, const std::filesystem::path& path,
                  const std::string& name, int scale);

/// One picture of a plug-in's window, taken on the way.
class WindowShot
{
public:
    /// frame: of the input, after which the picture is taken.
    WindowShot(const PluginInstance& plugin, std::int64_t frame)
        : mPlugin(plugin)
        , mFrame(frame)
    {
    }

    /// So many frames have gone in. Throws ZException where the plug-in shows nothing.
    void Pass(std::int64_t frames)
    {
        if (frames >= mFrame)
            Take();
    }
    /// Takes the picture, if there is none yet. Throws as Pass.
    void Take();
    /// As writePicture. Needs Take.
    void Write(const std::filesystem::path& path, const std::string& name, int scale) const;

private:
    const PluginInstance& mPlugin;
    std::int64_t mFrame;
    WindowPixels mPixels;
};

}  // namespace orvane
