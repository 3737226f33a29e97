// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

/// A plot rectangle between two axes: the ground for views that draw curves into it. The ground and
/// the axes are painted once each into pictures and shown from these until something changes.
///
/// The horizontal axis runs from x min over the x width to the right, the vertical one from y min
/// over the y range upwards. Scales stretch the curves, the origin scrolls them.
class ZGraphAxisView : public ZView
{
public:
    /// Reads `<rect name="graphframe">`, the plot's place, without which it is all of the view; the
    /// attributes xaxisnumticks, xaxisdecimalplaces, and xaxisstyle, "logarithmic" or "minutes" for
    /// seconds, with the same for y; `<color name="gradstartcolor">` and `"gradendcolor"`.
    ZGraphAxisView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void Draw(const ZRect& rect) override;
    void OnDetached() override;
    void SizeChanged() override;
    void SetHorizontalScale(float scale) override;
    void SetVerticalScale(float scale) override;

    virtual void SetYRange(float range);
    virtual void SetYMin(float min);
    virtual void SetXMin(float min);
    virtual void SetXWidth(float width);
    [[nodiscard]] virtual ZRect GetGraphFrame() const { return mGraphFrame; }
    using ZView::DrawBackground;
    /// The ground of the plot, without the curves.
    virtual void DrawBackground();
    virtual void DrawAxes();
    /// Ticks and labels below the plot, or left of it.
    virtual void DrawXAxis();
    virtual void DrawYAxis();
    /// How a value is written at its axis.
    [[nodiscard]] virtual ZString XLabel(float value) const;
    [[nodiscard]] virtual ZString YLabel(float value) const;
    /// The scroll offset of the curves, in pixels before the scale.
    virtual void SetOrigin(const ZPoint& origin);
    [[nodiscard]] virtual ZPoint GetOrigin() const { return mOrigin; }

protected:
    /// Paints what DrawBackground shows, from 0, 0, into a picture that is the context meanwhile.
    virtual void PaintBackground();
    /// Has ground and axes, or the axes alone, painted anew.
    void DropCaches();
    void DropAxes();
    /// A place in the plot, from its corner, with scale and scroll.
    [[nodiscard]] ZPoint ToPlot(const ZPoint& place) const;
    /// The two lines of a tick left of the plot and the dots across it; y is the view's.
    void DrawYTick(std::int32_t y);
    /// A label beside the tick.
    void DrawYLabel(const ZString& text, std::int32_t y);

    ZRect mGraphFrame;
    std::int32_t mXDecimalPlaces = 2;
    std::int32_t mYDecimalPlaces = 0;
    std::int32_t mXTickCount = 4;
    std::int32_t mYTickCount = 5;
    float mXMin = -10.0f;
    float mXWidth = 0.0f;
    float mYRange = 1.0f;
    float mYMin = 0.0f;
    bool mXLogarithmic = false;
    bool mYLogarithmic = false;
    bool mXMinutes = false;
    bool mYMinutes = false;
    ZColor mGradStartColor;
    ZColor mGradEndColor;
    boost::shared_ptr<ZBitmap> mLabelBitmap;      // the axes, in the size of the view
    boost::shared_ptr<ZBitmap> mBackgroundCache;  // in the size of the plot
    ZPoint mOrigin;

private:
    void ReadAttributes(const ZXMLElement& xml);
    void PaintAxes();
    void PaintEdges();
    void DrawXTick(std::int32_t x);
    void DrawXLabel(const ZString& text, std::int32_t x, std::int32_t width);
    /// A new picture, painted by one of the view's operations.
    [[nodiscard]] boost::shared_ptr<ZBitmap> PaintPicture(std::int32_t width, std::int32_t height,
                                                          void (ZGraphAxisView::*paint)());
};

}  // namespace orvane
