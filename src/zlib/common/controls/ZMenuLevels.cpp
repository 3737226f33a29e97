// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZMenuLevels.h"

#include "zlib/common/controls/ZMenuContent.h"
#include "zlib/common/native/ZKeyCode.h"
#include "zlib/common/views/ZContentWindow.h"

#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::int32_t kNone = ZMenuContent::kNone;
/// By how much a submenu covers the menu that it belongs to, in units.
constexpr std::int32_t kOverlap = 3;

}  // namespace

/// One menu with its window. It hands all events to the levels.
class ZMenuLevels::Level : public ZWindowContent
{
public:
    Level(ZMenuLevels& levels, const ZMenu& menu, const ZRect& monitor)
        : mLevels(levels)
        , mContent(menu)
        , mMonitor(monitor)
    {
    }

    /// Places the menu on the screen, in pixels, and makes its window.
    bool MakeWindow(const ZPoint& position, std::uintptr_t owner)
    {
        const ZDeviceScale& scale = mLevels.mScale;
        const ZPoint size = scale.ToPixels(mContent.GetSize());
        mPlace = keptOn(mMonitor, ZRect{0, 0, size.x, size.y}.Offset(position.x, position.y));
        const bool isCut = mPlace.GetWidth() < size.x || mPlace.GetHeight() < size.y;
        mContent.SetSize(isCut ? scale.ToUnits(ZPoint{mPlace.GetWidth(), mPlace.GetHeight()})
                               : mContent.GetSize());
        mPopup = ZContentWindow::Create(
            {.kind = ZNativeWindow::Kind::kPopup, .parent = owner, .rect = mPlace, .title = {}},
            *this, scale);
        return mPopup != nullptr;
    }
    [[nodiscard]] ZPoint ToScreen(const ZPoint& point) const
    {
        const ZPoint pixel = mLevels.mScale.ToPixel(point);
        return {pixel.x + mPlace.left, pixel.y + mPlace.top};
    }
    [[nodiscard]] ZPoint FromScreen(const ZPoint& point) const
    {
        return mLevels.mScale.ToUnits(ZPoint{point.x - mPlace.left, point.y - mPlace.top});
    }
    void RedrawIf(bool isChanged) const
    {
        if (isChanged)
            mPopup->Redraw();
    }

    void Draw(ZDrawingContext& context) override { mContent.Draw(context); }
    bool Mouse(const ZNativeMouseEvent& event) override
    {
        mLevels.Mouse(*this, event);
        return false;
    }
    bool Key(const ZNativeKeyEvent& event) override
    {
        mLevels.Key(event);
        return false;
    }
    void FocusLost() override { mContent.FocusLost(); }
    void Dismiss() override { mContent.Dismiss(); }

    ZMenuLevels& mLevels;
    ZMenuContent mContent;
    const ZRect mMonitor;
    ZRect mPlace;                       // on the screen, in pixels
    std::int32_t mParentPlace = kNone;  // of the item that has opened this menu
    std::unique_ptr<ZContentWindow> mPopup;
};

ZMenuLevels::ZMenuLevels(const ZDeviceScale& scale, std::function<void()> ended)
    : mScale(scale)
    , mEnded(std::move(ended))
{
}

ZMenuLevels::~ZMenuLevels()
{
    CloseFrom(0);
}

ZContentWindow* ZMenuLevels::Open(const ZMenu& menu, const ZPoint& screenPosition,
                                  std::uintptr_t owner, const ZRect& monitor, const ZPoint& pointer)
{
    assert(mLevels.empty());
    mMonitor = monitor;
    Level* const level = AddLevel(menu);
    if (!level->MakeWindow(screenPosition, owner)) {
        mLevels.clear();
        return nullptr;
    }
    level->mContent.StartAt(level->FromScreen(pointer));
    return level->mPopup.get();
}

ZMenuLevels::Level* ZMenuLevels::AddLevel(const ZMenu& menu)
{
    const std::size_t depth = mLevels.size();
    Level* const level = mLevels.emplace_back(std::make_unique<Level>(*this, menu, mMonitor)).get();
    level->mContent.SetEnded([this, level] { End(*level); });
    level->mContent.SetSubmenuOpener(
        [this, depth](std::int32_t place, bool byKey) { OpenSubmenu(depth, place, byKey); });
    return level;
}

