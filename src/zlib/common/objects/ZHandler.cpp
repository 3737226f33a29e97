// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZHandler.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZLooper.h"

#include <atomic>
#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

std::atomic<ZApplication*> currentApp{nullptr};

}  // namespace

ZHandler::ZHandler(std::string_view name, ZLooper* looper)
    : ZObject(name)
{
    if (looper)
        ZHandler::SetLooper(looper);
}

ZHandler::ZHandler(const boost::shared_ptr<ZXMLElement>& xml, ZLooper* looper)
    : ZObject(xml)
{
    if (looper)
        ZHandler::SetLooper(looper);
}

ZHandler::~ZHandler()
{
    if (mLooper)
        mLooper->RemoveHandler(this);
    assert(!mLooper);
}

bool ZHandler::IsKindOf(std::string_view className) const
{
    return className == "ZHandlerClass" || ZObject::IsKindOf(className);
}

const char* ZHandler::GetClassName() const
{
    return "ZHandlerClass";
}

boost::shared_ptr<ZXMLElement> ZHandler::ExtractHeader() const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractHeader\n");
}

void ZHandler::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
    throw ZException(ZException::kNotImplemented, "Implement ExtractBody\n");
}

ZApplication* ZHandler::GetApp()
{
    return mLooper ? mLooper->GetApp() : currentApp.load(std::memory_order_acquire);
}

void ZHandler::SetLooper(ZLooper* looper)
{
    if (mLooper && mLooper != looper)
        mLooper->RemoveHandler(this);
    mLooper = looper;
    if (looper)
        looper->AddHandler(this);
}

ZLooper* ZHandler::GetLooper()
{
    return mLooper;
}

void ZHandler::HandleZMessage(boost::shared_ptr<const ZMessage> /*message*/)
{
}

void ZHandler::PostZMessage(boost::shared_ptr<const ZMessage> message)
{
    if (mLooper)
        mLooper->PostZMessage(std::move(message), this);
}

std::weak_ptr<const void> ZHandler::GetLife() const
{
    if (!mLife)
        mLife = std::make_shared<char>();
    return mLife;
}

void ZHandler::SetCurrentApp(ZApplication* app)
{
    assert(app);
    currentApp.store(app, std::memory_order_release);
}

void ZHandler::ClearCurrentApp(ZApplication* app)
{
    currentApp.compare_exchange_strong(app, nullptr, std::memory_order_acq_rel);
}

}  // namespace orvane
