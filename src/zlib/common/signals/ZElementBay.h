// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZSignalBay.h"

#include <memory>

namespace orvane
{

class ZBuffer;

/// Makes an element a source of control values. In each pass a ZFLOAT delivers one sample and a
/// ZBUFFER all its samples; the value of a ZDISCRETE is read from the element itself.
class ZElementBay : public ZSignalBay
{
public:
    /// Makes the element from the child tag "element", and an export "Element Bay" of the port type
    /// that fits it. Throws ZException kGeneral without that tag. [setup]
    ZElementBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZElementBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Adds the element's archive.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Makes a bay from the same description, with the current value.
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    [[nodiscard]] boost::shared_ptr<ZElement> GetElement() const override;
    /// Sets the range of a ZFLOAT to the port's.
    void PortRangeChanged(ZPort& port) override;
    void MaxBufferChanged() override;
    /// Sets a ZFLOAT or ZDISCRETE to its default.
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
