// SPDX-License-Identifier: GPL-3.0-or-later
// Makes events for a CLAP instance out of arbitrary bytes and hands them over in a block or a
// flush. Each event is a record of its head below, followed by what stands behind the header in it.

#include "ClapFuzzInstance.h"
#include "FuzzFault.h"
#include "pluginwrappers/interface/ClapPlugin.h"

namespace
{

using namespace orvane;

struct Head
{
    std::uint8_t what;  // a What; anything else adds an event
    std::uint8_t type;
    std::uint8_t space;
    std::uint8_t size;   // bytes behind the header
    std::uint16_t time;  // also the frames of a block
};

enum What : std::uint8_t
{
    kBlock,
    kFlush,
    kRestart,
    kReset,
};

/// The events of one block, each in memory of its own size, which the address sanitizer guards.
struct Events
{
    void Add(const Head& head, const std::uint8_t* data, std::size_t size)
    {
        const auto length = static_cast<std::uint32_t>(sizeof(clap_event_header) + size);
        const clap_event_header header{length, head.time, head.space, head.type, 0};
        auto bytes = std::make_unique<std::byte[]>(length);
        std::memcpy(bytes.get(), &header, sizeof header);
        std::memcpy(bytes.get() + sizeof header, data, size);
        mEvents.push_back(std::move(bytes));
    }
    void Clear() { mEvents.clear(); }

    const clap_input_events in{this,
                               [](const clap_input_events* list) {
                                   return static_cast<std::uint32_t>(From(list->ctx).size());
                               },
                               [](const clap_input_events* list, std::uint32_t index) {
                                   return reinterpret_cast<const clap_event_header*>(
                                       From(list->ctx).at(index).get());
                               }};

private:
    using List = std::vector<std::unique_ptr<std::byte[]>>;

    static const List& From(void* self) { return static_cast<Events*>(self)->mEvents; }

    List mEvents;
};

/// Every parameter's value is within the range that the host was told.
bool hasValuesInRange(const ClapFuzzInstance& instance)
{
    clap_param_info info{};
    double value = NAN;
    for (std::uint32_t i = 0; i < instance.params->count(instance.plugin); ++i)
        if (!instance.params->get_info(instance.plugin, i, &info) ||
            !instance.params->get_value(instance.plugin, info.id, &value) ||
            !(value >= info.min_value && value <= info.max_value))
            return false;
    return true;
}

void handOver(ClapFuzzInstance& instance, Events& events, const Head& head)
{
    static const clap_output_events out{
        nullptr, [](const clap_output_events*, const clap_event_header*) { return true; }};
    const clap_plugin* const plugin = instance.plugin;
    const bool isFinite =
        head.what != kBlock ||
        instance.RunBlock(&events.in, &out, head.time % (ClapFuzzInstance::kFrames + 1));
    requireNoFault(isFinite ? "" : "the sound is not finite");
    if (head.what == kFlush)
        instance.params->flush(plugin, &events.in, &out);
    if (head.what == kReset)
        plugin->reset(plugin);
    if (head.what == kRestart) {
        plugin->stop_processing(plugin);
        plugin->deactivate(plugin);
        // 1 Hz to 131 kHz.
        if (!plugin->activate(plugin, 1.0 + 2.0 * head.time, 1, ClapFuzzInstance::kFrames) ||
            !plugin->start_processing(plugin))
            std::abort();
    }
    events.Clear();
    requireNoFault(hasValuesInRange(instance) ? "" : "a value is out of its range");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static ClapFuzzInstance instance;
    Events events;
    Head head{};
    while (size >= sizeof head) {
        std::memcpy(&head, data, sizeof head);
        data += sizeof head;
        size -= sizeof head;
        if (head.what <= kReset) {
            handOver(instance, events, head);
            continue;
        }
        const std::size_t rest = std::min<std::size_t>(head.size, size);
        events.Add(head, data, rest);
        data += rest;
        size -= rest;
    }
    return 0;
}
