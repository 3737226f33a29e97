// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZBay.h"

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <limits>
#include <set>
#include <utility>

namespace orvane
{

namespace
{

std::string portMissing(const ZBay& bay, const char* kind, std::int32_t index, std::int32_t count)
{
    return "Bay '" + bay.GetName() + "' has no " + kind + " " + std::to_string(index) + ", but " +
           std::to_string(count) + " of them.";
}

}  // namespace

ZBay::ZBay(std::string_view name, ZLooper* looper)
    : ZHandler(name, looper)
{
}

ZBay::~ZBay()
{
    TearDown();
}

void ZBay::TearDown()
{
    UnrouteImports();
    UnrouteExports();
    Ports portDeletionList;  // keeps the own ports alive until the child bays are removed
    while (!mImports.empty())
        portDeletionList.push_back(RemoveImport(GetImportCount() - 1));
    while (!mExports.empty())
        portDeletionList.push_back(RemoveExport(GetExportCount() - 1));
    while (const auto bay = GetBay(0))
        RemoveBay(bay);
}

bool ZBay::IsKindOf(std::string_view className) const
{
    return className == "ZBayClass" || ZHandler::IsKindOf(className);
}

const char* ZBay::GetClassName() const
{
    return "ZBayClass";
}

void ZBay::SetLooper(ZLooper* looper)
{
    for (const auto& bay : mBays.Copy())
        bay->SetLooper(looper);
    ZHandler::SetLooper(looper);
}

void ZBay::ImportAdded(ZPort& /*port*/)
{
}

void ZBay::ExportAdded(ZPort& /*port*/)
{
}

void ZBay::ImportRemoved(ZPort& /*port*/)
{
}

void ZBay::ExportRemoved(ZPort& /*port*/)
{
}

void ZBay::RouteAdded(std::int32_t /*importIndex*/, ZBay& /*farBay*/, std::int32_t /*exportIndex*/)
{
}

void ZBay::RouteRemoved(std::int32_t /*importIndex*/, ZBay& /*farBay*/,
                        std::int32_t /*exportIndex*/)
{
}

void ZBay::DocumentAttached()
{
}

void ZBay::PortRangeChanged(ZPort& /*port*/)
{
}

// Ports

const ZBay::Ports& ZBay::PortsOf(ZPort::Direction direction) const
{
    return direction == ZPort::kImport ? mImports : mExports;
}

ZBay::Ports& ZBay::PortsOf(ZPort::Direction direction)
{
    return direction == ZPort::kImport ? mImports : mExports;
}

std::int32_t ZBay::GetImportCount() const
{
    return static_cast<std::int32_t>(mImports.size());
}

std::int32_t ZBay::GetExportCount() const
{
    return static_cast<std::int32_t>(mExports.size());
}

ZPort* ZBay::GetImport(std::int32_t index) const
{
    return SharePort(index, ZPort::kImport).get();
}

ZPort* ZBay::GetExport(std::int32_t index) const
{
    return SharePort(index, ZPort::kExport).get();
}

boost::shared_ptr<ZPort> ZBay::ShareImport(std::int32_t index) const
{
    return SharePort(index, ZPort::kImport);
}

boost::shared_ptr<ZPort> ZBay::ShareExport(std::int32_t index) const
{
    return SharePort(index, ZPort::kExport);
}

boost::shared_ptr<ZPort> ZBay::SharePort(std::int32_t index, ZPort::Direction direction) const
{
    const Ports& ports = PortsOf(direction);
    if (index < 0 || index >= std::ssize(ports))
        return nullptr;
    return ports[static_cast<std::size_t>(index)];
}

std::int32_t ZBay::IndexOf(const ZPort& port, ZPort::Direction direction) const
{
    const Ports& ports = PortsOf(direction);
    const auto found = std::find_if(ports.begin(), ports.end(),
                                    [&](const auto& held) { return held.get() == &port; });
    return found == ports.end() ? -1 : static_cast<std::int32_t>(found - ports.begin());
}

void ZBay::AddImport(const boost::shared_ptr<ZPort>& port)
{
    AddPort(port, ZPort::kImport);
    ImportAdded(*port);
}

void ZBay::AddExport(const boost::shared_ptr<ZPort>& port)
{
    AddPort(port, ZPort::kExport);
    ExportAdded(*port);
}

void ZBay::AddPort(const boost::shared_ptr<ZPort>& port, ZPort::Direction direction)
{
    assert(ZInterfaceLock::IsHeld());
    assert(port);
    Ports& ports = PortsOf(direction);
    if (!port->mOwner) {
        port->mDirection = direction;
        port->mOwner = this;
        port->mIndex = static_cast<std::int32_t>(ports.size());
    }
    ports.push_back(port);
}

boost::shared_ptr<ZPort> ZBay::RemoveImport(std::int32_t index)
{
    auto port = RemovePort(index, ZPort::kImport);
    if (port)
        ImportRemoved(*port);
    return port;
}

boost::shared_ptr<ZPort> ZBay::RemoveExport(std::int32_t index)
{
    auto port = RemovePort(index, ZPort::kExport);
    if (port)
        ExportRemoved(*port);
    return port;
}

boost::shared_ptr<ZPort> ZBay::RemovePort(std::int32_t index, ZPort::Direction direction)
{
    assert(ZInterfaceLock::IsHeld());
    auto port = SharePort(index, direction);
    if (!port)
        return nullptr;
    const bool isOwn = port->mOwner == this;
    UnroutePort(*port, direction, isOwn ? nullptr : this);
    PortsOf(direction).erase(PortsOf(direction).begin() + index);
    if (isOwn) {
        port->mOwner = nullptr;
        port->mIndex = -1;
        NumberPorts(direction);
    }
    // Containers may have published the port.
    for (ZBay* bay = mContainer; bay; bay = bay->mContainer)
        bay->WithdrawPort(*port, direction);
    return port;
}

void ZBay::NumberPorts(ZPort::Direction direction)
{
    std::int32_t index = 0;
    for (const auto& port : PortsOf(direction)) {
        if (port->mOwner == this)
            port->mIndex = index;
        ++index;
    }
}

void ZBay::WithdrawPort(const ZPort& port, ZPort::Direction direction)
{
    for (auto index = IndexOf(port, direction); index >= 0; index = IndexOf(port, direction))
        direction == ZPort::kImport ? RemoveImport(index) : RemoveExport(index);
}

void ZBay::WithdrawPortsOf(const ZBay& bay, ZPort::Direction direction)
{
    for (const auto& port : bay.PortsOf(direction))
        WithdrawPort(*port, direction);
    if (mContainer)
        mContainer->WithdrawPortsOf(bay, direction);
}

// Routes

bool ZBay::IsRouted(std::int32_t importIndex, const ZBay& farBay, std::int32_t exportIndex) const
{
    const ZPort* const importPort = GetImport(importIndex);
    const ZPort* const exportPort = farBay.GetExport(exportIndex);
    return importPort && exportPort && importPort->FindRoute(*exportPort).bay == &farBay;
}

void ZBay::Route(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex)
{
    assert(ZInterfaceLock::IsHeld());
    const std::string fault = RouteFault(importIndex, farBay, exportIndex);
    if (!fault.empty())
        throw ZException(fault);
    ZPort& importPort = *GetImport(importIndex);
    ZPort& exportPort = *farBay.GetExport(exportIndex);
    if (importPort.FindRoute(exportPort).bay)
        return;
    ++farBay.mRouteCount;
    importPort.AddRoute(farBay, exportPort);
    exportPort.AddRoute(*this, importPort);
    if (exportPort.GetType() == ZPort::kControl) {
        exportPort.SetRange(importPort.RangeMin(), importPort.RangeMax());
        exportPort.GetOwner()->PortRangeChanged(exportPort);
    }
    RouteAdded(importIndex, farBay, exportIndex);
}

void ZBay::Unroute(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex)
{
    assert(ZInterfaceLock::IsHeld());
    ZPort* const importPort = GetImport(importIndex);
    ZPort* const exportPort = farBay.GetExport(exportIndex);
    if (!importPort)
        throw ZException(portMissing(*this, "import", importIndex, GetImportCount()));
    if (!exportPort)
        throw ZException(portMissing(farBay, "export", exportIndex, farBay.GetExportCount()));
    if (importPort->FindRoute(*exportPort).bay != &farBay)
        return;
    assert(farBay.mRouteCount > 0);
    --farBay.mRouteCount;
    importPort->RemoveRoute(*exportPort);
    exportPort->RemoveRoute(*importPort);
    RouteRemoved(importIndex, farBay, exportIndex);
}

/// The reason why Route refuses these ports; empty when it does not.
std::string ZBay::RouteFault(std::int32_t importIndex, const ZBay& farBay,
                             std::int32_t exportIndex) const
{
    const ZPort* const importPort = GetImport(importIndex);
    const ZPort* const exportPort = farBay.GetExport(exportIndex);
    if (!importPort)
        return portMissing(*this, "import", importIndex, GetImportCount());
    if (!exportPort)
        return portMissing(farBay, "export", exportIndex, farBay.GetExportCount());
    const std::string route = "The route from '" + farBay.GetName() + "' to '" + GetName() + "' ";
    const ZBay* const source = exportPort->GetOwner();
    const ZBay* const target = importPort->GetOwner();
    if (!source || !target)
        return route + "leads to a port whose bay is gone.";
    if (importPort->IsFull() || exportPort->IsFull())
        return route + "is one more than the " + std::to_string(ZPort::kMaxRoutes) + " of a port.";
    if (source->CountReaders() >= source->GetMaxReaders())
        return route + "is one more than the " + std::to_string(source->GetMaxReaders()) +
               " imports that a bay feeds.";
    ChainLengths upstream;
    ChainLengths downstream;
    const std::int32_t above = source->LongestChain(ZPort::kImport, upstream);
    if (upstream.contains(target))
        return route + "closes a cycle.";
    if (above + target->LongestChain(ZPort::kExport, downstream) > kMaxChain)
        return route + "makes a chain of more than " + std::to_string(kMaxChain) + " bays.";
    return {};
}

std::int32_t ZBay::GetMaxReaders() const
{
    return std::numeric_limits<std::int32_t>::max();
}

std::int32_t ZBay::CountReaders() const
{
    std::size_t readers = 0;
    for (const auto& port : mExports)
        if (port->mOwner == this)
            readers += port->GetRoutes().size();
    return static_cast<std::int32_t>(readers);
}

/// The number of bays on the longest path from this bay's own imports or exports, this bay
/// included. The recursion ends because the routes have no cycles.
std::int32_t ZBay::LongestChain(ZPort::Direction direction, ChainLengths& known) const
{
    const auto [entry, isNew] = known.try_emplace(this, 0);
    if (!isNew)
        return entry->second;
    std::int32_t longest = 0;
    for (const auto& port : PortsOf(direction))
        if (port->mOwner == this)
            for (const ZPort::RouteRecord& route : port->GetRoutes())
                longest = std::max(longest, route.port->mOwner->LongestChain(direction, known));
    return entry->second = longest + 1;
}

/// Removes the route through the two bays that made it.
void ZBay::Disconnect(const ZPort& importPort, const ZPort& exportPort)
{
    assert(importPort.FindRoute(exportPort).bay && exportPort.FindRoute(importPort).bay);
    ZBay& source = *importPort.FindRoute(exportPort).bay;
    ZBay& target = *exportPort.FindRoute(importPort).bay;
    target.Unroute(target.IndexOf(importPort, ZPort::kImport), source,
                   source.IndexOf(exportPort, ZPort::kExport));
}

/// Removes the port's routes; with a bay given, only those that were made through that bay.
void ZBay::UnroutePort(const ZPort& port, ZPort::Direction direction, const ZBay* through)
{
    const std::vector<ZPort::RouteRecord> routes = port.GetRoutes();
    for (const ZPort::RouteRecord& route : routes) {
        if (through && route.port->FindRoute(port).bay != through)
            continue;
        if (direction == ZPort::kImport)
            Disconnect(port, *route.port);
        else
            Disconnect(*route.port, port);
    }
}

void ZBay::UnroutePorts(ZPort::Direction direction)
{
    for (const auto& port : PortsOf(direction))
        UnroutePort(*port, direction, nullptr);
}

void ZBay::UnrouteImports()
{
    UnroutePorts(ZPort::kImport);
}

void ZBay::UnrouteExports()
{
    UnroutePorts(ZPort::kExport);
}

std::vector<ZBay*> ZBay::UpstreamBays(bool recursive, bool unique) const
{
    return ReachableBays(ZPort::kImport, recursive, unique);
}

std::vector<ZBay*> ZBay::DownstreamBays(bool recursive, bool unique) const
{
    return ReachableBays(ZPort::kExport, recursive, unique);
}

std::vector<ZBay*> ZBay::ReachableBays(ZPort::Direction direction, bool recursive,
                                       bool unique) const
{
    std::vector<ZBay*> aboveList;
    std::vector<const ZBay*> pending{this};
    std::set<const ZBay*> seen;
    for (std::size_t next = 0; next < pending.size(); ++next) {
        for (const auto& port : pending[next]->PortsOf(direction)) {
            for (const ZPort::RouteRecord& route : port->GetRoutes()) {
                ZBay* const bay = route.port->GetOwner();
                const bool isNew = seen.insert(bay).second;
                if (isNew || !unique)
                    aboveList.push_back(bay);
                if (isNew && recursive)
                    pending.push_back(bay);
            }
        }
    }
    return aboveList;
}

// Child bays

void ZBay::SetContainer(ZBay* container)
{
    assert(ZInterfaceLock::IsHeld());
    assert(container != this);
    mContainer = container;
}

void ZBay::SetDocument(ZDocument* document)
{
    assert(ZInterfaceLock::IsHeld());
    mDocument = document;
    DocumentAttached();
    for (const auto& bay : mBays.Copy())
        bay->SetDocument(document);
}

bool ZBay::IsInside(const ZBay& bay) const
{
    const ZBay* outer = this;
    while (outer && outer != &bay)
        outer = outer->mContainer;
    return outer != nullptr;
}

void ZBay::AddBay(const boost::shared_ptr<ZBay>& bay)
{
    assert(ZInterfaceLock::IsHeld());
    assert(bay);
    if (bay->mContainer || IsInside(*bay))
        throw ZException("Bay '" + bay->GetName() + "' cannot be put into bay '" + GetName() +
                         "': it stands in one or contains it.");
    bay->SetContainer(this);
    mBays.Append(bay);
    AdoptElement(bay->GetElement(), "ContainerBay");
    if (mDocument)
        bay->SetDocument(mDocument);
}

void ZBay::RemoveBay(boost::shared_ptr<ZBay> bay)
{
    assert(ZInterfaceLock::IsHeld());
    if (!bay || bay->mContainer != this)
        return;
    bay->SpliceOut();
    WithdrawPortsOf(*bay, ZPort::kImport);
    WithdrawPortsOf(*bay, ZPort::kExport);
    bay->SetContainer(nullptr);
    mBays.Remove(bay);
}

void ZBay::SpliceOut()
{
    const std::size_t count = std::min(mImports.size(), mExports.size());
    for (std::size_t i = 0; i < count; ++i)
        JoinAround(*mImports[i], *mExports[i]);
    UnrouteImports();
    UnrouteExports();
}

/// Connects the first source of the import to the first target of the export.
void ZBay::JoinAround(const ZPort& importPort, const ZPort& exportPort)
{
    if (importPort.GetRoutes().empty() || exportPort.GetRoutes().empty())
        return;
    const ZPort::RouteRecord source = importPort.GetRoutes().front();
    const ZPort::RouteRecord target = exportPort.GetRoutes().front();
    Disconnect(*target.port, exportPort);
    Disconnect(importPort, *source.port);
    if (importPort.GetType() == exportPort.GetType())
        target.bay->Route(target.bay->IndexOf(*target.port, ZPort::kImport), *source.bay,
                          source.bay->IndexOf(*source.port, ZPort::kExport));
}

boost::shared_ptr<ZBay> ZBay::GetBay(std::int32_t index) const
{
    boost::shared_ptr<ZBay> bay;
    static_cast<void>(mBays.Get(index, bay));
    return bay;
}

boost::shared_ptr<ZBay> ZBay::FindBay(std::string_view name) const
{
    for (auto& bay : mBays.Copy())
        if (bay->GetName() == name)
            return bay;
    return nullptr;
}

// Elements

boost::shared_ptr<ZElement> ZBay::GetElement() const
{
    return mElement;
}

void ZBay::AddElement(const boost::shared_ptr<ZElement>& element)
{
    AdoptElement(element, "ZBay");
}

void ZBay::AdoptElement(const boost::shared_ptr<ZElement>& element, const char* groupName)
{
    assert(ZInterfaceLock::IsHeld());
    if (!mElement) {
        mElement = boost::make_shared<ZElement>(groupName, ZElement::ZGROUP, GetLooper());
        if (mContainer)
            mContainer->AdoptElement(mElement, "ContainerBay");
    }
    if (element)
        mElement->AddSubElement(element);
}

// Clones

boost::shared_ptr<ZBay> ZBay::Clone()
{
    auto copy = boost::make_shared<ZBay>(GetName(), GetLooper());
    CopyInto(*copy);
    return copy;
}

void ZBay::CopyInto(ZBay& copy)
{
    std::map<const ZBay*, boost::shared_ptr<ZBay>> clones;
    const std::int32_t count = mBays.Count();
    for (std::int32_t i = 0; i < count; ++i) {
        const auto bay = GetBay(i);
        if (!bay)
            throw ZException("Couldn't find bay!");
        const auto clone = bay->Clone();
        copy.AddBay(clone);
        clones.emplace(bay.get(), clone);
    }
    CopyRoutes(clones);
    CopyPorts(copy, ZPort::kImport);
    CopyPorts(copy, ZPort::kExport);
}

void ZBay::CopyRoutes(const std::map<const ZBay*, boost::shared_ptr<ZBay>>& clones) const
{
    for (const auto& bay : mBays.Copy()) {
        for (std::int32_t i = 0; i < bay->GetImportCount(); ++i) {
            for (const ZPort::RouteRecord& route : bay->GetImport(i)->GetRoutes()) {
                const auto source = clones.find(route.bay);
                if (source != clones.end())
                    clones.at(bay.get())->Route(i, *source->second,
                                                route.bay->IndexOf(*route.port, ZPort::kExport));
            }
        }
    }
}

void ZBay::CopyPorts(ZBay& copy, ZPort::Direction direction) const
{
    for (const auto& port : PortsOf(direction)) {
        const auto portCopy = CopyPort(copy, direction, port);
        direction == ZPort::kImport ? copy.AddImport(portCopy) : copy.AddExport(portCopy);
    }
}

boost::shared_ptr<ZPort> ZBay::CopyPort(const ZBay& copy, ZPort::Direction direction,
                                        const boost::shared_ptr<ZPort>& port) const
{
    if (port->mOwner == this)
        return port->Clone();
    for (std::int32_t i = 0; i < mBays.Count(); ++i) {
        const std::int32_t index = GetBay(i)->IndexOf(*port, direction);
        if (index >= 0)
            return copy.GetBay(i)->PortsOf(direction)[static_cast<std::size_t>(index)];
    }
    return port;
}

}  // namespace orvane
