// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZFileChooserContent.h"

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/views/ZPanelStyle.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

using Select = ZTextField::Select;

// In pixels.
constexpr std::int32_t kMargin = 12;
constexpr std::int32_t kLineHeight = 18;
constexpr std::int32_t kRight = ZFileChooserContent::kSize.x - kMargin;
constexpr ZRect kPromptRect{kMargin, 12, kRight, 28};
constexpr ZRect kFolderRect{kMargin, 34, kRight, 50};
constexpr ZRect kListRect{kMargin, 54, kRight, 54 + ZFileChooserContent::kLines* kLineHeight + 4};
constexpr ZRect kNameRect{kMargin, 284, kRight, 308};
constexpr ZRect kFilterRect{kMargin, 314, kRight, 334};
constexpr ZRect kNoteRect{kMargin, 351, 280, 371};
constexpr ZRect kAcceptRect{308, 349, 384, 372};
constexpr ZRect kCancelRect{392, 349, kRight, 372};

constexpr std::int32_t kLinesPerNotch = 3;

std::string nameToStartWith(const ZFileRequest& request)
{
    if (request.purpose == ZFileRequest::kOpen)
        return "";
    return request.types.empty() ? "Untitled" : "Untitled." + request.types.front()->extension;
}

void drawField(ZDrawingContext& context, const ZRect& rect)
{
    ZPanelStyle::fill(context, rect, ZPanelStyle::kField);
    ZPanelStyle::drawEdge(context, rect, ZPanelStyle::kEdge);
}

}  // namespace

ZFileChooserContent::ZFileChooserContent(const ZFileRequest& request,
                                         const std::filesystem::path& folder)
    : mRequest(request)
{
    assert(folder.is_absolute());
    mName.SetText(nameToStartWith(request));
    Enter(folder);
}

ZRect ZFileChooserContent::GetLineRect(std::int32_t line)
{
    const std::int32_t top = kListRect.top + 2 + line * kLineHeight;
    return {kListRect.left + 2, top, kListRect.right - 2, top + kLineHeight};
}

std::string ZFileChooserContent::Extension() const
{
    return mFilter < mRequest.types.size() ? mRequest.types[mFilter]->extension : std::string();
}

void ZFileChooserContent::Enter(const std::filesystem::path& folder)
{
    mFolder = folder.lexically_normal();
    if (!mFolder.has_filename() && mFolder.has_relative_path())
        mFolder = mFolder.parent_path();  // without the separator at the end
    mEntries = listFolder(mFolder, Extension());
    mFirst = 0;
    mSelected = kNone;
    mInList = false;
    mNote.clear();
}

void ZFileChooserContent::NextFilter()
{
    mFilter = mFilter < mRequest.types.size() ? mFilter + 1 : 0;
    Enter(mFolder);
}

void ZFileChooserContent::ScrollTo(std::int32_t first)
{
    mFirst = std::clamp(first, 0, std::max(Count() - kLines, 0));
}

void ZFileChooserContent::SelectLine(std::int32_t index)
{
    if (mEntries.empty())
        return;
    mSelected = std::clamp(index, 0, Count() - 1);
    mInList = true;
    mNote.clear();
    ScrollTo(std::clamp(mFirst, mSelected - kLines + 1, mSelected));
    const ZFolderEntry& entry = mEntries[static_cast<std::size_t>(mSelected)];
    if (!entry.isFolder)
        mName.SetText(entry.name);
}

bool ZFileChooserContent::Mouse(const ZNativeMouseEvent& event)
{
    switch (event.action) {
    case ZNativeMouseEvent::kDown:
    case ZNativeMouseEvent::kDoubleClick:
        return Press(event.position, event.action == ZNativeMouseEvent::kDoubleClick);
    case ZNativeMouseEvent::kWheel:
        ScrollTo(mFirst - event.wheelNotches * kLinesPerNotch);
        return true;
    default:
        return false;
    }
}

