// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "resources/KestruneResources.h"
#include "support/SmallApplication.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLDocument.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace orvane
{

/// The first element of a text.
inline boost::shared_ptr<ZXMLElement> tagOf(const std::string& text)
{
    return ZXMLDocument(text.data(), static_cast<std::int32_t>(text.size())).GetChild(0);
}

/// The tags `bitmap` of the four shapes of keys in a state.
inline std::string keyPictures(const std::string& state, const std::string& file,
                               const std::string& ending)
{
    std::string tags;
    for (const char* shape : {"1", "2", "3", "4"})
        tags += "<bitmap type=\"" + state + shape + "\" id=\"" + file + shape + ending + "\"/>";
    return tags;
}

/// A view that counts how often it asks for a repaint, since only one in a window gets it.
template <typename View>
class Counted : public View
{
public:
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

/// What a view painted, by its pixels as 0xAARRGGBB.
struct Picture
{
    std::int32_t width = 0;
    std::vector<std::uint32_t> pixels;

    [[nodiscard]] std::uint32_t At(std::int32_t x, std::int32_t y) const
    {
        return pixels.at(static_cast<std::size_t>(y * width + x));
    }
    [[nodiscard]] std::uint32_t AlphaAt(std::int32_t x, std::int32_t y) const
    {
        return At(x, y) >> 24;
    }
    bool operator==(const Picture&) const = default;
};

/// Views of the product with its pictures, over a document of elements that a test makes. They
/// hear of changes at Tick.
class ViewBench
{
public:
    boost::shared_ptr<ZElement> Add(const std::string& name, ZElement::Type type,
                                    std::uint32_t length = 0)
    {
        const auto element = boost::make_shared<ZElement>(name, type, &mApplication, length);
        mDocument->AddSubElement(element);
        return element;
    }

    /// From a `view` tag without bounds, attached and with the document.
    template <typename View>
    boost::shared_ptr<Counted<View>> Make(const std::string& tag, std::int32_t width,
                                          std::int32_t height)
    {
        const auto xml = tagOf(tag);
        const auto view = boost::make_shared<Counted<View>>(xml, &mApplication);
        view->SetBoundsSize(width, height);
        view->OnAttached();
        const auto opened = boost::make_shared<ZMessage>(ZDOCUMENTNEW);
        opened->Add<ZDocument*>("Document", mDocument.get());
        view->HandleZMessage(opened);
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

    static void CloseDocument(ZView& view)
    {
        view.HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCLOSED));
    }

    static Picture Paint(ZView& view)
    {
        const ZRect frame = view.GetFrame();
        const auto canvas = boost::make_shared<Canvas>(frame.right, frame.bottom);
        view.SetContext(canvas);
        view.Draw(frame);
        view.SetContext(nullptr);
        return {frame.right, canvas->Pixels()};
    }

    /// Of the product.
    Picture Load(const char* file)
    {
        ZBitmap bitmap(ZString(file), &mApplication);
        return {bitmap.GetWidth(), bitmap.GetNative()->ReadPixels()};
    }

private:
    class PictureApplication : public SmallApplication
    {
    public:
        [[nodiscard]] const ZResources& GetResources() const override
        {
            return kestruneResources();
        }
    };

    PictureApplication mApplication;
    boost::shared_ptr<ZDocument> mDocument =
        boost::make_shared<ZDocument>(tagOf("<documenttype></documenttype>"), &mApplication);
};

inline std::vector<float> samplesOf(const ZElement& element)
{
    const ZBuffer& buffer = *element.GetZBuffer();
    return {buffer.Data(), buffer.Data() + buffer.Length()};
}

inline void setSamples(ZElement& element, const std::vector<float>& samples)
{
    ZBuffer buffer(static_cast<std::uint32_t>(samples.size()), "test");
    std::copy(samples.begin(), samples.end(), buffer.Data());
    element.SetZBuffer(buffer, false);
}

}  // namespace orvane
