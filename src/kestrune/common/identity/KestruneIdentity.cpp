// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/identity/KestruneIdentity.h"

namespace orvane
{

const char* productName()
{
    return "Cantorel Mini";
}

const char* productVersion()
{
    return "1.0";
}

const char* applicationIdentifier()
{
    return "com.orvane.cantorel-mini-vst";
}

const char* pluginName()
{
    return "Cantorel Mini VST";
}

const char* descriptionResourceName()
{
    return "kestrune_vst.xml";
}

}  // namespace orvane
