// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZAudioManager.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZAudioDocument.h"
#include "zlib/common/elements/ZAudioFormatElement.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/signals/ZInputBay.h"
#include "zlib/common/signals/ZOutputBay.h"
#include "zlib/common/signals/ZSignalLooper.h"
#include "zlib/common/signals/ZSilentDriver.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

// Settings of the silent driver, which replaces a driver that cannot be created.
constexpr float kSilentRate = 44100.0f;  // Hz
constexpr std::uint32_t kSilentBuffer = 512;

// The key of each choice in the user's settings.
constexpr std::array<std::pair<const char*, std::int32_t ZDriverSettings::*>, 9> kSettingKeys{{
    {"AudioDriverModel", &ZDriverSettings::model},
    {"AudioInputDevice", &ZDriverSettings::inputDevice},
    {"AudioOutputDevice", &ZDriverSettings::outputDevice},
    {"AudioInputSampleRate", &ZDriverSettings::inputRate},
    {"AudioInputChannelCount", &ZDriverSettings::inputChannels},
    {"AudioInputBitDepth", &ZDriverSettings::inputDepth},
    {"AudioOutputSampleRate", &ZDriverSettings::outputRate},
    {"AudioOutputChannelCount", &ZDriverSettings::outputChannels},
    {"AudioOutputBitDepth", &ZDriverSettings::outputDepth},
}};

std::vector<std::string> childNames(const ZXMLElement& xml, const char* tag)
{
    const std::int32_t count = xml.GetChildCount(tag);
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i)
        names.emplace_back(xml.GetChild(tag, i)->GetAttributeOr("name", ""));
    return names;
}

std::string nameAt(const std::vector<std::string>& names, std::int32_t index)
{
    return index >= 0 && index < std::ssize(names) ? names[static_cast<std::size_t>(index)]
                                                   : std::string();
}

std::int32_t framerateOf(const ZAudioDocument& document)
{
    ZMessage format(ZOK);
    document.GetAudioFormat()->GetFormat(format);
    std::int32_t rate = 0;
    if (!format.Find("Framerate", rate))
        throw ZException("Couldn't find frame rate in Message");
    return rate;
}

}  // namespace

ZAudioManager::ZAudioManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZHandler(xml, application)
    , mDriverNames(childNames(*xml, "drivermodel"))
{
    if (mDriverNames.empty())
        mDriverNames.emplace_back("Silent");
    const auto docChange = xml->GetChild("docchange");
    if (!docChange)
        return;
    mFollowsDocuments = docChange->AttributeIs("mode", "change");
    for (std::string& name : childNames(*docChange, "doctype"))
        mDocumentTypes.Append(std::move(name));
}

ZAudioManager::~ZAudioManager()
{
    if (mLooper)
        mLooper->Stop();
}

bool ZAudioManager::IsKindOf(std::string_view className) const
{
    return className == "ZAudioManagerClass" || ZHandler::IsKindOf(className);
}

const char* ZAudioManager::GetClassName() const
{
    return "ZAudioManagerClass";
}

void ZAudioManager::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZDOCUMENTCHANGED:
        FollowDocument(*message, "NewDocument");
        break;
    case ZDOCUMENTNEW:
        FollowDocument(*message, "Document");
        break;
    case ZPREFSCHANGED:
        RebuildFromSettings();
        break;
    default:
        ZHandler::HandleZMessage(std::move(message));
    }
}

void ZAudioManager::FollowDocument(const ZMessage& message, const char* field)
{
    boost::shared_ptr<ZDocument> document;
    if (!message.Find(field, document) || !document)
        throw ZException("Couldn't find NewDocument in message");
    if (!IsFollowed(*document))
        return;
    if (const auto audioDocument = boost::dynamic_pointer_cast<ZAudioDocument>(document))
        AttachDocument(audioDocument);
}

bool ZAudioManager::IsFollowed(const ZDocument& document) const
{
    const auto types = mDocumentTypes.Copy();
    return mFollowsDocuments &&
           std::find(types.begin(), types.end(), document.GetTypeName()) != types.end();
}

