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
/// Whoever touches the graph holds the interface lock, and no pass is under way. What the graph
/// refuses, it refuses with ZException -1 and as it was.
class ZBay : public ZHandler
{
public:
    /// A pass goes as deep as the longest chain of bays, on a stack that belongs to the host.
    static constexpr std::int32_t kMaxChain = 256;
    /// Bays in bays in one description, for the same reason.
    static constexpr std::int32_t kMaxNesting = 64;

    explicit ZBay(std::string_view name = {}, ZLooper* looper = nullptr);
    /// Builds the child bays and the routes between them; the application is the looper, too.
    /// Routes that name a bay which is not there, and those that Route would refuse, are skipped: a
    /// stored document holds routes to bays outside, which wiring makes again.
    /// Throws ZException -1 for a class that makes no bays and for too deep a nesting. [setup]
    ZBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// A tag "bay" with name and class.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    /// A leaf writes its element, if that is archivable; a container its bays, the routes to their
    /// imports and what it publishes.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Restores values, never structure: those of the child bays by name, or of the own element.
    void RestoreBody(const boost::shared_ptr<ZXMLElement>& xml) override;
    void SetLooper(ZLooper* looper) override;
    /// Traces ports and routes.
    void Dump() const override;

    /// Ports have come and gone, routes too. Nothing here. In a removal the port is off the list,
    /// the route gone.
    virtual void ImportAdded(ZPort& port);
    virtual void ExportAdded(ZPort& port);
    virtual void ImportRemoved(ZPort& port);
    virtual void ExportRemoved(ZPort& port);
    virtual void RouteAdded(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex);
    virtual void RouteRemoved(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex);
    /// The bay has been given its document. Nothing here.
    virtual void DocumentAttached();
    /// An export that controls something has taken over the range of what it controls. Nothing
    /// here.
    virtual void PortRangeChanged(ZPort& port);

    /// True when the import's table holds that bay and that export; false for unknown ports.
    [[nodiscard]] virtual bool IsRouted(std::int32_t importIndex, const ZBay& farBay,
                                        std::int32_t exportIndex) const;
    /// Joins an import of this bay to an export of the far bay; both may be published ones. Two
    /// ports that are joined stay so. Throws ZException -1 for a port that is not there, a full
    /// route table, a bay that too many imports would read, and a route that closes a cycle or
    /// makes a chain of more than kMaxChain bays.
    virtual void Route(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex);
    /// Does nothing when there is no such route. Throws ZException -1 for a port that is not there.
    virtual void Unroute(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex);
    virtual void SetContainer(ZBay* container);
    /// A bay like this one: with ports of its own, with clones of the children and the routes
    /// between these, but with no routes to others. Throws ZException -1 "Couldn't find bay!".
    [[nodiscard]] virtual boost::shared_ptr<ZBay> Clone();
    /// Null as long as nobody has added an element or a bay.
    [[nodiscard]] virtual boost::shared_ptr<ZElement> GetElement() const;
    /// Adds an element below the bay's own, the group "ZBay", which the first one makes.
    virtual void AddElement(const boost::shared_ptr<ZElement>& element);

    [[nodiscard]] std::int32_t GetImportCount() const;
    [[nodiscard]] std::int32_t GetExportCount() const;
    /// Null when there is no such port; it stays the bay's.
    [[nodiscard]] ZPort* GetImport(std::int32_t index) const;
    [[nodiscard]] ZPort* GetExport(std::int32_t index) const;
    /// The same for a bay that wants to publish the port.
    [[nodiscard]] boost::shared_ptr<ZPort> ShareImport(std::int32_t index) const;
    [[nodiscard]] boost::shared_ptr<ZPort> ShareExport(std::int32_t index) const;
    /// Appends a port. One without an owner becomes the bay's own; one that has an owner is
    /// published.
    void AddImport(const boost::shared_ptr<ZPort>& port);
    void AddExport(const boost::shared_ptr<ZPort>& port);
    /// Takes the port off, without routes; of an own one also from the bays that publish it. Null
    /// when there is no such port.
    boost::shared_ptr<ZPort> RemoveImport(std::int32_t index);
    boost::shared_ptr<ZPort> RemoveExport(std::int32_t index);

    /// Appends a child. Throws ZException -1 when it stands in a bay already or contains this one.
    void AddBay(const boost::shared_ptr<ZBay>& bay);
    /// Splices a child out: its neighbours are joined around it, where import and export of the
    /// same number have the same type. What this bay has published of it is withdrawn. Its element
    /// stays in the tree. Does nothing when it is no child.
    void RemoveBay(boost::shared_ptr<ZBay> bay);
    [[nodiscard]] std::int32_t GetBayCount() const { return mBays.Count(); }
    /// Null when there is no such child.
    [[nodiscard]] boost::shared_ptr<ZBay> GetBay(std::int32_t index) const;
    /// The first child of that name; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZBay> FindBay(std::string_view name) const;

    /// Removes every route of every import, or export, of this bay.
    void UnrouteImports();
    void UnrouteExports();
    /// Routes that have been made from the bay's exports and still stand.
    [[nodiscard]] std::int32_t GetRouteCount() const { return mRouteCount; }

    /// Owners of the ports that stand behind imports, or exports, near ones first; recursive: with
    /// what stands behind these. Without unique a bay is named once for each route that leads to
    /// it.
    [[nodiscard]] std::vector<ZBay*> UpstreamBays(bool recursive, bool unique) const;
    [[nodiscard]] std::vector<ZBay*> DownstreamBays(bool recursive, bool unique) const;

    [[nodiscard]] ZBay* GetContainer() const { return mContainer; }
    /// Hands the document down the tree; it is not owned.
    void SetDocument(ZDocument* document);
    [[nodiscard]] ZDocument* GetDocument() const { return mDocument; }

protected:
    /// What the destructor does. A class whose hooks have something to undo calls it from its own
    /// destructor, since hooks of a derived class are out of reach in that of its base.
    void TearDown();
    /// Gives an empty copy clones of this bay's ports, or of its children with all between them.
    void CopyInto(ZBay& copy);
    /// Imports that may read this bay at once.
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
