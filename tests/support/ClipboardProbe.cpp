// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ClipboardProbe.h"

#include "support/Eventually.h"

namespace orvane
{

namespace
{

template <typename T>
const T& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const T&>(event);
}

}  // namespace

std::string ClipboardProbe::NameOf(xcb_atom_t atom)
{
    const auto reply = Ask(xcb_get_atom_name, xcb_get_atom_name_reply, atom);
    if (!reply)
        return {};
    return {xcb_get_atom_name_name(reply.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

void ClipboardProbe::Copy(std::map<std::string, std::string> texts)
{
    mTexts = std::move(texts);
    Do(xcb_set_selection_owner, mWindow, GetAtom("CLIPBOARD"), kNow);
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
                                request.property, GetAtom("INCR"), 32, 1, &size);
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
    Do(xcb_send_event, std::uint8_t{0}, request.requestor, std::uint32_t{XCB_EVENT_MASK_NO_EVENT},
       static_cast<const char*>(bytes.data()));
}

void ClipboardProbe::GivePart(const xcb_property_notify_event_t& change, std::size_t partBytes)
{
    if (!mOutgoing || change.window != mOutgoing->requestor || change.atom != mOutgoing->property ||
        change.state != XCB_PROPERTY_DELETE)
        return;
    // The last part is empty.
    const std::string part = mOutgoing->text.substr(mOutgoing->given, partBytes);
    xcb_change_property(mConnection, XCB_PROP_MODE_REPLACE, mOutgoing->requestor,
                        mOutgoing->property, GetAtom("UTF8_STRING"), 8,
                        static_cast<std::uint32_t>(part.size()), part.data());
    xcb_flush(mConnection);
    mOutgoing->given += part.size();
    if (part.empty())
        mOutgoing.reset();
}

std::optional<std::string> ClipboardProbe::Paste(const std::string& target)
{
    const xcb_atom_t property = GetAtom("PASTED");
    Do(xcb_convert_selection, mWindow, GetAtom("CLIPBOARD"), GetAtom(target), property, kNow);
    std::optional<xcb_atom_t> given;
    const bool answered = eventually([&] {
        const Pointer<xcb_generic_event_t> event{xcb_poll_for_event(mConnection)};
        if (event && (event->response_type & 0x7F) == XCB_SELECTION_NOTIFY)
            given = as<xcb_selection_notify_event_t>(*event).property;
        return given.has_value();
    });
    if (!answered || given == xcb_atom_t{XCB_NONE})
        return std::nullopt;
    const auto reply = Ask(xcb_get_property, xcb_get_property_reply, std::uint8_t{1}, mWindow,
                           property, xcb_atom_t{XCB_GET_PROPERTY_TYPE_ANY}, 0u, 1u << 24);
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
