// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZTrace.h"

#include <atomic>

namespace orvane
{

namespace
{

std::atomic<ZTrace::Sink> installedSink{nullptr};

}  // namespace

void ZTrace::Write(std::string_view line)
{
    if (const Sink sink = installedSink.load(std::memory_order_acquire))
        sink(line);
}

ZTrace::Sink ZTrace::SetSink(Sink sink)
{
    return installedSink.exchange(sink, std::memory_order_acq_rel);
}

}  // namespace orvane
