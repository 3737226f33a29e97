// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace orvane
{

class ZGain;

/// The processor's support of vector code. There is a source file for each instruction set, and the
/// build uses one of them.
class ZVectorSupport
{
public:
    static constexpr int kPlain = 1;
    static constexpr int kVector = 3;

    /// kVector when vector code can run, else kPlain. Determined by the first call. [any thread]
    [[nodiscard]] static int ProcessorClass() noexcept;
    /// The vector twin of ZGain; null when there is none or no memory. [setup]
    [[nodiscard]] static std::unique_ptr<ZGain> CreateGain();
};

}  // namespace orvane
