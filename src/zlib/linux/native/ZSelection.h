// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/linux/native/ZDisplayClient.h"
#include "zlib/linux/native/ZXcb.h"

#include <chrono>
#include <optional>
#include <string>

namespace orvane
{

class ZDisplayConnection;

/// The selection CLIPBOARD of a display: offers a text to other programs and fetches theirs, as the
/// Inter-Client Communication Conventions Manual (X Consortium, 1993), chapter 2, describes. Its
/// hidden window is made at the first use. [interface thread, under the interface lock]
class ZSelection : private ZDisplayClient
{
public:
    /// A program that does not answer for so long has failed.
    static constexpr std::chrono::milliseconds kPatience{2000};
    /// A longer text is not fetched, in bytes: twice the longest preset.
    static constexpr std::size_t kMostBytes = std::size_t{32} << 20U;

    /// The display owns this object.
    explicit ZSelection(ZDisplayConnection& display);
    ZSelection(const ZSelection&) = delete;
    ZSelection& operator=(const ZSelection&) = delete;
    ~ZSelection() override;

    /// Takes the selection, with this text. Returns false when the display refuses.
    [[nodiscard]] bool Offer(std::string text);
    /// Returns whether any program has the selection.
    [[nodiscard]] bool HasOwner() const;
    /// Returns whether another program has taken the selection since the last Offer().
    [[nodiscard]] bool IsLost() const { return mIsLost; }
    /// Returns the text of the selection; nothing when there is none, when it does not come, or
    /// while another fetch runs. Waits in a modal run of the owner; the caller keeps the display.
    [[nodiscard]] std::optional<std::string> Fetch(const void* owner);

private:
    /// What a fetch has received so far.
    struct Incoming
    {
        ZModalRun& run;
        xcb_atom_t arrival;  // the property that the text arrives in, another one than lately
        std::string text;
        std::chrono::steady_clock::time_point heard;  // when the owner last answered
        bool inParts = false;                         // by INCR
        bool isComplete = false;
    };

    void MakeWindow();
    void HandleEvent(const xcb_generic_event_t& event) override;
    void HandlePosted() override {}
    void HandleDisplayLost() override;
    void Answer(const xcb_selection_request_event_t& request);
    [[nodiscard]] bool WriteTarget(const xcb_selection_request_event_t& request,
                                   xcb_atom_t property);
    void TakeAnswer(const xcb_selection_notify_event_t& answer);
    void TakePart();
    /// Reads and deletes the property that the text arrives in; returns its type, none where it
    /// holds more than kMostBytes.
    xcb_atom_t ReadProperty(std::string& text);
    void EndFetch(bool isComplete);

    ZDisplayConnection& mDisplay;
    xcb_window_t mWindow = XCB_NONE;
    std::optional<std::string> mOffered;  // while this window has the selection
    bool mIsLost = false;
    Incoming* mIncoming = nullptr;  // of the fetch that runs
    int mFetches = 0;               // counted round
};

}  // namespace orvane
