// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZSelection.h"

#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/linux/native/ZDisplayConnection.h"

#include <array>
#include <cassert>
#include <cstring>
#include <utility>

namespace orvane
{

namespace
{

constexpr const char* kClipboard = "CLIPBOARD";
constexpr const char* kText = "UTF8_STRING";
constexpr const char* kMimeText = "text/plain;charset=utf-8";
constexpr const char* kTargets = "TARGETS";
constexpr const char* kArrival = "ORVANE_CLIPBOARD_";
/// So many fetches later an answer that comes too late could be taken for another.
constexpr int kArrivals = 16;
/// Room for the head of a request that changes a property, in bytes.
constexpr std::size_t kRequestHead = 64;
constexpr std::size_t kBytesOfLength = 4;  // requests count their length in units of 4 bytes
constexpr std::chrono::milliseconds kPollInterval{100};

}  // namespace

ZSelection::ZSelection(ZDisplayConnection& display)
    : mDisplay(display)
{
}

// The window ends with the connection.
ZSelection::~ZSelection()
{
    assert(!mIncoming);
    if (mWindow != XCB_NONE)
        mDisplay.RemoveClient(mWindow);
}

void ZSelection::MakeWindow()
{
    if (mWindow != XCB_NONE)
        return;
    mWindow = xcb_generate_id(mDisplay.GetNative());
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(mDisplay.GetNative(), XCB_COPY_FROM_PARENT, mWindow, mDisplay.GetRoot(), 0, 0,
                      1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    mDisplay.AddClient(mWindow, *this);
}

bool ZSelection::Offer(std::string text)
{
    assert(ZInterfaceLock::IsHeld());
    MakeWindow();
    const xcb_atom_t clipboard = mDisplay.GetAtom(kClipboard);
    xcb_set_selection_owner(mDisplay.GetNative(), mWindow, clipboard, XCB_CURRENT_TIME);
    const auto reply = xcbReply(xcb_get_selection_owner_reply, mDisplay.GetNative(),
                                xcb_get_selection_owner(mDisplay.GetNative(), clipboard));
    if (!reply || reply->owner != mWindow)
        return false;
    mOffered = std::move(text);
    mIsLost = false;
    return true;
}

bool ZSelection::HasOwner() const
{
    const auto reply =
        xcbReply(xcb_get_selection_owner_reply, mDisplay.GetNative(),
                 xcb_get_selection_owner(mDisplay.GetNative(), mDisplay.GetAtom(kClipboard)));
    return reply && reply->owner != XCB_NONE;
}

std::optional<std::string> ZSelection::Fetch(const void* owner)
{
    assert(ZInterfaceLock::IsHeld());
    if (mOffered)
        return mOffered;
    if (mIncoming || !HasOwner())
        return std::nullopt;
    MakeWindow();
    const ZInterfaceThread thread;
    ZModalRun run(thread.GetLoop(), owner);
    mFetches = (mFetches + 1) % kArrivals;
    Incoming incoming{.run = run,
                      .arrival = mDisplay.GetAtom(kArrival + std::to_string(mFetches)),
                      .text = {},
                      .heard = std::chrono::steady_clock::now()};
    mIncoming = &incoming;
    {
        const ZDisplayUse use(mDisplay.shared_from_this());
        xcb_convert_selection(mDisplay.GetNative(), mWindow, mDisplay.GetAtom(kClipboard),
                              mDisplay.GetAtom(kText), incoming.arrival, XCB_CURRENT_TIME);
    }
    const auto timer = thread.GetLoop().AddTimer(kPollInterval, [this, &incoming] {
        if (std::chrono::steady_clock::now() - incoming.heard > kPatience)
            EndFetch(false);
    });
    run.Run();
    thread.GetLoop().Remove(timer);
    mIncoming = nullptr;
    if (!incoming.isComplete)
        return std::nullopt;
    return std::move(incoming.text);
}

void ZSelection::HandleEvent(const xcb_generic_event_t& event)
{
    switch (event.response_type & 0x7F) {
    case XCB_SELECTION_REQUEST:
        return Answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    case XCB_SELECTION_CLEAR:
        mOffered.reset();
        mIsLost = true;
        return;
    case XCB_SELECTION_NOTIFY:
        return TakeAnswer(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
    case XCB_PROPERTY_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.state == XCB_PROPERTY_NEW_VALUE && mIncoming && mIncoming->inParts &&
            change.atom == mIncoming->arrival)
            TakePart();
        return;
    }
    default:
        return;
    }
}

void ZSelection::HandleDisplayLost()
{
    mOffered.reset();
    EndFetch(false);
}

// Offering.

void ZSelection::Answer(const xcb_selection_request_event_t& request)
{
    const ZDisplayUse use(mDisplay.shared_from_this());
    // Old programs name no property and mean one of the target's name.
    const xcb_atom_t property = request.property != XCB_NONE ? request.property : request.target;
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = WriteTarget(request, property) ? property : xcb_atom_t{XCB_NONE};
    std::array<char, 32> bytes{};  // the size of every event
    std::memcpy(bytes.data(), &answer, sizeof answer);
    xcb_send_event(mDisplay.GetNative(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   bytes.data());
}

bool ZSelection::WriteTarget(const xcb_selection_request_event_t& request, xcb_atom_t property)
{
    xcb_connection_t* const native = mDisplay.GetNative();
    if (!mOffered || request.selection != mDisplay.GetAtom(kClipboard))
        return false;
    if (request.target == mDisplay.GetAtom(kTargets)) {
        const std::array targets{mDisplay.GetAtom(kTargets), mDisplay.GetAtom(kText),
                                 mDisplay.GetAtom(kMimeText)};
        xcb_change_property(native, XCB_PROP_MODE_REPLACE, request.requestor, property,
                            XCB_ATOM_ATOM, 32, targets.size(), targets.data());
        return true;
    }
    if (request.target != mDisplay.GetAtom(kText) && request.target != mDisplay.GetAtom(kMimeText))
        return false;
    // All servers of today take requests of 16 MB, so no text is given out in parts.
    const std::size_t room = std::size_t{xcb_get_maximum_request_length(native)} * kBytesOfLength;
    if (mOffered->size() + kRequestHead > room)
        return false;
    xcb_change_property(native, XCB_PROP_MODE_REPLACE, request.requestor, property, request.target,
                        8, static_cast<std::uint32_t>(mOffered->size()), mOffered->data());
    return true;
}

// Fetching.

void ZSelection::TakeAnswer(const xcb_selection_notify_event_t& answer)
{
    const ZDisplayUse use(mDisplay.shared_from_this());
    const bool isRefusal = answer.property == XCB_NONE;
    if (!isRefusal && (!mIncoming || answer.property != mIncoming->arrival)) {
        // To a fetch that has ended: nobody reads it.
        xcb_delete_property(mDisplay.GetNative(), mWindow, answer.property);
        return;
    }
    if (!mIncoming || mIncoming->inParts)
        return;
    if (isRefusal)
        return EndFetch(false);
    mIncoming->heard = std::chrono::steady_clock::now();
    // Deleting the property asks for the first part.
    const xcb_atom_t type = ReadProperty(mIncoming->text);
    if (type != mDisplay.GetAtom("INCR"))
        return EndFetch(type != XCB_NONE);
    mIncoming->text.clear();
    mIncoming->inParts = true;
}

void ZSelection::TakePart()
{
    const ZDisplayUse use(mDisplay.shared_from_this());
    mIncoming->heard = std::chrono::steady_clock::now();
    std::string part;
    if (ReadProperty(part) == XCB_NONE)
        return;  // the news of the property that announced the parts
    if (part.empty())
        return EndFetch(true);
    mIncoming->text += part;
    if (mIncoming->text.size() > kMostBytes)
        EndFetch(false);
}

xcb_atom_t ZSelection::ReadProperty(std::string& text)
{
    assert(mIncoming);
    const auto reply = xcbReply(xcb_get_property_reply, mDisplay.GetNative(),
                                xcb_get_property(mDisplay.GetNative(), 1, mWindow,
                                                 mIncoming->arrival, XCB_GET_PROPERTY_TYPE_ANY, 0,
                                                 std::uint32_t{kMostBytes / kBytesOfLength}));
    if (!reply)
        return XCB_NONE;
    if (reply->bytes_after > 0) {
        xcb_delete_property(mDisplay.GetNative(), mWindow, mIncoming->arrival);
        return XCB_NONE;
    }
    const auto bytes = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    text.assign(static_cast<const char*>(xcb_get_property_value(reply.get())), bytes);
    return reply->type;
}

void ZSelection::EndFetch(bool isComplete)
{
    if (!mIncoming)
        return;
    mIncoming->isComplete = isComplete;
    mIncoming->run.End();
}

}  // namespace orvane
