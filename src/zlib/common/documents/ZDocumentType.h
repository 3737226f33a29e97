// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace orvane
{

class ZClassRegistry;
class ZDocument;
class ZXMLElement;

/// What a document manager makes documents from.
struct ZDocumentType
{
    /// Reads a `doctype`. Throws ZException -1 for another tag.
    explicit ZDocumentType(const boost::shared_ptr<ZXMLElement>& doctype);

    /// A new document of this type. Throws ZException -1 when the class is not known or is none of
    /// documents; what its constructor throws goes through.
    [[nodiscard]] boost::shared_ptr<ZDocument> CreateDocument(const ZClassRegistry& classes) const;

    std::string name;
    std::string className;
    boost::shared_ptr<ZXMLElement> xml;
};

}  // namespace orvane
