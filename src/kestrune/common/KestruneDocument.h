#pragma once

#include "zlib/common/ZPluginPresetsAudioDocument.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string_view>

namespace orvane
{

/// The product's document: its network holds the pitch bay. [interface thread]
class KestruneDocument : public ZPluginPresetsAudioDocument
{
public:
    /// As ZPluginPresetsAudioDocument. [setup]
    KestruneDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
};

}  // namespace orvane
