// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/SmallApplication.h"
#include "support/XmlOf.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZException.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

/// The definition of a group with an element of each type.
inline std::string elementsOfEachType()
{
    const std::string head = "<element class=\"ZElementClass\" archivable=\"true\" ";
    return head + "name=\"all\" type=\"ZGROUP\">\n<subelements>\n" +  //
           head + "name=\"gain\" type=\"ZFLOAT\" floatvalue=\"0.5\" units=\"Decibels\">" +
           "<label type=\"short\" text=\"Gain\" /></element>\n" +  //
           head + "name=\"key\" type=\"ZDISCRETE\" int32value=\"1\">" +
           "<discrete name=\"A\" /><discrete name=\"B\" /></element>\n" +  //
           head + "name=\"names\" type=\"ZDISCRETE\"></element>\n" +       //
           head + "name=\"place\" type=\"ZPOS\" int64value=\"7\"></element>\n" + head +
           "name=\"press\" type=\"ZMESSAGE\"></element>\n" +  //
           head + "name=\"run\" type=\"ZRANGE\" rangeStart=\"1\" rangeEnd=\"2\"></element>\n" +
           head + "name=\"flags\" type=\"ZBUFFER\" buffermin=\"0\"><buffer length=\"2\" " +
           "samplerate=\"44100\"><data values=\"3f80000000000000\" /></buffer></element>\n" +
           "</subelements>\n</element>\n";
}

inline boost::shared_ptr<ZElement> makeElement(const std::string& text, ZApplication& application)
{
    return boost::make_shared<ZElement>(xmlOf(text), &application);
}

/// The element of that name below tree; null when there is none.
inline boost::shared_ptr<ZElement> findBelow(const ZElement& tree, const char* name)
{
    boost::shared_ptr<ZElement> found;
    return tree.FindSubElement(name, found) ? found : nullptr;
}

/// Reads any bytes as the definition of an element and restores a standing tree from them.
/// Describes the fault that the tree then has; empty when there is none.
inline std::string elementArchiveFault(const std::string& text)
{
    SmallApplication application;
    application.GetClassRegistry().AddStandard<ZElement>("ZElementClass");
    const auto tree = makeElement(elementsOfEachType(), application);
    findBelow(*tree, "names")->SetArchiveDiscreteList(true);
    if (const auto xml = xmlOf(text)) {
        try {
            const ZElement definition(xml, &application);
            static_cast<void>(definition.ExtractXML());
        } catch (const ZException&) {
        }
        try {
            tree->RestoreBody(xml);
        } catch (const ZException&) {
        }
    }

    const auto key = findBelow(*tree, "key");
    if (key->GetDiscrete() < 0 || key->GetDiscrete() >= key->CountDiscreteValues())
        return "an index is outside its list";
    if (findBelow(*tree, "flags")->GetZBuffer()->Length() != 2)
        return "a buffer has changed its length";
    // The archive of the restored tree must restore the same values.
    const std::string once = tree->ExtractXML()->Write(0);
    tree->RestoreBody(xmlOf(once));
    const std::string twice = tree->ExtractXML()->Write(0);
    return once == twice ? "" : "restoring its own archive makes of\n" + once + "this\n" + twice;
}

}  // namespace orvane
