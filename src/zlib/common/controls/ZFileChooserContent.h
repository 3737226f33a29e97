// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZFolderListing.h"
#include "zlib/common/controls/ZTextField.h"
#include "zlib/common/documents/ZFileChooser.h"
#include "zlib/common/views/ZContentWindow.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane
{

/// The content of a plain file dialog: the prompt, the folder, its list, the name, the filter and
/// two buttons. A click selects a line of the list and a double click opens it; the arrow keys with
/// Return do the same, other keys edit the name. Asks before a file is replaced.
/// [interface thread, with the interface lock]
class ZFileChooserContent : public ZWindowContent
{
public:
    /// The window's width and height in pixels.
    static constexpr ZPoint kSize{480, 384};
    /// The lines of the list that are in sight.
    static constexpr std::int32_t kLines = 12;

    /// Starts in a folder, given by an absolute path.
    ZFileChooserContent(const ZFileRequest& request, const std::filesystem::path& folder);

    /// Sets the function that is called once, at the end.
    void SetEnded(std::function<void()> ended) { mEnded = std::move(ended); }
    /// Returns the full path of the chosen file; no value when the user cancelled.
    [[nodiscard]] const std::optional<std::string>& GetChosen() const { return mChosen; }
    /// Returns the folder that is listed.
    [[nodiscard]] const std::filesystem::path& GetFolder() const { return mFolder; }
    /// True while it asks whether to replace a file.
    [[nodiscard]] bool IsAsking() const { return !mToReplace.empty(); }
    /// Returns the place of a line of the list, counted from the first one in sight.
    [[nodiscard]] static ZRect GetLineRect(std::int32_t line);

    void Draw(ZDrawingContext& context) override;
    bool Mouse(const ZNativeMouseEvent& event) override;
    bool Key(const ZNativeKeyEvent& event) override;
    void Dismiss() override;

private:
    static constexpr std::int32_t kNone = -1;

    [[nodiscard]] std::string Extension() const;
    [[nodiscard]] std::int32_t Count() const { return static_cast<std::int32_t>(mEntries.size()); }
    void Enter(const std::filesystem::path& folder);
    void NextFilter();
    void SelectLine(std::int32_t index);
    void ScrollTo(std::int32_t first);
    bool Press(const ZPoint& point, bool isDouble);
    bool AskingKey(const ZNativeKeyEvent& event);
    bool ListKey(std::uint8_t code);
    bool NameKey(const ZNativeKeyEvent& event);
    void OpenSelected();
    void Accept();
    void AcceptPath(std::filesystem::path path);
    void End(std::optional<std::string> chosen);
    void DrawList(ZDrawingContext& context) const;
    void DrawName(ZDrawingContext& context) const;
    void DrawButtons(ZDrawingContext& context) const;

    const ZFileRequest mRequest;
    std::filesystem::path mFolder;
    std::vector<ZFolderEntry> mEntries;
    std::size_t mFilter = 0;  // an index of the request's types; past them: all files
    std::int32_t mFirst = 0;  // the first line in sight
    std::int32_t mSelected = kNone;
    bool mInList = false;  // the last key or click selected a line of the list
    ZTextField mName;
    std::string mNote;                 // why the name is not accepted; empty for nothing
    std::filesystem::path mToReplace;  // the file that it asks about; empty for none
    std::function<void()> mEnded;
    bool mHasEnded = false;
    std::optional<std::string> mChosen;
};

}  // namespace orvane
