// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orvane
{

class PluginInstance;

/// A picture of a window: width x height pixels, row by row from the top, as premultiplied
/// 0xAARRGGBB.
struct WindowPixels
{
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> values;
};

/// Writes a PNG. Errors name the file by name. Throws ZException when the file cannot be written.
void writePicture(WindowPixels pixels, const std::filesystem::path& path, const std::string& name);

/// A picture of a plug-in's window at one frame of a render.
class WindowShot
{
public:
    /// The picture is taken once frame frames of the input have been processed, at a scale above 0.
    WindowShot(const PluginInstance& plugin, std::int64_t frame, float scale)
        : mPlugin(plugin)
        , mFrame(frame)
        , mScale(scale)
    {
    }

    /// Takes the picture if frames, the number processed so far, has reached its frame. Throws as
    /// PluginInstance::Window does.
    void TakeIfDue(std::int64_t frames)
    {
        if (frames >= mFrame)
            Take();
    }
    /// Takes the picture unless it was taken before. Throws as PluginInstance::Window does.
    void Take();
    /// Writes the picture as writePicture does. Call after Take.
    void Write(const std::filesystem::path& path, const std::string& name) const;

private:
    const PluginInstance& mPlugin;
    std::int64_t mFrame;
    float mScale;
    WindowPixels mPixels;
};

}  // namespace orvane
