// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZTextField.h"
#include "zlib/common/views/ZView.h"

#include <functional>

namespace orvane
{

/// A field of one line to type into, by keyboard and mouse. The window gives it the keys while it
/// has the focus, which a click or the Tab key takes.
class ZTextEdit : public ZView
{
public:
    ZTextEdit(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZTEXTINPUT with "Text" and ZKEYDOWN with "Key", "shift" and "control". Throws ZException -1
    /// when Text or Key is missing.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Takes a text, all of it selected.
    void SetText(const ZString& text);
    [[nodiscard]] ZString GetText() const { return mField.GetText(); }
    [[nodiscard]] const ZTextField& GetField() const { return mField; }
    /// What Return does; the view may be gone after it.
    void SetReturnAction(std::function<void()> action) { mReturn = std::move(action); }

    void Draw(const ZRect& rect) override;
    void MouseDown(const ZPoint& point, std::uint32_t mods) override;
    void MouseDoubleClick(const ZPoint& point, std::uint32_t mods) override;
    void MouseMoved(const ZPoint& point, std::uint32_t mods) override;
    void MouseUp(const ZPoint& point, std::uint32_t mods) override;
    void SetFocus(bool focus) override;

private:
    void KeyDown(std::uint8_t key, ZTextField::Select select, bool control);
    void MoveByKey(std::uint8_t key, ZTextField::Select select, bool control);
    [[nodiscard]] ZRect TextArea() const;
    /// Where a place of the text stands, from its start.
    [[nodiscard]] std::int32_t OffsetOf(std::size_t place) const;
    [[nodiscard]] std::size_t PlaceAt(std::int32_t x) const;
    void Edited();

    ZTextField mField;
    std::int32_t mScroll = 0;  // pixels of the text that lie before the left edge
    bool mFocused = false;
    std::function<void()> mReturn;
};

}  // namespace orvane
