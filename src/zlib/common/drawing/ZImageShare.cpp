// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZNeverDestroyed.h"

#include <cassert>
#include <map>
#include <mutex>

namespace orvane
{

namespace
{

/// The decoded images in use, by the address of their PNG. All views of all instances share them.
/// The deleter of an image removes its entry.
struct Shares
{
    std::mutex mutex;  // guards all below
    std::map<const std::byte*, std::weak_ptr<const ZImage>> images;

    std::shared_ptr<const ZImage> Find(const std::byte* place)
    {
        const std::lock_guard lock(mutex);
        const auto found = images.find(place);
        return found == images.end() ? nullptr : found->second.lock();
    }
    void Add(const std::byte* place, const std::shared_ptr<const ZImage>& image)
    {
        assert(place && image);
        const std::lock_guard lock(mutex);
        images.insert_or_assign(place, image);
    }
    void DropExpired(const std::byte* place)
    {
        const std::lock_guard lock(mutex);
        const auto found = images.find(place);
        if (found != images.end() && found->second.expired())
            images.erase(found);
    }
};

// Never destroyed: the interface thread may release images until the process ends.
const ZNeverDestroyed<Shares> shares;

}  // namespace

std::shared_ptr<const ZImage> ZImage::Share(std::span<const std::byte> png, double scale)
{
    const std::byte* const place = png.data();
    if (auto image = (*shares).Find(place))
        return image;
    auto decoded = Decode(png, scale);
    if (!decoded)
        return nullptr;
    decoded->KeepCopies();
    std::shared_ptr<const ZImage> image(decoded.release(), [place](const ZImage* last) {
        delete last;
        (*shares).DropExpired(place);
    });
    (*shares).Add(place, image);
    return image;
}

}  // namespace orvane
