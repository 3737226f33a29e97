// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZTextField.h"
#include "zlib/common/views/ZView.h"

#include <functional>

namespace orvane
{

/// A text field of one line, edited by keyboard and mouse. It gets the keys while it has the focus,
/// which a click or the Tab key gives it. Control with A, C, X and V, and the older Shift or
/// Control with Insert and Delete, select, copy, cut and paste. [interface thread]
class ZTextEdit : public ZView
{
public:
    ZTextEdit(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Handles ZTEXTINPUT with "Text". Throws ZException kGeneral if that is missing. ZView handles
    /// all other messages.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Sets the text and selects all of it.
    void SetText(const ZString& text);
    [[nodiscard]] ZString GetText() const { return mField.GetText(); }
    /// Sets what Return does. The action may destroy the view.
    void SetReturnAction(std::function<void()> action) { mReturn = std::move(action); }

    void Draw(const ZRect& rect) override;
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    /// Selects the word under the pointer.
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    void SetFocus(bool focus) override;
    /// True for all keys but Tab, so that no host acts on what is typed.
    [[nodiscard]] bool WantsKey(const ZNativeKeyEvent& key) const override;
    void KeyDown(const ZNativeKeyEvent& key) override;

protected:
    ZTextField mField;

private:
    /// Does what a shortcut says; false for any other key.
    bool HandleShortcut(const ZNativeKeyEvent& key);
    void Copy() const;
    void Paste();
    void MoveByKey(std::uint8_t key, ZTextField::Select select, bool control);
    [[nodiscard]] ZRect TextArea() const;
    /// The distance in pixels from the start of the text to a place in it.
    [[nodiscard]] std::int32_t OffsetOf(std::size_t place) const;
    /// The place in the text that is nearest to a point of the view.
    [[nodiscard]] std::size_t PlaceAt(std::int32_t x) const;
    /// Scrolls to the caret and repaints.
    void Edited();

    std::int32_t mScroll = 0;  // pixels of the text left of the visible part
    bool mFocused = false;
    std::function<void()> mReturn;
};

}  // namespace orvane
