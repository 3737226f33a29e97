// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DisplayProbe.h"

#include <xcb/res.h>
#include <xcb/xtest.h>

namespace orvane
{

DisplayProbe::DisplayProbe()
    : mConnection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(mConnection) != 0)
        throw std::runtime_error("no display");
    const xcb_setup_t* const setup = xcb_get_setup(mConnection);
    mScreen = xcb_setup_roots_iterator(setup).data;
    const int count = setup->max_keycode - setup->min_keycode + 1;
    mKeys = Ask(xcb_get_keyboard_mapping, xcb_get_keyboard_mapping_reply, setup->min_keycode,
                static_cast<std::uint8_t>(count));
}

DisplayProbe::~DisplayProbe()
{
    xcb_disconnect(mConnection);
}

xcb_window_t DisplayProbe::MakeWindow(const xcb_rectangle_t& rect, bool shown)
{
    const xcb_window_t window = xcb_generate_id(mConnection);
    xcb_create_window_value_list_t values{};
    values.background_pixel = 0x808080;
    values.override_redirect = 1;
    values.event_mask = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
    xcb_create_window_aux(
        mConnection, XCB_COPY_FROM_PARENT, window, GetRoot(), rect.x, rect.y, rect.width,
        rect.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, &values);
    if (shown)
        xcb_map_window(mConnection, window);
    Sync();
    return window;
}

xcb_window_t DisplayProbe::MakeDeepWindow(const xcb_rectangle_t& rect)
{
    auto depths = xcb_screen_allowed_depths_iterator(mScreen);
    while (depths.rem > 0 && (depths.data->depth != 32 || depths.data->visuals_len == 0))
        xcb_depth_next(&depths);
    if (depths.rem == 0)
        return XCB_NONE;
    const xcb_visualid_t visual = xcb_depth_visuals(depths.data)->visual_id;
    xcb_create_window_value_list_t values{};
    values.override_redirect = 1;
    values.colormap = xcb_generate_id(mConnection);
    xcb_create_colormap(mConnection, XCB_COLORMAP_ALLOC_NONE, values.colormap, GetRoot(), visual);
    const xcb_window_t window = xcb_generate_id(mConnection);
    xcb_create_window_aux(mConnection, 32, window, GetRoot(), rect.x, rect.y, rect.width,
                          rect.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                              XCB_CW_COLORMAP,
                          &values);
    xcb_map_window(mConnection, window);
    Sync();
    return window;
}

void DisplayProbe::Reparent(xcb_window_t window, xcb_window_t parent, int x, int y)
{
    Do(xcb_reparent_window, window, parent, static_cast<std::int16_t>(x),
       static_cast<std::int16_t>(y));
}

void DisplayProbe::SendMessage(xcb_window_t window, const char* type, std::uint32_t first)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = GetAtom(type);
    message.data.data32[0] = first;
    Do(xcb_send_event, std::uint8_t{0}, window, 0u, reinterpret_cast<const char*>(&message));
}

void DisplayProbe::SendKey(xcb_window_t window, std::uint32_t symbol)
{
    xcb_key_press_event_t key{};
    key.response_type = XCB_KEY_PRESS;
    key.detail = FindKey(symbol);
    key.event = window;
    Do(xcb_send_event, std::uint8_t{0}, window, std::uint32_t{XCB_EVENT_MASK_KEY_PRESS},
       reinterpret_cast<const char*>(&key));
}

void DisplayProbe::SetResources(const std::string& text)
{
    Do(xcb_change_property, std::uint8_t{XCB_PROP_MODE_REPLACE}, GetRoot(),
       xcb_atom_t{XCB_ATOM_RESOURCE_MANAGER}, xcb_atom_t{XCB_ATOM_STRING}, std::uint8_t{8},
       static_cast<std::uint32_t>(text.size()), text.data());
}