bool ZFileChooserContent::Press(const ZPoint& point, bool isDouble)
{
    if (kAcceptRect.Contains(point)) {
        if (IsAsking())
            End(mToReplace.string());
        else
            Accept();
    } else if (kCancelRect.Contains(point)) {
        if (IsAsking())
            mToReplace.clear();
        else
            End(std::nullopt);
    } else if (IsAsking()) {
        return false;
    } else if (kFilterRect.Contains(point)) {
        NextFilter();
    } else if (kNameRect.Contains(point)) {
        mInList = false;
        mName.SelectAll();
    } else if (kListRect.Contains(point)) {
        const std::int32_t index = mFirst + (point.y - GetLineRect(0).top) / kLineHeight;
        if (index >= Count())
            return false;
        SelectLine(index);
        if (isDouble)
            OpenSelected();
    }
    return true;
}

bool ZFileChooserContent::Key(const ZNativeKeyEvent& event)
{
    if (IsAsking())
        return AskingKey(event);
    if (event.code == kKeyEscape)
        End(std::nullopt);
    else if (event.code == kKeyReturn)
        mInList ? OpenSelected() : Accept();
    else
        return ListKey(event.code) || NameKey(event);
    return true;
}

bool ZFileChooserContent::AskingKey(const ZNativeKeyEvent& event)
{
    if (event.code == kKeyReturn)
        End(mToReplace.string());
    else if (event.code == kKeyEscape)
        mToReplace.clear();
    else
        return false;
    return true;
}

bool ZFileChooserContent::ListKey(std::uint8_t code)
{
    switch (code) {
    case kKeyUp:
        SelectLine(mSelected - 1);
        return true;
    case kKeyDown:
        SelectLine(mSelected + 1);
        return true;
    case kKeyPageUp:
        SelectLine(mSelected - kLines);
        return true;
    case kKeyPageDown:
        SelectLine(mSelected + kLines);
        return true;
    default:
        return false;
    }
}

bool ZFileChooserContent::NameKey(const ZNativeKeyEvent& event)
{
    const Select select = event.shift ? Select::kExtend : Select::kClear;
    switch (event.code) {
    case kKeyBackspace:
        mName.EraseBefore();
        break;
    case kKeyDelete:
        mName.EraseAfter();
        break;
    case kKeyLeft:
        mName.MoveLeft(select);
        break;
    case kKeyRight:
        mName.MoveRight(select);
        break;
    case kKeyHome:
        mName.MoveTo(0, select);
        break;
    case kKeyEnd:
        mName.MoveToEnd(select);
        break;
    default:
        if (event.text.IsEmpty())
            return false;
        mName.Insert(event.text);
    }
    mInList = false;
    mNote.clear();
    return true;
}

void ZFileChooserContent::OpenSelected()
{
    assert(mSelected >= 0 && mSelected < Count());
    const ZFolderEntry entry = mEntries[static_cast<std::size_t>(mSelected)];
    if (entry.isFolder)
        Enter(entry.name == ".." ? mFolder.parent_path() : mFolder / entry.name);
    else
        Accept();
}

void ZFileChooserContent::Accept()
{
    const std::string name = mName.GetText().ToNarrow();
    if (!name.empty())
        AcceptPath((mFolder / name).lexically_normal());
}

void ZFileChooserContent::AcceptPath(std::filesystem::path path)
{
    std::error_code error;
    const bool saves = mRequest.purpose == ZFileRequest::kSave;
    if (std::filesystem::is_directory(path, error)) {
        mName.SetText(nameToStartWith(mRequest));
        return Enter(path);
    }
    if (saves && path.extension().empty() && !Extension().empty())
        path += "." + Extension();
    const bool exists = std::filesystem::exists(path, error);
    if (saves && exists)
        mToReplace = path;
    else if (saves && !std::filesystem::is_directory(path.parent_path(), error))
        mNote = "No such folder.";
    else if (!saves && !exists)
        mNote = "No such file.";
    else
        End(path.string());
}

void ZFileChooserContent::Dismiss()
{
    End(std::nullopt);
}

