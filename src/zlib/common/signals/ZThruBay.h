// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZSignalBay.h"

namespace orvane
{

/// Copies its imports to its exports; the last import goes to all exports that have none of their
/// own. So it can fan one input out to several outputs.
class ZThruBay : public ZSignalBay
{
public:
    /// As many imports "input" as exports "output", as the attribute numchannels says. Throws
    /// ZException -1 unless there are 1 to kMaxChannels. [setup]
    ZThruBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// With the number of exports.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    /// Adds imports, or takes the last ones off. Throws ZException -1 for more than there are
    /// exports, and for fewer than 0.
    void SetInputChannelCount(std::int32_t count) override;
    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t firstExport,
                       std::int32_t exportCount) noexcept override;
};

}  // namespace orvane
