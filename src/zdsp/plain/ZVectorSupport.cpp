// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZVectorSupport.h"

#include "zdsp/common/ZGain.h"

namespace orvane
{

int ZVectorSupport::ProcessorClass() noexcept
{
    return kPlain;
}

std::unique_ptr<ZGain> ZVectorSupport::CreateGain()
{
    return nullptr;
}

}  // namespace orvane
