// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZElementBay.h"

#include "support/BayArchiveCheck.h"
#include "support/ProbeBay.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace orvane
{

namespace
{

/// A bay of an element with these attributes and children, and its export.
struct Source
{
    explicit Source(const std::string& attributes, const std::string& children = "")
        : bay(firstBay("<bay name=\"knob\" class=\"ZElementBayClass\"><element name=\"e\" " +
                       attributes + ">" + children + "</element></bay>"),
              nullptr)
        , port(dynamic_cast<ZSignalPort&>(*bay.GetExport(0)))
    {
    }
    void Run() { bay.ProcessSignal(0, 10, 0, 1); }

    ZElementBay bay;
    ZSignalPort& port;
};

const char* const kTwoSamples =
    "<buffer length=\"2\" samplerate=\"44100\"><data values=\"3f80000040000000\" /></buffer>";

}  // namespace

TEST(ZElementBayTest, ANumberIsOneSampleAndIsArchived)
{
    Source source("type=\"ZFLOAT\" floatvalue=\"0.5\" floatdefault=\"0.25\" archivable=\"false\"");
    EXPECT_EQ(source.port.GetName(), "Element Bay");
    EXPECT_EQ(source.port.GetType(), ZPort::kControl);
    source.Run();
    EXPECT_EQ(source.port.GetAvailable(), 1u);
    EXPECT_EQ(source.port.GetBuffer()->Data()[0], 0.5f);
    source.bay.SetDefaults();
    source.Run();
    EXPECT_EQ(source.port.GetBuffer()->Data()[0], 0.25f);

    const auto target = probe("target", 1, 0, ZPort::kControl);
    target->GetImport(0)->SetRange(-3.0f, 4.0f);
    target->Route(0, source.bay, 0);
    EXPECT_EQ(source.bay.GetElement()->Min(), -3.0f);
    EXPECT_EQ(source.bay.GetElement()->Max(), 4.0f);

    source.bay.GetElement()->SetZFloat(0.75f, true);
    EXPECT_EQ(source.bay.ExtractXML()->GetChild("element")->GetFloat("floatvalue"), 0.75f);
    EXPECT_EQ(source.bay.Clone()->GetElement()->GetZFloat(), 0.75f);
    EXPECT_EQ(failureOf([] { ZElementBay(boost::make_shared<ZXMLElement>("bay"), nullptr); }),
              "No Element XML chunk found in Element Bay.");
}

TEST(ZElementBayTest, ABufferIsStoredWhilePassesRun)
{
    Source source("type=\"ZBUFFER\"", kTwoSamples);
    std::thread audio([&source] {
        for (int i = 0; i < 2000; ++i)
            source.Run();
    });
    ZBuffer samples(2, "ZBuffer");
    for (int i = 0; i < 2000; ++i) {
        samples.Data()[1] = static_cast<float>(i);
        source.bay.GetElement()->SetZBuffer(samples, false);
    }
    audio.join();
    source.Run();
    EXPECT_EQ(source.port.GetBuffer()->Data()[1], 1999.0f);
}

}  // namespace orvane
