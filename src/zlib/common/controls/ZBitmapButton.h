// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZControl.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <array>
#include <cstdint>
#include <string_view>

namespace orvane
{

class ZCommand;

/// A button drawn from pictures, one for each state. A latching button switches its discrete
/// element between 0 and 1 when it is pressed. A momentary button acts when it is released inside:
/// it runs its OnMomentaryClick command or, without one, acts as a latching button does. [interface
/// thread]
class ZBitmapButton : public ZControl
{
public:
    /// The pictures, in the order of the types of `bitmap` tags.
    enum Picture : std::size_t
    {
        kOff,
        kOn,
        kPress,
        kPressWhileOn,
        kPressWhileOff,
        kDisabledOff,
        kDisabledOn,
        kOver,
        kOverWhileOn,
        kOverWhileOff,
        kPictureCount,
    };

    /// Looks up the commands of the `action` tags in the application's command list; a name that is
    /// not in the list counts as no command.
    ZBitmapButton(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZBitmapButton() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void ElementChanged(std::uint64_t elementId) override;
    void OnAttached() override;
    void OnDocumentChanged() override;
    void SetEnabled(bool enabled) override;
    void Draw(const ZRect& update) override;
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    void MouseEntered(const ZPoint& point) override;
    void MouseLeft() override;
    void OnCaptureLost() override;
    /// False while the button is disabled.
    [[nodiscard]] bool TakesFocus() const override { return TakesPress(); }
    [[nodiscard]] bool WantsKey(const ZNativeKeyEvent& key) const override;
    /// Return and the space bar do what a click does.
    void KeyDown(const ZNativeKeyEvent& key) override;

    virtual void SetMomentary(bool momentary) { mMomentary = momentary; }
    /// Sets the command of a momentary click and observes it; null for none.
    virtual void SetMomentaryCommand(const boost::shared_ptr<ZCommand>& command);
    /// Sets one of the pictures; null for none.
    virtual void SetPicture(Picture picture, const boost::shared_ptr<ZBitmap>& bitmap);
    /// Whether the element's index is above 0. Throws ZException kGeneral if the element is not
    /// discrete.
    [[nodiscard]] virtual bool IsOn() const;
    [[nodiscard]] virtual bool IsMomentary() const { return mMomentary; }
    /// Chooses the picture for the current state.
    virtual void UpdateBitmap();

private:
    [[nodiscard]] boost::shared_ptr<ZBitmap> ChooseBitmap() const;
    [[nodiscard]] bool LooksActive() const;
    [[nodiscard]] bool TakesPress() const;
    void ShowState();
    void ShowPressed(bool pressed);
    void SetMouseOver(bool over);
    void Flip();
    /// Does what a momentary click does. The view may be gone when the call returns.
    void Act();

    bool mMomentary;
    bool mPressed = false;
    bool mMouseOver = false;
    std::array<boost::shared_ptr<ZBitmap>, kPictureCount> mPictures;
    boost::shared_ptr<ZBitmap> mCurrentBitmap;
    boost::shared_ptr<ZCommand> mMomentaryCommand;
    boost::shared_ptr<ZCommand> mTurnOnCommand;
    boost::shared_ptr<ZCommand> mTurnOffCommand;
};

}  // namespace orvane
