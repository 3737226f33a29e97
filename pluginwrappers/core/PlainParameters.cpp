// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/PlainParameters.h"

#include "pluginwrappers/core/ZPluginCore.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/elements/ZElement.h"

#include <array>

namespace orvane
{

namespace
{

// Elements that are no parameters of the first interface, whose numbers hosts have stored.
constexpr std::array kFurtherParameters{"tracking"};

}  // namespace

std::vector<boost::shared_ptr<ZElement>> plainParametersOf(const ZPluginCore& core)
{
    std::vector<boost::shared_ptr<ZElement>> parameters;
    for (std::int32_t i = 0; i < core.GetParameterCount(); ++i)
        parameters.push_back(core.GetParameter(i));
    const auto document = core.GetApp() ? core.GetApp()->GetCurrentDocument() : nullptr;
    for (const char* const name : kFurtherParameters)
        if (const auto element = document ? document->FindElement(name) : nullptr)
            parameters.push_back(element);
    return parameters;
}

std::string plainLabelOf(const ZElement& element)
{
    const std::string label = element.GetLabel(ZElement::kFullLabel).ToNarrow();
    // Hosts of the first interface find stored automation by the label as it has always been.
    return label == "Pitch Correcton Time" ? "Pitch Correction Time" : label;
}

}  // namespace orvane
