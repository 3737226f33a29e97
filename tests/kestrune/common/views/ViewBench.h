// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "resources/KestruneResources.h"
#include "support/MessageWith.h"
#include "support/SmallApplication.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/views/TestView.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

/// The tags `bitmap` of the four shapes of keys in a state.
inline std::string keyPictures(const std::string& state, const std::string& file,
                               const std::string& ending)
{
    std::string tags;
    for (const char* shape : {"1", "2", "3", "4"})
        tags += "<bitmap type=\"" + state + shape + "\" id=\"" + file + shape + ending + "\"/>";
    return tags;
}

/// A view that counts its requests for a repaint, which do not need a window here.
template <typename View>
struct Counted : View
{
    using View::View;
    void Invalidate() override { ++repaints; }
    void Invalidate(std::int32_t left, std::int32_t top, std::int32_t right,
                    std::int32_t bottom) override
    {
        ++repaints;
        lastPart = {left, top, right, bottom};
    }

    int repaints = 0;
    ZRect lastPart;
};

/// Views of the product with its pictures, over a document with the elements of a test. Changes of
/// elements reach the views at Tick().
struct ViewBench
{
    boost::shared_ptr<ZElement> Add(const std::string& name, ZElement::Type type,
                                    std::uint32_t length = 0)
    {
        const auto element = boost::make_shared<ZElement>(name, type, &mApplication, length);
        mDocument->AddSubElement(element);
        return element;
    }

    /// Makes a view from a `view` tag, attached and with the document.
    template <typename View>
    boost::shared_ptr<Counted<View>> Make(const std::string& tag, std::int32_t width,
                                          std::int32_t height)
    {
        const auto view = boost::make_shared<Counted<View>>(xmlOf(tag), &mApplication);
        view->SetBoundsSize(width, height);
        view->OnAttached();
        view->HandleZMessage(messageWith(ZDOCUMENTNEW, "Document", mDocument.get()));
        mApplication.ProcessQueue();
        return view;
    }

    void Tick()
    {
        boost::shared_ptr<ZElement> element;
        for (std::int32_t i = 0; mDocument->GetSubElement(i, element); ++i)
            element->FlushMark(nullptr);
        mApplication.ProcessQueue();
    }

    /// Paints a part of the view; all of it by default.
    static boost::shared_ptr<Canvas> Paint(ZView& view, std::optional<ZRect> part = std::nullopt)
    {
        const auto canvas =
            boost::make_shared<Canvas>(view.GetFrame().right, view.GetFrame().bottom);
        view.SetContext(canvas);
        view.Draw(part.value_or(view.GetFrame()));
        view.SetContext(nullptr);
        return canvas;
    }

    /// A pixel of one of the product's pictures, as 0xAARRGGBB.
    std::uint32_t PixelOf(const char* file, const ZPoint& at)
    {
        ZBitmap bitmap(ZString(file), &mApplication);
        return bitmap.GetNative()->ReadPixels().at(
            static_cast<std::size_t>(at.y * bitmap.GetWidth() + at.x));
    }

    ViewBench() { mApplication.resources = kestruneResources(); }

private:
    SmallApplication mApplication;
    boost::shared_ptr<ZDocument> mDocument =
        boost::make_shared<ZDocument>(xmlOf("<documenttype></documenttype>"), &mApplication);
};

inline std::vector<float> samplesOf(const ZElement& element)
{
    const ZBuffer& buffer = *element.GetZBuffer();
    return {buffer.Data(), buffer.Data() + buffer.Length()};
}

inline void setSamples(ZElement& element, const std::vector<float>& samples)
{
    ZBuffer buffer(static_cast<std::uint32_t>(samples.size()), "test");
    std::ranges::copy(samples, buffer.Data());
    element.SetZBuffer(buffer, false);
}

}  // namespace orvane
