// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/SmallApplication.h"
#include "support/XmlOf.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/signals/ZBlockProcessingBay.h"
#include "zlib/common/signals/ZElementBay.h"
#include "zlib/common/signals/ZInputBay.h"
#include "zlib/common/signals/ZMeterBay.h"
#include "zlib/common/signals/ZOutputBay.h"
#include "zlib/common/signals/ZThruBay.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

inline void registerBays(ZClassRegistry& registry)
{
    registry.AddStandard<ZElement>("ZElementClass");
    registry.AddStandard<ZSignalBay>("ZSignalBayClass");
    registry.AddStandard<ZElementBay>("ZElementBayClass");
    registry.AddStandard<ZThruBay>("ZThruBayClass");
    registry.AddStandard<ZMeterBay>("ZMeterBayClass");
    registry.AddStandard<ZBlockProcessingBay>("ZBlockProcessingBayClass");
}

/// A network with a bay of each class, a chain, a fan-out and a bay in a bay.
inline std::string networkOfEachClass()
{
    return "<bay name=\"network\" class=\"ZSignalBayClass\">\n<bays>\n"
           "<bay name=\"thru\" class=\"ZThruBayClass\" numchannels=\"2\"></bay>\n"
           "<bay name=\"inner\" class=\"ZSignalBayClass\">\n<bays>\n"
           "<bay name=\"block\" class=\"ZBlockProcessingBayClass\" numchannels=\"2\"></bay>\n"
           "</bays>\n<routes></routes>\n"
           "<publish bay=\"block\" import=\"0\" /><publish bay=\"block\" import=\"1\" />\n"
           "<publish bay=\"block\" export=\"1\" /><publish bay=\"block\" export=\"0\" />\n</bay>\n"
           "<bay name=\"meter\" class=\"ZMeterBayClass\" numchannels=\"2\"></bay>\n"
           "<bay name=\"knob\" class=\"ZElementBayClass\"><element name=\"gain\" "
           "class=\"ZElementClass\" type=\"ZFLOAT\" floatvalue=\"0.5\"></element></bay>\n"
           "</bays>\n<routes>\n"
           "<route outbay=\"thru\" export=\"0\" inbay=\"inner\" import=\"0\" />\n"
           "<route outbay=\"thru\" export=\"0\" inbay=\"inner\" import=\"1\" />\n"
           "<route outbay=\"inner\" export=\"0\" inbay=\"meter\" import=\"0\" />\n"
           "<route outbay=\"inner\" export=\"1\" inbay=\"meter\" import=\"1\" />\n"
           "<route outbay=\"input\" export=\"0\" inbay=\"thru\" import=\"0\" />\n"
           "</routes>\n"
           "<publish bay=\"thru\" import=\"0\" /><publish bay=\"thru\" import=\"1\" />\n"
           "<publish bay=\"meter\" export=\"0\" /><publish bay=\"meter\" export=\"1\" />\n</bay>\n";
}

/// Connects the network to an input bay and an output bay and runs some passes.
inline void runBetweenEnds(ZSignalBay& network)
{
    ZInputBay input("input", 2);
    ZOutputBay output("output", 2);
    input.SetFifoSize(64);
    output.SetFifoSize(64);
    output.Prepare();
    for (std::int32_t i = 0; i < network.GetImportCount(); ++i)
        network.Route(i, input, i % 2);
    for (std::int32_t i = 0; i < 2 && i < network.GetExportCount(); ++i)
        output.Route(i, network, i);
    const std::vector<float> block(64);
    for (int pass = 0; pass < 3; ++pass) {
        input.Write({block.data(), input.Free(0)}, 0);
        const ZInterfaceUnlock unlocked;
        output.RunPass(48);
    }
}

/// Builds and runs a network from any bytes, and restores a standing network from them.
struct BayArchiveCheck
{
    BayArchiveCheck()
    {
        registerBays(mApplication.GetClassRegistry());
        mStanding = boost::make_shared<ZSignalBay>(xmlOf(networkOfEachClass()), &mApplication);
    }

    /// Describes the fault that the text causes; empty when there is none.
    std::string FaultAfter(const std::string& text)
    {
        const auto xml = xmlOf(text);
        if (!xml)
            return "";
        std::string fault;
        try {
            fault = FaultOfBuilding(xml);
        } catch (const ZException&) {
        }
        try {
            mStanding->RestoreBody(xml);
        } catch (const ZException&) {
        }
        return fault.empty() ? FaultOfArchive() : fault;
    }

private:
    std::string FaultOfBuilding(const boost::shared_ptr<ZXMLElement>& xml)
    {
        const auto network = boost::make_shared<ZSignalBay>(xml, &mApplication);
        network->Prepare();
        network->SetMaxBuffer(64);
        runBetweenEnds(*network);
        static_cast<void>(network->ExtractXML());
        static_cast<void>(network->Clone());
        network->Dump();
        while (const auto bay = network->GetBay(network->GetBayCount() / 2))
            network->RemoveBay(bay);
        const bool publishes = network->GetImportCount() + network->GetExportCount() > 0;
        return publishes ? "a network without bays publishes ports" : "";
    }

    /// The archive of the restored network must build the same network again.
    std::string FaultOfArchive()
    {
        const std::string once = mStanding->ExtractXML()->Write(0);
        if (once == mArchive)
            return "";
        mArchive = once;
        const ZSignalBay again(xmlOf(once), &mApplication);
        const std::string twice = again.ExtractXML()->Write(0);
        return once == twice ? "" : "building its own archive makes of\n" + once + "this\n" + twice;
    }

    SmallApplication mApplication;
    boost::shared_ptr<ZSignalBay> mStanding;
    std::string mArchive;  // of mStanding, when it was last built
};

}  // namespace orvane
