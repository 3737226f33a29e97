// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZAudioDocument.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZTransactionManager.h"
#include "zlib/common/elements/ZAudioFormatElement.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZFile.h"
#include "zlib/common/objects/ZFiletype.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/signals/ZSignalBay.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

constexpr const char* kPresetClass = "ZAudioDocumentClass";  // also for derived classes
constexpr const char* kPresetVersion = "1.0";

/// True when a later network of the same type replaces the one at the index.
bool isReplaced(const ZXMLElement& networks, std::int32_t index, const char* type)
{
    for (auto next = networks.GetChild("network", ++index); next;
         next = networks.GetChild("network", ++index))
        if (next->AttributeIs("type", type))
            return true;
    return false;
}

void addNetwork(ZXMLElement& networks, const char* type, const boost::shared_ptr<ZBay>& bay)
{
    if (!bay)
        return;
    ZXMLElement network("network");
    network.AddAttribute("type", type);
    network.AddChild(*bay->ExtractXML());
    networks.AddChild(network);
}

boost::shared_ptr<ZFiletype> presetType(const char* description)
{
    auto type = boost::make_shared<ZFiletype>();
    type->extension = "xml";
    type->description = description;
    type->mimeType = "text/xml";
    return type;
}

std::int32_t windowOf(const ZMessage& message)
{
    std::int32_t window = 0;
    return message.Find("CmdWindow", window) ? window : 0;
}

/// Wraps the file's text in an element without a tag.
boost::shared_ptr<ZXMLElement> wholeFile(const ZXMLDocument& file)
{
    auto whole = boost::make_shared<ZXMLElement>();
    const std::string_view text = file.GetText();
    whole->AppendBytes(text.data(), static_cast<std::int32_t>(text.size()));
    return whole;
}

std::string unableToOpen(const ZFile& file)
{
    return "Unable to open " + file.GetPath().ToNarrow();
}

/// Opens a file for reading and closes it in the destructor.
class OpenFile
{
public:
    explicit OpenFile(ZFile& file)
        : mFile(file)
    {
        if (!file.IsOpen() && !file.Open(ZFile::kModeRead, false))
            throw ZException(unableToOpen(file));
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { mFile.Close(); }

private:
    ZFile& mFile;
};

}  // namespace

ZAudioDocument::ZAudioDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZDocument(xml, application)
{
    assert(application);
    if (const auto networks = xml->GetChild("networks"))
        BuildNetworks(*networks);
    mAudioFormat = boost::make_shared<ZAudioFormatElement>("audioformat", application);
    AddSubElement(mAudioFormat);
}

ZAudioDocument::~ZAudioDocument() = default;

void ZAudioDocument::BuildNetworks(const ZXMLElement& networks)
{
    const std::int32_t count = networks.GetChildCount("network");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto network = networks.GetChild("network", i);
        for (const auto& [type, target] :
             {std::pair{"input", &mInputNetwork}, std::pair{"output", &mOutputNetwork}})
            // The elements of a replaced network would stay in the tree, so it is not created.
            if (network->AttributeIs("type", type) && !isReplaced(networks, i, type))
                *target = BuildNetwork(*network);
    }
}

boost::shared_ptr<ZBay> ZAudioDocument::BuildNetwork(const ZXMLElement& network)
{
    const auto xml = network.GetChild("bay");
    if (!xml)
        return nullptr;
    const std::string className = xml->GetAttributeOr("class", "");
    const auto bay =
        boost::dynamic_pointer_cast<ZBay>(GetApp()->GetClassRegistry().Create(className, xml));
    if (!bay)
        throw ZException("ERROR (ZAudioDocument) '" + className +
                         "' class found in XML, unable to make instance!\n");
    if (auto* const signal = dynamic_cast<ZSignalBay*>(bay.get()))
        signal->Prepare();
    if (const auto element = bay->GetElement())
        AddSubElement(element);
    bay->SetDocument(this);
    return bay;
}

bool ZAudioDocument::IsKindOf(std::string_view className) const
{
    return className == "ZAudioDocumentClass" || ZDocument::IsKindOf(className);
}

const char* ZAudioDocument::GetClassName() const
{
    return "ZAudioDocumentClass";
}

void ZAudioDocument::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZDOCUMENTCHANGED:
        return HandleDocumentChanged(*message);
    case ZPRESETSAVE:
        return SavePresetFile("Preset", *message);
    case ZPRESETLOAD:
        if (LoadPresetFile("Glim preset xml", "Select Preset", &wholeFile, *message))
            SendToNetworks(message);
        return;
    case ZSETDEFAULTS:
    case ZRESET:
        return SendToNetworks(message);
    case ZUNDO:
        GetTransactionManager()->Undo();
        return BecameCurrent();
    case ZREDO:
        GetTransactionManager()->Redo();
        return BecameCurrent();
    default:
        ZDocument::HandleZMessage(std::move(message));
    }
}

void ZAudioDocument::HandleDocumentChanged(const ZMessage& message)
{
    boost::shared_ptr<ZDocument> document;
    if (!message.Find("NewDocument", document))
        throw ZException("Couldn't find NewDocument in msg");
    if (document.get() == this)
        BecameCurrent();
}

void ZAudioDocument::SendToNetworks(const boost::shared_ptr<const ZMessage>& message)
{
    for (const auto& network : {mInputNetwork, mOutputNetwork})
        if (network)
            network->HandleZMessage(message);
}

