// SPDX-License-Identifier: GPL-3.0-or-later
// Makes dispatcher calls out of arbitrary bytes: opcode, index, value, float and the bytes that the
// pointer points to. Calls come in any order; opcodes whose pointer refers to an object are left
// out.

#include "pluginwrappers/common/PluginEntry.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "support/Standard.h"
#include "zlib/common/objects/ZMessageBox.h"

namespace
{

using namespace orvane;

/// Enough for the largest record; the address sanitizer guards the bytes beyond.
constexpr std::size_t kRoom = 256;

struct Call
{
    std::int8_t opcode;
    std::int32_t index;
    std::int32_t value;
    float opt;
};

std::intptr_t host(AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                   std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    return opcode == audioMasterVersion ? 2400 : 0;
}

AEffect* openQuietly()
{
    ZMessageBox::SetPresenter([](ZMessageBox::Kind, const ZString&, const ZString&) {});
    AEffect* const effect = openPlugin(host);
    if (effect == nullptr)
        std::abort();
    return effect;
}

/// Returns false for effClose and for opcodes whose pointer or value refers to an object.
bool isPlain(std::int32_t opcode)
{
    return opcode != effClose && opcode != effProcessEvents && opcode != effEditOpen &&
           opcode != effGetSpeakerArrangement;
}

void make(AEffect* effect, const Call& call, const std::uint8_t* data, std::size_t size)
{
    const auto room = std::make_unique<std::array<char, kRoom>>();
    room->fill(0);
    std::memcpy(room->data(), data, std::min(size, kRoom));
    // The size of a chunk must be within the bytes behind the pointer.
    const std::intptr_t value =
        call.opcode == effSetChunk
            ? static_cast<std::intptr_t>(static_cast<std::uint32_t>(call.value) % kRoom)
            : std::intptr_t{call.value};
    // Larger blocks are legal, but allocate up to hundreds of megabytes.
    if (call.opcode == effSetBlockSize && value > 8192)
        return;
    effect->dispatcher(effect, call.opcode, call.index, value, room->data(), call.opt);
    effect->setParameter(effect, call.index, call.opt);
    effect->getParameter(effect, call.index);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static AEffect* const effect = openQuietly();
    Call call;
    while (size >= sizeof(call)) {
        std::memcpy(&call, data, sizeof(call));
        data += sizeof(call);
        size -= sizeof(call);
        if (isPlain(call.opcode))
            make(effect, call, data, size);
    }
    return 0;
}