void ZFileChooserContent::End(std::optional<std::string> chosen)
{
    if (std::exchange(mHasEnded, true))
        return;
    mChosen = std::move(chosen);
    if (mEnded)
        mEnded();
}

void ZFileChooserContent::Draw(ZDrawingContext& context)
{
    ZPanelStyle::drawGround(context, {0, 0, kSize.x, kSize.y});
    ZPanelStyle::drawLine(context, mRequest.prompt, kPromptRect, ZPanelStyle::kAlignLeft,
                          ZPanelStyle::kText);
    ZPanelStyle::drawLine(context, ZString(mFolder.string()), kFolderRect, ZPanelStyle::kAlignLeft,
                          ZPanelStyle::kFaintText);
    DrawList(context);
    DrawName(context);
    DrawButtons(context);
}

void ZFileChooserContent::DrawList(ZDrawingContext& context) const
{
    drawField(context, kListRect);
    for (std::int32_t i = mFirst; i < std::min(mFirst + kLines, Count()); ++i) {
        const ZFolderEntry& entry = mEntries[static_cast<std::size_t>(i)];
        const ZRect line = GetLineRect(i - mFirst);
        if (i == mSelected)
            ZPanelStyle::fill(context, line, ZPanelStyle::kAccent);
        ZPanelStyle::drawLine(context, ZString(entry.isFolder ? entry.name + "/" : entry.name),
                              {line.left + 4, line.top + 1, line.right - 4, line.bottom},
                              ZPanelStyle::kAlignLeft, ZPanelStyle::kText);
    }
}

void ZFileChooserContent::DrawName(ZDrawingContext& context) const
{
    drawField(context, kNameRect);
    const ZRect area{kNameRect.left + 5, kNameRect.top + 4, kNameRect.right - 5,
                     kNameRect.bottom - 4};
    const auto offset = [&](std::size_t place) {
        const std::int32_t width =
            place == 0 ? 0 : ZPanelStyle::measure(mName.GetTextBefore(place), kSize.x * 8).x;
        return std::min(area.left + width, area.right);
    };
    if (!mInList && mName.HasSelection())
        ZPanelStyle::fill(context,
                          {offset(mName.GetSelectionStart()), area.top,
                           offset(mName.GetSelectionEnd()), area.bottom},
                          ZPanelStyle::kAccent);
    ZPanelStyle::drawLine(context, mName.GetText(), area, ZPanelStyle::kAlignLeft,
                          ZPanelStyle::kText);
    const std::int32_t caret = offset(mName.GetCaret());
    if (!mInList && !mName.HasSelection())
        ZPanelStyle::fill(context, {caret, area.top, caret + 1, area.bottom}, ZPanelStyle::kText);
}

void ZFileChooserContent::DrawButtons(ZDrawingContext& context) const
{
    const bool saves = mRequest.purpose == ZFileRequest::kSave;
    drawField(context, kFilterRect);
    ZPanelStyle::drawLine(
        context,
        mFilter < mRequest.types.size()
            ? ZString(ZFileChooser::FilterName(*mRequest.types[mFilter]))
            : ZString("All files"),
        {kFilterRect.left + 5, kFilterRect.top + 2, kFilterRect.right - 5, kFilterRect.bottom},
        ZPanelStyle::kAlignLeft, ZPanelStyle::kText);
    const std::string note = IsAsking() ? "Replace " + mToReplace.filename().string() + "?" : mNote;
    ZPanelStyle::drawLine(context, ZString(note), kNoteRect, ZPanelStyle::kAlignLeft,
                          ZPanelStyle::kText);
    ZPanelStyle::drawButton(context,
                            IsAsking() ? "Replace"
                            : saves    ? "Save"
                                       : "Open",
                            kAcceptRect, ZPanelStyle::ButtonState::kNormal);
    ZPanelStyle::drawButton(context, "Cancel", kCancelRect, ZPanelStyle::ButtonState::kNormal);
}

}  // namespace orvane
