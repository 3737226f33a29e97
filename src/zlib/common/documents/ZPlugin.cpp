// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZPlugin.h"

#include "zlib/common/documents/ZDataFiles.h"
#include "zlib/common/documents/ZPluginAudioManager.h"
#include "zlib/common/documents/ZSetParameterFn.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZMessage.h"
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
    for (const auto& element : mExposed)
        element->RemoveObserver(this);
}

void ZPlugin::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    if (message->GetId() == ZELEMENTCHANGED)
        return SendToHost(*message);
    ZApp::HandleZMessage(std::move(message));
}

void ZPlugin::SendToHost(const ZMessage& message)
{
    std::uint64_t elementId = 0;
    if (!mSetParameterFn || !message.Find("elementid", elementId))
        return;
    for (std::int32_t i = 0; i < GetExposedCount(); ++i) {
        const auto element = GetExposedElement(i);
        if (elementIdOf(element.get()) == elementId)
            mSetParameterFn->SetParameter(element, i);
    }
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
}

void ZPlugin::ExposeElements(const ZElement& element)
{
    boost::shared_ptr<ZElement> child;
    for (std::int32_t i = 0; element.GetSubElement(i, child); ++i) {
        if (child->GetSubElementCount() > 0)
            ExposeElements(*child);
        else
            AddExposedElement(child);
    }
}

void ZPlugin::AddExposedElement(const boost::shared_ptr<ZElement>& element)
{
    assert(element);
    const ZElement::Type type = element->GetType();
    if (!element->IsExposed() || (type != ZElement::ZFLOAT && type != ZElement::ZDISCRETE))
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
