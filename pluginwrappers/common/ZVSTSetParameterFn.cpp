// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTSetParameterFn.h"

#include "pluginwrappers/common/ZVSTPlugin.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZException.h"

namespace orvane
{

void ZVSTSetParameterFn::SetParameter(const boost::shared_ptr<ZElement>& element,
                                      std::int32_t index)
{
    if (element->GetType() != ZElement::ZFLOAT && element->GetType() != ZElement::ZDISCRETE)
        throw ZException("non-automatable element");
    mPlugin.NotifyHost(index);
}

void ZVSTSetParameterFn::BeginEdit(std::int32_t index)
{
    mPlugin.beginEdit(index);
}

void ZVSTSetParameterFn::EndEdit(std::int32_t index)
{
    mPlugin.endEdit(index);
}

void ZVSTSetParameterFn::StateChanged()
{
    mPlugin.updateDisplay();
}

}  // namespace orvane
