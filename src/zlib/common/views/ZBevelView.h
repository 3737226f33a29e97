// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZPath;

/// A box around a group of views. The attribute radius chooses the form: 0 gives a square bevel in
/// the view's colours, any other value an engraved box with round corners of fixed radius.
/// [interface thread]
class ZBevelView : public ZView
{
public:
    ZBevelView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Both throw ZException kNotImplemented, not implemented.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    void Draw(const ZRect& update) override;

    /// Returns the radius of the round corners, in pixels, reduced where the box is too small.
    [[nodiscard]] std::int32_t GetCornerRadius() const;

protected:
    virtual void DrawSquare(const ZRect& update);
    virtual void DrawRounded(const ZRect& update);

private:
    void StrokeTopLeft();
    void StrokeBottomRight();
    void Stroke(const ZPath& path, const ZColor& color);

    std::int32_t mBevelSize;
    std::int32_t mRadius;
    ZColor mBevelHighlight{0, 255, 0, 255};
    ZColor mBevelLowlight{0, 255, 0, 255};
    ZColor mBevelBase{0, 255, 0, 255};
};

}  // namespace orvane
