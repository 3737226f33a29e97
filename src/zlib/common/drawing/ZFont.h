// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZXMLElement;

/// Describes a font; the font itself is looked up whenever text is drawn or measured with it. The
/// typeface is looked up among the installed fonts, then among those of AddPrivateFont; if neither
/// has it, the system's fallback is used. [interface thread]
class ZFont
{
public:
    static constexpr std::int32_t kDefaultHeight = 12;

    ZFont() = default;
    /// height: side of the em square in pixels.
    explicit ZFont(const ZString& typeface, std::int32_t height = kDefaultHeight);
    /// Reads the attributes typeface and height; the default of an absent one stays.
    explicit ZFont(const ZXMLElement& xml);
    ZFont(const ZFont&) = delete;
    ZFont& operator=(const ZFont&) = delete;
    virtual ~ZFont() = default;

    /// Makes the font of a view whose description gives none: Arial, 12 pixels. Every call makes a
    /// new one, because fonts can be changed.
    [[nodiscard]] static boost::shared_ptr<ZFont> MakeDefault();

    [[nodiscard]] virtual const ZString& GetTypeface() const { return mTypeface; }
    [[nodiscard]] virtual bool IsUnderline() const { return mUnderline; }
    [[nodiscard]] virtual bool IsBold() const { return mBold; }
    [[nodiscard]] virtual bool IsItalic() const { return mItalic; }
    [[nodiscard]] virtual std::int32_t GetHeight() const { return mHeight; }
    virtual void SetUnderline(bool underline);
    virtual void SetHeight(std::int32_t height);
    void SetBold(bool bold);

protected:
    /// Called after each change; the base class does nothing.
    virtual void FontChanged() {}

private:
    std::int32_t mHeight = kDefaultHeight;
    bool mUnderline = false;
    bool mBold = false;
    bool mItalic = false;
    ZString mTypeface;
};

}  // namespace orvane
