// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

namespace orvane
{

/// A label: one text on a transparent ground, rendered into a bitmap that each paint shows.
/// [interface thread]
class ZStringView : public ZView
{
public:
    /// Reads the tag `label` with text, align and key; where the application has a text for the
    /// key, it replaces text.
    ZStringView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZStringView() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;

    void OnAttached() override;
    void OnDetached() override;
    void Draw(const ZRect& rect) override;
    /// Return the measured size of the text, in pixels; 0 until the view is attached to a window.
    [[nodiscard]] std::int32_t GetMinWidth() const override { return mTextWidth; }
    [[nodiscard]] std::int32_t GetMinHeight() const override { return mTextHeight; }
    void SetPenColor(const ZColor& color) override;
    void SetFont(const boost::shared_ptr<ZFont>& font) override;
    virtual void SetText(const ZString& text);
    [[nodiscard]] const ZString& GetText() const { return mText; }
    /// Returns how the text lies in the view: 0 centre, 1 left, 2 right.
    [[nodiscard]] std::int32_t GetAlign() const override { return mAlign; }
    /// Takes effect when the text is rendered next: after a change of text, colour or font.
    void SetAlign(std::int32_t align) override;

protected:
    ZString mText;
    std::int32_t mTextWidth = 0;
    std::int32_t mTextHeight = 0;
    std::int32_t mAlign = kAlignCentre;
    bool mCacheAlpha = false;
    boost::shared_ptr<ZBitmap> mCache;  // the rendered text; null until it is drawn

private:
    void ReadLabel(const ZXMLElement& xml);
    void MeasureText();
    void RenderText();
};

}  // namespace orvane
