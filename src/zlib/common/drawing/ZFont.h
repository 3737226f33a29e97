// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZXMLElement;

/// Describes a font; none is loaded before text is drawn or measured with it. The typeface is
/// looked up among the installed fonts, then among those of AddPrivateFont, and where nobody has it
/// the system's fallback stands in. [interface thread]
class ZFont
{
public:
    static constexpr std::int32_t kDefaultHeight = 12;

    ZFont() = default;
    /// height in pixels, the size of the em square.
    explicit ZFont(const ZString& typeface, std::int32_t height = kDefaultHeight);
    /// From the attributes typeface and height; an absent one leaves the default.
    explicit ZFont(const ZXMLElement& xml);
    ZFont(const ZFont&) = delete;
    ZFont& operator=(const ZFont&) = delete;
    virtual ~ZFont() = default;

    /// What a view has before its description gives it a font: Arial, 12 pixels. A new one at each
    /// call, since fonts can be changed.
    [[nodiscard]] static boost::shared_ptr<ZFont> MakeDefault();

    [[nodiscard]] virtual const ZString& GetTypeface() const { return mTypeface; }
    [[nodiscard]] virtual bool IsUnderline() const { return mUnderline; }
    [[nodiscard]] virtual bool IsBold() const { return mBold; }
    [[nodiscard]] virtual bool IsItalic() const { return mItalic; }
    [[nodiscard]] virtual std::int32_t GetHeight() const { return mHeight; }
    virtual void SetUnderline(bool underline);
    virtual void SetHeight(std::int32_t height);
    void SetBold(bool bold);
    void SetItalic(bool italic);

protected:
    /// After each change. Nothing here.
    virtual void FontChanged() {}

private:
    std::int32_t mHeight = kDefaultHeight;
    bool mUnderline = false;
    bool mBold = false;
    bool mItalic = false;
    ZString mTypeface;
};

}  // namespace orvane
