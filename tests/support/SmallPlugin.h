// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/documents/ZAudioDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZResources.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/signals/ZBlockProcessingBay.h"

#include <boost/make_shared.hpp>

namespace orvane
{

/// Multiplies by the value that its element "gain" had at the last tick. Its block size, which is
/// also its latency, is a hundredth of a second.
struct GainBay : ZBlockProcessingBay
{
    GainBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
        : ZBlockProcessingBay(xml, application)
        , mElement(boost::make_shared<ZElement>("gain", ZElement::ZFLOAT, application))
    {
        mElement->SetZFloat(1.0f, true);
        mElement->AddObserver(this);
        AddElement(mElement);
    }
    ~GainBay() override { mElement->RemoveObserver(this); }

    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        if (message->GetId() == ZELEMENTCHANGED)
            mGain = mElement->GetZFloat();
        else
            ZBlockProcessingBay::HandleZMessage(message);
    }
    bool Prepare() override
    {
        const bool prepared = ZBlockProcessingBay::Prepare();
        SampleRateChanged();
        return prepared;
    }
    void SampleRateChanged() override
    {
        SetBlockSize(static_cast<std::int32_t>(std::lround(GetSampleRate() / 100.0f)));
    }
    void ProcessBlock() noexcept override
    {
        const float gain = mGain;
        for (std::int32_t channel = 0; channel < GetChannelCount(); ++channel)
            for (std::int32_t i = 0; i < GetBlockSize(); ++i)
                OutputBlock(channel).Data()[i] = gain * InputBlock(channel).Data()[i];
    }

private:
    boost::shared_ptr<ZElement> mElement;
    std::atomic<float> mGain{1.0f};
};

/// A document that records MIDI messages.
struct SmallDocument : ZAudioDocument
{
    using ZAudioDocument::ZAudioDocument;

    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        if (message->GetId() >= ZMIDINOTEON && message->GetId() <= ZMIDIPITCHBEND)
            midi.push_back(message);
        ZAudioDocument::HandleZMessage(message);
    }

    std::vector<boost::shared_ptr<const ZMessage>> midi;
};

/// A plug-in's application with a document of one bay. Its description needs no signature. Make
/// holds the interface lock.
struct SmallPlugin : ZPlugin
{
    SmallPlugin()
        : ZPlugin(kNoResources)
    {
        SetStandalone(false);
        GetClassRegistry().AddStandard<GainBay>("GainBayClass");
        GetClassRegistry().AddStandard<SmallDocument>("SmallDocumentClass");
    }
    ~SmallPlugin() override { StopTimers(); }

    /// A started application. Its ticks begin with InitLooper.
    static std::unique_ptr<SmallPlugin> Make()
    {
        const ZInterfaceLock lock;
        auto app = std::make_unique<SmallPlugin>();
        static_cast<ZLooper&>(*app).PostZMessage(boost::make_shared<ZMessage>(ZLOOPERSTART),
                                                 app.get());
        app->ProcessQueue();
        return app;
    }

    void ReadDescription() override
    {
        const ZXMLDocument text(kDescription, static_cast<std::int32_t>(std::strlen(kDescription)));
        AddAudioManager(text.GetChild("audiomanager"));
        AddDocumentManager(text.GetChild("documentmanager"));
        GetDocumentManager()->NewDocument(GetDocumentManager()->GetTypes().front());
    }

    [[nodiscard]] boost::shared_ptr<SmallDocument> Document() const
    {
        return boost::dynamic_pointer_cast<SmallDocument>(GetCurrentDocument());
    }
    /// The element "gain" of the current document.
    boost::shared_ptr<ZElement> Gain() const { return GetCurrentDocument()->FindElement("gain"); }

private:
    static constexpr ZResources kNoResources{std::span<const ZResources::Entry>()};
    static constexpr const char* kDescription =
        "<audiomanager>"
        "<docchange mode=\"change\"><doctype name=\"Small\"></doctype></docchange>"
        "<drivermodel name=\"None\"></drivermodel>"
        "</audiomanager>"
        "<documentmanager name=\"Small\" type=\"sdi\"><documenttypes>"
        "<doctype class=\"SmallDocumentClass\" name=\"Type\"><networks><network type=\"output\">"
        "<bay name=\"Network\" class=\"ZSignalBayClass\"><bays>"
        "<bay name=\"Gain\" class=\"GainBayClass\" numchannels=\"2\"></bay></bays>"
        "<publish bay=\"Gain\" import=\"0\"></publish><publish bay=\"Gain\" import=\"1\"></publish>"
        "<publish bay=\"Gain\" export=\"0\"></publish><publish bay=\"Gain\" export=\"1\"></publish>"
        "</bay></network></networks></doctype></documenttypes></documentmanager>";
};

}  // namespace orvane
