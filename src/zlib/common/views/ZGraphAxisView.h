// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

/// A plot with two axes, the base of views that draw curves into it. Background and axes are
/// painted into one cached picture each, which are used until something changes.
///
/// The horizontal axis runs from x min to x min + x width, the vertical one from y min at the
/// bottom to y min + y range. The scales stretch the curves, the origin scrolls them. [interface
/// thread]
class ZGraphAxisView : public ZView
{
public:
    /// Reads `<rect name="graphframe">`, the plot's rectangle, by default the whole view; the
    /// attributes xaxisnumticks, xaxisdecimalplaces and xaxisstyle ("logarithmic", or "minutes" for
    /// values in seconds) and the same for y; `<color name="gradstartcolor">` and `"gradendcolor"`.
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
    /// Draws the background of the plot.
    virtual void DrawBackground();
    virtual void DrawAxes();
    /// Draw ticks and labels below the plot, or left of it.
    virtual void DrawXAxis();
    virtual void DrawYAxis();
    /// Return the text for a value at its axis.
    [[nodiscard]] virtual ZString XLabel(float value) const;
    [[nodiscard]] virtual ZString YLabel(float value) const;
    /// Sets the scroll offset of the curves, in pixels before scaling.
    virtual void SetOrigin(const ZPoint& origin);
    [[nodiscard]] virtual ZPoint GetOrigin() const { return mOrigin; }

protected:
    /// Paints the picture that DrawBackground shows; mContext is that picture meanwhile.
    virtual void PaintBackground();
    /// Drop the cached pictures of background and axes, or of the axes alone, and repaint.
    void DropCaches();
    void DropAxes();
    /// Returns a point of the plot, from its corner, after scaling and scrolling.
    [[nodiscard]] ZPoint ToPlot(const ZPoint& place) const;
    /// Draws the two lines of a tick left of the plot and the dots across it; y is in the view's
    /// coordinates.
    void DrawYTick(std::int32_t y);
    /// Draws the label beside the tick at y.
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
    /// Makes a picture, which one of the view's operations paints.
    [[nodiscard]] boost::shared_ptr<ZBitmap> PaintPicture(std::int32_t width, std::int32_t height,
                                                          void (ZGraphAxisView::*paint)());
};

}  // namespace orvane
