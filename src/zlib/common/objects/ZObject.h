// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <string_view>

namespace orvane
{

class ZXMLElement;

/// Root of the framework's classes: a name, a test by class name and the archive operations.
/// Objects have an identity and cannot be copied. There is no lock: one thread at a time uses an
/// object, unless its class says otherwise.
class ZObject
{
public:
    /// The name is UTF-8; several objects may have the same one.
    explicit ZObject(std::string_view name = {});
    /// Takes the name from the attribute `name`; empty without that attribute.
    explicit ZObject(const boost::shared_ptr<ZXMLElement>& xml);
    ZObject(const ZObject&) = delete;
    ZObject& operator=(const ZObject&) = delete;
    virtual ~ZObject() = default;

    /// True for the name of the object's own class or of one of its bases.
    [[nodiscard]] virtual bool IsKindOf(std::string_view className) const;
    /// The name of the object's class, as archives write it.
    [[nodiscard]] virtual const char* GetClassName() const;
    /// A new element that identifies the object; here a tag "ZObject" with name and class.
    [[nodiscard]] virtual boost::shared_ptr<ZXMLElement> ExtractHeader() const;
    /// Writes the object's state into the element. Does nothing here.
    virtual void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const;
    /// Applies an archived state to the object. Does nothing here.
    virtual void RestoreBody(const boost::shared_ptr<ZXMLElement>& xml);
    /// Writes the object's state as trace lines, for debugging. Does nothing here.
    virtual void Dump() const;

    /// The object's archive: ExtractHeader, filled by ExtractBody.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractXML() const;

    [[nodiscard]] const std::string& GetName() const { return mName; }
    void SetName(std::string_view name) { mName = name; }

private:
    std::string mName;
};

}  // namespace orvane
