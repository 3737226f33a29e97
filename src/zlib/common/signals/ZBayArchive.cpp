// SPDX-License-Identifier: GPL-3.0-or-later
// The XML form of a bay: building, writing and restoring.

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/signals/ZBay.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

namespace
{

/// Counts how deep the bays that this thread is building are nested.
class Nesting
{
public:
    Nesting() { ++depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --depth; }

    static std::int32_t Depth() { return depth; }

private:
    static inline thread_local std::int32_t depth = 0;
};

const char* indexWord(ZPort::Direction direction)
{
    return direction == ZPort::kImport ? "import" : "export";
}

}  // namespace

ZBay::ZBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZHandler(xml, application)
{
    if (const auto bays = xml->GetChild("bays"))
        BuildBays(*bays);
    if (const auto routes = xml->GetChild("routes"))
        BuildRoutes(*routes);
}

void ZBay::BuildBays(const ZXMLElement& list)
{
    const Nesting nesting;
    if (Nesting::Depth() > kMaxNesting)
        throw ZException("Bay '" + GetName() + "' stands in more than " +
                         std::to_string(kMaxNesting) + " others.");
    const std::int32_t count = list.GetChildCount("bay");
    for (std::int32_t i = 0; i < count; ++i)
        AddBay(MakeBay(list.GetChild("bay", i)));
}

boost::shared_ptr<ZBay> ZBay::MakeBay(const boost::shared_ptr<ZXMLElement>& xml)
{
    const std::string name = xml->GetAttributeOr("name", "");
    const std::string className = xml->GetAttributeOr("class", "");
    ZTrace::Write("Bay '" + GetName() + "' is adding an instance of class '" + className +
                  "' named '" + name + "'\n");
    ZApplication* const application = GetApp();
    if (!application)
        throw ZException("A bay needs an application to make its bays.");
    const ZClassRegistry& registry = application->GetClassRegistry();
    boost::shared_ptr<ZBay> bay;
    if (registry.Contains(className))
        bay = boost::dynamic_pointer_cast<ZBay>(registry.Create(className, xml));
    if (!bay)
        throw ZException("ERROR (ZBay::ZBay(xml)) '" + className + "' class (name='" + name +
                         "') found in XML, unable to make instance!\n");
    return bay;
}

void ZBay::BuildRoutes(const ZXMLElement& list)
{
    const std::int32_t count = list.GetChildCount("route");
    for (std::int32_t i = 0; i < count; ++i)
        BuildRoute(*list.GetChild("route", i));
}

void ZBay::BuildRoute(const ZXMLElement& xml)
{
    const auto target = FindBay(xml.GetAttributeOr("inbay", ""));
    const auto source = FindBay(xml.GetAttributeOr("outbay", ""));
    if (!target || !source)
        return;
    const std::int32_t importIndex = xml.GetInt32("import");
    const std::int32_t exportIndex = xml.GetInt32("export");
    ZTrace::Write("routing import " + std::to_string(importIndex) + " on " + target->GetName() +
                  ", to export " + std::to_string(exportIndex) + " on " + source->GetName() + "\n");
    const std::string fault = target->RouteFault(importIndex, *source, exportIndex);
    if (fault.empty())
        target->Route(importIndex, *source, exportIndex);
    else
        ZTrace::Write(fault);
}

boost::shared_ptr<ZXMLElement> ZBay::ExtractHeader() const
{
    auto xml = boost::make_shared<ZXMLElement>("bay");
    xml->AddAttribute("name", GetName());
    xml->AddAttribute("class", GetClassName());
    return xml;
}

void ZBay::ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const
{
    if (GetBayCount() == 0) {
        const auto element = GetElement();
        if (element && element->IsArchivedNow())
            xml->AddChild(*element->ExtractXML());
        return;
    }
    ZXMLElement bays("bays");
    for (const auto& bay : CopyBays())
        bays.AddChild(*bay->ExtractXML());
    xml->AddChild(bays);
    WriteRoutes(*xml);
    WritePublished(*xml, ZPort::kImport);
    WritePublished(*xml, ZPort::kExport);
}

/// Writes every route to an import of a child bay, also those from outside this bay. Routes inside
/// a child bay are written by that bay.
void ZBay::WriteRoutes(ZXMLElement& xml) const
{
    ZXMLElement routes("routes");
    for (const auto& bay : CopyBays()) {
        for (std::int32_t i = 0; i < bay->GetImportCount(); ++i) {
            for (const ZPort::RouteRecord& record : bay->GetImport(i)->GetRoutes()) {
                if (record.bay->IsInside(*bay))
                    continue;
                ZXMLElement route("route");
                route.AddAttribute("outbay", record.bay->GetName());
                route.AddAttribute("export", record.bay->IndexOf(*record.port, ZPort::kExport));
                route.AddAttribute("inbay", bay->GetName());
                route.AddAttribute("import", i);
                routes.AddChild(route);
            }
        }
    }
    xml.AddChild(routes);
}

/// Names each published port by the child bay that has it, which may itself have published it.
void ZBay::WritePublished(ZXMLElement& xml, ZPort::Direction direction) const
{
    for (const auto& port : PortsOf(direction)) {
        for (const auto& bay : CopyBays()) {
            const std::int32_t index = bay->IndexOf(*port, direction);
            if (index < 0)
                continue;
            ZXMLElement publish("publish");
            publish.AddAttribute("bay", bay->GetName());
            publish.AddAttribute(indexWord(direction), index);
            xml.AddChild(publish);
            break;
        }
    }
}

void ZBay::RestoreBody(const boost::shared_ptr<ZXMLElement>& xml)
{
    if (!xml)
        return;
    if (const auto bays = xml->GetChild("bays")) {
        const std::int32_t count = bays->GetChildCount("bay");
        for (std::int32_t i = 0; i < count; ++i) {
            const auto bayXml = bays->GetChild("bay", i);
            if (const auto bay = FindBay(bayXml->GetAttributeOr("name", "")))
                bay->RestoreBody(bayXml);
        }
        return;
    }
    const auto elementXml = xml->GetChild("element");
    const auto element = GetElement();
    if (elementXml && element)
        element->RestoreBody(elementXml);
}

void ZBay::Dump() const
{
    ZTrace::Write("----  " + GetName() + "  -----\n");
    DumpPorts(ZPort::kImport);
    DumpPorts(ZPort::kExport);
    ZTrace::Write(std::to_string(mRouteCount) + " active routes\n");
    for (const auto& bay : CopyBays()) {
        bay->Dump();
        ZTrace::Write(bay->GetName() + " contained\n");
    }
}

void ZBay::DumpPorts(ZPort::Direction direction) const
{
    const std::string kind = indexWord(direction);
    const std::string farKind = direction == ZPort::kImport ? "export " : "import ";
    ZTrace::Write(std::to_string(PortsOf(direction).size()) + " " + kind + "s\n");
    std::int32_t index = 0;
    for (const auto& port : PortsOf(direction)) {
        ZTrace::Write("  " + kind + " " + std::to_string(index++) + " : " + port->GetName() + "\n");
        ZTrace::Write("  " + std::to_string(port->GetRoutes().size()) + " routes\n");
        std::int32_t entry = 0;
        for (const ZPort::RouteRecord& route : port->GetRoutes())
            ZTrace::Write("     route " + std::to_string(entry++) + " connected to " + farKind +
                          std::to_string(route.port->GetIndex()) + " on bay " +
                          route.bay->GetName() + "\n");
    }
}

}  // namespace orvane
