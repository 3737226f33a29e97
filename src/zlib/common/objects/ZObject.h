// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <string_view>

namespace orvane
{

class ZXMLElement;

/// Root of the framework's classes: a name, a class-name test and the archive operations.
/// Objects have identity, so they are not copied. No locks: an object belongs to one thread at a
/// time unless its class says otherwise.
class ZObject
{
public:
    /// The name is UTF-8 and need not be unique.
    explicit ZObject(std::string_view name = {});
    /// Takes the name from the attribute `name`; empty without one.
    explicit ZObject(const boost::shared_ptr<ZXMLElement>& xml);
    ZObject(const ZObject&) = delete;
    ZObject& operator=(const ZObject&) = delete;
    virtual ~ZObject() = default;

    /// True for the name of the object's own class or of one of its bases.
    [[nodiscard]] virtual bool IsKindOf(std::string_view className) const;
    /// The name of the object's class as it stands in an archive.
    [[nodiscard]] virtual const char* GetClassName() const;
    /// A new element with the object's opening data: here a tag "ZObject" with name and class.
    [[nodiscard]] virtual boost::shared_ptr<ZXMLElement> ExtractHeader() const;
    /// Writes the object's state into the element. Nothing here.
    virtual void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const;
    /// Applies an archived state to the object as it stands. Nothing here.
    virtual void RestoreBody(const boost::shared_ptr<ZXMLElement>& xml);
    /// Tells a person who looks for a fault what the object holds. Nothing here.
    virtual void Dump() const;

    /// The object's archive: its header with its state in it.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractXML() const;

    [[nodiscard]] const std::string& GetName() const { return mName; }
    void SetName(std::string_view name) { mName = name; }

private:
    std::string mName;
};

}  // namespace orvane
