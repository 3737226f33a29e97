// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DisplayProbe.h"

#include <deque>

namespace orvane
{

/// Another program that uses the clipboard of the display that DISPLAY names.
struct ClipboardProbe : DisplayProbe
{
    /// Takes the clipboard, with texts by their target; none of them stands for a program that
    /// holds something else.
    void Copy(std::map<std::string, std::string> texts);
    /// Answers what other programs ask for until the condition is true, within seconds; longer
    /// texts than partBytes are given out in parts. Returns whether it came to be true.
    [[nodiscard]] bool Serve(const std::function<bool()>& until, std::size_t partBytes);
    /// Waits until another program asks, and leaves it without an answer.
    [[nodiscard]] bool IgnoreRequest();
    /// Answers the oldest request that was left, with a text.
    void AnswerIgnored(const std::string& text);
    /// Returns the clipboard's content as a target; nothing when it is refused.
    [[nodiscard]] std::optional<std::string> Paste(const std::string& target);
    /// Returns the names of the targets that the clipboard's owner offers.
    [[nodiscard]] std::vector<std::string> PasteTargets();

private:
    [[nodiscard]] std::string NameOf(xcb_atom_t atom);
    void Answer(const xcb_selection_request_event_t& request, std::size_t partBytes);
    void GivePart(const xcb_property_notify_event_t& change, std::size_t partBytes);

    /// A text that is given out in parts.
    struct Outgoing
    {
        xcb_window_t requestor = XCB_NONE;
        xcb_atom_t property = XCB_NONE;
        std::string text;
        std::size_t given = 0;
    };

    const xcb_window_t mWindow = MakeWindow({0, 0, 1, 1}, /*shown*/ false);
    std::map<std::string, std::string> mTexts;
    std::optional<Outgoing> mOutgoing;
    std::deque<xcb_selection_request_event_t> mIgnored;
};

}  // namespace orvane
