// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace orvane
{

class ZGain;

/// What the processor at hand offers to vector code. Each instruction set has a source of its own,
/// one of which is built.
class ZVectorSupport
{
public:
    static constexpr int kPlain = 1;
    static constexpr int kVector = 3;

    /// kVector where vector code may run, else kPlain; found out at the first request and the same
    /// ever after. [any thread]
    [[nodiscard]] static int ProcessorClass() noexcept;
    /// The vector twin of ZGain; null where there is none or no memory. [setup]
    [[nodiscard]] static std::unique_ptr<ZGain> CreateGain();
};

}  // namespace orvane