void ZAudioManager::RebuildFromSettings()
{
    ZApp* const app = ZApp::Of(*this);
    if (app == nullptr)
        return;
    ZDriverSettings settings;
    for (const auto& [key, field] : kSettingKeys) {
        if (!app->GetRegistryInt(key, settings.*field))
            return;
    }
    BuildDriverModel(settings);
}

void ZAudioManager::AttachDocument(const boost::shared_ptr<ZAudioDocument>& document)
{
    assert(document);
    // A document becomes current and new in turn, and may become current again while the host runs
    // passes at a rate of its own: its routes and the rate stay then.
    if (!mLooper || mAttached.lock() == document)
        return;
    mLooper->SetSampleRate(static_cast<float>(framerateOf(*document)));
    const bool wasRunning =
        mLooper->IsRunning();  // by the silent driver: no pass may run while routes change
    mLooper->Stop();
    mLooper->InitLooper();
    mLooper->GetOutputBay()->UnrouteImports();
    mLooper->GetOutputBay()->UnrouteExports();
    if (const auto network = document->GetInputNetwork())
        RouteInput(*network);
    if (const auto network = document->GetOutputNetwork())
        RouteOutput(*network);
    mAttached = document;
    if (wasRunning)
        mLooper->Start();
}

void ZAudioManager::RouteInput(ZBay& network)
{
    ZInputBay& input = *mLooper->GetInputBay();
    const bool isMono = network.GetImportCount() == 1;
    network.Route(0, input, 0);
    if (!isMono)
        network.Route(1, input, 1);
}

void ZAudioManager::RouteOutput(ZBay& network)
{
    ZOutputBay& output = *mLooper->GetOutputBay();
    const bool isMono = network.GetExportCount() == 1;
    output.Route(0, network, 0);
    output.Route(1, network, isMono ? 0 : 1);
}

std::int32_t ZAudioManager::GetDocumentTypeCount() const
{
    return mDocumentTypes.Count();
}

std::string ZAudioManager::GetDocumentType(std::int32_t index) const
{
    std::string name;
    static_cast<void>(mDocumentTypes.Get(index, name));
    return name;
}

void ZAudioManager::Start()
{
    if (mLooper)
        mLooper->Start();
}

void ZAudioManager::Stop()
{
    if (mLooper)
        mLooper->Stop();
}

std::string ZAudioManager::GetDriverName(std::int32_t index) const
{
    return nameAt(mDriverNames, index);
}

void ZAudioManager::BuildDriverModel(const ZDriverSettings& settings)
{
    const bool isSilent = GetDriverName(settings.model) == "Silent";
    Build([isSilent]() -> boost::shared_ptr<ZSignalDriver> {
        return isSilent ? boost::make_shared<ZSilentDriver>() : nullptr;
    });
}

void ZAudioManager::Build(const DriverMaker& makeDriver)
{
    assert(makeDriver);
    Stop();
    const boost::shared_ptr<ZAudioDocument> attached = mAttached.lock();
    mAttached.reset();
    try {
        mLooper = boost::make_shared<ZSignalLooper>(GetApp());
        const boost::shared_ptr<ZSignalDriver> driver = makeDriver();
        if (!driver)
            throw ZException("Unable to construct Driver Model");
        mLooper->SetDriver(driver);
    } catch (...) {
        BuildSilent();
    }
    if (attached)
        AttachDocument(attached);
}

void ZAudioManager::BuildSilent()
{
    assert(!mLooper || !mLooper->IsRunning());
    ZMessageBox::Show(ZMessageBox::kNotice, "Error", "Cannot Find Sound Device.");
    if (!mLooper)
        mLooper = boost::make_shared<ZSignalLooper>(GetApp());
    mLooper->SetDriver(boost::make_shared<ZSilentDriver>());
    mLooper->SetSampleRate(kSilentRate);
    mLooper->SetBufferSizes(kSilentBuffer, kSilentBuffer);
    mLooper->InitLooper();
    mLooper->Start();
}

}  // namespace orvane