xcb_atom_t DisplayProbe::GetAtom(std::string_view name)
{
    const auto reply = Ask(xcb_intern_atom, xcb_intern_atom_reply, std::uint8_t{0},
                           static_cast<std::uint16_t>(name.size()), name.data());
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void DisplayProbe::Fake(std::uint8_t type, std::uint8_t detail, int x, int y)
{
    Do(xcb_test_fake_input, type, detail, kNow, GetRoot(), static_cast<std::int16_t>(x),
       static_cast<std::int16_t>(y), std::uint8_t{0});
}

void DisplayProbe::Click(std::uint8_t button, int times)
{
    for (int i = 0; i < 2 * times; ++i)
        xcb_test_fake_input(mConnection, i % 2 == 0 ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, button,
                            XCB_CURRENT_TIME, GetRoot(), 0, 0, 0);
    Sync();
}

bool DisplayProbe::Grab()
{
    const auto reply = Ask(xcb_grab_pointer, xcb_grab_pointer_reply, std::uint8_t{0}, GetRoot(),
                           std::uint16_t{XCB_EVENT_MASK_BUTTON_PRESS},
                           std::uint8_t{XCB_GRAB_MODE_ASYNC}, std::uint8_t{XCB_GRAB_MODE_ASYNC},
                           xcb_window_t{XCB_NONE}, xcb_cursor_t{XCB_NONE}, kNow);
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void DisplayProbe::TypeKey(std::uint32_t symbol)
{
    PressKey(symbol);
    ReleaseKey(symbol);
}

void DisplayProbe::TypeWith(std::uint32_t held, std::uint32_t symbol)
{
    PressKey(held);
    TypeKey(symbol);
    ReleaseKey(held);
}

void DisplayProbe::Type(std::string_view keys)
{
    constexpr std::string_view kFromHome = "[<^>_{}]";  // in the order of their symbols
    for (const char key : keys) {
        const std::uint32_t letter = static_cast<unsigned char>(key);
        const auto place = kFromHome.find(key);
        TypeKey(place < kFromHome.size() ? 0xFF50 + static_cast<std::uint32_t>(place)
                : key < ' '              ? 0xFF00 + letter
                                         : letter);
    }
}

xcb_keycode_t DisplayProbe::FindKey(std::uint32_t symbol) const
{
    const int last = xcb_get_setup(mConnection)->max_keycode;
    for (int key = xcb_get_setup(mConnection)->min_keycode; key <= last; ++key) {
        if (FindSymbol(static_cast<xcb_keycode_t>(key)) == symbol)
            return static_cast<xcb_keycode_t>(key);
    }
    throw std::runtime_error("the keyboard has no such key");
}

std::uint32_t DisplayProbe::FindSymbol(xcb_keycode_t key) const
{
    const auto index = static_cast<std::size_t>(key - xcb_get_setup(mConnection)->min_keycode);
    return xcb_get_keyboard_mapping_keysyms(mKeys.get())[index * mKeys->keysyms_per_keycode];
}

void DisplayProbe::ChangeKey(std::uint32_t symbol, std::uint32_t other)
{
    const std::vector<std::uint32_t> symbols(mKeys->keysyms_per_keycode, other);
    Do(xcb_change_keyboard_mapping, std::uint8_t{1}, FindKey(symbol), mKeys->keysyms_per_keycode,
       symbols.data());
}

void DisplayProbe::Focus(xcb_window_t window)
{
    Do(xcb_set_input_focus, std::uint8_t{XCB_INPUT_FOCUS_PARENT}, window, kNow);
}

xcb_window_t DisplayProbe::GetFocus()
{
    const auto reply = Ask(xcb_get_input_focus, xcb_get_input_focus_reply);
    return reply ? reply->focus : xcb_window_t{XCB_NONE};
}

std::vector<std::uint32_t> DisplayProbe::TakeKeys(std::uint8_t type)
{
    Sync();
    std::vector<std::uint32_t> keys;
    while (const Pointer<xcb_generic_event_t> event{xcb_poll_for_event(mConnection)}) {
        if ((event->response_type & 0x7F) == type)
            keys.push_back(
                FindSymbol(reinterpret_cast<const xcb_key_press_event_t&>(*event).detail));
    }
    return keys;
}

std::uint32_t DisplayProbe::PixelAt(int x, int y)
{
    const auto reply =
        Ask(xcb_get_image, xcb_get_image_reply, std::uint8_t{XCB_IMAGE_FORMAT_Z_PIXMAP}, GetRoot(),
            static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), std::uint16_t{1},
            std::uint16_t{1}, ~0U);
    const std::uint8_t* const bytes = xcb_get_image_data(reply.get());
    return static_cast<std::uint32_t>(bytes[2] << 16 | bytes[1] << 8 | bytes[0]);
}

std::vector<xcb_window_t> DisplayProbe::GetChildren(xcb_window_t window)
{
    const auto reply = Ask(xcb_query_tree, xcb_query_tree_reply, window);
    if (!reply)
        return {};
    const xcb_window_t* const first = xcb_query_tree_children(reply.get());
    return {first, first + xcb_query_tree_children_length(reply.get())};
}

xcb_rectangle_t DisplayProbe::GetPlace(xcb_window_t window)
{
    const auto reply = Ask(xcb_get_geometry, xcb_get_geometry_reply, window);
    return reply ? xcb_rectangle_t{reply->x, reply->y, reply->width, reply->height}
                 : xcb_rectangle_t{};
}

std::vector<std::uint8_t> DisplayProbe::GetProperty(xcb_window_t window, const char* name)
{
    const auto reply = Ask(xcb_get_property, xcb_get_property_reply, std::uint8_t{0}, window,
                           GetAtom(name), xcb_atom_t{XCB_GET_PROPERTY_TYPE_ANY}, 0u, 100u);
    if (!reply)
        return {};
    const auto* const bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
    return {bytes, bytes + xcb_get_property_value_length(reply.get())};
}

std::vector<std::uint32_t> DisplayProbe::GetOtherClients()
{
    const auto reply = Ask(xcb_res_query_clients, xcb_res_query_clients_reply);
    std::vector<std::uint32_t> others;
    const std::span all(
        xcb_res_query_clients_clients(reply.get()),
        static_cast<std::size_t>(xcb_res_query_clients_clients_length(reply.get())));
    // The server itself counts as a client with no base.
    for (const xcb_res_client_t& each : all) {
        if (each.resource_base != 0 &&
            each.resource_base != xcb_get_setup(mConnection)->resource_id_base)
            others.push_back(each.resource_base);
    }
    return others;
}

std::uint32_t DisplayProbe::CountClients()
{
    return static_cast<std::uint32_t>(GetOtherClients().size());
}

std::uint32_t DisplayProbe::CountResources()
{
    std::uint32_t count = 0;
    for (const std::uint32_t client : GetOtherClients()) {
        const auto reply =
            Ask(xcb_res_query_client_resources, xcb_res_query_client_resources_reply, client);
        if (!reply)
            continue;
        const std::span types(
            xcb_res_query_client_resources_types(reply.get()),
            static_cast<std::size_t>(xcb_res_query_client_resources_types_length(reply.get())));
        count = std::accumulate(
            types.begin(), types.end(), count,
            [](std::uint32_t sum, const xcb_res_type_t& type) { return sum + type.count; });
    }
    return count;
}

}  // namespace orvane
