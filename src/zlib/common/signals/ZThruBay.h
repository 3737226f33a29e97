// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZSignalBay.h"

namespace orvane
{

/// Copies each import to the export of the same index, and the last import to all further exports:
/// it can distribute one input to several outputs.
class ZThruBay : public ZSignalBay
{
public:
    /// Makes as many imports "input" and exports "output" as the attribute numchannels says. Throws
    /// ZException kGeneral unless that is 1 to kMaxChannels. [setup]
    ZThruBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Adds the number of exports.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    /// Adds imports or removes the last ones. Throws ZException kGeneral unless count is 0 to the
    /// number of exports.
    void SetInputChannelCount(std::int32_t count) override;
    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t firstExport,
                       std::int32_t exportCount) noexcept override;
};

}  // namespace orvane
