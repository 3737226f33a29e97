// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZPort.h"

#include <cstdint>
#include <memory>

namespace orvane
{

class ZBuffer;
class ZSignalBay;

/// A port through which samples go. An import reads its source's buffer in place, so samples are
/// not copied between bays; with no route it reads the zeros of its own buffer.
class ZSignalPort : public ZPort
{
public:
    ZSignalPort(std::string_view name, Type type);
    ~ZSignalPort() override;

    [[nodiscard]] boost::shared_ptr<ZPort> Clone() const override;
    void RouteAdded(ZBay& farBay, ZPort& farPort, std::int32_t index) override;
    /// An import falls back to its own buffer, zeroed; the next pass points it at what is then its
    /// source.
    void RouteRemoved(ZBay& farBay, ZPort& farPort, std::int32_t index) override;

    /// Replaces the own buffer by a zeroed one of the owner's maximum length and points this port
    /// at it. What read the old one falls back to its own. Throws ZException 2 when there is no
    /// memory, with the port as it was. [setup]
    virtual void AllocateBuffer();
    /// Opens a request. [audio thread]
    virtual void Prepare(std::uint64_t position, std::uint32_t requested) noexcept;

    /// The samples of this port: of an import while its bay's ProcessSignal runs, of an export from
    /// then on. Never null once a signal bay owns the port. [audio thread]
    [[nodiscard]] ZBuffer* GetBuffer() const noexcept { return mCurrentBuffer; }
    /// The buffer may belong to another port or to the bay; it is not owned. [audio thread]
    void SetBuffer(ZBuffer* buffer) noexcept { mCurrentBuffer = buffer; }

    /// True when the port needs no further pull in this pass. [audio thread]
    [[nodiscard]] bool IsReady() const noexcept { return mReady; }
    void SetReady(bool ready) noexcept { mReady = ready; }
    /// Sample position and count of the request. [audio thread]
    [[nodiscard]] std::uint64_t GetPosition() const noexcept { return mPosition; }
    [[nodiscard]] std::uint32_t GetRequested() const noexcept { return mRequested; }
    /// Samples that the last pull delivered. [audio thread]
    [[nodiscard]] std::uint32_t GetAvailable() const noexcept { return mAvailable; }
    void SetAvailable(std::uint32_t count) noexcept { mAvailable = count; }

    /// Of an import the export at entry 0, where a signal bay stands behind it; else null. Found
    /// when routes change, since a pass has no time for casts. [audio thread]
    [[nodiscard]] ZSignalPort* GetSource() const noexcept { return mSource; }
    /// The owner, as the signal bay that it is. [audio thread]
    [[nodiscard]] ZSignalBay* GetSignalOwner() const noexcept { return mSignalOwner; }

private:
    friend class ZSignalBay;  // enters itself as the owner

    void FindSource();
    void ReadOwnBuffer() noexcept;

    ZBuffer* mCurrentBuffer = nullptr;
    std::unique_ptr<ZBuffer> mOwnBuffer;
    bool mReady = true;
    std::uint64_t mPosition = 0;
    std::uint32_t mRequested = 0;
    std::uint32_t mAvailable = 0;
    ZSignalPort* mSource = nullptr;
    ZSignalBay* mSignalOwner = nullptr;
};

}  // namespace orvane
