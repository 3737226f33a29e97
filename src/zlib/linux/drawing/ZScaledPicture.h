// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"
#include "zlib/linux/drawing/ZCairo.h"

namespace orvane
{

class ZImage;

/// A picture that is drawn where the image or its target has a device scale. [interface thread]
struct ZScaledPicture
{
    ZRect source;  // in units of the image
    ZRect target;  // in units of the transform
    double scale;  // the target's device scale

    /// Makes the picture the context's source and clips to where it goes, on whole pixels while the
    /// transform only translates; returns false where nothing is to be drawn. The caller saves and
    /// restores the context, which may be left with another transform.
    bool SetSource(cairo_t* context, const ZImage& image) const;
};

}  // namespace orvane
