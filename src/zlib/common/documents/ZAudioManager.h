// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZLockedList.h"

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orvane
{

class ZAudioDocument;
class ZBay;
class ZDocument;
class ZElement;
class ZMessage;
class ZSignalDriver;
class ZSignalLooper;

/// The user's choice of a sound device. Indexes refer to the driver models of the manager and to
/// the devices of the driver.
struct ZDriverSettings
{
    std::int32_t model = 0;
    std::int32_t inputDevice = 0;
    std::int32_t outputDevice = 0;
    std::int32_t inputRate = 44100;  // Hz
    std::int32_t inputChannels = 2;
    std::int32_t inputDepth = 32;     // bits
    std::int32_t outputRate = 44100;  // Hz
    std::int32_t outputChannels = 2;
    std::int32_t outputDepth = 32;  // bits
};

/// Owns the signal looper and routes the current document's networks between the looper's input and
/// output bay. [interface thread]
class ZAudioManager : public ZHandler
{
public:
    /// Reads an `audiomanager`. BuildDriverModel creates the looper. [setup]
    ZAudioManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    /// Stops the looper.
    ~ZAudioManager() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTCHANGED ("NewDocument"), ZDOCUMENTNEW ("Document"): calls AttachDocument for a
    /// document of a followed type; throws ZException kGeneral without the field. ZPREFSCHANGED:
    /// calls BuildDriverModel when the user's settings hold all values of ZDriverSettings.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Sets the looper to the document's sample rate and routes its networks in place of the
    /// previous document's. Does nothing for the document that is attached. [setup]
    virtual void AttachDocument(const boost::shared_ptr<ZAudioDocument>& document);
    /// True when a document of a followed type is attached as it becomes current.
    [[nodiscard]] virtual bool FollowsDocuments() const { return mFollowsDocuments; }
    [[nodiscard]] virtual std::int32_t GetDocumentTypeCount() const;
    /// Returns the name of a followed document type; empty for an index out of range.
    [[nodiscard]] virtual std::string GetDocumentType(std::int32_t index) const;
    /// Start and stop the looper's own threads; do nothing without a looper.
    virtual void Start();
    virtual void Stop();
    /// Returns the looper, or null before BuildDriverModel. [any thread]
    [[nodiscard]] virtual boost::shared_ptr<ZSignalLooper> GetSignalLooper() const
    {
        return mLooper;
    }
    /// Returns the name of a driver model; empty for an index out of range.
    [[nodiscard]] virtual std::string GetDriverName(std::int32_t index) const;
    /// Creates looper and driver, replacing existing ones. On failure reports it in a message box
    /// and runs the looper with a silent driver. [setup]
    virtual void BuildDriverModel(const ZDriverSettings& settings);

protected:
    using DriverMaker = std::function<boost::shared_ptr<ZSignalDriver>()>;

    /// Implements BuildDriverModel with the maker's driver; null or an exception is a failure.
    void Build(const DriverMaker& makeDriver);

private:
    void FollowDocument(const ZMessage& message, const char* field);
    [[nodiscard]] bool IsFollowed(const ZDocument& document) const;
    void RebuildFromSettings();
    void BuildSilent();
    void RouteInput(ZBay& network);
    void RouteOutput(ZBay& network);

    boost::shared_ptr<ZSignalLooper> mLooper;
    boost::weak_ptr<ZAudioDocument> mAttached;  // whose networks are routed to mLooper
    std::vector<std::string> mDriverNames;
    ZLockedList<std::string> mDocumentTypes{"doctype list"};
    bool mFollowsDocuments = false;
};

}  // namespace orvane
