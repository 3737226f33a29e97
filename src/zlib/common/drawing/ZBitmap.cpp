// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZBitmap.h"

#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZFile.h"
#include "zlib/common/objects/ZResources.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

// Files are read whole into memory; a larger file is not read at all.
constexpr std::int64_t kMaxFileBytes = std::int64_t{1} << 28;

std::unique_ptr<ZImage> readImage(ZFile& file)
{
    if (!file.Exists() || !file.Open(ZFile::kModeRead, false))
        return nullptr;
    const std::int64_t size = file.GetSize();
    if (size <= 0 || size > kMaxFileBytes)
        return nullptr;
    std::vector<std::byte> bytes(static_cast<std::size_t>(size));
    const std::int32_t read = file.Read(bytes.data(), static_cast<std::int32_t>(size));
    return ZImage::Decode(std::span(bytes).first(static_cast<std::size_t>(std::max(read, 0))));
}

/// Null if the file cannot be read or is no picture.
std::unique_ptr<ZImage> imageOfFile(const boost::shared_ptr<ZFile>& file)
{
    if (!file)
        return nullptr;
    std::unique_ptr<ZImage> image;
    try {
        image = readImage(*file);
    } catch (const ZException&) {
        image = nullptr;
    }
    file->Close();
    return image;
}

constexpr std::uint32_t toArgb(const ZColor& color)
{
    return std::uint32_t{color.alpha} << 24 | std::uint32_t{color.red} << 16 |
           std::uint32_t{color.green} << 8 | std::uint32_t{color.blue};
}

/// A run of values: count of them from first, step apart.
struct Line
{
    std::span<float> values;
    std::size_t first;
    std::size_t step;
    std::size_t count;
};

/// Replaces each value by the mean of itself and radius neighbours on either side; neighbours
/// beyond the ends count as 0.
void averageLine(const Line& line, std::size_t radius, std::vector<float>& scratch)
{
    assert(line.count > 0 && line.step > 0);
    assert(line.first + (line.count - 1) * line.step < line.values.size());
    const auto at = [&](std::size_t i) -> float& {
        return line.values[line.first + i * line.step];
    };
    scratch.resize(line.count);
    double sum = 0.0;
    for (std::size_t i = 0; i < std::min(radius, line.count); ++i)
        sum += at(i);
    const double side = 2.0 * static_cast<double>(radius) + 1.0;
    for (std::size_t i = 0; i < line.count; ++i) {
        if (radius < line.count - i)
            sum += at(i + radius);
        scratch[i] = static_cast<float>(sum / side);
        if (i >= radius)
            sum -= at(i - radius);
    }
    for (std::size_t i = 0; i < line.count; ++i)
        at(i) = scratch[i];
}

/// The mean over a square, taken along rows and then along columns.
void averageSquare(std::span<float> values, std::size_t width, std::size_t radius)
{
    assert(width > 0 && values.size() % width == 0);
    const std::size_t height = values.size() / width;
    std::vector<float> scratch;
    for (std::size_t y = 0; y < height; ++y)
        averageLine({values, y * width, 1, width}, radius, scratch);
    for (std::size_t x = 0; x < width; ++x)
        averageLine({values, x, width, height}, radius, scratch);
}

}  // namespace

ZBitmap::ZBitmap(std::int32_t width, std::int32_t height, const ZDrawingContext* context,
                 bool hasAlpha)
    : ZBitmap(width, height, context ? context->GetDeviceScale() : 1.0)
{
    mHasAlpha = hasAlpha;
}

ZBitmap::ZBitmap(std::int32_t width, std::int32_t height, double deviceScale)
    : mScale(deviceScale)
{
    Adopt(ZImage::Create(width, height, deviceScale), width, height);
    if (!mImage)
        throw ZException("Failed to create new Bitmap object");
}

ZBitmap::ZBitmap(const ZString& resourceName, ZApplication* application)
    : mResourceName(resourceName)
{
    Load(application);
}

ZBitmap::ZBitmap(const ZXMLElement& xml, ZApplication* application)
{
    const char* const id = xml.GetAttribute("id");
    mResourceName = ZString(id ? id : xml.GetAttribute("resource"));
    Load(application);
}

ZBitmap::~ZBitmap() = default;

