// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZHandler.h"

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

/// What a user chooses for a sound device; indexes count the lists of the manager and its driver.
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

/// Owns the signal looper and the driver that clocks it, and puts the current document's networks
/// between the looper's two ends. [interface thread]
class ZAudioManager : public ZHandler
{
public:
    /// From an `audiomanager`. Has no looper before BuildDriverModel. [setup]
    ZAudioManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    /// Stops the looper and lets it go, and the driver.
    ~ZAudioManager() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZDOCUMENTCHANGED ("NewDocument"), ZDOCUMENTNEW ("Document"): AttachDocument, when the
    /// document is one to be followed. Throws ZException -1 without the field. ZPREFSCHANGED:
    /// BuildDriverModel, when the user's settings name all of it.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Takes the document's rate, lets the network of the document before drop away and routes this
    /// one's. [setup]
    virtual void AttachDocument(const boost::shared_ptr<ZAudioDocument>& document);
    /// Whether documents of the types below are attached as they become current.
    [[nodiscard]] virtual bool FollowsDocuments() const { return mFollowsDocuments; }
    [[nodiscard]] virtual std::int32_t GetDocumentTypeCount() const;
    /// Empty for an index without a type.
    [[nodiscard]] virtual std::string GetDocumentType(std::int32_t index) const;
    /// Starts and stops the looper's own threads; nothing without a looper.
    virtual void Start();
    virtual void Stop();
    /// Null before BuildDriverModel. Copied by the audio thread. [any thread]
    [[nodiscard]] virtual boost::shared_ptr<ZSignalLooper> GetSignalLooper() const
    {
        return mLooper;
    }
    /// Empty for an index without a driver model.
    [[nodiscard]] virtual std::string GetDriverName(std::int32_t index) const;
    /// Makes looper and driver, in the place of those that are there. When that fails, tells the
    /// user, and a silent driver keeps the audio running. [setup]
    virtual void BuildDriverModel(const ZDriverSettings& settings);

protected:
    using DriverMaker = std::function<boost::shared_ptr<ZSignalDriver>()>;

    /// What BuildDriverModel does, with the driver from the maker; null or an exception is a
    /// failure.
    void Build(const DriverMaker& makeDriver);

private:
    void FollowDocument(const ZMessage& message, const char* field);
    [[nodiscard]] bool IsFollowed(const ZDocument& document) const;
    void RebuildFromSettings();
    void BuildSilent();
    void RouteInput(ZBay& network);
    void RouteOutput(ZBay& network);

    boost::shared_ptr<ZSignalLooper> mLooper;
    boost::weak_ptr<ZAudioDocument> mAttached;  // whose networks are routed to this looper
    std::vector<std::string> mDriverNames;
    std::vector<std::string> mDocumentTypes;
    bool mFollowsDocuments = false;
};

}  // namespace orvane
