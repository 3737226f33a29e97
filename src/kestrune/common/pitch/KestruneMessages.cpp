// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/pitch/KestruneMessages.h"

#include "zlib/common/objects/ZMessageRegistry.h"

namespace orvane
{

namespace
{

[[maybe_unused]] const ZMessageRows addedAtLoad{
    {"KESTRUNECUSTOMSCALEDONE", KESTRUNECUSTOMSCALEDONE},
    {"KESTRUNECUSTOMSCALECANCEL", KESTRUNECUSTOMSCALECANCEL},
};

}  // namespace

}  // namespace orvane
