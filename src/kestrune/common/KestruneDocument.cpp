#include "kestrune/common/KestruneDocument.h"

namespace orvane
{

KestruneDocument::KestruneDocument(const boost::shared_ptr<ZXMLElement>& xml,
                                   ZApplication* application)
    : ZAudioDocument(xml, application)
    , ZPluginPresetsAudioDocument(xml, application)
{
}

bool KestruneDocument::IsKindOf(std::string_view className) const
{
    return className == "KestruneDocumentClass" || ZPluginPresetsAudioDocument::IsKindOf(className);
}

const char* KestruneDocument::GetClassName() const
{
    return "KestruneDocumentClass";
}

}  // namespace orvane
