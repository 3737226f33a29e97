// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/signals/ZOutputBay.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

/// A bay with any number of ports that counts its runs. Every export is the sum of the audio
/// imports plus value.
struct ProbeBay : ZSignalBay
{
    ProbeBay(std::string_view name, std::int32_t imports, std::int32_t exports,
             ZPort::Type type = ZPort::kAudio)
        : ZSignalBay(name)
    {
        for (std::int32_t i = 0; i < imports; ++i)
            MakeImport("in", type);
        for (std::int32_t i = 0; i < exports; ++i)
            MakeExport("out", type);
    }

    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t /*firstExport*/,
                       std::int32_t /*exportCount*/) noexcept override
    {
        ++runs;
        lastPosition = position;
        lastCount = count;
        for (ZSignalPort* const port : SignalExports()) {
            for (std::uint32_t i = 0; i < count; ++i)
                port->GetBuffer()->Data()[i] = value + InputAt(i);
            port->SetAvailable(count);
        }
    }

    /// The buffer of import 0.
    [[nodiscard]] const ZBuffer& Input() const { return *SignalImports().front()->GetBuffer(); }

    float value = 1.0f;
    int runs = 0;
    std::uint64_t lastPosition = 0;
    std::uint32_t lastCount = 0;

private:
    [[nodiscard]] float InputAt(std::uint32_t i) const noexcept
    {
        float sum = 0.0f;
        for (const ZSignalPort* const port : SignalImports())
            if (port->GetType() == ZPort::kAudio)
                sum += port->GetBuffer()->Data()[i];
        return sum;
    }
};

inline boost::shared_ptr<ProbeBay> probe(std::string_view name, std::int32_t imports = 1,
                                         std::int32_t exports = 1, ZPort::Type type = ZPort::kAudio)
{
    return boost::make_shared<ProbeBay>(name, imports, exports, type);
}

/// Runs one pass from a sink, without the interface lock, as the audio thread does.
inline void runPass(ZSignalBay& sink, std::uint32_t count)
{
    const ZInterfaceUnlock unlocked;
    sink.RunPass(count);
}

/// The text of the ZException that action throws, or "none".
template <typename Action>
std::string failureOf(Action action)
{
    try {
        action();
    } catch (const ZException& failure) {
        return failure.GetMessage().ToNarrow();
    }
    return "none";
}

}  // namespace orvane
