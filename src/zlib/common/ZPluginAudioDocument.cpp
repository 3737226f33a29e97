#include "zlib/common/ZPluginAudioDocument.h"

namespace orvane
{

ZPluginAudioDocument::ZPluginAudioDocument(const boost::shared_ptr<ZXMLElement>& xml,
                                           ZApplication* application)
    : ZAudioDocument(xml, application)
{
}

bool ZPluginAudioDocument::IsKindOf(std::string_view className) const
{
    return className == "ZPluginAudioDocumentClass" || ZAudioDocument::IsKindOf(className);
}

const char* ZPluginAudioDocument::GetClassName() const
{
    return "ZPluginAudioDocumentClass";
}

}  // namespace orvane