void ZBitmap::Load(ZApplication* application)
{
    if (IsLoaded() || mResourceName.IsEmpty())
        return;
    if (application)
        mResources = &application->GetResources();
    const auto bytes =
        mResources ? mResources->Find("IMAGE", mResourceName.ToNarrow()) : std::nullopt;
    if (!bytes) {
        auto image =
            application ? imageOfFile(application->GetResourceFile(mResourceName)) : nullptr;
        const std::int32_t width = image ? image->GetWidth() : 0;
        const std::int32_t height = image ? image->GetHeight() : 0;
        Adopt(std::move(image), width, height);
        return;
    }
    const auto size = ZImage::ReadSize(*bytes).value_or(ZImage::Size{0, 0});
    mPng = *bytes;
    mWidth = size.width;
    mHeight = size.height;
    FindDouble();
}

void ZBitmap::FindDouble()
{
    assert(mResources);
    std::string name = mResourceName.ToNarrow();
    name.insert(std::min(name.rfind('.'), name.size()), "@2x");
    const auto bytes = mResources->Find("IMAGE", name);
    if (!bytes)
        return;
    const auto size = ZImage::ReadSize(*bytes);
    if (size && size->width == 2 * mWidth && size->height == 2 * mHeight)
        mDoublePng = *bytes;
}

void ZBitmap::Adopt(std::unique_ptr<ZImage> image, std::int32_t width, std::int32_t height)
{
    if (!image)
        return;
    assert(!mImageGraphics);  // it would go on drawing into the image before
    assert(image->GetScale() == mScale);
    mImage = std::move(image);
    mWidth = width;
    mHeight = height;
}

bool ZBitmap::Suits(const ZDrawingContext& context) const
{
    return !mResourceName.IsEmpty() || mScale == context.GetDeviceScale();
}

const ZImage* ZBitmap::GetNative() const
{
    if (mImage)
        return mImage.get();
    if (!mShared && IsLoaded())
        mShared = ZImage::Share(mPng);
    return mShared.get();
}

const ZImage* ZBitmap::GetNativeFor(double deviceScale) const
{
    if (deviceScale <= 1.0 || mImage || mDoublePng.empty())
        return GetNative();
    if (!mDouble)
        mDouble = ZImage::Share(mDoublePng, 2.0);
    return mDouble ? mDouble.get() : GetNative();
}

ZImage* ZBitmap::MakeOwn() const
{
    if (!mImage && GetNative()) {
        assert(mShared);
        mImage = mShared->Copy();
        mShared.reset();
    }
    return mImage.get();
}

ZGraphics* ZBitmap::GetGraphics() const
{
    if (!mImageGraphics && MakeOwn()) {
        mImageGraphics = std::make_unique<ZGraphics>(*mImage);
        mImageGraphics->SetAntiAlias(IsAntiAlias());
    }
    return mImageGraphics.get();
}

std::span<std::uint32_t> ZBitmap::LockPixels()
{
    const ZImage* const image = GetNative();
    if (image && !mLocked) {
        mLockData = image->ReadPixels();
        mLocked = true;
    }
    return mLockData;
}

void ZBitmap::UnlockPixels()
{
    if (!mLocked)
        return;
    if (ZImage* const image = MakeOwn())
        image->WritePixels(mLockData);
    mLockData = {};
    mLocked = false;
}

void ZBitmap::Clear(const ZColor& color)
{
    std::fill(mLockData.begin(), mLockData.end(), toArgb(color));
}

boost::shared_ptr<ZBitmap> ZBitmap::MakeShadow(std::int32_t radius, const ZColor& color) const
{
    assert(radius >= 0);
    const ZImage* const image = GetNative();
    if (!image)
        return nullptr;
    std::vector<std::uint32_t> pixels = image->ReadPixels();
    std::vector<float> alpha(pixels.size());
    std::transform(pixels.begin(), pixels.end(), alpha.begin(),
                   [](std::uint32_t pixel) { return static_cast<float>(pixel >> 24); });
    averageSquare(alpha, static_cast<std::size_t>(image->GetWidth()),
                  static_cast<std::size_t>(std::lround(radius * mScale)));
    std::transform(alpha.begin(), alpha.end(), pixels.begin(), [&](float value) {
        const float shade = value * static_cast<float>(color.alpha) / 255.0f + 0.5f;
        return (toArgb(color) & 0x00FFFFFFu) | static_cast<std::uint32_t>(shade) << 24;
    });
    auto shadow = boost::make_shared<ZBitmap>(mWidth, mHeight, mScale);
    shadow->mImage->WritePixels(pixels);
    return shadow;
}

boost::shared_ptr<ZXMLElement> ZBitmap::ExtractHeader(std::string_view type) const
{
    auto xml = boost::make_shared<ZXMLElement>("bitmap");
    xml->AddAttribute("type", type);
    xml->AddAttribute("id", std::string_view(mResourceName.ToNarrow()));
    return xml;
}

}  // namespace orvane
