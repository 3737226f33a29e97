// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ClipboardProbe.h"

#include "support/Eventually.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>

namespace orvane
{

namespace
{

struct Freer
{
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Pointer = std::unique_ptr<T, Freer>;

template <typename T>
const T& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const T&>(event);
}

}  // namespace

ClipboardProbe::ClipboardProbe()
    : mConnection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(mConnection) != 0)
        throw std::runtime_error("no display");
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data;
    mWindow = xcb_generate_id(mConnection);
    xcb_create_window(mConnection, XCB_COPY_FROM_PARENT, mWindow, screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
}

ClipboardProbe::~ClipboardProbe()
{
    xcb_disconnect(mConnection);
}

xcb_atom_t ClipboardProbe::Atom(const std::string& name)
{
    const Pointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        mConnection,
        xcb_intern_atom(mConnection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_NONE};
}

std::string ClipboardProbe::NameOf(xcb_atom_t atom)
{
    const Pointer<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(mConnection, xcb_get_atom_name(mConnection, atom), nullptr));
    if (!reply)
        return {};
    return {xcb_get_atom_name_name(reply.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

void ClipboardProbe::Copy(std::map<std::string, std::string> texts)
{
    mTexts = std::move(texts);
    xcb_set_selection_owner(mConnection, mWindow, Atom("CLIPBOARD"), XCB_CURRENT_TIME);
    static_cast<void>(Atom("CLIPBOARD"));  // waits until the server has done it
}

bool ClipboardProbe::Serve(const std::function<bool()>& until, std::size_t partBytes)
{
    return eventually([&] {
        while (const Pointer<xcb_generic_event_t> event{xcb_poll_for_event(mConnection)}) {
            const int type = event->response_type & 0x7F;
            if (type == XCB_SELECTION_REQUEST)
                Answer(as<xcb_selection_request_event_t>(*event), partBytes);
            else if (type == XCB_PROPERTY_NOTIFY)
                GivePart(as<xcb_property_notify_event_t>(*event), partBytes);
        }
        return until();
    });
}

bool ClipboardProbe::IgnoreRequest()
{
    return eventually([this] {
        const Pointer<xcb_generic_event_t> event{xcb_poll_for_event(mConnection)};
        if (!event || (event->response_type & 0x7F) != XCB_SELECTION_REQUEST)
            return false;
        mIgnored.push_back(as<xcb_selection_request_event_t>(*event));
        return true;
    });
}

void ClipboardProbe::AnswerIgnored(const std::string& text)
{
    mTexts = {{"UTF8_STRING", text}};
    Answer(mIgnored.front(), std::numeric_limits<std::size_t>::max());
    mIgnored.pop_front();
}

void ClipboardProbe::Answer(const xcb_selection_request_event_t& request, std::size_t partBytes)
{
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    if (const auto found = mTexts.find(NameOf(request.target)); found != mTexts.end()) {
        answer.property = request.property;
        const std::string& text = found->second;
        const auto size = static_cast<std::uint32_t>(text.size());
        if (text.size() > partBytes) {
            const std::uint32_t wish = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(mConnection, request.requestor, XCB_CW_EVENT_MASK, &wish);
            mOutgoing = {request.requestor, request.property, text};
            xcb_change_property(mConnection, XCB_PROP_MODE_REPLACE, request.requestor,
                                request.property, Atom("INCR"), 32, 1, &size);
        } else {
            // No request may be longer than 16 MB.
            constexpr std::uint32_t kPiece = 8U << 20U;
            for (std::uint32_t at = 0; at == 0 || at < size; at += kPiece)
                xcb_change_property(mConnection,
                                    at == 0 ? XCB_PROP_MODE_REPLACE : XCB_PROP_MODE_APPEND,
                                    request.requestor, request.property, request.target, 8,
                                    std::min(size - at, kPiece), text.data() + at);
        }
    }
    std::array<char, 32> bytes{};
    std::memcpy(bytes.data(), &answer, sizeof answer);
    xcb_send_event(mConnection, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, bytes.data());
    xcb_flush(mConnection);
}

void ClipboardProbe::GivePart(const xcb_property_notify_event_t& change, std::size_t partBytes)
{
    if (!mOutgoing || change.window != mOutgoing->requestor || change.atom != mOutgoing->property ||
        change.state != XCB_PROPERTY_DELETE)
        return;
    // The last part is empty.
    const std::string part = mOutgoing->text.substr(mOutgoing->given, partBytes);
    xcb_change_property(mConnection, XCB_PROP_MODE_REPLACE, mOutgoing->requestor,
                        mOutgoing->property, Atom("UTF8_STRING"), 8,
                        static_cast<std::uint32_t>(part.size()), part.data());
    xcb_flush(mConnection);
    mOutgoing->given += part.size();
    if (part.empty())
        mOutgoing.reset();
}

std::optional<std::string> ClipboardProbe::Paste(const std::string& target)
{
    const xcb_atom_t property = Atom("PASTED");
    xcb_convert_selection(mConnection, mWindow, Atom("CLIPBOARD"), Atom(target), property,
                          XCB_CURRENT_TIME);
    xcb_flush(mConnection);
    std::optional<xcb_atom_t> given;
    const bool answered = eventually([&] {
        const Pointer<xcb_generic_event_t> event{xcb_poll_for_event(mConnection)};
        if (event && (event->response_type & 0x7F) == XCB_SELECTION_NOTIFY)
            given = as<xcb_selection_notify_event_t>(*event).property;
        return given.has_value();
    });
    if (!answered || given == xcb_atom_t{XCB_NONE})
        return std::nullopt;
    const Pointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        mConnection,
        xcb_get_property(mConnection, 1, mWindow, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1U << 24),
        nullptr));
    if (!reply)
        return std::nullopt;
    return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                       static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

std::vector<std::string> ClipboardProbe::PasteTargets()
{
    const std::string bytes = Paste("TARGETS").value_or("");
    std::vector<std::string> names;
    for (std::size_t i = 0; i + sizeof(xcb_atom_t) <= bytes.size(); i += sizeof(xcb_atom_t)) {
        xcb_atom_t atom = XCB_NONE;
        std::memcpy(&atom, bytes.data() + i, sizeof atom);
        names.push_back(NameOf(atom));
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace orvane
