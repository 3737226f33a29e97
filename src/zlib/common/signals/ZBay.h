// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/signals/ZPort.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

class ZApplication;
class ZDocument;
class ZElement;
class ZXMLElement;

/// A node of a network: numbered import and export ports, joined by routes to ports of other bays.
/// A bay may contain bays and publish their ports as its own, so that a network can stand where a
/// bay stands.
///
/// Whoever changes the graph holds the interface lock and runs no pass meanwhile; both are
/// asserted. A change that is refused throws ZException kGeneral and leaves the graph as it was.
class ZBay : public ZHandler
{
public:
    /// Longest chain of routed bays. A pass recurses through the chain on the host's stack.
    static constexpr std::int32_t kMaxChain = 256;
    /// Deepest nesting of bays in one description. Building recurses, too.
    static constexpr std::int32_t kMaxNesting = 64;

    explicit ZBay(std::string_view name = {}, ZLooper* looper = nullptr);
    /// Builds the child bays and the routes between them; the application is also the looper.
    /// Skips a route that names an unknown bay or that Route would refuse: a stored document holds
    /// routes to bays outside this one, which are made again when the document is attached.
    /// Throws ZException kGeneral for a class that makes no bays and for nesting deeper than
    /// kMaxNesting. [setup]
    ZBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Makes a tag "bay" with name and class.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    /// A leaf writes its element if that is archivable. A container writes its child bays, the
    /// routes to their imports and the ports that it publishes.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Restores values, never structure: those of the child bays by name, or of the own element.
    void RestoreBody(const boost::shared_ptr<ZXMLElement>& xml) override;
    /// Sets the looper of this bay and of all child bays.
    void SetLooper(ZLooper* looper) override;

    /// Hook: SetDocument has given the bay its document. Does nothing in ZBay.
    virtual void DocumentAttached();
    /// Hooks: a port or a route has been added or removed. A removed port is no longer in the
    /// bay's list. They do nothing in ZBay.
    virtual void ImportAdded(ZPort& port);
    virtual void ExportAdded(ZPort& port);
    virtual void ImportRemoved(ZPort& port);
    virtual void ExportRemoved(ZPort& port);
    virtual void RouteAdded(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex);
    virtual void RouteRemoved(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex);

    /// True when the import has a route to that export of that bay; false for unknown ports.
    [[nodiscard]] virtual bool IsRouted(std::int32_t importIndex, const ZBay& farBay,
                                        std::int32_t exportIndex) const;
    /// Connects an import of this bay to an export of the far bay; either may be a published port.
    /// Does nothing when the route exists. Throws ZException kGeneral for an unknown port, a full
    /// route table, a bay that would feed more imports than it can, and a route that closes a
    /// cycle or makes a chain of more than kMaxChain bays.
    virtual void Route(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex);
    /// Does nothing when there is no such route. Throws ZException kGeneral for an unknown port.
    virtual void Unroute(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex);
    virtual void SetContainer(ZBay* container);
    /// Makes a bay like this one, with its own ports, clones of the child bays and the routes
    /// between them, but without routes to other bays. Throws ZException kGeneral "Couldn't find
    /// bay!".
    [[nodiscard]] virtual boost::shared_ptr<ZBay> Clone();
    /// The bay's group of elements; null until an element or a child bay has been added.
    [[nodiscard]] virtual boost::shared_ptr<ZElement> GetElement() const;
    /// Adds an element to the bay's group "ZBay", which the first call makes.
    virtual void AddElement(const boost::shared_ptr<ZElement>& element);
    /// Hook: a control export has taken over the range of the import that it now feeds. Does
    /// nothing in ZBay.
    virtual void PortRangeChanged(ZPort& port);
    /// Traces ports and routes.
    void Dump() const override;

    [[nodiscard]] std::int32_t GetImportCount() const;
    [[nodiscard]] std::int32_t GetExportCount() const;
    /// Null when there is no such port. The bay keeps owning the port.
    [[nodiscard]] ZPort* GetImport(std::int32_t index) const;
    [[nodiscard]] ZPort* GetExport(std::int32_t index) const;
    /// The port as a shared pointer, for a bay that publishes it.
    [[nodiscard]] boost::shared_ptr<ZPort> ShareImport(std::int32_t index) const;
    [[nodiscard]] boost::shared_ptr<ZPort> ShareExport(std::int32_t index) const;
    /// Appends a port. The bay becomes the owner of a port without one, and publishes a port that
    /// has one.
    void AddImport(const boost::shared_ptr<ZPort>& port);
    void AddExport(const boost::shared_ptr<ZPort>& port);
    /// Removes the port and its routes, also from the bays around this one that publish it. Gives
    /// back the port, null when there is none at that index.
    boost::shared_ptr<ZPort> RemoveImport(std::int32_t index);
    boost::shared_ptr<ZPort> RemoveExport(std::int32_t index);

