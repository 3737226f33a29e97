// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZPlugin.h"

#include "zlib/common/documents/ZAudioDocument.h"
#include "zlib/common/documents/ZDataFiles.h"
#include "zlib/common/documents/ZPluginAudioManager.h"
#include "zlib/common/documents/ZSetParameterFn.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <cassert>
#include <memory>
#include <utility>

namespace orvane
{

namespace
{

constexpr const char* kLabelFont = "Kolm 5pt.ttf";

// Handlers change more elements in answer to a load, which is delivered at the next tick, and again
// in answer to those changes. The count is lowered as a tick begins: two ticks are quiet.
constexpr std::int32_t kQuietTicks = 3;

// Numbers of the texts that stand below title and version, in order; those without a text are left
// out.
constexpr std::int32_t kFirstAboutText = 200;
constexpr std::int32_t kLastAboutText = 209;

bool isParameter(const ZElement& element)
{
    const ZElement::Type type = element.GetType();
    return element.IsExposed() && (type == ZElement::ZFLOAT || type == ZElement::ZDISCRETE);
}

}  // namespace

ZPlugin::ZPlugin(const ZResources& resources)
    : ZApp(resources)
{
}

ZPlugin::~ZPlugin()
{
    EndModalRuns();
    StopTimers();
    // A plug-in has no message thread that would release the waiters at its end.
    ReleaseAlive();
    mSetParameterFn.reset();
    for (const auto* elements : {&mExposed, &mStateElements})
        for (const auto& element : *elements)
            element->RemoveObserver(this);
}

void ZPlugin::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZELEMENTCHANGED:
        return HandleElementChanged(*message);
    case ZPRESETLOADBEGIN:
        mIsLoading = true;
        break;
    case ZPRESETLOADEND:
        mIsLoading = false;
        mQuietTicks = kQuietTicks;
        break;
    default:
        break;
    }
    ZApp::HandleZMessage(std::move(message));
}

void ZPlugin::HandleElementChanged(const ZMessage& message)
{
    std::uint64_t elementId = 0;
    if (!mSetParameterFn || !message.Find("elementid", elementId))
        return;
    bool isParameter = false;
    for (std::int32_t i = 0; i < GetExposedCount(); ++i) {
        const auto element = GetExposedElement(i);
        if (elementIdOf(element.get()) != elementId)
            continue;
        isParameter = true;
        mSetParameterFn->SetParameter(element, i);
    }
    if (!isParameter)
        HandleStateElement(elementId);
}

void ZPlugin::HandleStateElement(std::uint64_t elementId)
{
    // The host knows of what it loads itself; a load of the user's marks the state by itself.
    if (mIsLoading || mQuietTicks > 0)
        return;
    const auto document = boost::dynamic_pointer_cast<ZAudioDocument>(GetCurrentDocument());
    if (document && !document->FollowsParameter(elementId))
        MarkStateChanged();
}

void ZPlugin::FlushElementChanges()
{
    if (mQuietTicks > 0)
        --mQuietTicks;
    // Hosts may be told on this thread only; a tick on another one leaves the mark for later.
    if (mSetParameterFn && ZInterfaceThread::IsCurrent() && std::exchange(mStateChanged, false)) {
        const auto function = mSetParameterFn;  // kept while the host is called without the lock
        function->StateChanged();
    }
    ZApp::FlushElementChanges();
}

void ZPlugin::ShowAbout()
{
    ZString version;
    GetVersion(version);
    ZString text = GetTitle();
    text.Append(" ");
    text.Append(version);
    for (std::int32_t id = kFirstAboutText; id <= kLastAboutText; ++id) {
        ZString line;
        if (!GetResourceString(id, line))
            continue;
        text.Append("\n\n");
        text.Append(line);
    }
    ZMessageBox::Show(ZMessageBox::kInformation, GetTitle(), text);
}

void ZPlugin::InitLooper()
{
    ZApp::InitLooper();
    if (const auto font = findDataFile(kLabelFont))
        LoadFont(*font);
}

void ZPlugin::AddAudioManager(const boost::shared_ptr<ZXMLElement>& xml)
{
    if (!xml->IsNamed("audiomanager"))
        throw ZException("ZApp::AddAudioManager, XML tag is not a <audiomanager>.");
    if (GetAudioManager()) {
        ZTrace::Write("\nWarning: ZApp::AddAudioManager, mAudioManager already created. Multiple "
                      "top level window managers?\n");
        ReplaceAudioManager(nullptr);
    }
    ReplaceAudioManager(std::make_unique<ZPluginAudioManager>(xml, this));
    GetAudioManager()->BuildDriverModel({});
}

void ZPlugin::SetParameterFn(const boost::shared_ptr<ZSetParameterFn>& function)
{
    mSetParameterFn = function;
    // What the start has changed is no news either.
    mQuietTicks = kQuietTicks;
}

void ZPlugin::ExposeElements(const ZElement& element)
{
    boost::shared_ptr<ZElement> child;
    for (std::int32_t i = 0; element.GetSubElement(i, child); ++i) {
        if (child->GetSubElementCount() > 0)
            ExposeElements(*child);
        else if (isParameter(*child))
            AddExposedElement(child);
        else if (child->IsArchivable())
            AddStateElement(child);
    }
}

void ZPlugin::AddStateElement(const boost::shared_ptr<ZElement>& element)
{
    mStateElements.push_back(element);
    element->AddObserver(this);
}

void ZPlugin::AddExposedElement(const boost::shared_ptr<ZElement>& element)
{
    assert(element);
    if (!isParameter(*element))
        return;
    mExposed.push_back(element);
    element->AddObserver(this);
}

std::int32_t ZPlugin::GetExposedCount() const
{
    return static_cast<std::int32_t>(mExposed.size());
}

ZString ZPlugin::GetExposedLabel(std::int32_t index) const
{
    const auto element = GetExposedElement(index);
    return element ? element->GetLabel(ZElement::kFullLabel) : ZString();
}

boost::shared_ptr<ZElement> ZPlugin::GetExposedElement(std::int32_t index) const
{
    if (index < 0 || index >= GetExposedCount())
        return nullptr;
    return mExposed[static_cast<std::size_t>(index)];
}

void ZPlugin::BeginEdit(const ZElement* element)
{
    assert(element);
    for (std::int32_t i = 0; mSetParameterFn && i < GetExposedCount(); ++i)
        if (GetExposedElement(i).get() == element)
            mSetParameterFn->BeginEdit(i);
}

void ZPlugin::EndEdit(const ZElement* element)
{
    for (std::int32_t i = 0; mSetParameterFn && i < GetExposedCount(); ++i) {
        const auto exposed = GetExposedElement(i);
        if (exposed.get() != element)
            continue;
        if (exposed->ClaimHostNotification())
            mSetParameterFn->SetParameter(exposed, i);
        mSetParameterFn->EndEdit(i);
    }
}

float ZPlugin::GetExposedValue(const ZElement& element) const
{
    switch (element.GetType()) {
    case ZElement::ZDISCRETE:
        return static_cast<float>(element.GetDiscrete());
    case ZElement::ZFLOAT:
        return element.GetZFloat();
    default:
        return 0.0f;
    }
}

void ZPlugin::SetExposedValue(ZElement& element, float value)
{
    if (element.GetType() == ZElement::ZDISCRETE)
        element.SetDiscrete(static_cast<std::int32_t>(value), false);
    else if (element.GetType() == ZElement::ZFLOAT)
        element.SetZFloat(value, false);
}

}  // namespace orvane