void ZMenuLevels::OpenSubmenu(std::size_t depth, std::int32_t place, bool byKey)
{
    assert(depth < mLevels.size());
    const bool isOpen = depth + 1 < mLevels.size() && mLevels[depth + 1]->mParentPlace == place;
    if (!isOpen) {
        CloseFrom(depth + 1);
        const Level& parent = *mLevels[depth];
        const auto menu = parent.mContent.GetSubmenu(place);
        if (!menu || menu->GetItems().empty())
            return;
        Level& level = *AddLevel(*menu);
        level.mParentPlace = place;
        const ZRect item = parent.mContent.GetItemRect(place);
        const ZPoint wide = mScale.ToPixels(level.mContent.GetSize());
        const std::int32_t overlap = mScale.ToPixels(ZPoint{kOverlap, 0}).x;
        ZPoint at{parent.mPlace.right - overlap,
                  parent.ToScreen({item.left, item.top - kOverlap}).y};
        // Where there is no room on the right the menu opens to the left.
        if (at.x + wide.x > mMonitor.right)
            at.x = parent.mPlace.left + overlap - wide.x;
        if (!level.MakeWindow(at, parent.mPopup->GetNative().GetHandle()))
            return static_cast<void>(mLevels.pop_back());
        level.mContent.BeginAsSubmenu();
        // Its checked item is in view, but the highlight stays where the pointer is.
        level.mContent.SetHighlight(kNone);
        level.mPopup->Show();
    }
    if (byKey)
        mLevels[depth + 1]->RedrawIf(mLevels[depth + 1]->mContent.HighlightFirst());
}

void ZMenuLevels::CloseFrom(std::size_t depth)
{
    while (mLevels.size() > depth)
        mLevels.pop_back();
    if (mPointed && *mPointed >= depth)
        mPointed.reset();
}

std::optional<std::size_t> ZMenuLevels::DepthAt(const ZPoint& screenPoint) const
{
    for (std::size_t depth = mLevels.size(); depth > 0; --depth)
        if (mLevels[depth - 1]->mPlace.Contains(screenPoint))
            return depth - 1;
    return std::nullopt;
}

void ZMenuLevels::Mouse(const Level& from, const ZNativeMouseEvent& event)
{
    if (mHasEnded)
        return;
    const ZPoint point = from.ToScreen(event.position);
    mPointed = event.action == ZNativeMouseEvent::kLeave ? std::nullopt : DepthAt(point);
    // What happens outside of all menus is for the first one to judge.
    const std::size_t depth = mPointed.value_or(0);
    for (std::size_t i = depth + 1; i < mLevels.size(); ++i)
        mLevels[i]->RedrawIf(mLevels[i]->mContent.SetHighlight(kNone));
    ZNativeMouseEvent local = event;
    Level& level = *mLevels[depth];
    local.position = level.FromScreen(point);
    level.RedrawIf(level.mContent.Mouse(local));
    HighlightParents(mPointed.value_or(mLevels.size()));
}

void ZMenuLevels::HighlightParents(std::size_t depth)
{
    for (std::size_t i = 1; i < mLevels.size() && i <= depth; ++i) {
        Level& parent = *mLevels[i - 1];
        parent.RedrawIf(parent.mContent.SetHighlight(mLevels[i]->mParentPlace));
    }
}

std::size_t ZMenuLevels::KeyDepth() const
{
    for (std::size_t depth = mLevels.size(); depth > 1; --depth)
        if (mLevels[depth - 1]->mContent.GetHighlight() != kNone)
            return depth - 1;
    return 0;
}

void ZMenuLevels::Key(const ZNativeKeyEvent& event)
{
    if (mHasEnded)
        return;
    const std::size_t depth = KeyDepth();
    if (depth > 0 && (event.code == kKeyLeft || event.code == kKeyEscape))
        return CloseFrom(depth);
    ZMenuContent& content = mLevels[depth]->mContent;
    const std::int32_t highlight = content.GetHighlight();
    if (event.code == kKeyRight) {
        if (content.GetSubmenu(highlight))
            OpenSubmenu(depth, highlight, true);
        return;
    }
    mLevels[depth]->RedrawIf(content.Key(event));
    // A submenu closes when the highlight leaves its item.
    if (!mHasEnded && depth + 1 < mLevels.size() &&
        content.GetHighlight() != mLevels[depth + 1]->mParentPlace)
        CloseFrom(depth + 1);
}

void ZMenuLevels::Poll()
{
    if (mHasEnded || !mPointed)
        return;
    const std::size_t depth = *mPointed;
    Level& level = *mLevels[depth];
    level.RedrawIf(level.mContent.ScrollByPointer());
    const std::int32_t place = level.mContent.GetHighlight();
    const auto at = std::pair(depth, place);
    mRested = std::exchange(mRestPlace, at) == at ? mRested + 1 : 0;
    if (mRested != kRestPolls || place == kNone)
        return;
    if (level.mContent.GetSubmenu(place))
        OpenSubmenu(depth, place, false);
    else
        CloseFrom(depth + 1);
}

void ZMenuLevels::ArmButtons()
{
    if (!mLevels.empty())
        mLevels.front()->mContent.ArmButtons();
}

void ZMenuLevels::Dismiss()
{
    if (!mLevels.empty())
        mLevels.front()->mContent.Dismiss();
}

void ZMenuLevels::End(const Level& level)
{
    if (std::exchange(mHasEnded, true))
        return;
    mChosen = level.mContent.GetChosen();
    mEnded();
}

}  // namespace orvane
