// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace orvane
{

class ZApplication;
class ZWindow;
class ZXMLElement;

/// A `windowtype` of the description, from which windows are built as often as needed.
class ZWindowType
{
public:
    /// Another tag is traced and leaves the type empty.
    explicit ZWindowType(const boost::shared_ptr<ZXMLElement>& xml);

    [[nodiscard]] const std::string& GetName() const { return mName; }
    [[nodiscard]] const std::string& GetClass() const { return mClass; }
    /// Returns the attribute `hidden`: ZWINNEW does not show such a window.
    [[nodiscard]] bool IsHidden() const;
    /// Throws ZException kGeneral for a class that is unknown or no window, and what its
    /// constructor throws.
    [[nodiscard]] boost::shared_ptr<ZWindow> BuildWindow(ZApplication& application) const;

private:
    std::string mName;
    std::string mClass;
    boost::shared_ptr<ZXMLElement> mXml;
};

}  // namespace orvane
