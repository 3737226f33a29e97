// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZPort.h"

#include <cassert>
#include <cstdint>
#include <memory>

namespace orvane
{

class ZBuffer;
class ZSignalBay;

/// A port that carries samples. An import reads its source's buffer in place, so that no samples
/// are copied between bays; without a route it reads the zeros of its own buffer.
class ZSignalPort : public ZPort
{
public:
    ZSignalPort(std::string_view name, Type type);
    ~ZSignalPort() override;

    [[nodiscard]] boost::shared_ptr<ZPort> Clone() const override;
    void RouteAdded(ZBay& farBay, ZPort& farPort, std::int32_t index) override;
    /// Makes an import read its own buffer, zeroed; the next pass makes it read its new source, if
    /// it has one.
    void RouteRemoved(ZBay& farBay, ZPort& farPort, std::int32_t index) override;

    /// Replaces the own buffer by a zeroed one of the owner's GetMaxBuffer() samples and reads from
    /// it. Imports that read the old buffer go back to their own. Throws ZException kOutOfMemory,
    /// with the port as it was. [setup]
    virtual void AllocateBuffer();
    /// Stores position and sample count of the pass's request. [audio thread]
    virtual void Prepare(std::uint64_t position, std::uint32_t requested) noexcept;

    /// The samples of this port. Those of an import are valid while its bay's ProcessSignal runs,
    /// those of an export from then until the next pass. Never null once a signal bay owns the
    /// port. [audio thread]
    [[nodiscard]] ZBuffer* GetBuffer() const noexcept { return mCurrentBuffer; }
    /// The buffer, not null, may belong to another port or to the bay; it is not owned.
    /// [audio thread]
    void SetBuffer(ZBuffer* buffer) noexcept
    {
        assert(buffer);
        mCurrentBuffer = buffer;
    }

    /// True when the port needs no further pull in this pass. [audio thread]
    [[nodiscard]] bool IsReady() const noexcept { return mReady; }
    void SetReady(bool ready) noexcept { mReady = ready; }
    /// Sample position and count of the request. [audio thread]
    [[nodiscard]] std::uint64_t GetPosition() const noexcept { return mPosition; }
    [[nodiscard]] std::uint32_t GetRequested() const noexcept { return mRequested; }
    /// Samples that the last pull delivered. [audio thread]
    [[nodiscard]] std::uint32_t GetAvailable() const noexcept { return mAvailable; }
    void SetAvailable(std::uint32_t count) noexcept { mAvailable = count; }

    /// The export that an import reads: that of route 0 if a signal bay owns it, else null. Cached
    /// when routes change, so that a pass needs no cast. [audio thread]
    [[nodiscard]] ZSignalPort* GetSource() const noexcept { return mSource; }
    /// The owner, if it is a signal bay. [audio thread]
    [[nodiscard]] ZSignalBay* GetSignalOwner() const noexcept { return mSignalOwner; }

private:
    friend class ZSignalBay;  // sets mSignalOwner

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
