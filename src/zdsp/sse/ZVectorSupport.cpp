// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZVectorSupport.h"

#include "zdsp/sse/ZGainSSE.h"

#include <new>

namespace orvane
{

int ZVectorSupport::ProcessorClass() noexcept
{
    static const int processorClass = __builtin_cpu_supports("sse2") ? kVector : kPlain;
    return processorClass;
}

std::unique_ptr<ZGain> ZVectorSupport::CreateGain()
{
    return std::unique_ptr<ZGain>(new (std::nothrow) ZGainSSE);
}

}  // namespace orvane
