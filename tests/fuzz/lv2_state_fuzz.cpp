// SPDX-License-Identifier: GPL-3.0-or-later
// Restores arbitrary bytes as the state of an LV2 instance. The first byte says which type the host
// gives to the property, 0 for that of a text, and the size is that of the bytes: no 0 need end
// them.

#include "FuzzFault.h"
#include "pluginwrappers/lv2/Lv2Entry.h"
#include "support/StateCheck.h"
#include "tools/render/UridMap.h"

#include <lv2/atom/atom.h>
#include <lv2/state/state.h>

namespace orvane
{

namespace
{

struct Lv2FuzzInstance
{
    Lv2FuzzInstance()
    {
        const LV2_Feature map{LV2_URID__map, &mUrids.map};
        const std::array<const LV2_Feature*, 2> features{&map, nullptr};
        mHandle = mDescriptor.instantiate(&mDescriptor, 44100.0, "", features.data());
        if (mHandle == nullptr)
            std::abort();
        mState = static_cast<const LV2_State_Interface*>(
            mDescriptor.extension_data(LV2_STATE__interface));
        for (std::uint32_t port = 0; port < 4; ++port)
            mDescriptor.connect_port(mHandle, port, mSound[port % 2].data());
        mDescriptor.activate(mHandle);
    }
    Lv2FuzzInstance(Lv2FuzzInstance&&) = delete;

    /// Restores the bytes, which have no 0 behind them; type 0 is that of a text.
    bool Restore(const void* bytes, std::size_t size, std::uint32_t type)
    {
        struct Source
        {
            std::unique_ptr<char[]> bytes;
            std::size_t size;
            std::uint32_t type;
        } source{std::make_unique<char[]>(size), size,
                 mUrids(LV2_ATOM__String) + type};  // memory of its own, for the address sanitizer
        std::memcpy(source.bytes.get(), bytes, size);
        const auto retrieve = [](LV2_State_Handle from, std::uint32_t, std::size_t* length,
                                 std::uint32_t* kind, std::uint32_t* flags) -> const void* {
            const auto& given = *static_cast<const Source*>(from);
            *length = given.size;
            *kind = given.type;
            *flags = LV2_STATE_IS_POD;
            return given.bytes.get();
        };
        return mState->restore(mHandle, retrieve, &source, 0, nullptr) == LV2_STATE_SUCCESS;
    }
    bool Load(const std::string& text) { return Restore(text.c_str(), text.size() + 1, 0); }
    [[nodiscard]] std::string Save() const
    {
        std::string text;
        const auto store = [](LV2_State_Handle target, std::uint32_t, const void* value,
                              std::size_t size, std::uint32_t, std::uint32_t) {
            static_cast<std::string*>(target)->assign(static_cast<const char*>(value), size - 1);
            return LV2_STATE_SUCCESS;
        };
        if (mState->save(mHandle, store, &text, LV2_STATE_IS_POD, nullptr) != LV2_STATE_SUCCESS)
            std::abort();
        return text;
    }
    /// Returns whether the sound is finite.
    bool RunBlock()
    {
        for (auto& channel : mSound)
            channel = {0.5f};
        mDescriptor.run(mHandle, kFrames);
        const auto isFinite = [](float sample) { return std::isfinite(sample); };
        return std::ranges::all_of(mSound[0], isFinite) && std::ranges::all_of(mSound[1], isFinite);
    }

private:
    static constexpr std::uint32_t kFrames = 512;

    const LV2_Descriptor& mDescriptor = lv2Descriptor();
    UridMap mUrids;
    std::array<std::array<float, kFrames>, 2> mSound{};  // in place
    LV2_Handle mHandle = nullptr;
    const LV2_State_Interface* mState = nullptr;
};

}  // namespace

}  // namespace orvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    static orvane::Lv2FuzzInstance instance;
    static orvane::StateCheck check(instance);
    orvane::requireNoFault(
        check.FaultAfter([&] { return instance.Restore(data + 1, size - 1, data[0]); }));
    return 0;
}
