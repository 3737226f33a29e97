// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZSignalBay.h"

#include <memory>

namespace orvane
{

class ZBuffer;

/// Makes an element a source of control values: a number gives one sample a pass, a buffer all its
/// samples, and the item chosen from a list is asked of the element itself.
class ZElementBay : public ZSignalBay
{
public:
    /// The element as the child "element" describes it, and an export "Element Bay" of the type
    /// that fits. Throws ZException -1 without such a child. [setup]
    ZElementBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZElementBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// The element's archive.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// A bay made from the same description, with this one's value.
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    [[nodiscard]] boost::shared_ptr<ZElement> GetElement() const override;
    /// A number takes over the port's range.
    void PortRangeChanged(ZPort& port) override;
    void MaxBufferChanged() override;
    /// The element takes its default, where it has one.
    void SetDefaults() override;
    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t firstExport,
                       std::int32_t exportCount) noexcept override;

private:
    [[nodiscard]] ZPort::Type PortType() const;
    [[nodiscard]] std::uint32_t WriteValue(ZBuffer& buffer) const noexcept;
    [[nodiscard]] std::uint32_t CopySpectrum() const noexcept;

    const boost::shared_ptr<ZXMLElement> mDescription;  // for clones
    boost::shared_ptr<ZElement> mElement;
    std::unique_ptr<ZBuffer> mSpectralBuffer;  // of an element of type ZBUFFER
};

}  // namespace orvane
