#include "kestrune/common/KestruneMessages.h"

#include "zlib/common/ZMessageRegistry.h"

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