    /// Appends a child bay. Throws ZException kGeneral when it already has a container or contains
    /// this bay.
    void AddBay(const boost::shared_ptr<ZBay>& bay);
    /// Removes a child bay and connects its neighbours: the source of each import to the target of
    /// the export of the same index, where both have the same type. Published ports of the child
    /// are withdrawn; its element stays in the tree. Does nothing when the bay is no child.
    void RemoveBay(boost::shared_ptr<ZBay> bay);
    [[nodiscard]] std::int32_t GetBayCount() const { return mBays.Count(); }
    /// Null when there is no such child.
    [[nodiscard]] boost::shared_ptr<ZBay> GetBay(std::int32_t index) const;
    /// The first child of that name; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZBay> FindBay(std::string_view name) const;

    /// Removes every route of every import, or export, of this bay.
    void UnrouteImports();
    void UnrouteExports();
    /// Routes from the bay's exports.
    [[nodiscard]] std::int32_t GetRouteCount() const { return mRouteCount; }

    /// The bays that this one reads, or that read it, nearest first. recursive: also those beyond
    /// them. Without unique, a bay is listed once for each route that leads to it.
    [[nodiscard]] std::vector<ZBay*> UpstreamBays(bool recursive, bool unique) const;
    [[nodiscard]] std::vector<ZBay*> DownstreamBays(bool recursive, bool unique) const;

    [[nodiscard]] ZBay* GetContainer() const { return mContainer; }
    /// Sets the document of this bay and of all child bays; it is not owned.
    void SetDocument(ZDocument* document);
    [[nodiscard]] ZDocument* GetDocument() const { return mDocument; }

protected:
    /// Removes all routes, ports and child bays. A derived class that overrides the hooks calls
    /// this in its own destructor: in ~ZBay its overrides can no longer be called.
    void TearDown();
    /// Adds clones of the child bays, of the routes between them and of the ports to an empty copy.
    void CopyInto(ZBay& copy);
    /// How many imports may read this bay.
    [[nodiscard]] virtual std::int32_t GetMaxReaders() const;
    [[nodiscard]] std::vector<boost::shared_ptr<ZBay>> CopyBays() const { return mBays.Copy(); }

private:
    using Ports = std::vector<boost::shared_ptr<ZPort>>;
    using ChainLengths = std::map<const ZBay*, std::int32_t>;

    [[nodiscard]] const Ports& PortsOf(ZPort::Direction direction) const;
    [[nodiscard]] Ports& PortsOf(ZPort::Direction direction);
    [[nodiscard]] boost::shared_ptr<ZPort> SharePort(std::int32_t index,
                                                     ZPort::Direction direction) const;
    [[nodiscard]] std::int32_t IndexOf(const ZPort& port, ZPort::Direction direction) const;
    void AddPort(const boost::shared_ptr<ZPort>& port, ZPort::Direction direction);
    boost::shared_ptr<ZPort> RemovePort(std::int32_t index, ZPort::Direction direction);
    void NumberPorts(ZPort::Direction direction);
    void WithdrawPort(const ZPort& port, ZPort::Direction direction);
    void WithdrawPortsOf(const ZBay& bay, ZPort::Direction direction);

    void BuildBays(const ZXMLElement& list);
    [[nodiscard]] boost::shared_ptr<ZBay> MakeBay(const boost::shared_ptr<ZXMLElement>& xml);
    void BuildRoutes(const ZXMLElement& list);
    void BuildRoute(const ZXMLElement& xml);
    void WriteRoutes(ZXMLElement& xml) const;
    void WritePublished(ZXMLElement& xml, ZPort::Direction direction) const;
    void DumpPorts(ZPort::Direction direction) const;
    void AdoptElement(const boost::shared_ptr<ZElement>& element, const char* groupName);

    [[nodiscard]] std::string RouteFault(std::int32_t importIndex, const ZBay& farBay,
                                         std::int32_t exportIndex) const;
    [[nodiscard]] std::int32_t CountReaders() const;
    std::int32_t LongestChain(ZPort::Direction direction, ChainLengths& known) const;
    static void Disconnect(const ZPort& importPort, const ZPort& exportPort);
    static void UnroutePort(const ZPort& port, ZPort::Direction direction, const ZBay* through);
    void UnroutePorts(ZPort::Direction direction);
    void SpliceOut();
    static void JoinAround(const ZPort& importPort, const ZPort& exportPort);
    [[nodiscard]] std::vector<ZBay*> ReachableBays(ZPort::Direction direction, bool recursive,
                                                   bool unique) const;
    [[nodiscard]] bool IsInside(const ZBay& bay) const;

    void CopyRoutes(const std::map<const ZBay*, boost::shared_ptr<ZBay>>& clones) const;
    void CopyPorts(ZBay& copy, ZPort::Direction direction) const;
    [[nodiscard]] boost::shared_ptr<ZPort> CopyPort(const ZBay& copy, ZPort::Direction direction,
                                                    const boost::shared_ptr<ZPort>& port) const;

    Ports mImports;
    Ports mExports;
    ZLockedList<boost::shared_ptr<ZBay>> mBays{"baylist"};
    std::int32_t mRouteCount = 0;
    ZBay* mContainer = nullptr;
    ZDocument* mDocument = nullptr;
    boost::shared_ptr<ZElement> mElement;
};

}  // namespace orvane
