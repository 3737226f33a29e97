// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/SmallApplication.h"
#include "support/Test.h"
#include "support/XmlOf.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/views/ZView.h"

#include <boost/make_shared.hpp>

namespace orvane
{

/// Makes a bitmap of one colour.
inline boost::shared_ptr<ZBitmap> plainBitmap(std::int32_t width, std::int32_t height,
                                              const ZColor& color = kRed)
{
    auto bitmap = boost::make_shared<ZBitmap>(width, height, nullptr);
    bitmap->SetBrushColor(color);
    bitmap->FillRect(bitmap->GetFrame());
    return bitmap;
}

/// Fixture for a view without a window: an application whose queue the test runs, elements, and a
/// canvas of 120 by 40 pixels.
struct ViewCanvasTest : testing::Test
{
    static constexpr std::int32_t kWidth = 120;
    static constexpr std::int32_t kHeight = 40;

    /// Makes a view of 110 by 20 pixels at 0, 0 with these attributes and tags.
    template <class View>
    boost::shared_ptr<View> Make(const std::string& attributes, const std::string& tags = "",
                                 const std::string& size = "width=\"110\" height=\"20\"")
    {
        return boost::make_shared<View>(xmlOf("<view name=\"view\" " + attributes +
                                              "><rect name=\"bounds\" left=\"0\" top=\"0\" " +
                                              size + "></rect>" + tags + "</view>"),
                                        &app);
    }
    boost::shared_ptr<ZElement> MakeFloat(float min, float max, float value)
    {
        auto element = boost::make_shared<ZElement>("float", ZElement::ZFLOAT, &app);
        element->SetRange(min, max, true);
        element->SetZFloat(value, true);
        return element;
    }
    boost::shared_ptr<ZElement> MakeDiscrete(const std::vector<std::string>& texts)
    {
        auto element = boost::make_shared<ZElement>("discrete", ZElement::ZDISCRETE, &app);
        for (const std::string& text : texts)
            element->AddDiscreteValue(text.c_str());
        return element;
    }
    /// Delivers the changes of an element as the looper's tick does.
    void Tell(ZElement& element)
    {
        element.FlushMark(nullptr);
        app.ProcessQueue();
    }
    /// Paints the whole view onto a new canvas.
    void Paint(ZView& view)
    {
        canvas = std::make_unique<Canvas>(kWidth, kHeight);
        const auto context = boost::make_shared<ZDrawingContext>();
        context->SetGraphics(canvas->GetGraphics());
        view.SetContext(context);
        view.Draw(view.GetFrame());
        view.SetContext(nullptr);
    }

    SmallApplication app;
    std::unique_ptr<Canvas> canvas;
};

}  // namespace orvane
