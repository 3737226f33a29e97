// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/identity/KestruneIdentity.h"

namespace orvane
{

const char* productName()
{
    return "Cantorel Mini";
}

std::array<std::int32_t, 3> productVersion()
{
    return {1, 0, 0};
}

const char* applicationIdentifier()
{
    return "com.orvane.cantorel-mini-vst";
}

const char* descriptionResourceName()
{
    return "kestrune_vst.xml";
}

}  // namespace orvane
