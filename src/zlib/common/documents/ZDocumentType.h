// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace orvane
{

class ZClassRegistry;
class ZDocument;
class ZXMLElement;

/// A kind of document: a name, the class to create and its description.
struct ZDocumentType
{
    /// Reads a `doctype`. Throws ZException kGeneral for a wrong tag. [setup]
    explicit ZDocumentType(const boost::shared_ptr<ZXMLElement>& doctype);

    /// Creates a document of this type. Throws ZException kGeneral when the class is unknown or not
    /// derived from ZDocument, and what its constructor throws. [interface thread]
    [[nodiscard]] boost::shared_ptr<ZDocument> CreateDocument(const ZClassRegistry& classes) const;

    std::string name;
    std::string className;
    boost::shared_ptr<ZXMLElement> xml;  // the `doctype`
};

}  // namespace orvane