boost::shared_ptr<ZXMLElement> ZAudioDocument::ExtractHeader() const
{
    auto xml = boost::make_shared<ZXMLElement>("document");
    xml->AddAttribute("name", withoutMarkup(GetName()));
    xml->AddAttribute("class", kPresetClass);
    return xml;
}

void ZAudioDocument::ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const
{
    ZXMLElement networks("networks");
    addNetwork(networks, "input", mInputNetwork);
    addNetwork(networks, "output", mOutputNetwork);
    xml->AddChild(networks);

    ZXMLElement elements("elements");
    boost::shared_ptr<ZElement> element;
    for (std::int32_t i = 0; GetSubElement(i, element); ++i)
        if (element->IsArchivedNow())
            elements.AddChild(*element->ExtractXML());
    xml->AddChild(elements);
}

void ZAudioDocument::SavePreset(ZXMLElement& parent)
{
    assert(ZInterfaceLock::IsHeld());
    // A pending change may cause others when it is delivered: the preset holds all of them.
    DeliverPending();
    PresetBegins();
    ZXMLElement preset("preset");
    preset.AddAttribute("name", withoutMarkup(GetName()));
    preset.AddAttribute("class", kPresetClass);
    preset.AddAttribute("version", kPresetVersion);
    preset.AddChild(*ExtractXML());
    parent.AddChild(preset);
    PresetEnds();
}

void ZAudioDocument::LoadPreset(const boost::shared_ptr<ZXMLElement>& xml)
{
    assert(ZInterfaceLock::IsHeld());
    if (!xml)
        throw ZException("NULL preset file");
    const auto preset = xml->GetChild("preset");
    if (preset && !preset->AttributeIs("version", kPresetVersion))
        return ZMessageBox::Show(ZMessageBox::kNotice, "Could not load preset",
                                 "Incorrect Preset version.");
    // Changes from before the load must not be handled after it and act on restored values.
    DeliverPending();
    PresetBegins();
    assert(GetLooper());
    GetLooper()->BroadcastZMessage(boost::make_shared<ZMessage>(ZPRESETLOADBEGIN));
    try {
        RestoreElements(xml);
    } catch (...) {
        EndLoad();
        throw;
    }
    EndLoad();
}

void ZAudioDocument::DeliverPending()
{
    FlushChanges();
    GetLooper()->ProcessQueue();
}

void ZAudioDocument::EndLoad()
{
    // Also after a failure, so that no handler waits for the end in vain.
    GetLooper()->BroadcastZMessage(boost::make_shared<ZMessage>(ZPRESETLOADEND));
    GetLooper()->ProcessQueue();
    PresetEnds();
}

void ZAudioDocument::RestoreElements(const boost::shared_ptr<ZXMLElement>& xml)
{
    // Iterative, since a text from outside may nest its tags deeper than the stack allows.
    struct Level
    {
        boost::shared_ptr<ZXMLElement> xml;
        std::int32_t next = 0;
    };
    std::vector<Level> levels{{xml}};
    while (!levels.empty()) {
        const auto child = levels.back().xml->GetChild(levels.back().next++);
        if (!child) {
            levels.pop_back();
            continue;
        }
        if (child->IsNamed("element"))
            RestoreElement(child);
        levels.push_back({child});
    }
}

void ZAudioDocument::RestoreElement(const boost::shared_ptr<ZXMLElement>& xml)
{
    const char* const name = xml->GetAttribute("name");
    if (!name)
        return;
    if (const auto element = FindElement(name))
        element->RestoreBody(xml);
}

void ZAudioDocument::SavePresetFile(const char* description, const ZMessage& message)
{
    ZFiletypeList types("type list");
    types.Append(presetType(description));
    ZApp* const app = ZApp::Of(*this);
    const auto file =
        app ? app->ChooseSaveFile("Save your preset", "Save Preset", types, windowOf(message))
            : nullptr;
    if (!file)
        return;
    ZXMLElement saved;
    SavePreset(saved);
    const std::string_view text = saved.GetText();
    file->Close();
    if (!file->ReplaceContent(text))
        throw ZException(unableToOpen(*file));
}

bool ZAudioDocument::LoadPresetFile(const char* description, const char* prompt,
                                    PresetOfFile presetOfFile, const ZMessage& message)
{
    ZFiletypeList types("type list");
    types.Append(presetType(description));
    ZApp* const app = ZApp::Of(*this);
    const auto file =
        app ? app->ChooseOpenFile(prompt, "Load Preset", types, windowOf(message)) : nullptr;
    if (!file)
        return false;
    try {
        // ZFile::Open would create a missing file.
        if (!file->Exists())
            throw ZException("No such file: " + file->GetPath().ToNarrow());
        const OpenFile open(*file);
        LoadPreset(presetOfFile(ZXMLDocument(file)));
    } catch (const ZException& failure) {
        const bool isTooLarge = failure.GetCode() == ZException::kTooLarge;
        ZMessageBox::Show(ZMessageBox::kNotice, "Invalid File",
                          isTooLarge ? failure.GetMessage() : ZString("Invalid Preset File."));
    }
    return true;
}

std::int32_t ZAudioDocument::GetLatency() const
{
    const auto* const network = dynamic_cast<const ZSignalBay*>(mOutputNetwork.get());
    return network ? network->GetLatency() : 0;
}

bool ZAudioDocument::FollowsParameter(std::uint64_t /*elementId*/) const
{
    return false;
}

void ZAudioDocument::FlushChanges()
{
    assert(ZInterfaceLock::IsHeld());
    FlushMarksBelow(GetApp());
}

}  // namespace orvane
